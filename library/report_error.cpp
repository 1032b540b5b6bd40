#include "library/report_error.h"

#include "imaging/ltwrap.h"
#include "platform/framework/message_box.h"

ReportErrorFunction g_pfnReportError = nullptr;

void ReportError(int code, CString text) {  // NOLINT(performance-unnecessary-value-param): a hook's shape
  if (g_pfnReportError != nullptr)
    g_pfnReportError(code, text);
  else
    ShowErrorBox(code, text);
}

void ShowErrorBox(int code, const CString& text) {
  if (code == imaging::kErrorUserAbort) return;
  CString message;
  message.Format("Error ZP%04d: %s", code, static_cast<const char*>(text));
  AfxMessageBox(message, MB_ICONERROR, 0);
}
