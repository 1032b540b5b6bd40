#include <algorithm>
#include <utility>

#include "platform/framework/app.h"
#include "platform/framework/cmd_ui.h"
#include "platform/framework/mdi_wnd.h"
#include "platform/framework/menu.h"
#include "platform/window/accelerators.h"

IMPLEMENT_DYNCREATE(CMDIFrameWnd, CFrameWnd)

BEGIN_MESSAGE_MAP(CMDIFrameWnd, CFrameWnd)
ON_WM_CLOSE()
ON_WM_DESTROY()
ON_WM_INITMENUPOPUP()
ON_COMMAND_RANGE(ID_WINDOW_ARRANGE, ID_WINDOW_TILE_VERT, OnWindowCommand)
ON_UPDATE_COMMAND_UI_RANGE(ID_WINDOW_ARRANGE, ID_WINDOW_TILE_VERT, OnUpdateWindowCommand)
END_MESSAGE_MAP()

// The client

BOOL CMDIFrameWnd::OnCreateClient(LPCREATESTRUCT cs, CCreateContext*) {
  return CreateClient(cs, CMenu::FromHandle(GetWindowMenuPopup(m_hMenuDefault)));
}

BOOL CMDIFrameWnd::CreateClient(LPCREATESTRUCT, CMenu* windowMenu) {
  CLIENTCREATESTRUCT params = {windowMenu == nullptr ? nullptr : windowMenu->m_hMenu, AFX_IDM_FIRST_MDICHILD};
  m_hWndMDIClient =
      CreateWindowEx(WS_EX_CLIENTEDGE, "MDICLIENT", nullptr,
                     DWORD{WS_CHILD} | WS_VISIBLE | WS_CLIPCHILDREN | WS_CLIPSIBLINGS, 0, 0, 0, 0, m_hWnd,
                     reinterpret_cast<HMENU>(std::uintptr_t{AFX_IDW_PANE_FIRST}), nullptr, &params);
  return m_hWndMDIClient != nullptr;
}

HMENU CMDIFrameWnd::GetWindowMenuPopup(HMENU menuBar) {
  // From the right, where the menu stands as a rule.
  for (int i = GetMenuItemCount(menuBar) - 1; i >= 0; --i) {
    const HMENU popup = GetSubMenu(menuBar, i);
    for (int item = 0; item < GetMenuItemCount(popup); ++item) {
      const UINT id = GetMenuItemID(popup, item);
      if (id >= AFX_IDM_WINDOW_FIRST && id <= AFX_IDM_WINDOW_LAST) return popup;
    }
  }
  return nullptr;
}

CMDIChildWnd* CMDIFrameWnd::MDIGetActive(BOOL* maximized) const {
  if (maximized != nullptr) *maximized = FALSE;
  const LRESULT active =
      ::SendMessage(m_hWndMDIClient, WM_MDIGETACTIVE, 0, reinterpret_cast<LPARAM>(maximized));
  return DYNAMIC_DOWNCAST(CMDIChildWnd, CWnd::FromHandlePermanent(reinterpret_cast<HWND>(active)));
}

void CMDIFrameWnd::MDINext() {
  ::SendMessage(m_hWndMDIClient, WM_MDINEXT);
}

void CMDIFrameWnd::MDITile(int how) {
  ::SendMessage(m_hWndMDIClient, WM_MDITILE, static_cast<WPARAM>(how));
}

void CMDIFrameWnd::MDICascade() {
  ::SendMessage(m_hWndMDIClient, WM_MDICASCADE);
}

void CMDIFrameWnd::MDIIconArrange() {
  ::SendMessage(m_hWndMDIClient, WM_MDIICONARRANGE);
}

CFrameWnd* CMDIFrameWnd::GetActiveFrame() {
  CMDIChildWnd* active = MDIGetActive();
  return active != nullptr ? static_cast<CFrameWnd*>(active) : this;
}

// Messages

BOOL CMDIFrameWnd::OnCommand(WPARAM wParam, LPARAM lParam) {
  // As a message, so that the window may look at what comes from the main window's controls.
  CMDIChildWnd* active = MDIGetActive();
  if (active != nullptr && active->SendMessage(WM_COMMAND, wParam, lParam) != 0) return TRUE;
  if (CFrameWnd::OnCommand(wParam, lParam) != 0) return TRUE;
  if (lParam != 0 || LOWORD(wParam) < static_cast<int>(AFX_IDM_FIRST_MDICHILD)) return FALSE;
  DefWindowProc(WM_COMMAND, wParam, lParam);
  return TRUE;
}

BOOL CMDIFrameWnd::OnCmdMsg(UINT id, int code, void* extra, void* handlerInfo) {
  CMDIChildWnd* active = MDIGetActive();
  if (active != nullptr && active->OnCmdMsg(id, code, extra, handlerInfo) != 0) return TRUE;
  return CFrameWnd::OnCmdMsg(id, code, extra, handlerInfo);
}

BOOL CMDIFrameWnd::PreTranslateMessage(MSG* message) {
  CMDIChildWnd* active = MDIGetActive();
  if (active != nullptr && active->PreTranslateMessage(message) != 0) return TRUE;
  if (CFrameWnd::PreTranslateMessage(message) != 0) return TRUE;
  return TranslateMDISysAccel(m_hWndMDIClient, message);
}

LRESULT CMDIFrameWnd::DefWindowProc(UINT message, WPARAM wParam, LPARAM lParam) {
  return ::DefFrameProc(m_hWnd, m_hWndMDIClient, message, wParam, lParam);
}

void CMDIFrameWnd::GetMessageString(UINT id, CString& message) const {
  const CMDIChildWnd* active = MDIGetActive();
  if (active != nullptr)
    active->GetMessageString(id, message);
  else
    CFrameWnd::GetMessageString(id, message);
}

void CMDIFrameWnd::OnUpdateFrameTitle(BOOL addToTitle) {
  if ((GetStyle() & FWS_ADDTOTITLE) == 0) return;
  BOOL maximized = FALSE;
  const CMDIChildWnd* active = MDIGetActive(&maximized);
  CString document;
  // A maximised one's title is added in brackets without our help.
  if (addToTitle != 0 && active != nullptr && maximized == 0) active->GetWindowText(document);
  UpdateFrameTitleForDocument(document.IsEmpty() != 0 ? nullptr : static_cast<LPCTSTR>(document));
}

void CMDIFrameWnd::OnInitMenuPopup(CMenu* menu, UINT index, BOOL systemMenu) {
  Default();  // the list of windows
  CFrameWnd::OnInitMenuPopup(menu, index, systemMenu);
}

void CMDIFrameWnd::OnWindowCommand(UINT id) {
  switch (id) {
    case ID_WINDOW_ARRANGE:
      MDIIconArrange();
      break;
    case ID_WINDOW_CASCADE:
      MDICascade();
      break;
    default:
      MDITile(id == ID_WINDOW_TILE_HORZ ? MDITILE_HORIZONTAL : MDITILE_VERTICAL);
      break;
  }
}

void CMDIFrameWnd::OnUpdateWindowCommand(CCmdUI* item) {
  item->Enable(MDIGetActive() != nullptr);
}

// The end

BOOL CMDIFrameWnd::CloseChildren() {
  std::vector<HWND> children;
  for (HWND child = ::GetWindow(m_hWndMDIClient, GW_CHILD); child != nullptr;
       child = ::GetWindow(child, GW_HWNDNEXT))
    children.push_back(child);
  // Their numbers count in the order in which they were made.
  std::sort(children.begin(), children.end(),
            [](HWND a, HWND b) { return ::GetDlgCtrlID(a) < ::GetDlgCtrlID(b); });
  for (const HWND child : children) {
    ::SendMessage(child, WM_CLOSE);
    if (::IsWindow(child) != 0) return FALSE;
  }
  return TRUE;
}

void CMDIFrameWnd::SetFrameMenu(HMENU menu) {
  const HMENU former = std::exchange(m_hMenuDefault, menu);
  if (::GetMenu(m_hWnd) == former) ShowMenuInBar(menu);
  if (former != menu) DestroyMenu(former);
}

void CMDIFrameWnd::ShowMenuInBar(HMENU menu) {
  // The client lists the document windows in the menu; without one there is nothing for it to do.
  if (menu == nullptr)
    ::SetMenu(m_hWnd, nullptr);
  else
    ::SendMessage(m_hWndMDIClient, WM_MDISETMENU, reinterpret_cast<WPARAM>(menu),
                  reinterpret_cast<LPARAM>(GetWindowMenuPopup(menu)));
}

void CMDIFrameWnd::OnClose() {
  const HWND window = m_hWnd;
  CWinApp* app = AfxGetApp();
  if (app != nullptr && app->m_pMainWnd == this) {
    if (app->SaveAllModified() == 0 || ::IsWindow(window) == 0) return;
    app->CloseAllDocuments(FALSE);
    if (::IsWindow(window) == 0) return;
  }
  if (CloseChildren() != 0 && ::IsWindow(window) != 0) CFrameWnd::OnClose();
}

void CMDIFrameWnd::OnDestroy() {
  // The window ends what stands in its bar, which shall not be another's menu.
  if (m_hMenuDefault != nullptr)
    ::SendMessage(m_hWndMDIClient, WM_MDISETMENU, reinterpret_cast<WPARAM>(m_hMenuDefault), 0);
  CFrameWnd::OnDestroy();
}
