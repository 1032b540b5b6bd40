#pragma once

#include "docview/zp_frame.h"
#include "library/library_entry.h"
#include "platform/framework/cmd_ui.h"
#include "viewing/bars/viewer_bars.h"
#include "viewing/commands/go_to_page_dlg.h"

// The page, rotation and print commands of a document's frame. For the sources of the two frames.

template <typename Base>
void CZPFrame<Base>::InitPageComboBox(int pages) {
  viewer_bars::FillPageCombo(*PageCombo(), pages);
}

template <typename Base>
void CZPFrame<Base>::ShowPage(int page) {
  if (m_pDoc != nullptr && m_pDoc->SetActivePage(page) != 0) UpdateFrame();
}

template <typename Base>
void CZPFrame<Base>::ShowOtherPage(int page) {
  if (page != Page()) ShowPage(page);
}

template <typename Base>
void CZPFrame<Base>::OnZpFirstPage() {
  ShowPage(0);
}

template <typename Base>
void CZPFrame<Base>::OnZpLastPage() {
  ShowPage(Pages() - 1);
}

template <typename Base>
void CZPFrame<Base>::OnZpNextPage() {
  ShowPage(Page() + 1);
}

template <typename Base>
void CZPFrame<Base>::OnZpPrevPage() {
  ShowPage(Page() - 1);
}

template <typename Base>
void CZPFrame<Base>::OnZpGotoPage() {
  CGoToPageDlg dialog(Page() + 1, Pages(), nullptr);
  const auto page = static_cast<int>(dialog.DoModal());
  if (page >= 1) ShowOtherPage(page - 1);
}

// Combo

template <typename Base>
void CZPFrame<Base>::OnComboPageSelChange() {
  if (!HasBars()) return;
  CComboPageNum& combo = *PageCombo();
  if (combo.SendMessage(CB_GETCURSEL) == CB_ERR) combo.SendMessage(CB_SETCURSEL, 0);
  ShowOtherPage(static_cast<int>(combo.SendMessage(CB_GETCURSEL)));
}

template <typename Base>
void CZPFrame<Base>::OnComboPageKillFocus() {
  if (!HasBars()) return;
  CString number;
  number.Format("%d", Page() + 1);
  PageCombo()->SetWindowText(number);
}

// Rotation, properties, printing

template <typename Base>
void CZPFrame<Base>::OnZpRotateLeft() {
  if (m_pDoc != nullptr) m_pDoc->Rotate(-9000);
}

template <typename Base>
void CZPFrame<Base>::OnZpRotateRight() {
  if (m_pDoc != nullptr) m_pDoc->Rotate(9000);
}

template <typename Base>
void CZPFrame<Base>::OnZpRotate180() {
  if (m_pDoc != nullptr) m_pDoc->Rotate(18000);
}

template <typename Base>
void CZPFrame<Base>::OnZpPageProperties() {
  if (m_pDoc != nullptr) m_pDoc->ShowPageInfo();
}

template <typename Base>
void CZPFrame<Base>::OnFilePrint() {
  if (m_pDoc != nullptr) m_pDoc->PrintDocument(JobParent(), false, 0, -1);
}

template <typename Base>
void CZPFrame<Base>::OnZpPagePrint() {
  if (m_pDoc != nullptr) m_pDoc->PrintPage(-1);
}

// States

template <typename Base>
void CZPFrame<Base>::OnUpdateFilePrint(CCmdUI* ui) {
  ui->Enable(IsOpen() ? TRUE : FALSE);
}

template <typename Base>
void CZPFrame<Base>::OnUpdateZpPagePrint(CCmdUI* ui) {
  ui->Enable(CanZoom() ? TRUE : FALSE);
}

template <typename Base>
void CZPFrame<Base>::OnUpdateZpFileExport(CCmdUI* ui) {
  ui->Enable(g_bFilesOpeningEnabled != 0 && IsOpen() ? TRUE : FALSE);
}

template <typename Base>
void CZPFrame<Base>::OnUpdateZpFirstPage(CCmdUI* ui) {
  ui->Enable(IsOpen() && Page() != 0 ? TRUE : FALSE);
}

template <typename Base>
void CZPFrame<Base>::OnUpdateZpPrevPage(CCmdUI* ui) {
  ui->Enable(Page() >= 1 ? TRUE : FALSE);
}

template <typename Base>
void CZPFrame<Base>::OnUpdateZpLastPage(CCmdUI* ui) {
  ui->Enable(Page() < Pages() - 1 ? TRUE : FALSE);
}

template <typename Base>
void CZPFrame<Base>::OnUpdateZpGotoPage(CCmdUI* ui) {
  ui->Enable(Pages() >= 2 ? TRUE : FALSE);
}
