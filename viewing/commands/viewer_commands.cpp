#include "viewing/commands/viewer_commands.h"

#include "library/resource_ids.h"
#include "platform/framework/cmd_ui.h"
#include "platform/framework/menu.h"
#include "viewing/bars/scale_text.h"
#include "viewing/bars/viewer_bars.h"
#include "viewing/commands/custom_zoom_dlg.h"
#include "viewing/commands/go_to_page_dlg.h"
#include "viewing/saved_scale.h"
#include "viewing/zoom_steps.h"

namespace {

/// The first item of a pop-up is asked for the pop-up too. True if that was it.
bool UpdatePopup(CCmdUI* ui, bool enabled) {
  if (ui->m_pSubMenu == nullptr) return false;
  ui->m_pMenu->EnableMenuItem(ui->m_nIndex, MF_BYPOSITION | (enabled ? MF_ENABLED : MF_GRAYED));
  return true;
}

}  // namespace

BEGIN_TEMPLATE_MESSAGE_MAP(CViewerCommands, Base, Base)
ON_WM_TIMER()
ON_COMMAND(ID_FILE_PRINT, OnFilePrint)
ON_UPDATE_COMMAND_UI(ID_FILE_PRINT, OnUpdateFilePrint)
ON_COMMAND(ID_ZP_PAGE_PRINT, OnPagePrint)
ON_UPDATE_COMMAND_UI(ID_ZP_PAGE_PRINT, OnUpdatePagePrint)
ON_COMMAND(ID_ZP_PAGE_PROPERTIES, OnPageProperties)
ON_UPDATE_COMMAND_UI(ID_ZP_PAGE_PROPERTIES, OnUpdatePageProperties)

ON_COMMAND(ID_ZP_FIRST_PAGE, OnFirstPage)
ON_UPDATE_COMMAND_UI(ID_ZP_FIRST_PAGE, OnUpdateFirstPage)
ON_COMMAND(ID_ZP_PREV_PAGE, OnPrevPage)
ON_UPDATE_COMMAND_UI(ID_ZP_PREV_PAGE, OnUpdatePrevPage)
ON_COMMAND(ID_ZP_NEXT_PAGE, OnNextPage)
ON_UPDATE_COMMAND_UI(ID_ZP_NEXT_PAGE, OnUpdateNextPage)
ON_COMMAND(ID_ZP_LAST_PAGE, OnLastPage)
ON_UPDATE_COMMAND_UI(ID_ZP_LAST_PAGE, OnUpdateLastPage)
ON_COMMAND(ID_ZP_GOTO_PAGE, OnGotoPage)
ON_UPDATE_COMMAND_UI(ID_ZP_GOTO_PAGE, OnUpdateGotoPage)
ON_CONTROL(CBN_SELENDOK, ID_ZP_COMBO_PAGE, OnComboPageSelChange)
ON_CONTROL(CBN_KILLFOCUS, ID_ZP_COMBO_PAGE, OnComboPageKillFocus)

ON_COMMAND(ID_ZP_ZOOM_IN, OnZoomIn)
ON_UPDATE_COMMAND_UI(ID_ZP_ZOOM_IN, OnUpdateZoomIn)
ON_COMMAND(ID_ZP_ZOOM_OUT, OnZoomOut)
ON_UPDATE_COMMAND_UI(ID_ZP_ZOOM_OUT, OnUpdateZoomOut)
ON_COMMAND(ID_ZP_ZOOM_BEST_FIT, OnZoomBestFit)
ON_UPDATE_COMMAND_UI(ID_ZP_ZOOM_BEST_FIT, OnUpdateZoomBestFit)
ON_COMMAND(ID_ZP_ZOOM_FIT_TO_HEIGHT, OnZoomFitToHeight)
ON_UPDATE_COMMAND_UI(ID_ZP_ZOOM_FIT_TO_HEIGHT, OnUpdateZoomFitToHeight)
ON_COMMAND(ID_ZP_ZOOM_FIT_TO_WIDTH, OnZoomFitToWidth)
ON_UPDATE_COMMAND_UI(ID_ZP_ZOOM_FIT_TO_WIDTH, OnUpdateZoomFitToWidth)
ON_COMMAND(ID_ZP_ZOOM_CUSTOM, OnZoomCustom)
ON_UPDATE_COMMAND_UI(ID_ZP_ZOOM_CUSTOM, OnUpdateZoomCustom)
ON_CONTROL(CBN_SELENDOK, ID_ZP_COMBO_SCALE, OnComboScaleSelChange)
ON_CONTROL(CBN_KILLFOCUS, ID_ZP_COMBO_SCALE, OnComboScaleKillFocus)

ON_COMMAND(ID_ZP_ZOOM_SELECTED, OnZoomSelected)
ON_UPDATE_COMMAND_UI(ID_ZP_ZOOM_SELECTED, OnUpdateZoomSelected)
ON_COMMAND(ID_ZP_DRAG_MODE, OnDragMode)
ON_UPDATE_COMMAND_UI(ID_ZP_DRAG_MODE, OnUpdateDragMode)
ON_COMMAND(ID_ZP_ZOOM_IN_MODE, OnZpZoomInMode)
ON_UPDATE_COMMAND_UI(ID_ZP_ZOOM_IN_MODE, OnUpdateZpZoomInMode)
ON_COMMAND(ID_ZP_ZOOM_OUT_MODE, OnZpZoomOutMode)
ON_UPDATE_COMMAND_UI(ID_ZP_ZOOM_OUT_MODE, OnUpdateZpZoomOutMode)
ON_COMMAND(ID_ZP_ROTATE_LEFT, OnRotateLeft)
ON_UPDATE_COMMAND_UI(ID_ZP_ROTATE_LEFT, OnUpdateRotateLeft)
ON_COMMAND(ID_ZP_ROTATE_RIGHT, OnRotateRight)
ON_UPDATE_COMMAND_UI(ID_ZP_ROTATE_RIGHT, OnUpdateRotateRight)
ON_COMMAND(ID_ZP_ROTATE_180, OnRotate180)
ON_UPDATE_COMMAND_UI(ID_ZP_ROTATE_180, OnUpdateRotate180)
END_MESSAGE_MAP()

template <typename Base>
void CViewerCommands<Base>::Enable(CCmdUI* ui, bool enabled) {
  ui->Enable(enabled ? TRUE : FALSE);
}

// What the commands work on

// Pages

template <typename Base>
void CViewerCommands<Base>::ShowPage(int page) {
  ViewerDisplay* display = CommandDisplay();
  if (display != nullptr && display->ShowPage(page)) FollowPage();
}

template <typename Base>
void CViewerCommands<Base>::OnGotoPage() {
  CGoToPageDlg dialog(Page(), Pages(), nullptr);
  const auto page = static_cast<int>(dialog.DoModal());
  if (page >= 1 && this->m_hWnd != nullptr) ShowOtherPage(page);
}

template <typename Base>
void CViewerCommands<Base>::OnComboPageSelChange() {
  const viewer_bars::ViewerBars bars = viewer_bars::Present(CommandBars());
  if (bars.page == nullptr) return;
  CComboPageNum& combo = *bars.page;
  if (combo.SendMessage(CB_GETCURSEL) == CB_ERR) combo.SendMessage(CB_SETCURSEL, 0);
  ShowOtherPage(static_cast<int>(combo.SendMessage(CB_GETCURSEL)) + 1);
}

template <typename Base>
void CViewerCommands<Base>::OnComboPageKillFocus() {
  const viewer_bars::ViewerBars bars = viewer_bars::Present(CommandBars());
  // A box or another program that takes the keyboard leaves what is being typed.
  if (bars.page == nullptr || ::GetFocus() == nullptr) return;
  CString number;
  number.Format("%d", Page());
  bars.page->SetWindowText(number);
}

// Scale

template <typename Base>
void CViewerCommands<Base>::UpdateZoomStatus() {
  const ViewerDisplay* display = CommandDisplay();
  const viewer_bars::ViewerBars bars = viewer_bars::Present(CommandBars());
  if (display == nullptr || !OwnsBars()) return;
  viewer_bars::ShowScale(bars, display->ScalePercent(), TRUE);
  SaveZoomFactor();
}

template <typename Base>
void CViewerCommands<Base>::SaveZoomFactor() {
  // Starts anew with each step of the user, so that a series of them ends in one write.
  this->SetTimer(ID_ZP_TIMER_SAVE_ZOOM, saved_scale::kDelay, nullptr);
}

template <typename Base>
void CViewerCommands<Base>::OnTimer(std::uintptr_t timer) {
  if (timer != ID_ZP_TIMER_SAVE_ZOOM) {
    this->Default();
    return;
  }
  this->KillTimer(timer);
  if (const ViewerDisplay* display = CommandDisplay()) saved_scale::Write(display->ScalePercent());
}

template <typename Base>
void CViewerCommands<Base>::OnZoomCustom() {
  if (CommandDisplay() == nullptr) return;
  const int percent = CommandDisplay()->ScalePercent();
  CCustomZoomDlg dialog(percent, zoom::kLowestPercent, zoom::kHighestPercent, nullptr);
  const auto chosen = static_cast<int>(dialog.DoModal());
  if (chosen >= 1 && chosen != percent && this->m_hWnd != nullptr)
    Rescale(&ViewerDisplay::Scale, zoom::FactorOfPercent(chosen));
}

template <typename Base>
void CViewerCommands<Base>::OnComboScaleSelChange() {
  const viewer_bars::ViewerBars bars = viewer_bars::Present(CommandBars());
  if (CommandDisplay() == nullptr || bars.scale == nullptr) return;
  // A scale that is refused leaves the old one, which the combo then shows again.
  const CString chosen = viewer_bars::ChosenScale(*bars.scale, m_kind.scaleFromEntry);
  Rescale(&ViewerDisplay::Scale, zoom::FactorOfPercent(PercentOfText(chosen)));
}

template <typename Base>
void CViewerCommands<Base>::OnComboScaleKillFocus() {
  const ViewerDisplay* display = CommandDisplay();
  const viewer_bars::ViewerBars bars = viewer_bars::Present(CommandBars());
  if (display != nullptr && bars.scale != nullptr && ::GetFocus() != nullptr)
    bars.scale->SetWindowText(ScaleText(display->ScalePercent()));
}

template <typename Base>
void CViewerCommands<Base>::OnUpdateZoomIn(CCmdUI* ui) {
  if (!UpdatePopup(ui, IsShown())) Enable(ui, IsShown() && CommandDisplay()->CanStepIn());
}

template <typename Base>
void CViewerCommands<Base>::UpdateFit(CCmdUI* ui, int mode) {
  Enable(ui, IsShown());
  if (m_kind.marksFits) ui->SetCheck(IsShown() && CommandDisplay()->IsFitting(mode) ? 1 : 0);
}

// Mouse and rotation

template <typename Base>
void CViewerCommands<Base>::OnUpdateZoomSelected(CCmdUI* ui) {
  Enable(ui, IsShown());
  if (IsShown()) ui->SetCheck(CommandDisplay()->IsSelecting() ? 1 : 0);
}

template <typename Base>
void CViewerCommands<Base>::UpdateClick(CCmdUI* ui, bool enabled, Click what) {
  Enable(ui, enabled);
  const int current = enabled && CommandDisplay()->IsClick(what) ? 1 : 0;
  if (m_kind.clicksAreRadio)
    ui->SetRadio(current);
  else
    ui->SetCheck(current);
}

template <typename Base>
void CViewerCommands<Base>::OnUpdateDragMode(CCmdUI* ui) {
  if (!UpdatePopup(ui, IsOpen())) UpdateClick(ui, IsOpen(), Click::Drag);
}

template class CViewerCommands<CFrameWnd>;
template class CViewerCommands<CMDIChildWnd>;
