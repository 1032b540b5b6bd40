#include "platform/spooler/print_dialog.h"

#include "platform/base/global_memory.h"
#include "platform/testing.h"

IMPLEMENT_DYNAMIC(CPrintDialog, CDialog)

namespace {

DWORD g_error = 0;

}  // namespace

void platform::testing::SetPrintDialogAnswer(PrintDialogAnswer) {}

BOOL PrintDlgA(PRINTDLGA*) {
  g_error = PDERR_NODEVICES;
  return FALSE;
}

DWORD CommDlgExtendedError() {
  return g_error;
}

CPrintDialog::CPrintDialog(BOOL /*printSetupOnly*/, DWORD flags, CWnd* parent) {
  m_pParentWnd = parent;
  m_pd.lStructSize = sizeof m_pd;
  m_pd.Flags = (flags | PD_RETURNDC) & ~PD_RETURNIC;
}

int CPrintDialog::DoModal() {
  m_pd.hwndOwner = ModalOwner(m_pParentWnd);
  return PrintDlgA(&m_pd) != 0 ? IDOK : IDCANCEL;
}

BOOL CPrintDialog::GetDefaults() {
  m_pd.Flags |= PD_RETURNDEFAULT;
  return PrintDlgA(&m_pd);
}

CString CPrintDialog::GetDeviceName() const {
  const auto* names = static_cast<const DEVNAMES*>(GlobalLock(m_pd.hDevNames));
  if (names == nullptr) return {};
  const CString name = reinterpret_cast<const char*>(names) + names->wDeviceOffset;
  GlobalUnlock(m_pd.hDevNames);
  return name;
}
