#include "print/print_dialogs.h"

#include "library/library_entry.h"
#include "library/resource_ids.h"
#include "platform/framework/wnd_messages.h"
#include "platform/print_dialogs/print_dialog.h"
#include "platform/window/pump.h"
#include "print/job_watch.h"

CPrintFormatDlg g_PrintFormatDlg;
int g_bPrintAbort = 0;
CPrintAbortDlg* g_pPrintAbortDlg = nullptr;

BEGIN_MESSAGE_MAP(CPrintFormatDlg, CDialog)
END_MESSAGE_MAP()

CPrintFormatDlg::CPrintFormatDlg() : CDialog(IDD_ZP_PRINT_FORMAT) {}

void CPrintFormatDlg::DoDataExchange(CDataExchange* exchange) {
  DDX_Radio(exchange, IDC_ZP_FORMAT_FIT, m_nFormat);
}

BEGIN_MESSAGE_MAP(CPrintAbortDlg, CDialog)
ON_COMMAND(IDC_ZP_ABORT_CANCEL, OnCancel)
END_MESSAGE_MAP()

CPrintAbortDlg::CPrintAbortDlg() : CDialog(IDD_ZP_PRINT_ABORT), m_pbAbort(&g_bPrintAbort) {}

BOOL CPrintAbortDlg::OnInitDialog() {
  CenterWindow(nullptr);
  return TRUE;
}

void CPrintAbortDlg::OnCancel() {
  if (m_pbAbort != nullptr) *m_pbAbort = 1;
  CDialog::OnCancel();
}

void CPrintAbortDlg::PostNcDestroy() {
  if (m_pbAbort != nullptr) *m_pbAbort = 1;
  CDialog::PostNcDestroy();
}

void CustomizePrintDialog(CPrintDialog& dialog) {
  dialog.m_pd.Flags |= PD_ENABLEPRINTTEMPLATE | PD_ENABLEPRINTHOOK;
  dialog.m_pd.hInstance = g_hLibraryInstance;
  dialog.m_pd.lpPrintTemplateName = "PRINT_DLG";
  dialog.m_pd.lpfnPrintHook = &PrintDlgHook;
}

UINT PrintDlgHook(HWND, UINT message, WPARAM wParam, LPARAM) {
  if (message != WM_COMMAND || LOWORD(wParam) != IDC_ZP_PRINT_FORMAT || HIWORD(wParam) != BN_CLICKED)
    return 0;
  g_PrintFormatDlg.DoModal();
  return 1;
}

bool IsJobStopped() {
  return g_bPrintAbort != 0 || SourceWatch::IsGoneFromJob();
}

BOOL PrintAbortProc(HDC, int) {
  MSG message{};
  while (!IsJobStopped() && PeekMessage(&message, nullptr, 0, 0, PM_REMOVE) != 0) {
    if (message.message == WM_QUIT) {
      // The program's own loop must see it, and the program doesn't wait for the paper.
      PostQuitMessage(static_cast<int>(message.wParam));
      g_bPrintAbort = 1;
      break;
    }
    if (g_pPrintAbortDlg != nullptr && g_pPrintAbortDlg->IsDialogMessage(&message) != 0) continue;
    TranslateMessage(&message);
    DispatchMessage(&message);
  }
  return IsJobStopped() ? FALSE : TRUE;
}
