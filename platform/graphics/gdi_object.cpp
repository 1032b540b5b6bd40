#include "platform/graphics/gdi_object.h"

#include "platform/graphics/dc.h"
#include "platform/graphics/detail/wrapper_map.h"

IMPLEMENT_DYNCREATE(CGdiObject, CObject)
IMPLEMENT_DYNCREATE(CPen, CGdiObject)
IMPLEMENT_DYNCREATE(CBrush, CGdiObject)
IMPLEMENT_DYNCREATE(CFont, CGdiObject)
IMPLEMENT_DYNCREATE(CBitmap, CGdiObject)
IMPLEMENT_DYNCREATE(CPalette, CGdiObject)

namespace {

// Never destroyed: wrappers with static storage may still use it while the process ends.
platform::WrapperMap<CGdiObject, HGDIOBJ>& Wrappers() {
  static auto& map = *new platform::WrapperMap<CGdiObject, HGDIOBJ>;
  return map;
}

/// A theme colour's number plus 1, as a window class may have it for its background and FillRect takes it.
bool IsThemeColorNumber(HGDIOBJ object) {
  const auto number = reinterpret_cast<std::uintptr_t>(object);
  return number >= 1 && number <= COLOR_INFOBK + 1;
}

std::unique_ptr<CGdiObject> MakeWrapper(DWORD type) {
  switch (type) {
    case OBJ_PEN:
      return std::make_unique<CPen>();
    case OBJ_BRUSH:
      return std::make_unique<CBrush>();
    case OBJ_FONT:
      return std::make_unique<CFont>();
    case OBJ_BITMAP:
      return std::make_unique<CBitmap>();
    case OBJ_PAL:
      return std::make_unique<CPalette>();
    default:
      return nullptr;
  }
}

// The wrapper as its class; null also for one of another class (a plain CGdiObject holds the handle).
template <typename Wrapper>
Wrapper* As(CGdiObject* object) {
  return dynamic_cast<Wrapper*>(object);
}

}  // namespace

CGdiObject::~CGdiObject() {
  DeleteObject();
}

CGdiObject* CGdiObject::FromHandle(HGDIOBJ object) {
  auto wrapper = MakeWrapper(IsThemeColorNumber(object) ? OBJ_BRUSH : GetObjectType(object));
  if (!wrapper) return nullptr;
  if (CGdiObject* known = Wrappers().Find(object)) return known;
  wrapper->m_hObject = object;
  return Wrappers().AddTemporary(object, std::move(wrapper));
}

void CGdiObject::DeleteTempMap() {
  Wrappers().DropTemporary([](CGdiObject& wrapper) { wrapper.m_hObject = nullptr; });
}

BOOL CGdiObject::Attach(HGDIOBJ object) {
  if (object == nullptr || m_hObject != nullptr) return FALSE;
  m_hObject = object;
  Wrappers().AddPermanent(object, this);
  return TRUE;
}

HGDIOBJ CGdiObject::Detach() {
  Wrappers().Remove(m_hObject, this);
  return std::exchange(m_hObject, nullptr);
}

BOOL CGdiObject::DeleteObject() {
  const HGDIOBJ object = Detach();
  return object != nullptr && ::DeleteObject(object);
}

CPen* CPen::FromHandle(HPEN pen) {
  return As<CPen>(CGdiObject::FromHandle(pen));
}
CBrush* CBrush::FromHandle(HBRUSH brush) {
  return As<CBrush>(CGdiObject::FromHandle(brush));
}
CFont* CFont::FromHandle(HFONT font) {
  return As<CFont>(CGdiObject::FromHandle(font));
}
CBitmap* CBitmap::FromHandle(HBITMAP bitmap) {
  return As<CBitmap>(CGdiObject::FromHandle(bitmap));
}
CPalette* CPalette::FromHandle(HPALETTE palette) {
  return As<CPalette>(CGdiObject::FromHandle(palette));
}

BOOL CBitmap::CreateCompatibleBitmap(CDC* dc, int width, int height) {
  return dc != nullptr && Attach(::CreateCompatibleBitmap(dc->m_hDC, width, height));
}
