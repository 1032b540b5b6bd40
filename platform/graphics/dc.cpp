#include "platform/graphics/dc.h"

#include <memory>

#include "platform/graphics/detail/device_context.h"
#include "platform/graphics/detail/wrapper_map.h"

IMPLEMENT_DYNCREATE(CDC, CObject)

namespace {

// Never destroyed: wrappers with static storage may still use it while the process ends.
platform::WrapperMap<CDC, HDC>& Wrappers() {
  static auto& map = *new platform::WrapperMap<CDC, HDC>;
  return map;
}

HGDIOBJ HandleOf(const CGdiObject* object) {
  return object == nullptr ? nullptr : object->m_hObject;
}
HDC HandleOf(const CDC* dc) {
  return dc == nullptr ? nullptr : dc->m_hDC;
}

// Selects, and wraps what was selected before.
template <typename Wrapper>
Wrapper* Select(HDC dc, const Wrapper* object) {
  return dynamic_cast<Wrapper*>(CGdiObject::FromHandle(::SelectObject(dc, HandleOf(object))));
}

}  // namespace

CDC::~CDC() {
  if (m_hDC != nullptr) ::DeleteDC(Detach());
}

CDC* CDC::FromHandle(HDC dc) {
  if (!platform::IsDeviceContext(dc)) return nullptr;
  if (CDC* known = Wrappers().Find(dc)) return known;
  auto wrapper = std::make_unique<CDC>();
  wrapper->m_hDC = wrapper->m_hAttribDC = dc;
  return Wrappers().AddTemporary(dc, std::move(wrapper));
}

void CDC::DeleteTempMap() {
  Wrappers().DropTemporary([](CDC& wrapper) { wrapper.m_hDC = wrapper.m_hAttribDC = nullptr; });
}

BOOL CDC::Attach(HDC dc) {
  if (dc == nullptr || m_hDC != nullptr) return FALSE;
  m_hDC = m_hAttribDC = dc;
  Wrappers().AddPermanent(dc, this);
  return TRUE;
}

HDC CDC::Detach() {
  Wrappers().Remove(m_hDC, this);
  m_hAttribDC = nullptr;
  return std::exchange(m_hDC, nullptr);
}

BOOL CDC::CreateCompatibleDC(CDC* dc) {
  return Attach(::CreateCompatibleDC(HandleOf(dc)));
}

BOOL CDC::DeleteDC() {
  return m_hDC != nullptr && ::DeleteDC(Detach());
}

CGdiObject* CDC::SelectStockObject(int index) {
  const HGDIOBJ stock = ::GetStockObject(index);
  // The stock palette goes the way of palettes.
  if (::GetObjectType(stock) == OBJ_PAL)
    return CGdiObject::FromHandle(::SelectPalette(m_hDC, static_cast<HPALETTE>(stock), FALSE));
  return CGdiObject::FromHandle(::SelectObject(m_hDC, stock));
}

CPen* CDC::SelectObject(CPen* pen) {
  return Select(m_hDC, pen);
}
CFont* CDC::SelectObject(CFont* font) {
  return Select(m_hDC, font);
}
CBrush* CDC::SelectObject(CBrush* brush) {
  return Select(m_hDC, brush);
}
CBitmap* CDC::SelectObject(CBitmap* bitmap) {
  return Select(m_hDC, bitmap);
}
CGdiObject* CDC::SelectObject(CGdiObject* object) {
  return Select(m_hDC, object);
}

CPalette* CDC::SelectPalette(CPalette* palette, BOOL forceBackground) {
  const auto handle = static_cast<HPALETTE>(HandleOf(palette));
  return CPalette::FromHandle(::SelectPalette(m_hDC, handle, forceBackground));
}

CPoint CDC::SetWindowOrg(int x, int y) {
  CPoint old;
  ::SetWindowOrgEx(m_hDC, x, y, &old);
  return old;
}

CPoint CDC::SetViewportOrg(int x, int y) {
  CPoint old;
  ::SetViewportOrgEx(m_hDC, x, y, &old);
  return old;
}

// A size is the same in both units: origins don't move it.
void CDC::DPtoLP(LPSIZE) const {}

int CDC::ExcludeClipRect(LPCRECT rect) {
  return rect == nullptr ? RGN_ERROR : ExcludeClipRect(rect->left, rect->top, rect->right, rect->bottom);
}

BOOL CDC::BitBlt(int x, int y, int width, int height, CDC* source, int sourceX, int sourceY,
                 DWORD operation) {
  return ::BitBlt(m_hDC, x, y, width, height, HandleOf(source), sourceX, sourceY, operation);
}

void CDC::FillRect(LPCRECT rect, CBrush* brush) {
  ::FillRect(m_hDC, rect, static_cast<HBRUSH>(HandleOf(brush)));
}

void CDC::FillSolidRect(LPCRECT rect, COLORREF color) {
  ::SetBkColor(m_hDC, color);  // stays set, which programs know and use
  const CBrush brush(color);
  ::FillRect(m_hDC, rect, brush);
}

void CDC::FillSolidRect(int x, int y, int width, int height, COLORREF color) {
  FillSolidRect(CRect(CPoint(x, y), CSize(width, height)), color);
}

void CDC::Draw3dRect(LPCRECT rect, COLORREF topLeft, COLORREF bottomRight) {
  const CRect r(rect);
  FillSolidRect(r.left, r.top, r.Width() - 1, 1, topLeft);
  FillSolidRect(r.left, r.top, 1, r.Height() - 1, topLeft);
  FillSolidRect(r.right - 1, r.top, 1, r.Height(), bottomRight);
  FillSolidRect(r.left, r.bottom - 1, r.Width(), 1, bottomRight);
}

CPoint CDC::MoveTo(int x, int y) {
  CPoint old;
  ::MoveToEx(m_hDC, x, y, &old);
  return old;
}

BOOL CDC::Rectangle(LPCRECT rect) {
  return rect != nullptr && Rectangle(rect->left, rect->top, rect->right, rect->bottom);
}

BOOL CDC::Ellipse(LPCRECT rect) {
  return rect != nullptr && ::Ellipse(m_hDC, rect->left, rect->top, rect->right, rect->bottom);
}

CSize CDC::GetTextExtent(LPCTSTR text, int length) const {
  CSize size;
  ::GetTextExtentPoint32A(m_hAttribDC, text, length, &size);
  return size;
}
