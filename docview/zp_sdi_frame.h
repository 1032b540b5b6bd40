#pragma once

#include "docview/zp_main_frame.h"

/// The main window of a single-document viewer.
class TESSAREL_API CZPsdiFrame : public CZPMainFrame<CZPFrame<CFrameWnd>> {
  DECLARE_DYNCREATE(CZPsdiFrame)
 public:
  CZPsdiFrame() = default;

 protected:
  ~CZPsdiFrame() override = default;

  viewer_bars::ViewerBars CommandBars() override {
    return {&m_wndStatusBar, &m_wndComboPage, &m_wndComboScale};
  }
};
