#include <utility>

#include "platform/framework/detail/frame_resources.h"
#include "platform/framework/mdi_wnd.h"
#include "platform/framework/thread.h"
#include "platform/framework/view.h"
#include "platform/resources/resource_tables.h"
#include "platform/window/accelerators.h"

IMPLEMENT_DYNCREATE(CMDIChildWnd, CFrameWnd)

BEGIN_MESSAGE_MAP(CMDIChildWnd, CFrameWnd)
ON_WM_CREATE()
ON_WM_SIZE()
ON_WM_MDIACTIVATE()
ON_COMMAND(ID_FILE_CLOSE, OnFileClose)
END_MESSAGE_MAP()

CMDIChildWnd::~CMDIChildWnd() {
  ::DestroyMenu(m_loadedMenu);
}

BOOL CMDIChildWnd::Create(LPCTSTR className, LPCTSTR title, DWORD style, const RECT& rect,
                          CMDIFrameWnd* parent, CCreateContext* context) {
  if (parent == nullptr) parent = DYNAMIC_DOWNCAST(CMDIFrameWnd, AfxGetMainWnd());
  if (parent == nullptr || parent->m_hWndMDIClient == nullptr) {
    PostNcDestroy();
    return FALSE;
  }
  if (title != nullptr) {
    m_strTitle = CString(title);  // a copy first: it may be m_strTitle's own text
    title = m_strTitle;
  }
  const bool anywhere = rect.left == CW_USEDEFAULT;
  const int width = anywhere ? CW_USEDEFAULT : rect.right - rect.left;
  const int height = anywhere ? CW_USEDEFAULT : rect.bottom - rect.top;
  MDICREATESTRUCT params = {className, title,    nullptr,
                            rect.left, rect.top, width,
                            height,    style,    reinterpret_cast<LPARAM>(context)};
  return CreateEx(WS_EX_MDICHILD, className, title, style, rect.left, rect.top, width, height,
                  parent->m_hWndMDIClient, nullptr, &params);
}

BOOL CMDIChildWnd::LoadFrame(UINT id, DWORD style, CWnd* parent, CCreateContext* context) {
  platform::LoadFrameTitle(id, m_strTitle);
  if (m_hMenuShared == nullptr) {
    const LPCTSTR menu = MAKEINTRESOURCE(id);
    m_loadedMenu = LoadMenuA(AfxFindResourceHandle(menu, RT_MENU), menu);
    m_hMenuShared = m_loadedMenu;
  }
  return Create(platform::LoadFrameClass(id), m_strTitle, style, rectDefault,
                DYNAMIC_DOWNCAST(CMDIFrameWnd, parent), context);
}

BOOL CMDIChildWnd::PreCreateWindow(CREATESTRUCT& cs) {
  cs.style |= WS_CHILD;
  return CFrameWnd::PreCreateWindow(cs);
}

int CMDIChildWnd::OnCreate(LPCREATESTRUCT cs) {
  // The program's parameter lies inside the client's.
  CREATESTRUCT own = *cs;
  const auto* params = static_cast<const MDICREATESTRUCT*>(cs->lpCreateParams);
  own.lpCreateParams = params == nullptr ? nullptr : reinterpret_cast<LPVOID>(params->lParam);
  return CFrameWnd::OnCreate(&own);
}

CMDIFrameWnd* CMDIChildWnd::GetMDIFrame() const {
  return DYNAMIC_DOWNCAST(CMDIFrameWnd, CWnd::FromHandlePermanent(::GetParent(::GetParent(m_hWnd))));
}

CFrameWnd* CMDIChildWnd::GetParentFrame() const {
  return GetMDIFrame();
}

// The client does these

void CMDIChildWnd::MDIActivate() {
  ::SendMessage(::GetParent(m_hWnd), WM_MDIACTIVATE, reinterpret_cast<WPARAM>(m_hWnd));
}

void CMDIChildWnd::MDIMaximize() {
  ::SendMessage(::GetParent(m_hWnd), WM_MDIMAXIMIZE, reinterpret_cast<WPARAM>(m_hWnd));
}

void CMDIChildWnd::ActivateFrame(int command) {
  const HWND window = m_hWnd;
  if (command == -1) {
    BOOL maximized = FALSE;
    if (const CMDIFrameWnd* frame = GetMDIFrame()) frame->MDIGetActive(&maximized);
    const bool hidden = (GetStyle() & WS_VISIBLE) == 0;
    command = maximized != 0 ? SW_SHOWMAXIMIZED : hidden ? SW_SHOWNORMAL : SW_SHOW;
  }
  ShowWindow(command);
  if (::IsWindow(window) != 0) MDIActivate();
}

void CMDIChildWnd::OnMDIActivate(BOOL activate, CWnd* activated, CWnd*) {
  if (CView* view = GetActiveView()) view->OnActivateView(activate, view, view);
  OnUpdateFrameTitle(activate != 0 || activated != nullptr);
  ShowMenu(activate != 0, activated != nullptr);
}

void CMDIChildWnd::SetFrameMenu(HMENU menu) {
  const HMENU former = std::exchange(m_loadedMenu, menu);
  m_hMenuShared = menu;
  const CMDIFrameWnd* frame = m_hWnd == nullptr ? nullptr : GetMDIFrame();
  if (frame != nullptr && frame->MDIGetActive() == this) ShowMenu(true, true);
  if (former != menu) ::DestroyMenu(former);
}

void CMDIChildWnd::ShowMenu(bool activate, bool anyActive) {
  CMDIFrameWnd* frame = GetMDIFrame();
  // Between two windows only the one that comes changes the menu.
  if (frame == nullptr || (!activate && anyActive)) return;
  const HMENU menu = activate && m_hMenuShared != nullptr ? m_hMenuShared : frame->m_hMenuDefault;
  frame->ShowMenuInBar(menu);
}

void CMDIChildWnd::OnUpdateFrameTitle(BOOL addToTitle) {
  CString title;
  // Without a document the text is the program's.
  if ((GetStyle() & FWS_ADDTOTITLE) != 0 && addToTitle != 0 && GetDocumentTitle(title) != 0) {
    if (m_nWindow > 0) {
      CString number;
      number.Format(":%d", m_nWindow);
      title += number;
    }
    CString shown;
    GetWindowText(shown);
    if (shown != title) SetWindowText(title);
  }
  if (CMDIFrameWnd* frame = GetMDIFrame()) frame->OnUpdateFrameTitle(addToTitle);
}

void CMDIChildWnd::OnSize(UINT type, int cx, int cy) {
  CFrameWnd::OnSize(type, cx, cy);
  // It may have become the maximised one, or isn't any more.
  CMDIFrameWnd* frame = GetMDIFrame();
  if (frame != nullptr && frame->MDIGetActive() == this) frame->OnUpdateFrameTitle(TRUE);
}

void CMDIChildWnd::OnFileClose() {
  SendMessage(WM_CLOSE);  // nothing of this object after it
}

BOOL CMDIChildWnd::PreTranslateMessage(MSG* message) {
  // Keys are looked up with the main window's menu, where this window's commands stand.
  if (CWnd::PreTranslateMessage(message) != 0) return TRUE;  // NOLINT: past CFrameWnd's table
  const CMDIFrameWnd* frame = GetMDIFrame();
  const bool key = message->message >= WM_KEYFIRST && message->message <= WM_KEYLAST;
  return key && frame != nullptr && m_hAccelTable != nullptr &&
         TranslateAcceleratorA(frame->m_hWnd, m_hAccelTable, message) != 0;
}

LRESULT CMDIChildWnd::DefWindowProc(UINT message, WPARAM wParam, LPARAM lParam) {
  const HWND window = m_hWnd;
  const LRESULT result = ::DefMDIChildProc(window, message, wParam, lParam);
  if (message == WM_SETTEXT) {
    CMDIFrameWnd* frame = GetMDIFrame();
    if (frame != nullptr && frame->MDIGetActive() == this) frame->OnUpdateFrameTitle(TRUE);
  }
  return result;
}

CWnd* CMDIChildWnd::GetMessageBar() {
  CWnd* own = CFrameWnd::GetMessageBar();
  if (own != nullptr) return own;
  CMDIFrameWnd* frame = GetMDIFrame();
  return frame == nullptr ? nullptr : frame->GetMessageBar();
}
