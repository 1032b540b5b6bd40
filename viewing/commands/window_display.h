#pragma once

#include "viewing/commands/viewer_display.h"

/// What a display has in common that shows its pages in one window: scale and mouse. Modes: the window's
/// mouse modes, in the order of Click.
template <typename Window, int... Modes>
class WindowDisplay : public ViewerDisplay {
 public:
  /// The frame's field, which must not be null when the display is used.
  explicit WindowDisplay(Window*& window) : m_window(window) {}

  int ScalePercent() const override { return m_window->GetScalePercent(); }
  void Scale(double factor) override { m_window->ZoomToScaleFactor(factor); }
  void StepIn() override { m_window->ZoomIn(); }
  void StepOut() override { m_window->ZoomOut(); }
  bool CanStepIn() const override { return m_window->ZoomInPossible(); }
  bool CanStepOut() const override { return m_window->ZoomOutPossible(); }

  void ToggleSelection() override { m_window->ToggleZoomSelect(); }
  bool IsSelecting() const override { return m_window->IsZoomSelected(); }
  void SetClick(Click what) override { m_window->SetMouseMode(ModeOf(what)); }
  bool IsClick(Click what) const override { return m_window->GetMouseMode() == ModeOf(what); }

 protected:
  static int ModeOf(Click what) {
    constexpr int kModes[] = {Modes...};
    return kModes[static_cast<int>(what)];
  }

  Window*& m_window;
};
