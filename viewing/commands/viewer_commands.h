#pragma once

#include <cstdint>
#include <type_traits>

#include "library/export.h"
#include "platform/framework/frame_wnd.h"
#include "platform/framework/mdi_wnd.h"
#include "viewing/bars/viewer_bars.h"
#include "viewing/commands/viewer_display.h"
#include "viewing/commands/viewer_kinds.h"
#include "viewing/fit.h"

/// A frame's commands about the page that it shows: paging, scale, mouse modes, rotation and printing, with
/// the states of their items, and the two combos. All commands of menu and toolbar end here: the display does
/// the work, and the bars are brought in line with it. Without a display they do nothing.
///
/// Base is the window that the frame is; what shows the pages and where the bars are is the derived class's
/// to say.
template <typename Base>
class CViewerCommands : public Base {
 public:
  /// Shows the scale in zoom pane and combo, and has it saved a second later.
  virtual void UpdateZoomStatus();

 protected:
  explicit CViewerCommands(const ViewerKind& kind) : m_kind(kind) {}
  ~CViewerCommands() override = default;

  // What the commands work on. The names keep clear of those that a host gives its own operations.

  /// Null while there is none.
  virtual ViewerDisplay* CommandDisplay() = 0;
  virtual viewer_bars::ViewerBars CommandBars() = 0;
  /// False while the bars show what another frame shows.
  virtual bool OwnsBars() { return true; }
  /// Brings the bars in line with a page that has just come up.
  virtual void FollowPage() = 0;
  /// The window that a print job disables.
  virtual CWnd* JobParent() { return this; }

  /// 0 without a display.
  int Page() { return Ask(&ViewerDisplay::Page); }
  int Pages() { return Ask(&ViewerDisplay::Pages); }
  bool IsOpen() { return Ask(&ViewerDisplay::IsOpen); }
  bool IsShown() { return Ask(&ViewerDisplay::IsShown); }
  /// Nothing for a number that is no page.
  void ShowPage(int page);
  /// Nothing for the page that is shown already, either.
  void ShowOtherPage(int page) {
    if (page != Page()) ShowPage(page);
  }

  static void Enable(CCmdUI* ui, bool enabled);

  // Pages

  void OnFirstPage() { ShowPage(1); }
  void OnPrevPage() { ShowPage(Page() - 1); }
  void OnNextPage() { ShowPage(Page() + 1); }
  void OnLastPage() { ShowPage(Pages()); }
  void OnGotoPage();
  void OnPageProperties() { Do(&ViewerDisplay::ShowProperties); }
  void OnComboPageSelChange();
  void OnComboPageKillFocus();
  void OnUpdateFirstPage(CCmdUI* ui) { Enable(ui, IsOpen() && Page() != 1); }
  void OnUpdatePrevPage(CCmdUI* ui) { Enable(ui, Page() >= 2); }
  void OnUpdateNextPage(CCmdUI* ui) { Enable(ui, Page() < Pages()); }
  void OnUpdateLastPage(CCmdUI* ui) { Enable(ui, Page() < Pages()); }
  void OnUpdateGotoPage(CCmdUI* ui) { Enable(ui, Pages() >= 2); }
  void OnUpdatePageProperties(CCmdUI* ui) { Enable(ui, IsShown()); }

  // Printing

  void OnFilePrint() { Do(&ViewerDisplay::PrintFile, JobParent()); }
  void OnPagePrint() { Do(&ViewerDisplay::PrintPage); }
  void OnUpdateFilePrint(CCmdUI* ui) { Enable(ui, IsOpen()); }
  void OnUpdatePagePrint(CCmdUI* ui) { Enable(ui, IsShown()); }

  // Scale

  /// Has the scale written to the user's settings once no further call has come for a second.
  void SaveZoomFactor();
  void OnTimer(std::uintptr_t timer);
  void OnZoomIn() { Rescale(&ViewerDisplay::StepIn); }
  void OnZoomOut() { Rescale(&ViewerDisplay::StepOut); }
  void OnZoomBestFit() { Rescale(&ViewerDisplay::Fit, FitModeBest); }
  void OnZoomFitToHeight() { Rescale(&ViewerDisplay::Fit, FitModeHeight); }
  void OnZoomFitToWidth() { Rescale(&ViewerDisplay::Fit, FitModeWidth); }
  void OnZoomCustom();
  void OnComboScaleSelChange();
  void OnComboScaleKillFocus();
  void OnUpdateZoomIn(CCmdUI* ui);
  void OnUpdateZoomOut(CCmdUI* ui) { Enable(ui, IsShown() && CommandDisplay()->CanStepOut()); }
  void OnUpdateZoomBestFit(CCmdUI* ui) { UpdateFit(ui, FitModeBest); }
  void OnUpdateZoomFitToHeight(CCmdUI* ui) { UpdateFit(ui, FitModeHeight); }
  void OnUpdateZoomFitToWidth(CCmdUI* ui) { UpdateFit(ui, FitModeWidth); }
  void OnUpdateZoomCustom(CCmdUI* ui) { Enable(ui, IsShown()); }

  // Mouse and rotation

  void OnZoomSelected() { Do(&ViewerDisplay::ToggleSelection); }
  void OnDragMode() { Do(&ViewerDisplay::SetClick, Click::Drag); }
  void OnZpZoomInMode() { Do(&ViewerDisplay::SetClick, Click::ZoomIn); }
  void OnZpZoomOutMode() { Do(&ViewerDisplay::SetClick, Click::ZoomOut); }
  void OnRotateLeft() { Do(&ViewerDisplay::Rotate, -90); }
  void OnRotateRight() { Do(&ViewerDisplay::Rotate, 90); }
  void OnRotate180() { Do(&ViewerDisplay::Rotate, 180); }
  void OnUpdateZoomSelected(CCmdUI* ui);
  void OnUpdateDragMode(CCmdUI* ui);
  void OnUpdateZpZoomInMode(CCmdUI* ui) { UpdateClick(ui, IsShown(), Click::ZoomIn); }
  void OnUpdateZpZoomOutMode(CCmdUI* ui) { UpdateClick(ui, IsShown(), Click::ZoomOut); }
  void OnUpdateRotateLeft(CCmdUI* ui) { Enable(ui, IsShown()); }
  void OnUpdateRotateRight(CCmdUI* ui) { Enable(ui, IsShown()); }
  void OnUpdateRotate180(CCmdUI* ui) { Enable(ui, IsShown()); }

 private:
  template <typename Answer>
  Answer Ask(Answer (ViewerDisplay::*question)() const) {
    const ViewerDisplay* display = CommandDisplay();
    return display == nullptr ? Answer{} : (display->*question)();
  }
  template <typename... Args>
  void Do(void (ViewerDisplay::*action)(Args...), std::type_identity_t<Args>... args) {
    ViewerDisplay* display = CommandDisplay();
    if (display != nullptr) (display->*action)(args...);
  }
  /// Changes the scale and shows the new one.
  template <typename... Args>
  void Rescale(void (ViewerDisplay::*change)(Args...), std::type_identity_t<Args>... args) {
    Do(change, args...);
    UpdateZoomStatus();
  }
  void UpdateFit(CCmdUI* ui, int mode);
  void UpdateClick(CCmdUI* ui, bool enabled, Click what);

  const ViewerKind& m_kind;

  DECLARE_MESSAGE_MAP()
};

extern template class TESSAREL_API CViewerCommands<CFrameWnd>;
extern template class TESSAREL_API CViewerCommands<CMDIChildWnd>;
