#include "print/print_failure.h"

#include "library/resource_ids.h"
#include "platform/framework/message_box.h"
#include "platform/spooler/print_records.h"

namespace {

UINT TextOf(int code) {
  switch (code) {
    case PrintFailureNoDefaultPrinter:
      return IDS_ZP_NO_DEFAULT_PRINTER;
    case PrintFailureNoDeviceContext:
      return IDS_ZP_NO_PRINTER_DC;
    case PrintFailureNotPrintable:
      return IDS_ZP_NOT_PRINTABLE;
    case PrintFailureAborted:
    case SP_APPABORT:
    case SP_USERABORT:
      return IDS_ZP_PRINT_ABORTED;
    case SP_ERROR:
      return IDS_ZP_PRINT_ERROR;
    case SP_OUTOFDISK:
      return IDS_ZP_PRINT_NO_DISK;
    case SP_NOANSWER:
      return IDS_ZP_PRINT_NO_ANSWER;
    case SP_OUTOFMEMORY:
      return IDS_ZP_PRINT_NO_MEMORY;
    default:
      return IDS_ZP_PRINT_UNKNOWN;
  }
}

void ReportText(UINT id, ReportErrorFunction report) {
  CString text;
  text.LoadString(id);
  report(0, text);
}

}  // namespace

void ReportPrintFailure(int code, ReportErrorFunction report) {
  const UINT text = TextOf(code);
  if (text == IDS_ZP_PRINT_ABORTED)
    AfxMessageBox(text, MB_OK);
  else
    ReportText(text, report);
}

void ReportJobTrouble(platform::JobTrouble trouble, const std::string& printer, ReportErrorFunction report) {
  const bool stopped = trouble == platform::JobTrouble::Stopped;
  const bool cancelled = trouble == platform::JobTrouble::Cancelled;
  CString text;
  text.FormatMessage(stopped     ? IDS_ZP_JOB_STOPPED
                     : cancelled ? IDS_ZP_JOB_CANCELLED
                                 : IDS_ZP_JOB_REFUSED,
                     printer.c_str());
  report(0, text);
}

void ReportUnknownPrintFailure(ReportErrorFunction report) {
  ReportText(IDS_ZP_PRINT_UNKNOWN, report);
}
