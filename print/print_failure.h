#pragma once

#include <string>

#include "library/export.h"
#include "library/report_error.h"
#include "platform/spooler/job_follower.h"

/// What a job throws, as an int, beside the spooler's own negative results.
enum PrintFailure : int {
  PrintFailureNoDefaultPrinter = 0,
  PrintFailureNoDeviceContext = 1,
  PrintFailureAborted = 2,       ///< the user has pressed the abort dialog's button
  PrintFailureNotPrintable = 3,  ///< kept for hosts that know it; no job here throws it
  PrintFailureNoSuchPrinter = 4,
};

/// Tells the user how a job has failed: a job that was stopped in a message box, all else by the report with
/// code 0.
TESSAREL_API void ReportPrintFailure(int code, ReportErrorFunction report);
/// Tells the report what has befallen a job after its queue took it.
void ReportJobTrouble(platform::JobTrouble trouble, const std::string& printer, ReportErrorFunction report);
/// A failure that isn't a job's own.
TESSAREL_API void ReportUnknownPrintFailure(ReportErrorFunction report);
