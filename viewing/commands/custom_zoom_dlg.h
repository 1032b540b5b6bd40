#pragma once

#include "library/export.h"
#include "platform/framework/dialog.h"
#include "platform/framework/standard_controls.h"

/// Asks for a scale in percent. DoModal gives it, or 0 if the user cancels.
class TESSAREL_API CCustomZoomDlg : public CDialog {
 public:
  CCustomZoomDlg(int current, int min, int max, CWnd* parent);
  ~CCustomZoomDlg() override = default;
  BOOL PreTranslateMessage(MSG* message) override;

 protected:
  void DoDataExchange(CDataExchange* exchange) override;
  BOOL OnInitDialog() override;
  void OnCancel() override;
  void OnOk();  // NOLINT(bugprone-virtual-near-miss): the button is not IDOK

  CEdit m_wndEdit;
  int m_nMax;
  int m_nMin;
  int m_nCurrent;

  DECLARE_MESSAGE_MAP()
};
