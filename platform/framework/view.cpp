#include "platform/framework/view.h"

#include "platform/framework/document.h"
#include "platform/framework/frame_wnd.h"
#include "platform/framework/object_hold.h"

IMPLEMENT_DYNAMIC(CView, CWnd)

BEGIN_MESSAGE_MAP(CView, CWnd)
ON_WM_CREATE()
ON_WM_DESTROY()
ON_WM_PAINT()
ON_WM_SETFOCUS()
ON_MESSAGE(WM_INITIALUPDATE, OnInitialUpdateMessage)
END_MESSAGE_MAP()

CView::~CView() {
  if (m_pDocument != nullptr) m_pDocument->RemoveView(this);
}

BOOL CView::PreCreateWindow(CREATESTRUCT& cs) {
  if (cs.lpszClass == nullptr)
    cs.lpszClass =
        AfxRegisterWndClass(CS_DBLCLKS, LoadCursor(nullptr, IDC_ARROW), GetSysColorBrush(COLOR_WINDOW));
  // A plain border becomes the sunken edge that panes have.
  if ((cs.style & WS_BORDER) != 0) {
    cs.style &= ~DWORD{WS_BORDER};
    cs.dwExStyle |= WS_EX_CLIENTEDGE;
  }
  return CWnd::PreCreateWindow(cs);
}

int CView::OnCreate(LPCREATESTRUCT cs) {
  if (CWnd::OnCreate(cs) == -1) return -1;
  const auto* context = static_cast<const CCreateContext*>(cs->lpCreateParams);
  if (context != nullptr && context->m_pCurrentDoc != nullptr) context->m_pCurrentDoc->AddView(this);
  return 0;
}

void CView::OnDestroy() {
  CFrameWnd* frame = GetParentFrame();
  if (frame != nullptr && frame->GetActiveView() == this) frame->SetActiveView(nullptr);
  CWnd::OnDestroy();
}

void CView::PostNcDestroy() {
  platform::DeleteWhenFree(this);
}

void CView::OnPaint() {
  CPaintDC dc(this);
  OnPrepareDC(&dc);
  OnDraw(&dc);
}

void CView::OnUpdate(CView*, LPARAM, CObject*) {
  Invalidate(TRUE);
}

void CView::OnInitialUpdate() {
  OnUpdate(nullptr, 0, nullptr);
}

LRESULT CView::OnInitialUpdateMessage(WPARAM, LPARAM) {
  OnInitialUpdate();
  return 0;
}

void CView::OnActivateView(BOOL activate, CView* activated, CView*) {
  if (activate != 0 && activated == this && GetFocus() != this) SetFocus();
}

void CView::OnSetFocus(CWnd*) {
  Default();
  // The keyboard makes a view the active one of its frame, whichever way it came.
  if (CFrameWnd* frame = GetParentFrame()) frame->SetActiveView(this);
}

BOOL CView::OnCmdMsg(UINT id, int code, void* extra, void* handlerInfo) {
  if (CWnd::OnCmdMsg(id, code, extra, handlerInfo) != 0) return TRUE;
  return m_pDocument != nullptr && m_pDocument->OnCmdMsg(id, code, extra, handlerInfo) != 0;
}
