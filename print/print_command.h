#pragma once

#include "library/failure.h"
#include "library/library_entry.h"
#include "platform/framework/app.h"
#include "print/print_dialogs.h"
#include "print/print_failure.h"

// What the print commands of both viewers have in common.

/// Notices that the owner of what a job prints goes, or takes it away, while the job dispatches messages.
template <class Owner>
class JobWatch {
 public:
  explicit JobWatch(Owner& owner) : m_owner(&owner), m_outer(s_innermost) { s_innermost = this; }
  JobWatch(const JobWatch&) = delete;
  JobWatch& operator=(const JobWatch&) = delete;
  ~JobWatch() { s_innermost = m_outer; }

  /// Null: it is gone.
  Owner* Get() const { return m_owner; }
  static void Gone(const Owner& owner) {
    for (JobWatch* watch = s_innermost; watch != nullptr; watch = watch->m_outer) {
      if (watch->m_owner != &owner) continue;
      watch->m_owner = nullptr;
      g_bPrintAbort = 1;  // before the job looks at the owner's bitmaps again
    }
  }

 private:
  Owner* m_owner;
  JobWatch* m_outer;  // of a job within which a host has begun this one
  static inline JobWatch* s_innermost = nullptr;
};

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
