#pragma once

#include "frames/viewer_frame.h"
#include "library/resource_ids.h"
#include "library/settings.h"
#include "platform/framework/cmd_ui.h"
#include "platform/framework/menu.h"
#include "viewing/bars/scale_text.h"
#include "viewing/bars/viewer_bars.h"
#include "viewing/commands/custom_zoom_dlg.h"

// The viewer frame's zoom, rotation and mouse-mode commands. For the sources of the two frames.

template <typename Base>
void CViewerFrame<Base>::ShowZoomStatus(BOOL update) {
  viewer_bars::ShowScale(m_wndStatusBar, m_wndComboScale, m_pImageWnd->GetScalePercent(), update);
}

template <typename Base>
void CViewerFrame<Base>::UpdateZoomStatus() {
  if (m_pImageWnd == nullptr) return;
  ShowZoomStatus(TRUE);
  SaveZoomFactor();
}

template <typename Base>
void CViewerFrame<Base>::SaveZoomFactor() {
  // Starts anew with each step of the user, so that a series of them ends in one write.
  this->SetTimer(ID_ZP_TIMER_SAVE_ZOOM, viewer_bars::kSaveDelay, nullptr);
}

template <typename Base>
void CViewerFrame<Base>::OnTimer(std::uintptr_t timer) {
  if (timer != ID_ZP_TIMER_SAVE_ZOOM) {
    this->Default();
    return;
  }
  this->KillTimer(timer);
  if (m_pImageWnd != nullptr) SettingsWriteInt("", "Scale", m_pImageWnd->GetScalePercent());
}

// Zoom

template <typename Base>
void CViewerFrame<Base>::OnZoomIn() {
  if (m_pImageWnd == nullptr) return;
  m_pImageWnd->ZoomIn();
  UpdateZoomStatus();
}

template <typename Base>
void CViewerFrame<Base>::OnZoomOut() {
  if (m_pImageWnd == nullptr) return;
  m_pImageWnd->ZoomOut();
  UpdateZoomStatus();
}

template <typename Base>
void CViewerFrame<Base>::OnZoomBestFit() {
  if (m_pImageWnd == nullptr) return;
  m_pImageWnd->BestFit();
  UpdateZoomStatus();
}

template <typename Base>
void CViewerFrame<Base>::OnZoomFitToHeight() {
  if (m_pImageWnd == nullptr) return;
  m_pImageWnd->FitToHeight();
  UpdateZoomStatus();
}

template <typename Base>
void CViewerFrame<Base>::OnZoomFitToWidth() {
  if (m_pImageWnd == nullptr) return;
  m_pImageWnd->FitToWidth();
  UpdateZoomStatus();
}

template <typename Base>
void CViewerFrame<Base>::OnZoomCustom() {
  using namespace viewer_bars;
  if (m_pImageWnd == nullptr) return;
  const int percent = m_pImageWnd->GetScalePercent();
  CCustomZoomDlg dialog(percent, kLowestPercent, kHighestPercent, nullptr);
  const auto chosen = static_cast<int>(dialog.DoModal());
  if (chosen < 1 || chosen == percent) return;
  m_pImageWnd->ZoomToScaleFactor(chosen * kFactorOfPercent);
  UpdateZoomStatus();
}

template <typename Base>
void CViewerFrame<Base>::OnComboScaleSelChange() {
  if (m_pImageWnd == nullptr) return;
  // A scale that is refused leaves the old one, which the combo then shows again.
  const CString chosen = viewer_bars::ChosenScale(m_wndComboScale, Traits::kScaleFromEntry);
  m_pImageWnd->ZoomToScaleFactor(PercentOfText(chosen) * viewer_bars::kFactorOfPercent);
  UpdateZoomStatus();
}

template <typename Base>
void CViewerFrame<Base>::OnComboScaleKillFocus() {
  if (m_pImageWnd != nullptr) m_wndComboScale.SetWindowText(ScaleText(m_pImageWnd->GetScalePercent()));
}

// Selection, mouse modes, rotation

template <typename Base>
void CViewerFrame<Base>::OnZoomSelected() {
  if (m_pImageWnd != nullptr) m_pImageWnd->ToggleZoomSelect();
}

template <typename Base>
void CViewerFrame<Base>::OnDragMode() {
  if (m_pImageWnd != nullptr) m_pImageWnd->SetMouseMode(MouseModeDrag);
}

template <typename Base>
void CViewerFrame<Base>::OnZpZoomInMode() {
  if (m_pImageWnd != nullptr) m_pImageWnd->SetMouseMode(MouseModeZoomIn);
}

template <typename Base>
void CViewerFrame<Base>::OnZpZoomOutMode() {
  if (m_pImageWnd != nullptr) m_pImageWnd->SetMouseMode(MouseModeZoomOut);
}

template <typename Base>
void CViewerFrame<Base>::OnRotateLeft() {
  if (m_pImageWnd != nullptr) m_pImageWnd->Rotate(-90, true);
}

template <typename Base>
void CViewerFrame<Base>::OnRotateRight() {
  if (m_pImageWnd != nullptr) m_pImageWnd->Rotate(90, true);
}

template <typename Base>
void CViewerFrame<Base>::OnRotate180() {
  if (m_pImageWnd != nullptr) m_pImageWnd->Rotate(180, true);
}

// States

template <typename Base>
void CViewerFrame<Base>::EnableWithPage(CCmdUI* ui) {
  ui->Enable(HasPage() ? TRUE : FALSE);
}

template <typename Base>
bool CViewerFrame<Base>::UpdatePopup(CCmdUI* ui) {
  // The first item of a pop-up is asked for the pop-up too.
  if (ui->m_pSubMenu == nullptr) return false;
  ui->m_pMenu->EnableMenuItem(ui->m_nIndex, MF_BYPOSITION | (HasPage() ? MF_ENABLED : MF_GRAYED));
  return true;
}

template <typename Base>
void CViewerFrame<Base>::UpdateMode(CCmdUI* ui, int mode) {
  EnableWithPage(ui);
  ui->SetCheck(HasPage() && m_pImageWnd->m_nMouseMode == mode ? 1 : 0);
}

template <typename Base>
void CViewerFrame<Base>::OnUpdateZoomIn(CCmdUI* ui) {
  if (!UpdatePopup(ui)) ui->Enable(HasPage() && m_pImageWnd->ZoomInPossible() ? TRUE : FALSE);
}

template <typename Base>
void CViewerFrame<Base>::OnUpdateZoomOut(CCmdUI* ui) {
  ui->Enable(HasPage() && m_pImageWnd->ZoomOutPossible() ? TRUE : FALSE);
}

template <typename Base>
void CViewerFrame<Base>::OnUpdateZoomBestFit(CCmdUI* ui) {
  EnableWithPage(ui);
}

template <typename Base>
void CViewerFrame<Base>::OnUpdateZoomFitToHeight(CCmdUI* ui) {
  EnableWithPage(ui);
}

template <typename Base>
void CViewerFrame<Base>::OnUpdateZoomFitToWidth(CCmdUI* ui) {
  EnableWithPage(ui);
}

template <typename Base>
void CViewerFrame<Base>::OnUpdateZoomCustom(CCmdUI* ui) {
  EnableWithPage(ui);
}

template <typename Base>
void CViewerFrame<Base>::OnUpdateZoomSelected(CCmdUI* ui) {
  EnableWithPage(ui);
  if (HasPage()) ui->SetCheck(m_pImageWnd->m_bZoomSelect ? 1 : 0);
}

template <typename Base>
void CViewerFrame<Base>::OnUpdateDragMode(CCmdUI* ui) {
  if (!UpdatePopup(ui)) UpdateMode(ui, MouseModeDrag);
}

template <typename Base>
void CViewerFrame<Base>::OnUpdateZpZoomInMode(CCmdUI* ui) {
  UpdateMode(ui, MouseModeZoomIn);
}

template <typename Base>
void CViewerFrame<Base>::OnUpdateZpZoomOutMode(CCmdUI* ui) {
  UpdateMode(ui, MouseModeZoomOut);
}

template <typename Base>
void CViewerFrame<Base>::OnUpdateRotateLeft(CCmdUI* ui) {
  EnableWithPage(ui);
}

template <typename Base>
void CViewerFrame<Base>::OnUpdateRotateRight(CCmdUI* ui) {
  EnableWithPage(ui);
}

template <typename Base>
void CViewerFrame<Base>::OnUpdateRotate180(CCmdUI* ui) {
  EnableWithPage(ui);
}
