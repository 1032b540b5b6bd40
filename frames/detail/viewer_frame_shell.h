#pragma once

#include "frames/viewer_frame.h"
#include "library/resource_ids.h"
#include "platform/framework/menu.h"
#include "platform/framework/object_hold.h"
#include "platform/resources/resource_tables.h"
#include "platform/window/busy.h"
#include "viewing/bars/viewer_bars.h"

// The viewer frame's windows: how they are made, laid out and emptied. For the sources of the two frames.

template <typename Base>
CViewerFrame<Base>::~CViewerFrame() {
  // Still there if the window ended otherwise than by being closed.
  EndPanes();
  DestroyMenu(m_hOwnMenu);
}

template <typename Base>
void CViewerFrame<Base>::EndPanes() {
  // A call of theirs may be on the stack, within whose dialog the user closes the frame.
  for (CWnd* pane : {static_cast<CWnd*>(m_pImageWnd), static_cast<CWnd*>(m_pThumbsWnd)}) {
    if (pane == nullptr) continue;
    pane->DestroyWindow();
    platform::DeleteWhenFree(pane);
  }
  m_pImageWnd = nullptr;
  m_pThumbsWnd = nullptr;
}

template <typename Base>
BOOL CViewerFrame<Base>::PreCreateWindow(CREATESTRUCT& cs) {
  if (Base::PreCreateWindow(cs) == FALSE) return FALSE;
  cs.dwExStyle &= ~static_cast<DWORD>(WS_EX_CLIENTEDGE);
  cs.lpszClass = viewer_bars::FrameClass(IDR_ZP_VIEWER);
  return TRUE;
}

template <typename Base>
int CViewerFrame<Base>::OnCreate(LPCREATESTRUCT cs) {
  if constexpr (Traits::kSharesMenu) {
    const LPCSTR menu = MAKEINTRESOURCE(IDR_ZP_VIEWER);
    m_hOwnMenu = LoadMenuA(AfxFindResourceHandle(menu, RT_MENU), menu);
    this->m_hMenuShared = m_hOwnMenu;
  }
  if (Base::OnCreate(cs) == -1) return -1;
  if (CreateToolBar() == FALSE || CreateStatusBar() == FALSE) return -1;
  viewer_bars::DockToolBar(this, m_wndToolBar);
  return 0;
}

template <typename Base>
BOOL CViewerFrame<Base>::CreateToolBar() {
  return viewer_bars::CreateToolBar(this, {m_wndToolBar, m_wndComboPage, m_wndComboScale, m_fontCombos},
                                    kImageToolBar)
             ? TRUE
             : FALSE;
}

template <typename Base>
BOOL CViewerFrame<Base>::CreateStatusBar() {
  return viewer_bars::CreateStatusBar(this, m_wndStatusBar) ? TRUE : FALSE;
}

template <typename Base>
BOOL CViewerFrame<Base>::OnCreateClient(LPCREATESTRUCT, CCreateContext* context) {
  using viewer_bars::kPaneSize;
  if (m_wndSplitter.CreateStatic(this, 1, 2, WS_CHILD | WS_VISIBLE, AFX_IDW_PANE_FIRST) == FALSE ||
      m_wndSplitter.CreateView(0, 0, RUNTIME_CLASS(CThumbsWindow), kPaneSize, context) == FALSE)
    return FALSE;
  m_pThumbsWnd = static_cast<CThumbsWindow*>(m_wndSplitter.GetPane(0, 0));
  if (m_wndSplitter.CreateView(0, 1, ImageWindowClass(), kPaneSize, context) == FALSE) return FALSE;
  m_pImageWnd = static_cast<CImageWindow*>(m_wndSplitter.GetPane(0, 1));
  m_wndSplitter.SetColumnInfo(0, kPaneSize.cx, viewer_bars::kLeastStripWidth);
  if (m_bThumbsVisible == FALSE) m_wndSplitter.HideColumn(0);
  return TRUE;
}

template <typename Base>
void CViewerFrame<Base>::OnSetFocus(CWnd*) {
  // Nothing of the frame takes keys but what it shows.
  if (m_pImageWnd != nullptr) m_pImageWnd->SetFocus();
}

template <typename Base>
void CViewerFrame<Base>::ShowMessage(UINT text) {
  CString message;
  message.LoadString(text);
  m_wndStatusBar.SetWindowText(message);
  m_wndStatusBar.UpdateWindow();
}

template <typename Base>
void CViewerFrame<Base>::EnablePane(UINT pane, bool enable) {
  viewer_bars::EnablePane(m_wndStatusBar, pane, enable);
}

template <typename Base>
void CViewerFrame<Base>::Clear() {
  // A combo that loses the keyboard writes page or scale once more, so it has to lose it before it is
  // emptied.
  if (::IsChild(m_wndToolBar.m_hWnd, ::GetFocus()) != FALSE) m_pImageWnd->SetFocus();
  EnablePane(ID_ZP_INDICATOR_ZOOM, false);
  EnablePane(ID_ZP_INDICATOR_PAGE, false);
  ShowMessage(AFX_IDS_IDLEMESSAGE);
  m_wndComboPage.SendMessage(CB_RESETCONTENT);
  m_wndComboPage.EnableWindow(FALSE);
  m_wndComboScale.SetWindowText("");
  m_wndComboScale.EnableWindow(FALSE);
  m_wndToolBar.Invalidate();
  // Without a range, or the bars would come back with the window's next size.
  SCROLLINFO none{};
  none.cbSize = sizeof none;
  none.fMask = SIF_ALL;
  for (const int bar : {SB_HORZ, SB_VERT}) m_pImageWnd->SetScrollInfo(bar, &none, FALSE);
  m_pImageWnd->ShowScrollBar(SB_BOTH, FALSE);
  m_pImageWnd->Invalidate();
  m_pImageWnd->SetMouseMode(MouseModeNone);
}

// Bars

template <typename Base>
void CViewerFrame<Base>::InitPageComboBox(int pages) {
  viewer_bars::FillPageCombo(m_wndComboPage, pages);
  m_wndComboPage.SendMessage(CB_SETCURSEL, 0);
}

template <typename Base>
void CViewerFrame<Base>::ShowPageInBars() {
  m_wndComboPage.SendMessage(CB_SETCURSEL, static_cast<WPARAM>(this->Page() - 1));
  viewer_bars::ShowPagePane(m_wndStatusBar, this->Page(), this->Pages(), TRUE);
}

template <typename Base>
void CViewerFrame<Base>::FollowPage() {
  if (IsGone()) return;
  ShowPageInBars();
  if (m_bThumbsVisible != FALSE) m_pThumbsWnd->SetSel(this->Page());
}

// Thumbnails

template <typename Base>
void CViewerFrame<Base>::FillThumbs() {
  const CString path = m_pImageWnd->GetFilePath();
  char* block = nullptr;
  int size = 0;
  m_pImageWnd->GetFileBuf(&block, &size);
  if (path.IsEmpty() == FALSE)
    m_pThumbsWnd->CreateThumbsFile(path);
  else if (block != nullptr)
    m_pThumbsWnd->CreateThumbsMemory(block, size);
  m_bThumbsCreated = TRUE;
}

template <typename Base>
void CViewerFrame<Base>::OnViewThumbnails() {
  if (m_pImageWnd == nullptr) return;
  m_bThumbsVisible = m_bThumbsVisible == FALSE ? TRUE : FALSE;
  if (m_bThumbsVisible == FALSE) {
    m_wndSplitter.HideColumn(0);
    return;
  }
  if (m_bThumbsCreated == FALSE) {
    this->BeginWaitCursor();
    FillThumbs();
    this->EndWaitCursor();
  }
  if (IsGone()) return;
  m_wndSplitter.ShowColumn();
  m_pThumbsWnd->SetSel(this->Page());
}

template <typename Base>
void CViewerFrame<Base>::OnUpdateViewThumbnails(CCmdUI* ui) {
  ui->SetCheck(m_bThumbsVisible);
}

template <typename Base>
BOOL CViewerFrame<Base>::OnCommand(WPARAM wParam, LPARAM lParam) {
  if (platform::BusyScope::IsServing()) return TRUE;  // one at a time
  if (LOWORD(wParam) != m_wndSplitter.IdFromRowCol(0, 0)) return CFrameWnd::OnCommand(wParam, lParam);
  if (HIWORD(wParam) != viewer_bars::kPicked || m_pImageWnd == nullptr) return TRUE;
  const int page = viewer_bars::PickedIndex(lParam) + 1;
  // The strip has made the selection itself.
  if (page != this->Page() && m_pImageWnd->LoadPage(page) && !IsGone()) ShowPageInBars();
  return TRUE;
}
