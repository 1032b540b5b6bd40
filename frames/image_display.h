#pragma once

#include "imagewindow/image_window.h"
#include "viewing/commands/window_display.h"

/// An image window, as the commands of its frame know it. A page that can't be decoded counts as shown: the
/// window goes on with the picture gone.
class ImageDisplay : public WindowDisplay<CImageWindow, MouseModeDrag, MouseModeZoomIn, MouseModeZoomOut> {
 public:
  using WindowDisplay::WindowDisplay;

  int Page() const override { return m_window->m_nCurrPage; }
  int Pages() const override { return m_window->m_nMaxPage; }
  bool IsOpen() const override { return Page() >= 1; }
  bool IsShown() const override { return IsOpen(); }
  bool ShowPage(int page) override { return m_window->LoadPage(page); }
  void Rotate(int degrees) override { m_window->Rotate(degrees, true); }
  void ShowProperties() override { m_window->ShowPropertiesDlg(); }
  void PrintFile(CWnd* parent) override { m_window->PrintCurFile(parent, false); }
  void PrintPage() override { m_window->PrintCurrentPage(); }

  void Fit(int mode) override {
    if (mode == FitModeWidth)
      m_window->FitToWidth();
    else if (mode == FitModeHeight)
      m_window->FitToHeight();
    else
      m_window->BestFit();
  }
  bool IsFitting(int) const override { return false; }
};
