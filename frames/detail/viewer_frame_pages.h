#pragma once

#include "frames/viewer_frame.h"
#include "library/resource_ids.h"
#include "platform/framework/cmd_ui.h"
#include "viewing/bars/viewer_bars.h"
#include "viewing/commands/go_to_page_dlg.h"

// The viewer frame's page commands. The image window alone knows which page it shows; combo, pane and
// thumbnails follow it. For the sources of the two frames.

template <typename Base>
void CViewerFrame<Base>::InitPageComboBox(int pages) {
  viewer_bars::FillPageCombo(m_wndComboPage, pages);
  m_wndComboPage.SendMessage(CB_SETCURSEL, 0);
}

template <typename Base>
void CViewerFrame<Base>::ShowPageStatus(BOOL update) {
  viewer_bars::ShowPagePane(m_wndStatusBar, Page(), Pages(), update);
}

template <typename Base>
void CViewerFrame<Base>::ShowPage(int page) {
  if (m_pImageWnd == nullptr || !m_pImageWnd->LoadPage(page)) return;
  m_wndComboPage.SendMessage(CB_SETCURSEL, static_cast<WPARAM>(Page() - 1));
  ShowPageStatus(TRUE);
  if (m_bThumbsVisible != FALSE) m_pThumbsWnd->SetSel(Page());
}

template <typename Base>
void CViewerFrame<Base>::OnFirstPage() {
  ShowPage(1);
}

template <typename Base>
void CViewerFrame<Base>::OnPrevPage() {
  ShowPage(Page() - 1);
}

template <typename Base>
void CViewerFrame<Base>::OnNextPage() {
  ShowPage(Page() + 1);
}

template <typename Base>
void CViewerFrame<Base>::OnLastPage() {
  ShowPage(Pages());
}

template <typename Base>
void CViewerFrame<Base>::OnGotoPage() {
  CGoToPageDlg dialog(Page(), Pages(), nullptr);
  const auto page = static_cast<int>(dialog.DoModal());
  if (page >= 1 && page != Page()) ShowPage(page);
}

template <typename Base>
void CViewerFrame<Base>::OnPageProperties() {
  if (m_pImageWnd != nullptr) m_pImageWnd->ShowPropertiesDlg();
}

// Combo

template <typename Base>
void CViewerFrame<Base>::OnComboPageSelChange() {
  if (m_wndComboPage.SendMessage(CB_GETCURSEL) == CB_ERR) m_wndComboPage.SendMessage(CB_SETCURSEL, 0);
  const int page = static_cast<int>(m_wndComboPage.SendMessage(CB_GETCURSEL)) + 1;
  if (page == Page() || m_pImageWnd == nullptr || !m_pImageWnd->LoadPage(page)) return;
  ShowPageStatus(TRUE);
  if (m_bThumbsVisible != FALSE) m_pThumbsWnd->SetSel(page);
}

template <typename Base>
void CViewerFrame<Base>::OnComboPageKillFocus() {
  CString number;
  number.Format("%d", Page());
  m_wndComboPage.SetWindowText(number);
}

// States

template <typename Base>
void CViewerFrame<Base>::OnUpdateFirstPage(CCmdUI* ui) {
  ui->Enable(Page() >= 2 ? TRUE : FALSE);
}

template <typename Base>
void CViewerFrame<Base>::OnUpdatePrevPage(CCmdUI* ui) {
  ui->Enable(Page() >= 2 ? TRUE : FALSE);
}

template <typename Base>
void CViewerFrame<Base>::OnUpdateNextPage(CCmdUI* ui) {
  ui->Enable(Page() < Pages() ? TRUE : FALSE);
}

template <typename Base>
void CViewerFrame<Base>::OnUpdateLastPage(CCmdUI* ui) {
  ui->Enable(Page() < Pages() ? TRUE : FALSE);
}

template <typename Base>
void CViewerFrame<Base>::OnUpdateGotoPage(CCmdUI* ui) {
  ui->Enable(Pages() >= 2 ? TRUE : FALSE);
}

template <typename Base>
void CViewerFrame<Base>::OnUpdatePageProperties(CCmdUI* ui) {
  EnableWithPage(ui);
}
