#pragma once

#include "platform/base/geometry.h"
#include "platform/base/object.h"
#include "platform/base/string.h"
#include "platform/graphics/gdi_object.h"

struct tagDEVMODEA;
struct tagDOCINFOA;

/// A device context. The object deletes the device context it holds; a wrapper that FromHandle made owns
/// nothing and lives until the next DeleteTempMap (idle time). Members do what the functions of their name in
/// gdi.h do.
class PLATFORM_API CDC : public CObject {
  DECLARE_DYNCREATE(CDC)
 public:
  HDC m_hDC = nullptr;        ///< drawn on
  HDC m_hAttribDC = nullptr;  ///< asked for attributes; the same one unless a class splits them

  CDC() = default;
  CDC(const CDC&) = delete;
  CDC& operator=(const CDC&) = delete;
  ~CDC() override;

  /// The wrapper that holds the handle, or a temporary one; null for a dead handle.
  static CDC* FromHandle(HDC dc);
  static void DeleteTempMap();
  BOOL Attach(HDC dc);
  HDC Detach();
  HDC GetSafeHdc() const { return m_hDC; }
  operator HDC() const { return m_hDC; }  // NOLINT: passed wherever the handle is wanted
  BOOL CreateCompatibleDC(CDC* dc);
  virtual BOOL DeleteDC();
  virtual int SaveDC() { return ::SaveDC(m_hDC); }
  virtual BOOL RestoreDC(int saved) { return ::RestoreDC(m_hDC, saved); }
  int GetDeviceCaps(int index) const { return ::GetDeviceCaps(m_hAttribDC, index); }

  /// The object selected before: borrowed, possibly temporary.
  virtual CGdiObject* SelectStockObject(int index);
  CPen* SelectObject(CPen* pen);
  virtual CFont* SelectObject(CFont* font);
  CBrush* SelectObject(CBrush* brush);
  CBitmap* SelectObject(CBitmap* bitmap);
  CGdiObject* SelectObject(CGdiObject* object);
  CPalette* SelectPalette(CPalette* palette, BOOL forceBackground);
  UINT RealizePalette() { return ::RealizePalette(m_hDC); }

  CPoint SetWindowOrg(int x, int y);
  CPoint SetWindowOrg(POINT origin) { return SetWindowOrg(origin.x, origin.y); }
  virtual CPoint SetViewportOrg(int x, int y);
  CPoint SetViewportOrg(POINT origin) { return SetViewportOrg(origin.x, origin.y); }
  void DPtoLP(LPPOINT points, int count = 1) const { ::DPtoLP(m_hAttribDC, points, count); }
  void DPtoLP(LPRECT rect) const { ::DPtoLP(m_hAttribDC, reinterpret_cast<LPPOINT>(rect), 2); }
  void DPtoLP(LPSIZE size) const;

  virtual int GetClipBox(LPRECT box) const { return ::GetClipBox(m_hDC, box); }
  int IntersectClipRect(int l, int t, int r, int b) { return ::IntersectClipRect(m_hDC, l, t, r, b); }
  int ExcludeClipRect(int l, int t, int r, int b) { return ::ExcludeClipRect(m_hDC, l, t, r, b); }
  int ExcludeClipRect(LPCRECT rect);
  BOOL RectVisible(LPCRECT rect) const { return ::RectVisible(m_hDC, rect); }

  virtual COLORREF SetTextColor(COLORREF color) { return ::SetTextColor(m_hDC, color); }
  virtual COLORREF SetBkColor(COLORREF color) { return ::SetBkColor(m_hDC, color); }
  int SetBkMode(int mode) { return ::SetBkMode(m_hDC, mode); }

  BOOL PatBlt(int x, int y, int width, int height, DWORD operation) {
    return ::PatBlt(m_hDC, x, y, width, height, operation);
  }
  BOOL BitBlt(int x, int y, int width, int height, CDC* source, int sourceX, int sourceY, DWORD operation);
  void FillRect(LPCRECT rect, CBrush* brush);
  void InvertRect(LPCRECT rect) { ::InvertRect(m_hDC, rect); }
  void FillSolidRect(LPCRECT rect, COLORREF color);
  void FillSolidRect(int x, int y, int width, int height, COLORREF color);
  /// A frame of one unit: left and top in one colour, right and bottom in the other.
  void Draw3dRect(LPCRECT rect, COLORREF topLeft, COLORREF bottomRight);
  COLORREF SetPixel(int x, int y, COLORREF color) { return ::SetPixel(m_hDC, x, y, color); }
  COLORREF GetPixel(int x, int y) const { return ::GetPixel(m_hDC, x, y); }
  CPoint MoveTo(int x, int y);
  CPoint MoveTo(POINT point) { return MoveTo(point.x, point.y); }
  BOOL LineTo(int x, int y) { return ::LineTo(m_hDC, x, y); }
  BOOL LineTo(POINT point) { return LineTo(point.x, point.y); }
  BOOL Rectangle(int l, int t, int r, int b) { return ::Rectangle(m_hDC, l, t, r, b); }
  BOOL Rectangle(LPCRECT rect);
  BOOL Ellipse(LPCRECT rect);
  /// Moves the frame of a rectangle that is being dragged: takes the last one off the picture and draws the
  /// new one, both by inversion, so that nothing of it stays. size is the thickness of the vertical and of
  /// the horizontal sides. last null: there was none. Both brushes must be null: the frame has no pattern.
  void DrawDragRect(LPCRECT rect, SIZE size, LPCRECT last, SIZE lastSize, CBrush* brush = nullptr,
                    CBrush* lastBrush = nullptr);

  virtual BOOL TextOut(int x, int y, LPCTSTR text, int length) {
    return ::TextOutA(m_hDC, x, y, text, length);
  }
  BOOL TextOut(int x, int y, const CString& text) { return TextOut(x, y, text, text.GetLength()); }
  virtual int DrawText(LPCTSTR text, int length, LPRECT rect, UINT format) {
    return ::DrawTextA(m_hDC, text, length, rect, format);
  }
  int DrawText(const CString& text, LPRECT rect, UINT format) {
    return DrawText(text, text.GetLength(), rect, format);
  }
  CSize GetTextExtent(LPCTSTR text, int length) const;
  CSize GetTextExtent(const CString& text) const { return GetTextExtent(text, text.GetLength()); }
  BOOL GetTextMetrics(TEXTMETRIC* metrics) const { return ::GetTextMetricsA(m_hAttribDC, metrics); }

  // Of printing device contexts, which the spooler makes (spooler/dc_printing.cpp). The numbers are those of
  // the functions in spooler/printers.h.

  /// FALSE if there is no such printer.
  BOOL CreateDC(LPCTSTR driver, LPCTSTR device, LPCTSTR output, const void* mode);
  int StartDoc(LPCTSTR documentName);
  int StartDoc(tagDOCINFOA* info);
  int StartPage();
  int EndPage();
  int EndDoc();
  int AbortDoc();
  int SetAbortProc(BOOL (*procedure)(HDC dc, int error));
  BOOL ResetDC(const tagDEVMODEA* mode);
};
