#pragma once

#include "frames/custom_zoom_dlg.h"
#include "frames/scale_text.h"
#include "frames/viewer_frame.h"
#include "library/resource_ids.h"
#include "library/settings.h"
#include "platform/framework/cmd_ui.h"
#include "platform/framework/menu.h"

// The viewer frame's zoom, rotation and mouse-mode commands. For the sources of the two frames.

namespace viewer_zoom {

inline constexpr UINT kSaveDelay = 1000;  // ms
inline constexpr int kLowestPercent = 1;
inline constexpr int kHighestPercent = 1000;
inline constexpr double kFactorOfPercent = 0.01;

}  // namespace viewer_zoom

template <typename Base>
void CViewerFrame<Base>::ShowZoomStatus(BOOL update) {
  const int percent = m_pImageWnd->GetScalePercent();
  CString text;
  text.FormatMessage(ID_ZP_INDICATOR_ZOOM, percent);
  SetPane(ID_ZP_INDICATOR_ZOOM, text, update);
  const CString scale = ScaleText(percent);
  // An entry picked before must not stand for a scale that has come by another way.
  const int entry = m_wndComboScale.GetCurSel();
  CString picked;
  if (entry != CB_ERR) m_wndComboScale.GetLBText(entry, picked);
  if (picked != scale) m_wndComboScale.SetCurSel(-1);
  m_wndComboScale.SetWindowText(scale);
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
  this->SetTimer(ID_ZP_TIMER_SAVE_ZOOM, viewer_zoom::kSaveDelay, nullptr);
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
  using namespace viewer_zoom;
  if (m_pImageWnd == nullptr) return;
  const int percent = m_pImageWnd->GetScalePercent();
  CCustomZoomDlg dialog(percent, kLowestPercent, kHighestPercent, nullptr);
  const auto chosen = static_cast<int>(dialog.DoModal());
  if (chosen < 1 || chosen == percent) return;
  m_pImageWnd->ZoomToScaleFactor(chosen * kFactorOfPercent);
  UpdateZoomStatus();
}

template <typename Base>
CString CViewerFrame<Base>::ChosenScale() {
  CString text;
  if constexpr (Traits::kScaleFromEntry) {
    const auto entry = static_cast<int>(m_wndComboScale.SendMessage(CB_GETCURSEL));
    if (entry != CB_ERR) {
      m_wndComboScale.GetLBText(entry, text);
      return text;
    }
  }
  m_wndComboScale.GetWindowText(text);
  if (text.IsEmpty() != FALSE) {
    m_wndComboScale.SendMessage(CB_SETCURSEL, 0);
    m_wndComboScale.GetWindowText(text);
  }
  return text;
}

template <typename Base>
void CViewerFrame<Base>::OnComboScaleSelChange() {
  if (m_pImageWnd == nullptr) return;
  // A scale that is refused leaves the old one, which the combo then shows again.
  m_pImageWnd->ZoomToScaleFactor(PercentOfText(ChosenScale()) * viewer_zoom::kFactorOfPercent);
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
