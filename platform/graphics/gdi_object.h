#pragma once

#include "platform/base/object.h"
#include "platform/graphics/gdi.h"

/// Owner of a drawing object: the object ends with its wrapper unless it was detached. A wrapper that
/// FromHandle made owns nothing and lives until the next DeleteTempMap (idle time).
class PLATFORM_API CGdiObject : public CObject {
  DECLARE_DYNCREATE(CGdiObject)
 public:
  HGDIOBJ m_hObject = nullptr;

  CGdiObject() = default;
  CGdiObject(const CGdiObject&) = delete;
  CGdiObject& operator=(const CGdiObject&) = delete;
  ~CGdiObject() override;

  HGDIOBJ GetSafeHandle() const { return m_hObject; }
  /// The wrapper that holds the handle, or a temporary one of the fitting class; null for a dead handle.
  static CGdiObject* FromHandle(HGDIOBJ object);
  static void DeleteTempMap();
  /// Takes the object over. FALSE for a null handle.
  BOOL Attach(HGDIOBJ object);
  /// Gives the object to the caller.
  HGDIOBJ Detach();
  BOOL DeleteObject();
  int GetObject(int bytes, LPVOID buffer) const { return ::GetObject(m_hObject, bytes, buffer); }
  BOOL CreateStockObject(int index) { return Attach(::GetStockObject(index)); }
};

class PLATFORM_API CPen : public CGdiObject {
  DECLARE_DYNCREATE(CPen)
 public:
  CPen() = default;
  CPen(int style, int width, COLORREF color) { CreatePen(style, width, color); }
  operator HPEN() const {
    return static_cast<HPEN>(m_hObject);
  }  // NOLINT: passed wherever the handle is wanted
  static CPen* FromHandle(HPEN pen);
  BOOL CreatePen(int style, int width, COLORREF color) { return Attach(::CreatePen(style, width, color)); }
};

class PLATFORM_API CBrush : public CGdiObject {
  DECLARE_DYNCREATE(CBrush)
 public:
  CBrush() = default;
  explicit CBrush(COLORREF color) { CreateSolidBrush(color); }
  operator HBRUSH() const { return static_cast<HBRUSH>(m_hObject); }  // NOLINT: likewise
  /// Also of a theme colour's number plus 1, which FillRect takes in a brush's place.
  static CBrush* FromHandle(HBRUSH brush);
  BOOL CreateSolidBrush(COLORREF color) { return Attach(::CreateSolidBrush(color)); }
};

class PLATFORM_API CFont : public CGdiObject {
  DECLARE_DYNCREATE(CFont)
 public:
  CFont() = default;
  operator HFONT() const { return static_cast<HFONT>(m_hObject); }  // NOLINT: likewise
  static CFont* FromHandle(HFONT font);
  BOOL CreateFontIndirect(const LOGFONT* font) { return Attach(::CreateFontIndirectA(font)); }
  int GetLogFont(LOGFONT* font) const { return GetObject(sizeof(LOGFONT), font); }
};

class PLATFORM_API CBitmap : public CGdiObject {
  DECLARE_DYNCREATE(CBitmap)
 public:
  CBitmap() = default;
  operator HBITMAP() const { return static_cast<HBITMAP>(m_hObject); }  // NOLINT: likewise
  static CBitmap* FromHandle(HBITMAP bitmap);
  BOOL CreateBitmap(int width, int height, UINT planes, UINT bitsPerPixel, const void* bits) {
    return Attach(::CreateBitmap(width, height, planes, bitsPerPixel, bits));
  }
  BOOL CreateCompatibleBitmap(class CDC* dc, int width, int height);
  int GetBitmap(BITMAP* bitmap) const { return GetObject(sizeof(BITMAP), bitmap); }
};

class PLATFORM_API CPalette : public CGdiObject {
  DECLARE_DYNCREATE(CPalette)
 public:
  CPalette() = default;
  operator HPALETTE() const { return static_cast<HPALETTE>(m_hObject); }  // NOLINT: likewise
  static CPalette* FromHandle(HPALETTE palette);
  BOOL CreatePalette(const LOGPALETTE* palette) { return Attach(::CreatePalette(palette)); }
  UINT GetPaletteEntries(UINT first, UINT count, PALETTEENTRY* entries) const {
    return ::GetPaletteEntries(*this, first, count, entries);
  }
};
