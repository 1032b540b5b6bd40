#pragma once

#include "library/export.h"
#include "platform/framework/dialog.h"
#include "platform/framework/standard_controls.h"

/// Asks for a page. DoModal gives its number, or 0 if the user cancels.
class TESSAREL_API CGoToPageDlg : public CDialog {
 public:
  CGoToPageDlg(int currentPage, int maxPage, CWnd* parent);
  ~CGoToPageDlg() override = default;

 protected:
  void DoDataExchange(CDataExchange* exchange) override;
  BOOL OnInitDialog() override;
  void OnOK() override;
  void OnCancel() override;
  void OnRadio1();
  void OnRadio3();

  int m_nRadio = -1;  ///< 0 the first page, 1 the last, 2 the number in the field
  CSpinButtonCtrl m_wndSpin;
  int m_nMaxPage;
  int m_nCurrPage;

 private:
  void EnableNumber(BOOL enable);
  /// In client coordinates.
  CRect PlaceOf(const CWnd* control) const;

  DECLARE_MESSAGE_MAP()
};
