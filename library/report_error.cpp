#include "library/report_error.h"

#include "platform/framework/message_box.h"

namespace {

constexpr int kEndedByUser = -84;  // the one code of the imaging service that is no failure

}  // namespace

ReportErrorFunction g_pfnReportError = nullptr;

void ReportError(int code, CString text) {  // NOLINT(performance-unnecessary-value-param): a hook's shape
  if (g_pfnReportError != nullptr)
    g_pfnReportError(code, text);
  else
    ShowErrorBox(code, text);
}

void ShowErrorBox(int code, const CString& text) {
  if (code == kEndedByUser) return;
  CString message;
  message.Format("Error ZP%04d: %s", code, static_cast<const char*>(text));
  AfxMessageBox(message, MB_ICONERROR, 0);
}
