#pragma once

#include "docview/zp_frame.h"
#include "docview/zp_thumbs_view.h"
#include "library/library_entry.h"
#include "platform/framework/cmd_ui.h"
#include "platform/window/busy.h"
#include "viewing/bars/viewer_bars.h"

// How a document's frame is made, and how its bars follow the document. For the sources of the two frames.

template <typename Base>
CZPFrame<Base>::CZPFrame() : Commands(kDocumentFrame), m_pSplitter(new CSplitter) {
  this->m_bAutoMenuEnable = FALSE;
}

template <typename Base>
CZPFrame<Base>::~CZPFrame() {
  delete m_pSplitter;
}

template <typename Base>
BOOL CZPFrame<Base>::PreCreateWindow(CREATESTRUCT& cs) {
  if (Base::PreCreateWindow(cs) == FALSE) return FALSE;
  cs.lpszClass = viewer_bars::FrameClass(IDR_ZP_HOST);
  return TRUE;
}

template <typename Base>
BOOL CZPFrame<Base>::OnCreateClient(LPCREATESTRUCT, CCreateContext* context) {
  using viewer_bars::kPaneSize;
  if (m_pSplitter->CreateStatic(this, 1, 2, WS_CHILD | WS_VISIBLE, AFX_IDW_PANE_FIRST) == FALSE ||
      m_pSplitter->CreateView(0, 0, RUNTIME_CLASS(CZPThumbsView), kPaneSize, context) == FALSE ||
      m_pSplitter->CreateView(0, 1, RUNTIME_CLASS(CZPView), kPaneSize, context) == FALSE)
    return FALSE;
  m_pThumbsView = static_cast<CZPThumbsView*>(m_pSplitter->GetPane(0, 0));
  m_pView = static_cast<CZPView*>(m_pSplitter->GetPane(0, 1));
  m_pDoc = DYNAMIC_DOWNCAST(CZPDoc, m_pView->GetDocument());
  m_pSplitter->SetColumnInfo(0, kPaneSize.cx, viewer_bars::kLeastStripWidth);
  if (m_bThumbsVisible == 0) m_pSplitter->HideColumn(0);
  return TRUE;
}

// Bars

template <typename Base>
void CZPFrame<Base>::InitialFrameUpdate() {
  if (CStatusBar* const status = viewer_bars::Present(this->CommandBars()).status) {
    CString idle;
    idle.FormatMessage(AFX_IDS_IDLEMESSAGE);
    status->SetWindowText(idle);
  }
  UpdateFrame();
}

template <typename Base>
void CZPFrame<Base>::UpdateFrame() {
  if (this->OwnsBars()) UpdateBars(viewer_bars::Present(this->CommandBars()));
  if (m_pView == nullptr) return;
  // A mode that the user has chosen outlasts pages, unless one comes that can't be shown.
  if (!this->IsShown())
    m_pView->SetMouseMode(ViewMouseNone);
  else if (m_pView->GetMouseMode() == ViewMouseNone)
    m_pView->SetMouseMode(ViewMouseDrag);
}

template <typename Base>
void CZPFrame<Base>::InitPageComboBox(int pages) {
  viewer_bars::FillPageCombo(*this->CommandBars().page, pages);
}

template <typename Base>
void CZPFrame<Base>::UpdateBars(const viewer_bars::ViewerBars& bars) {
  if (bars.page != nullptr) UpdatePageCombo(*bars.page);
  if (bars.scale != nullptr) {
    bars.scale->EnableWindow(this->IsShown() ? TRUE : FALSE);
    if (!this->IsOpen()) bars.scale->SetWindowText("");
  }
  if (bars.status != nullptr) {
    if (this->IsOpen()) viewer_bars::ShowPagePane(*bars.status, this->Page(), this->Pages(), TRUE);
    viewer_bars::EnablePane(*bars.status, ID_ZP_INDICATOR_PAGE, this->IsOpen());
    viewer_bars::EnablePane(*bars.status, ID_ZP_INDICATOR_ZOOM, this->IsShown());
  }
  if (this->IsShown()) UpdateZoomStatus();
}

template <typename Base>
void CZPFrame<Base>::UpdatePageCombo(CComboPageNum& combo) {
  if (this->Pages() < 2) {
    // A combo that loses the keyboard writes its page once more, so it has to lose it before it is emptied.
    if (m_pView != nullptr && ::IsChild(combo.m_hWnd, ::GetFocus()) != FALSE) m_pView->SetFocus();
    combo.EnableWindow(FALSE);
    combo.SetWindowText("");
  } else {
    combo.EnableWindow(TRUE);
    InitPageComboBox(this->Pages());
    combo.SendMessage(CB_SETCURSEL, static_cast<WPARAM>(this->Page() - 1));
  }
}

// Thumbnails

template <typename Base>
void CZPFrame<Base>::OnZpViewThumbnails() {
  m_bThumbsVisible = m_bThumbsVisible == 0 ? 1 : 0;
  if (m_bThumbsVisible != 0)
    m_pSplitter->ShowColumn();
  else
    m_pSplitter->HideColumn(0);
}

template <typename Base>
void CZPFrame<Base>::OnUpdateZpViewThumbnails(CCmdUI* ui) {
  ui->Enable(TRUE);
  ui->SetCheck(m_bThumbsVisible);
}

template <typename Base>
BOOL CZPFrame<Base>::OnCommand(WPARAM wParam, LPARAM lParam) {
  if (platform::BusyScope::IsServing()) return TRUE;  // one at a time
  if (LOWORD(wParam) != m_pSplitter->IdFromRowCol(0, 0)) return Base::OnCommand(wParam, lParam);
  if (HIWORD(wParam) == viewer_bars::kPicked) this->ShowOtherPage(viewer_bars::PickedIndex(lParam) + 1);
  return TRUE;
}

// Export

template <typename Base>
void CZPFrame<Base>::OnUpdateZpFileExport(CCmdUI* ui) {
  this->Enable(ui, g_bFilesOpeningEnabled != 0 && this->IsOpen());
}
