#include "platform/framework/menu.h"

#include <memory>
#include <utility>

#include "platform/framework/wnd.h"
#include "platform/graphics/detail/wrapper_map.h"
#include "platform/resources/resource_tables.h"

IMPLEMENT_DYNCREATE(CMenu, CObject)

namespace {

platform::WrapperMap<CMenu, HMENU>& Map() {
  static auto* map = new platform::WrapperMap<CMenu, HMENU>;  // objects with static storage end late
  return *map;
}

}  // namespace

CMenu* CMenu::FromHandle(HMENU menu) {
  if (IsMenu(menu) == 0) return nullptr;
  if (CMenu* known = Map().Find(menu)) return known;
  auto temporary = std::make_unique<CMenu>();
  temporary->m_hMenu = menu;
  return Map().AddTemporary(menu, std::move(temporary));
}

void CMenu::DeleteTempMap() {
  Map().DropTemporary([](CMenu& menu) { menu.m_hMenu = nullptr; });
}

BOOL CMenu::Attach(HMENU menu) {
  if (menu == nullptr || m_hMenu != nullptr) return FALSE;
  m_hMenu = menu;
  Map().AddPermanent(menu, this);
  return TRUE;
}

HMENU CMenu::Detach() {
  Map().Remove(m_hMenu, this);
  return std::exchange(m_hMenu, nullptr);
}

BOOL CMenu::LoadMenu(LPCTSTR name) {
  return Attach(::LoadMenuA(AfxFindResourceHandle(name, RT_MENU), name));
}

int CMenu::GetMenuString(UINT item, CString& text, UINT flags) const {
  const int length = ::GetMenuStringA(m_hMenu, item, nullptr, 0, flags);
  char* buffer = text.GetBuffer(length + 1);
  buffer[0] = 0;
  ::GetMenuStringA(m_hMenu, item, buffer, length + 1, flags);
  text.ReleaseBuffer();
  return length;
}

BOOL CMenu::TrackPopupMenu(UINT flags, int x, int y, const CWnd* owner, LPCRECT rect) {
  return ::TrackPopupMenu(m_hMenu, flags, x, y, 0, owner == nullptr ? nullptr : owner->m_hWnd, rect);
}
