#pragma once

#include "docview/zp_main_frame.h"

/// The main window of a single-document viewer.
class TESSAREL_API CZPsdiFrame : public CZPMainFrame<CZPFrame<CFrameWnd>> {
  DECLARE_DYNCREATE(CZPsdiFrame)
 public:
  CZPsdiFrame() = default;

 protected:
  ~CZPsdiFrame() override = default;

  CStatusBar* StatusBar() override { return &m_wndStatusBar; }
  CComboPageNum* PageCombo() override { return &m_wndComboPage; }
  CComboScale* ScaleCombo() override { return &m_wndComboScale; }
};
