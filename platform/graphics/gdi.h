#pragma once

#include "platform/base/bitmapinfo.h"
#include "platform/base/export.h"
#include "platform/base/geometry.h"
#include "platform/graphics/gdi_constants.h"
#include "platform/graphics/gdi_records.h"

// Drawing. Coordinates are logical units, 96 to the inch on the screen; right and bottom edges are exclusive.
// Text is UTF-8. A null or dead handle makes a function fail softly: FALSE, 0 or null. All of it runs on the
// user-interface thread; everything but text works without an application object.

// --- Objects. The creator owns a new object and ends it with DeleteObject.
PLATFORM_API HBRUSH CreateSolidBrush(COLORREF color);
PLATFORM_API HPEN CreatePen(int style, int width, COLORREF color);
PLATFORM_API HFONT CreateFontIndirectA(const LOGFONTA* font);
inline HFONT CreateFontIndirect(const LOGFONTA* font) {
  return CreateFontIndirectA(font);
}
PLATFORM_API HPALETTE CreatePalette(const LOGPALETTE* palette);
/// Count of entries copied; with a null buffer the count that there are.
PLATFORM_API UINT GetPaletteEntries(HPALETTE palette, UINT first, UINT count, PALETTEENTRY* entries);
/// TRUE for a stock or system colour object too, which stays. FALSE for one that is selected somewhere.
PLATFORM_API BOOL DeleteObject(HGDIOBJ object);
/// Null for an unknown index.
PLATFORM_API HGDIOBJ GetStockObject(int index);
/// Brush of a theme colour, owned by the system; it follows the theme.
PLATFORM_API HBRUSH GetSysColorBrush(int index);
PLATFORM_API COLORREF GetSysColor(int index);
/// OBJ_PEN ..., 0 for a dead handle.
PLATFORM_API DWORD GetObjectType(HGDIOBJ object);
/// Writes BITMAP, LOGPEN, LOGBRUSH, LOGFONTA or (palette) a WORD count; the bytes written. With a null buffer
/// the bytes needed. 0 if the buffer is too small.
PLATFORM_API int GetObjectA(HGDIOBJ object, int bytes, LPVOID buffer);
inline int GetObject(HGDIOBJ object, int bytes, LPVOID buffer) {
  return GetObjectA(object, bytes, buffer);
}

// --- Bitmaps.
/// A bitmap that suits the device context: 32 bits, or bilevel if a bilevel bitmap is selected there.
PLATFORM_API HBITMAP CreateCompatibleBitmap(HDC dc, int width, int height);
/// 1 plane of 1 or 32 bits. bits: rows top down, each padded to 16 bits; null for black.
PLATFORM_API HBITMAP CreateBitmap(int width, int height, UINT planes, UINT bitsPerPixel, const void* bits);
/// A bitmap whose pixels the program sees: *bits belongs to the bitmap. 1, 4, 8, 16, 24 or 32 bits,
/// uncompressed; the section argument must be null.
PLATFORM_API HBITMAP CreateDIBSection(HDC dc, const BITMAPINFO* info, UINT usage, void** bits, HANDLE section,
                                      DWORD offset);

// --- Device contexts.
/// A memory device context with a bilevel bitmap of one pixel selected. Null stands for the screen.
PLATFORM_API HDC CreateCompatibleDC(HDC dc);
/// FALSE for one that belongs to the window system.
PLATFORM_API BOOL DeleteDC(HDC dc);
PLATFORM_API int GetDeviceCaps(HDC dc, int index);
/// The object that was selected before, null on failure. A bitmap goes into one memory device context at a
/// time.
PLATFORM_API HGDIOBJ SelectObject(HDC dc, HGDIOBJ object);
PLATFORM_API HGDIOBJ GetCurrentObject(HDC dc, UINT type);
PLATFORM_API HPALETTE SelectPalette(HDC dc, HPALETTE palette, BOOL forceBackground);
/// Count of entries mapped anew: always 0, the devices here are true-colour ones.
PLATFORM_API UINT RealizePalette(HDC dc);
/// A number for RestoreDC, 0 on failure.
PLATFORM_API int SaveDC(HDC dc);
/// saved below 0 counts back from the latest.
PLATFORM_API BOOL RestoreDC(HDC dc, int saved);

PLATFORM_API BOOL SetWindowOrgEx(HDC dc, int x, int y, LPPOINT old);
PLATFORM_API BOOL SetViewportOrgEx(HDC dc, int x, int y, LPPOINT old);
/// Between the units of the device (client units for a window) and logical ones.
PLATFORM_API BOOL DPtoLP(HDC dc, LPPOINT points, int count);
PLATFORM_API BOOL LPtoDP(HDC dc, LPPOINT points, int count);

PLATFORM_API COLORREF SetTextColor(HDC dc, COLORREF color);
PLATFORM_API COLORREF GetTextColor(HDC dc);
PLATFORM_API COLORREF SetBkColor(HDC dc, COLORREF color);
PLATFORM_API int SetBkMode(HDC dc, int mode);

// --- Clipping. Results are kinds of region.
PLATFORM_API int IntersectClipRect(HDC dc, int left, int top, int right, int bottom);
PLATFORM_API int ExcludeClipRect(HDC dc, int left, int top, int right, int bottom);
PLATFORM_API int GetClipBox(HDC dc, LPRECT box);
PLATFORM_API BOOL RectVisible(HDC dc, LPCRECT rect);

// --- Filling, lines.
PLATFORM_API BOOL PatBlt(HDC dc, int x, int y, int width, int height, DWORD operation);
/// brush may also be a theme colour index plus 1.
PLATFORM_API int FillRect(HDC dc, LPCRECT rect, HBRUSH brush);
PLATFORM_API BOOL InvertRect(HDC dc, LPCRECT rect);
/// The colour that was set, CLR_INVALID outside the clip.
PLATFORM_API COLORREF SetPixel(HDC dc, int x, int y, COLORREF color);
PLATFORM_API COLORREF GetPixel(HDC dc, int x, int y);
PLATFORM_API BOOL MoveToEx(HDC dc, int x, int y, LPPOINT old);
/// Up to the end point, which stays undrawn.
PLATFORM_API BOOL LineTo(HDC dc, int x, int y);
PLATFORM_API BOOL Polyline(HDC dc, const POINT* points, int count);
PLATFORM_API BOOL Rectangle(HDC dc, int left, int top, int right, int bottom);
PLATFORM_API BOOL Ellipse(HDC dc, int left, int top, int right, int bottom);

// --- Copying pixels. A negative extent mirrors. Parts without source pixels are left alone.
PLATFORM_API BOOL BitBlt(HDC dc, int x, int y, int width, int height, HDC source, int sourceX, int sourceY,
                         DWORD operation);
PLATFORM_API BOOL StretchBlt(HDC dc, int x, int y, int width, int height, HDC source, int sourceX,
                             int sourceY, int sourceWidth, int sourceHeight, DWORD operation);
/// Count of rows of the block, 0 on failure.
PLATFORM_API int StretchDIBits(HDC dc, int x, int y, int width, int height, int sourceX, int sourceY,
                               int sourceWidth, int sourceHeight, const void* bits, const BITMAPINFO* info,
                               UINT usage, DWORD operation);

// --- Text. length below 0: up to the closing 0.
PLATFORM_API BOOL TextOutA(HDC dc, int x, int y, LPCSTR text, int length);
PLATFORM_API int DrawTextA(HDC dc, LPCSTR text, int length, LPRECT rect, UINT format);
PLATFORM_API BOOL GetTextExtentPoint32A(HDC dc, LPCSTR text, int length, LPSIZE size);
PLATFORM_API BOOL GetTextMetricsA(HDC dc, TEXTMETRICA* metrics);
inline BOOL TextOut(HDC dc, int x, int y, LPCSTR text, int length) {
  return TextOutA(dc, x, y, text, length);
}
inline int DrawText(HDC dc, LPCSTR text, int length, LPRECT rect, UINT format) {
  return DrawTextA(dc, text, length, rect, format);
}
inline BOOL GetTextExtentPoint32(HDC dc, LPCSTR text, int length, LPSIZE size) {
  return GetTextExtentPoint32A(dc, text, length, size);
}
inline BOOL GetTextMetrics(HDC dc, TEXTMETRICA* metrics) {
  return GetTextMetricsA(dc, metrics);
}
