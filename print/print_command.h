#pragma once

#include "imaging/ltwrap.h"
#include "platform/framework/app.h"
#include "print/print_failure.h"

// What the print commands of both viewers have in common.

/// Runs a job. False: it has failed, and the user knows.
template <class Job>
bool RunPrintJob(ReportErrorFunction report, const Job& job) {
  try {
    job();
    return true;
  } catch (int code) {
    ReportPrintFailure(code, report);
  } catch (CLeadtoolsException* exception) {
    report(exception->GetLastError(), CLeadtoolsException::GetErrorMessage(exception->m_nError));
    exception->Delete();
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
