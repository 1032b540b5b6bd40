#include "platform/framework/frame_wnd.h"

#include <utility>

#include "platform/framework/app.h"
#include "platform/framework/detail/frame_resources.h"
#include "platform/framework/object_hold.h"
#include "platform/framework/view.h"
#include "platform/resources/resource_tables.h"

IMPLEMENT_DYNCREATE(CFrameWnd, CWnd)

const CRect CFrameWnd::rectDefault(CW_USEDEFAULT, CW_USEDEFAULT, 0, 0);

BEGIN_MESSAGE_MAP(CFrameWnd, CWnd)
ON_WM_CREATE()
ON_WM_SIZE()
ON_WM_SETFOCUS()
ON_WM_CLOSE()
ON_WM_ERASEBKGND()
ON_WM_INITMENUPOPUP()
ON_WM_MENUSELECT()
ON_WM_SHOWWINDOW()
ON_MESSAGE(WM_SETMESSAGESTRING, OnSetMessageString)
ON_MESSAGE(WM_POPMESSAGESTRING, OnPopMessageString)
ON_MESSAGE(WM_IDLEUPDATECMDUI, OnIdleUpdate)
ON_COMMAND_RANGE(AFX_IDW_TOOLBAR, AFX_IDW_STATUS_BAR, OnBarCommand)
ON_UPDATE_COMMAND_UI_RANGE(AFX_IDW_TOOLBAR, AFX_IDW_STATUS_BAR, OnUpdateControlBarMenu)
END_MESSAGE_MAP()

void CFrameWnd::PostNcDestroy() {
  platform::DeleteWhenFree(this);
}

BOOL CFrameWnd::Create(LPCTSTR className, LPCTSTR title, DWORD style, const RECT& rect, CWnd* parent,
                       LPCTSTR menuName, DWORD exStyle, CCreateContext* context) {
  HMENU menu = nullptr;
  if (menuName != nullptr) {
    menu = LoadMenuA(AfxFindResourceHandle(menuName, RT_MENU), menuName);
    if (menu == nullptr) {
      PostNcDestroy();
      return FALSE;
    }
  }
  m_hMenuDefault = menu;
  if (title != nullptr) {
    m_strTitle = CString(title);  // a copy first: it may be m_strTitle's own text
    title = m_strTitle;
  }
  const bool anywhere = rect.left == CW_USEDEFAULT;
  const BOOL created = CreateEx(exStyle, className, title, style, rect.left, rect.top,
                                anywhere ? CW_USEDEFAULT : rect.right - rect.left,
                                anywhere ? CW_USEDEFAULT : rect.bottom - rect.top,
                                parent == nullptr ? nullptr : parent->m_hWnd, menu, context);
  if (created == 0) DestroyMenu(menu);  // this object may be gone
  return created;
}

void CFrameWnd::SetFrameMenu(HMENU menu) {
  const HMENU former = std::exchange(m_hMenuDefault, menu);
  ::SetMenu(m_hWnd, menu);
  if (former != menu) DestroyMenu(former);
}

BOOL CFrameWnd::PreCreateWindow(CREATESTRUCT& cs) {
  if (cs.lpszClass == nullptr) cs.lpszClass = platform::FrameClass();
  return CWnd::PreCreateWindow(cs);
}

int CFrameWnd::OnCreate(LPCREATESTRUCT cs) {
  if (Default() == -1) return -1;
  if (OnCreateClient(cs, static_cast<CCreateContext*>(cs->lpCreateParams)) == 0) return -1;
  RecalcLayout();
  PostMessage(WM_SETMESSAGESTRING, AFX_IDS_IDLEMESSAGE);  // the bars come after this
  return 0;
}

void CFrameWnd::OnSize(UINT type, int, int) {
  Default();
  if (type != SIZE_MINIMIZED) RecalcLayout();
}

void CFrameWnd::OnSetFocus(CWnd*) {
  CWnd* pane = m_pViewActive != nullptr ? m_pViewActive : GetDlgItem(AFX_IDW_PANE_FIRST);
  if (pane != nullptr) {
    pane->SetFocus();
  } else {
    Default();
  }
}

BOOL CFrameWnd::OnEraseBkgnd(CDC*) {
  // The pane covers everything.
  if (GetDlgItem(AFX_IDW_PANE_FIRST) != nullptr) return TRUE;
  return static_cast<BOOL>(Default());
}

BOOL CFrameWnd::OnCmdMsg(UINT id, int code, void* extra, void* handlerInfo) {
  if (m_pViewActive != nullptr && m_pViewActive->OnCmdMsg(id, code, extra, handlerInfo) != 0) return TRUE;
  if (CWnd::OnCmdMsg(id, code, extra, handlerInfo) != 0) return TRUE;
  CWinApp* app = AfxGetApp();
  return app != nullptr && app->OnCmdMsg(id, code, extra, handlerInfo) != 0;
}

void CFrameWnd::ActivateFrame(int command) {
  ShowWindow(command == -1 ? SW_SHOW : command);
  SetForegroundWindow(m_hWnd);
}

void CFrameWnd::OnUpdateFrameTitle(BOOL addToTitle) {
  if ((GetStyle() & FWS_ADDTOTITLE) == 0) return;
  CString document;
  const bool named = addToTitle != 0 && GetDocumentTitle(document) != 0;
  UpdateFrameTitleForDocument(named ? static_cast<LPCTSTR>(document) : nullptr);
}

void CFrameWnd::UpdateFrameTitleForDocument(LPCTSTR document) {
  CString title = m_strTitle;
  if (document != nullptr && *document != 0) {
    CString name(document);
    if (m_nWindow > 0) {
      CString number;
      number.Format(":%d", m_nWindow);
      name += number;
    }
    if (m_strTitle.IsEmpty() != 0)
      title = name;
    else
      title = (GetStyle() & FWS_PREFIXTITLE) != 0 ? name + " - " + m_strTitle : m_strTitle + " - " + name;
  }
  SetWindowText(title);
}
