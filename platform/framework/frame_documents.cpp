// A frame and what it shows: its views and their document.

#include <utility>
#include <vector>

#include "platform/framework/app.h"
#include "platform/framework/document.h"
#include "platform/framework/frame_wnd.h"
#include "platform/framework/object_hold.h"
#include "platform/framework/view.h"

namespace {

/// The first view below a window: along the first panes, as a splitter has the pane's own number, then in the
/// order of the children, but not in another frame. A pane that is put away counts only with hidden.
CView* ViewBelow(HWND window, bool hidden) {
  std::vector<HWND> children = {::GetDlgItem(window, AFX_IDW_PANE_FIRST)};
  for (HWND child = GetWindow(window, GW_CHILD); child != nullptr; child = GetWindow(child, GW_HWNDNEXT))
    children.push_back(child);
  for (const HWND child : children) {
    if (child == nullptr || (!hidden && (GetWindowLong(child, GWL_STYLE) & WS_VISIBLE) == 0)) continue;
    CWnd* object = CWnd::FromHandlePermanent(child);
    if (CView* view = DYNAMIC_DOWNCAST(CView, object)) return view;
    if (DYNAMIC_DOWNCAST(CFrameWnd, object) != nullptr) continue;
    if (CView* view = ViewBelow(child, hidden)) return view;
  }
  return nullptr;
}

}  // namespace

BOOL CFrameWnd::OnCreateClient(LPCREATESTRUCT, CCreateContext* context) {
  if (context == nullptr || context->m_pNewViewClass == nullptr) return TRUE;
  return CreateView(context, AFX_IDW_PANE_FIRST) != nullptr;
}

CWnd* CFrameWnd::CreateView(CCreateContext* context, UINT id) {
  CObject* made = context == nullptr || context->m_pNewViewClass == nullptr
                      ? nullptr
                      : context->m_pNewViewClass->CreateObject();
  CWnd* view = DYNAMIC_DOWNCAST(CWnd, made);
  if (view == nullptr) {
    delete made;  // NOLINT(cppcoreguidelines-owning-memory): of a class that is no window
    return nullptr;
  }
  // A view that can't be made deletes itself.
  const BOOL created = view->Create(nullptr, nullptr, DWORD{WS_CHILD} | WS_VISIBLE | WS_BORDER,
                                    CRect(0, 0, 0, 0), this, id, context);
  return created == 0 ? nullptr : view;
}

void CFrameWnd::SetActiveView(CView* view, BOOL notify) {
  CView* former = m_pViewActive;
  if (view == former) return;
  m_pViewActive = nullptr;
  if (former != nullptr) former->OnActivateView(FALSE, view, former);
  if (m_pViewActive != nullptr) return;  // it has chosen another one
  m_pViewActive = view;
  if (view != nullptr && notify != 0) view->OnActivateView(TRUE, view, former);
}

CDocument* CFrameWnd::GetActiveDocument() {
  return m_pViewActive == nullptr ? nullptr : m_pViewActive->GetDocument();
}

BOOL CFrameWnd::GetDocumentTitle(CString& title) const {
  const CDocument* document = m_pViewActive == nullptr ? nullptr : m_pViewActive->GetDocument();
  if (document == nullptr) return FALSE;
  title = document->GetTitle();
  return TRUE;
}

CView* CFrameWnd::FindFirstView() const {
  CView* seen = ViewBelow(m_hWnd, false);
  return seen != nullptr ? seen : ViewBelow(m_hWnd, true);
}

void CFrameWnd::InitialUpdateFrame(CDocument* document, BOOL makeVisible) {
  if (m_pViewActive == nullptr) SetActiveView(FindFirstView(), FALSE);
  if (makeVisible != 0) {
    SendMessageToDescendants(WM_INITIALUPDATE);
    int command = -1;
    CWinApp* app = AfxGetApp();
    // How the program was asked to begin holds for its first window only.
    if (app != nullptr && app->m_pMainWnd == this) command = std::exchange(app->m_nCmdShow, -1);
    ActivateFrame(command);
    if (m_pViewActive != nullptr) m_pViewActive->OnActivateView(TRUE, m_pViewActive, m_pViewActive);
  }
  if (document != nullptr) document->UpdateFrameCounts();
  OnUpdateFrameTitle(TRUE);
}

// The end

bool CFrameWnd::IsOnlyFrameOf(const CDocument& document) const {
  POSITION position = document.GetFirstViewPosition();
  while (position != nullptr) {
    const CView* view = document.GetNextView(position);
    if (view != nullptr && view->GetParentFrame() != this) return false;
  }
  return true;
}

void CFrameWnd::OnClose() {
  const HWND window = m_hWnd;
  CDocument* document = GetActiveDocument();
  CWinApp* app = AfxGetApp();
  const bool isMain = app != nullptr && app->m_pMainWnd == this;
  {
    const platform::ObjectHold hold(this);  // while the user is asked
    if (document != nullptr && document->CanCloseFrame(this) == 0) return;
    if (document == nullptr && isMain && app->SaveAllModified() == 0) return;
  }
  if (::IsWindow(window) == 0) return;
  if (isMain) {
    app->CloseAllDocuments(FALSE);
    if (::IsWindow(window) == 0) return;  // a document has taken it along, and this object
    document = GetActiveDocument();
  }
  if (document != nullptr) {
    document->PreCloseFrame(this);
    if (document->m_bAutoDelete != 0 && IsOnlyFrameOf(*document)) {
      document->OnCloseDocument();
      return;
    }
  }
  DestroyWindow();
}
