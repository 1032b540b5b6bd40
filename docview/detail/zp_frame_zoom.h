#pragma once

#include "docview/zp_frame.h"
#include "imagewindow/image_window.h"
#include "library/settings.h"
#include "platform/framework/cmd_ui.h"
#include "platform/framework/menu.h"
#include "viewing/bars/scale_text.h"
#include "viewing/bars/viewer_bars.h"
#include "viewing/commands/custom_zoom_dlg.h"

// The scale and mouse commands of a document's frame. For the sources of the two frames.

template <typename Base>
void CZPFrame<Base>::UpdateZoomStatus() {
  if (m_pView == nullptr || !HasBars() || !OwnsBars()) return;
  viewer_bars::ShowScale(*StatusBar(), *ScaleCombo(), m_pView->GetScalePercent(), TRUE);
  SaveZoomFactor();
}

template <typename Base>
void CZPFrame<Base>::SaveZoomFactor() {
  // Starts anew with each step of the user, so that a series of them ends in one write.
  this->SetTimer(ID_ZP_TIMER_SAVE_ZOOM, viewer_bars::kSaveDelay, nullptr);
}

template <typename Base>
void CZPFrame<Base>::OnTimer(std::uintptr_t timer) {
  if (timer != ID_ZP_TIMER_SAVE_ZOOM) {
    this->Default();
    return;
  }
  this->KillTimer(timer);
  if (m_pView != nullptr) SettingsWriteInt("", "Scale", m_pView->GetScalePercent());
}

// Zoom

template <typename Base>
void CZPFrame<Base>::OnZpZoomIn() {
  m_pView->ZoomIn();
  UpdateZoomStatus();
}

template <typename Base>
void CZPFrame<Base>::OnZpZoomOut() {
  m_pView->ZoomOut();
  UpdateZoomStatus();
}

template <typename Base>
void CZPFrame<Base>::ToggleFit(int mode) {
  m_pView->SetFitMode(m_pView->GetFitMode() != mode ? mode : int{FitModeNone});
  UpdateZoomStatus();
}

template <typename Base>
void CZPFrame<Base>::OnZpZoomBestFit() {
  ToggleFit(FitModeBest);
}

template <typename Base>
void CZPFrame<Base>::OnZpZoomFitToHeight() {
  ToggleFit(FitModeHeight);
}

template <typename Base>
void CZPFrame<Base>::OnZpZoomFitToWidth() {
  ToggleFit(FitModeWidth);
}

template <typename Base>
void CZPFrame<Base>::OnZpZoomCustom() {
  using namespace viewer_bars;
  const int percent = m_pView->GetScalePercent();
  CCustomZoomDlg dialog(percent, kLowestPercent, kHighestPercent, nullptr);
  const auto chosen = static_cast<int>(dialog.DoModal());
  if (chosen < 1 || chosen == percent) return;
  m_pView->ZoomToScaleFactor(chosen * kFactorOfPercent);
  UpdateZoomStatus();
}

template <typename Base>
void CZPFrame<Base>::OnComboScaleSelChange() {
  if (!HasBars()) return;
  // A scale that is refused leaves the old one, which the combo then shows again.
  const CString chosen = viewer_bars::ChosenScale(*ScaleCombo(), true);
  m_pView->ZoomToScaleFactor(PercentOfText(chosen) * viewer_bars::kFactorOfPercent);
  UpdateZoomStatus();
}

template <typename Base>
void CZPFrame<Base>::OnComboScaleKillFocus() {
  if (HasBars()) ScaleCombo()->SetWindowText(ScaleText(m_pView->GetScalePercent()));
}

// Mouse

template <typename Base>
void CZPFrame<Base>::OnZpZoomSelected() {
  m_pView->ToggleZoomSelect();
}

template <typename Base>
void CZPFrame<Base>::OnZpDragMode() {
  m_pView->SetMouseMode(ViewMouseDrag);
}

template <typename Base>
void CZPFrame<Base>::OnZpZoomInMode() {
  m_pView->SetMouseMode(ViewMouseZoomIn);
}

template <typename Base>
void CZPFrame<Base>::OnZpZoomOutMode() {
  m_pView->SetMouseMode(ViewMouseZoomOut);
}

// States

template <typename Base>
bool CZPFrame<Base>::UpdatePopup(CCmdUI* ui, bool enabled) {
  if (ui->m_pSubMenu == nullptr) return false;
  ui->m_pMenu->EnableMenuItem(ui->m_nIndex, MF_BYPOSITION | (enabled ? MF_ENABLED : MF_GRAYED));
  return true;
}

template <typename Base>
void CZPFrame<Base>::UpdateMode(CCmdUI* ui, bool enabled, bool current) {
  ui->Enable(enabled ? TRUE : FALSE);
  ui->SetRadio(enabled && current ? TRUE : FALSE);
}

template <typename Base>
void CZPFrame<Base>::UpdateFit(CCmdUI* ui, int mode) {
  ui->Enable(CanZoom() ? TRUE : FALSE);
  ui->SetCheck(CanZoom() && m_pView->GetFitMode() == mode ? 1 : 0);
}

template <typename Base>
void CZPFrame<Base>::OnUpdateZpZoomIn(CCmdUI* ui) {
  if (!UpdatePopup(ui, CanZoom())) ui->Enable(IsShown() && m_pView->ZoomInPossible() != 0 ? TRUE : FALSE);
}

template <typename Base>
void CZPFrame<Base>::OnUpdateZpZoomOut(CCmdUI* ui) {
  ui->Enable(IsShown() && m_pView->ZoomOutPossible() != 0 ? TRUE : FALSE);
}

template <typename Base>
void CZPFrame<Base>::OnUpdateZpZoomBestFit(CCmdUI* ui) {
  UpdateFit(ui, FitModeBest);
}

template <typename Base>
void CZPFrame<Base>::OnUpdateZpZoomFitToHeight(CCmdUI* ui) {
  UpdateFit(ui, FitModeHeight);
}

template <typename Base>
void CZPFrame<Base>::OnUpdateZpZoomFitToWidth(CCmdUI* ui) {
  UpdateFit(ui, FitModeWidth);
}

template <typename Base>
void CZPFrame<Base>::OnUpdateZpZoomCustom(CCmdUI* ui) {
  ui->Enable(CanZoom() ? TRUE : FALSE);
}

template <typename Base>
void CZPFrame<Base>::OnUpdateZpZoomSelected(CCmdUI* ui) {
  ui->Enable(CanZoom() ? TRUE : FALSE);
  if (CanZoom()) ui->SetCheck(m_pView->IsZoomSelected());
}

template <typename Base>
void CZPFrame<Base>::OnUpdateZpDragMode(CCmdUI* ui) {
  if (!UpdatePopup(ui, IsOpen()))
    UpdateMode(ui, IsOpen(), m_pView != nullptr && view::ClickDrags(m_pView->GetMouseMode()));
}

template <typename Base>
void CZPFrame<Base>::OnUpdateZpZoomInMode(CCmdUI* ui) {
  UpdateMode(ui, CanZoom(), m_pView != nullptr && m_pView->GetMouseMode() == ViewMouseZoomIn);
}

template <typename Base>
void CZPFrame<Base>::OnUpdateZpZoomOutMode(CCmdUI* ui) {
  UpdateMode(ui, CanZoom(), m_pView != nullptr && m_pView->GetMouseMode() == ViewMouseZoomOut);
}
