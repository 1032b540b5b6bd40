#pragma once

#include "docview/zp_frame.h"

class CSeparatorsHidingToolBar;

/// A document window of a CZPmdiFrame, whose bars it uses while it is the active one. Under another main
/// window it can't be made.
class TESSAREL_API CZPmdiChild : public CZPFrame<CMDIChildWnd> {
  DECLARE_DYNCREATE(CZPmdiChild)
 public:
  CStatusBar* m_pStatusBar = nullptr;  ///< all four are the main window's
  CSeparatorsHidingToolBar* m_pToolBar = nullptr;
  CComboPageNum* m_pComboPage = nullptr;
  CComboScale* m_pComboScale = nullptr;

 protected:
  CZPmdiChild() = default;
  ~CZPmdiChild() override = default;

  viewer_bars::ViewerBars CommandBars() override { return {m_pStatusBar, m_pComboPage, m_pComboScale}; }
  bool OwnsBars() override;
  CWnd* JobParent() override { return GetMDIFrame(); }

  int OnCreate(LPCREATESTRUCT cs);
  void OnMDIActivate(BOOL activate, CWnd* activated, CWnd* deactivated);

  DECLARE_MESSAGE_MAP()
};
