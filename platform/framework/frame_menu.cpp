// A frame and its menu: state of the items, prompts, accelerators.

#include "platform/framework/cmd_ui.h"
#include "platform/framework/detail/frame_resources.h"
#include "platform/framework/frame_wnd.h"
#include "platform/framework/menu.h"
#include "platform/resources/resource_tables.h"
#include "platform/window/accelerators.h"

void platform::LoadFrameTitle(UINT id, CString& title) {
  CString text;
  if (text.LoadString(id) != 0) title = text.Find('\n') < 0 ? text : text.Left(text.Find('\n'));
}

LPCTSTR platform::FrameClass(HICON icon) {
  return AfxRegisterWndClass(CS_DBLCLKS, LoadCursor(nullptr, IDC_ARROW), GetSysColorBrush(COLOR_APPWORKSPACE),
                             icon);
}

LPCTSTR platform::LoadFrameClass(UINT id) {
  const LPCTSTR name = MAKEINTRESOURCE(id);
  const HICON icon = LoadIconA(AfxFindResourceHandle(name, RT_GROUP_ICON), name);
  return icon == nullptr ? nullptr : FrameClass(icon);
}

BOOL CFrameWnd::LoadFrame(UINT id, DWORD style, CWnd* parent, CCreateContext* context) {
  platform::LoadFrameTitle(id, m_strTitle);
  const LPCTSTR menu = MAKEINTRESOURCE(id);
  const bool hasMenu = AfxFindResourceHandle(menu, RT_MENU) != nullptr;
  return Create(platform::LoadFrameClass(id), m_strTitle, style, rectDefault, parent,
                hasMenu ? menu : nullptr, 0, context);
}

BOOL CFrameWnd::PreTranslateMessage(MSG* message) {
  if (CWnd::PreTranslateMessage(message) != 0) return TRUE;
  const bool key = message->message >= WM_KEYFIRST && message->message <= WM_KEYLAST;
  return key && m_hAccelTable != nullptr && TranslateAcceleratorA(m_hWnd, m_hAccelTable, message) != 0;
}

namespace {

/// Fills in what the item is asked by; false for one that nobody can be asked about.
bool NameItem(CCmdUI& state) {
  const int index = static_cast<int>(state.m_nIndex);
  constexpr UINT kNone = static_cast<UINT>(-1);
  state.m_nID = state.m_pMenu->GetMenuItemID(index);
  state.m_pSubMenu = nullptr;
  if (state.m_nID == kNone) {
    // A sub-menu is asked about under the number of its first item.
    state.m_pSubMenu = state.m_pMenu->GetSubMenu(index);
    if (state.m_pSubMenu == nullptr) return false;
    state.m_nID = state.m_pSubMenu->GetMenuItemID(0);
  }
  return state.m_nID != 0 && state.m_nID != kNone;
}

}  // namespace

void CFrameWnd::OnInitMenuPopup(CMenu* menu, UINT, BOOL systemMenu) {
  if (systemMenu != 0 || menu == nullptr) return;
  constexpr UINT kFirstSystemCommand = 0xF000;
  CCmdUI state;
  state.m_pMenu = menu;
  state.m_nIndexMax = static_cast<UINT>(menu->GetMenuItemCount());
  for (; state.m_nIndex < state.m_nIndexMax; ++state.m_nIndex) {
    if (!NameItem(state)) continue;
    // Sub-menus stay open to the user, who may want to see what there is.
    const bool disables = GetActiveFrame()->m_bAutoMenuEnable != 0 && state.m_pSubMenu == nullptr &&
                          state.m_nID < kFirstSystemCommand;
    state.DoUpdate(this, disables);
    // A handler may have put a list in the place of its item, or taken items away.
    const int count = menu->GetMenuItemCount();
    if (count < 0) return;
    state.m_nIndex += static_cast<UINT>(count) - state.m_nIndexMax;
    state.m_nIndexMax = static_cast<UINT>(count);
  }
}

void CFrameWnd::UpdateMenuBar() {
  // Nothing opens the bar itself, so its sub-menus are asked about whenever there is nothing else to do.
  CMenu* bar = GetMenu();
  if (bar == nullptr) return;
  CCmdUI state;
  state.m_pMenu = bar;
  state.m_nIndexMax = static_cast<UINT>(bar->GetMenuItemCount());
  bool changed = false;
  for (; state.m_nIndex < state.m_nIndexMax; ++state.m_nIndex) {
    if (!NameItem(state) || state.m_pSubMenu == nullptr) continue;
    const UINT former = bar->GetMenuState(state.m_nIndex, MF_BYPOSITION);
    state.DoUpdate(this, FALSE);
    changed = changed || bar->GetMenuState(state.m_nIndex, MF_BYPOSITION) != former;
  }
  if (changed) ::DrawMenuBar(m_hWnd);
}

void CFrameWnd::OnMenuSelect(UINT item, UINT flags, HMENU menu) {
  const bool closed = flags == 0xffff && menu == nullptr;
  const bool command = !closed && (flags & (MF_POPUP | MF_SEPARATOR)) == 0;
  if (closed) {
    SetMessageText(UINT{AFX_IDS_IDLEMESSAGE});
  } else {
    SetMessageText(command ? item : 0U);
  }
}
