#include "imagewindow/image_window.h"
#include "platform/framework/app.h"
#include "print/print_bitmap.h"
#include "print/print_dialogs.h"
#include "print/print_failure.h"
#include "print/print_file.h"

namespace {

/// Notices that the window of a job is destroyed while the job dispatches messages.
class WindowWatch {
 public:
  explicit WindowWatch(CImageWindow& window) : m_window(&window), m_outer(s_innermost) { s_innermost = this; }
  WindowWatch(const WindowWatch&) = delete;
  WindowWatch& operator=(const WindowWatch&) = delete;
  ~WindowWatch() { s_innermost = m_outer; }

  /// Null: it is gone.
  CImageWindow* Window() const { return m_window; }
  static void Gone(const CImageWindow& window) {
    for (WindowWatch* watch = s_innermost; watch != nullptr; watch = watch->m_outer) {
      if (watch->m_window != &window) continue;
      watch->m_window = nullptr;
      g_bPrintAbort = 1;  // before the job looks at the window's bitmap again
    }
  }

 private:
  CImageWindow* m_window;
  WindowWatch* m_outer;  // of a job within which a host has begun this one
  static inline WindowWatch* s_innermost = nullptr;
};

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

CWnd* MainWindow() {
  const CWinThread* thread = AfxGetThread();
  return thread == nullptr ? nullptr : AfxGetMainWnd();
}

}  // namespace

void CImageWindow::StopPrinting() {
  WindowWatch::Gone(*this);
}

void CImageWindow::PrintCurrentPage() {
  const WindowWatch watch(*this);
  CPrintBitmap job(AfxGetModuleState()->m_lpszCurrentAppName);
  const auto format = static_cast<PrintFormat>(m_nPrintFormat);
  if (RunPrintJob(m_pfnReportError, [&] { job.Print(&m_Bitmap, MainWindow(), true, format); }) &&
      watch.Window() != nullptr)
    m_nPrintFormat = CPrintBitmap::GetPrintFormat();
}

void CImageWindow::PrintCurFile(CWnd* parent, bool defaultPrinter) {
  const WindowWatch watch(*this);
  CPrintFile job(AfxGetModuleState()->m_lpszCurrentAppName);
  PRINTDLGA defaults{};
  CWinApp* app = AfxGetModuleState()->m_pCurrentWinApp;
  if (app != nullptr && app->GetPrinterDeviceDefaults(&defaults) != 0) job.SetPrintOptions(&defaults);
  const auto format = static_cast<PrintFormat>(m_nPrintFormat);
  const bool done = RunPrintJob(m_pfnReportError, [&] {
    if (m_strFilePath.IsEmpty() == FALSE)
      job.Print(m_strFilePath, 1, parent, defaultPrinter, format);
    else
      job.PrintMem(m_pFileBuf, static_cast<unsigned long>(m_nFileBufSize), 1, parent, defaultPrinter, format);
  });
  if (done && watch.Window() != nullptr) m_nPrintFormat = CPrintFile::GetPrintFormat();
}
