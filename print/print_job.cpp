#include "print/print_job.h"

#include "library/resource_ids.h"
#include "print/print_dialogs.h"

void ThrowIfAborted() {
  if (g_pPrintAbortDlg != nullptr) PrintAbortProc(nullptr, 0);
  if (IsJobStopped()) throw static_cast<int>(PrintFailureAborted);
}

AbortStage::AbortStage(CWnd* parent)
    : m_parent(parent == nullptr ? nullptr : parent->m_hWnd),
      m_wasEnabled(::IsWindowEnabled(m_parent)),
      m_before(g_pPrintAbortDlg) {}

void AbortStage::Open(CDC& dc, CWnd* parent) {
  g_bPrintAbort = 0;
  if (parent == nullptr) return;
  dc.SetAbortProc(&PrintAbortProc);
  parent->EnableWindow(FALSE);
  g_pPrintAbortDlg = new CPrintAbortDlg;  // ended by the destructor
  g_pPrintAbortDlg->Create(IDD_ZP_PRINT_ABORT, parent);
}

void AbortStage::ThrowIfParentGone() const {
  if (m_parent != nullptr && ::IsWindow(m_parent) == 0) throw static_cast<int>(PrintFailureAborted);
}

AbortStage::~AbortStage() {
  if (g_pPrintAbortDlg != m_before) {
    g_pPrintAbortDlg->m_pbAbort = nullptr;
    if (::IsWindow(g_pPrintAbortDlg->m_hWnd) != 0) g_pPrintAbortDlg->DestroyWindow();
    delete g_pPrintAbortDlg;
    g_pPrintAbortDlg = m_before;
  }
  if (::IsWindow(m_parent) == 0) return;
  ::EnableWindow(m_parent, m_wasEnabled);
  if (m_wasEnabled != FALSE) ::SetFocus(m_parent);
}

bool ChoosePrinter(CPrintDialog& dialog, bool defaultPrinter) {
  if (defaultPrinter) {
    if (dialog.GetDefaults() == 0) throw static_cast<int>(PrintFailureNoDefaultPrinter);
    return true;
  }
  if (dialog.DoModal() == IDOK) return true;
  // A dialog that never came up would otherwise look like one that the user has left.
  const DWORD error = CommDlgExtendedError();
  if (error == PDERR_NODEVICES || error == PDERR_NODEFAULTPRN)
    throw static_cast<int>(PrintFailureNoDefaultPrinter);
  if (error != 0) throw static_cast<int>(PrintFailureNoDeviceContext);
  return false;
}

void TakeDeviceContext(HDC handle, CDC& dc) {
  if (handle == nullptr || dc.Attach(handle) == 0) throw static_cast<int>(PrintFailureNoDeviceContext);
}
