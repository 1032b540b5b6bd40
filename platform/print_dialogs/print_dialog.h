#pragma once

#include "platform/framework/dialog.h"
#include "platform/spooler/print_records.h"

/// Asks for printer, range and copies. TRUE: the record holds the answer. FALSE: the user has given up, or
/// CommDlgExtendedError isn't 0. PD_RETURNDEFAULT shows nothing and answers with the default printer; there
/// is no dialog without a template (PD_ENABLEPRINTTEMPLATE, whose controls carry the usual numbers).
PLATFORM_API BOOL PrintDlgA(PRINTDLGA* dialog);
inline BOOL PrintDlg(PRINTDLGA* dialog) {
  return PrintDlgA(dialog);
}
/// CDERR_... and PDERR_... of the latest PrintDlg; 0 if it went well or was cancelled.
PLATFORM_API DWORD CommDlgExtendedError();

/// The print dialog as an object.
class PLATFORM_API CPrintDialog : public CDialog {
  DECLARE_DYNAMIC(CPrintDialog)
 public:
  /// printSetupOnly must be FALSE: there is no dialog for that alone.
  explicit CPrintDialog(BOOL printSetupOnly,
                        DWORD flags = PD_ALLPAGES | PD_USEDEVMODECOPIES | PD_NOPAGENUMS | PD_HIDEPRINTTOFILE |
                                      PD_NOSELECTION,
                        CWnd* parent = nullptr);
  CPrintDialog(const CPrintDialog&) = delete;
  CPrintDialog& operator=(const CPrintDialog&) = delete;
  ~CPrintDialog() override = default;

 private:
  PRINTDLGA m_pdActual{};

 public:
  PRINTDLGA& m_pd = m_pdActual;  ///< its handles and device context are the caller's

  /// IDOK or IDCANCEL.
  int DoModal() override;
  /// Fills the record for the default printer without asking. FALSE if there is none.
  BOOL GetDefaults();
  HDC GetPrinterDC() const { return m_pd.hDC; }
  BOOL PrintAll() const { return PrintRange() == 0 && PrintSelection() == 0; }
  BOOL PrintRange() const { return (m_pd.Flags & PD_PAGENUMS) != 0; }
  BOOL PrintSelection() const { return (m_pd.Flags & PD_SELECTION) != 0; }
  BOOL PrintCollate() const { return (m_pd.Flags & PD_COLLATE) != 0; }
  int GetCopies() const { return m_pd.nCopies; }
  int GetFromPage() const { return PrintRange() != 0 ? m_pd.nFromPage : -1; }
  int GetToPage() const { return PrintRange() != 0 ? m_pd.nToPage : -1; }
  CString GetDeviceName() const;
};
