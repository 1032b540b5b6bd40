#pragma once

#include "platform/framework/dialog.h"
#include "platform/spooler/printers.h"
#include "print/print_format.h"

class CPrintDialog;

/// Asks how large pages are printed. The one object of this class holds the format of the whole process.
class CPrintFormatDlg : public CDialog {
 public:
  CPrintFormatDlg();

  int m_nFormat = PrintFormatFitToPage;  ///< which radio button; any value may be stored

 protected:
  void DoDataExchange(CDataExchange* exchange) override;
  DECLARE_MESSAGE_MAP()
};

/// Stands on the screen while a job runs; its button asks the job to stop.
class CPrintAbortDlg : public CDialog {
 public:
  CPrintAbortDlg();

  int* m_pbAbort;  ///< the flag that is set; null once the job has ended

 protected:
  BOOL OnInitDialog() override;
  void OnCancel() override;
  /// A dialog that goes with its parent stops the job, since the window that asked for it is gone.
  void PostNcDestroy() override;
  DECLARE_MESSAGE_MAP()
};

// One job runs at a time, on the user-interface thread.

extern CPrintFormatDlg g_PrintFormatDlg;
extern int g_bPrintAbort;                 ///< set: the running job is to stop
extern CPrintAbortDlg* g_pPrintAbortDlg;  ///< of the running job, or null

/// Gives the print dialog the library's template, which has a button for the print format.
void CustomizePrintDialog(CPrintDialog& dialog);
/// The print dialog's hook: opens the print format dialog.
UINT PrintDlgHook(HWND dialog, UINT message, WPARAM wParam, LPARAM lParam);
/// The user, or the end of the program, has asked the job to stop, or what it prints is gone.
bool IsJobStopped();
/// Called while a job is spooled: dispatches what waits in the queue. FALSE: the job is to stop.
BOOL PrintAbortProc(HDC dc, int error);
