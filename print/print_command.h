#pragma once

#include "library/failure.h"
#include "library/library_entry.h"
#include "platform/framework/app.h"
#include "print/job_watch.h"
#include "print/print_failure.h"

// What the print commands of both viewers have in common.

/// Tells the report once if the queue's printer stops, or drops a job that it has taken; nothing where the
/// host has switched that off.
inline platform::JobTroubleReport JobReport(ReportErrorFunction report) {
  if (g_bPrintJobReportsEnabled == 0) return nullptr;
  return [report](platform::JobTrouble trouble, const std::string& printer) {
    ReportJobTrouble(trouble, printer, report);
  };
}

/// Runs a job. False: it has failed, and the user knows.
template <class Job>
bool RunPrintJob(ReportErrorFunction report, const Job& job) {
  const platform::JobFollower follower(JobReport(report));
  try {
    job();
    return true;
  } catch (int code) {
    ReportPrintFailure(code, report);
  } catch (CLeadtoolsException* exception) {
    ReportFailure(exception, report);
  } catch (CException* exception) {
    ReportUnknownPrintFailure(report);
    exception->Delete();
  }
  return false;
}

/// The host's name, under which its jobs stand at the spooler.
inline const char* PrintAppName() {
  return AfxGetModuleState()->m_lpszCurrentAppName;
}

/// Whom a job without a dialog of its own disables; may be null.
inline CWnd* PrintParent() {
  return AfxGetThread() == nullptr ? nullptr : AfxGetMainWnd();
}

/// Lets a job begin with the printer that the host's application prefers, if it has one.
template <class Job>
void TakePrinterDefaults(Job& job) {
  PRINTDLGA defaults{};
  CWinApp* const app = AfxGetModuleState()->m_pCurrentWinApp;
  if (app != nullptr && app->GetPrinterDeviceDefaults(&defaults) != 0) job.SetPrintOptions(&defaults);
}
