#include "imagewindow/image_window.h"
#include "platform/framework/app.h"
#include "print/print_bitmap.h"
#include "print/print_failure.h"
#include "print/print_file.h"

namespace {

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

void CImageWindow::PrintCurrentPage() {
  CPrintBitmap job(AfxGetModuleState()->m_lpszCurrentAppName);
  const auto format = static_cast<PrintFormat>(m_nPrintFormat);
  if (RunPrintJob(m_pfnReportError, [&] { job.Print(&m_Bitmap, MainWindow(), true, format); }))
    m_nPrintFormat = CPrintBitmap::GetPrintFormat();
}

void CImageWindow::PrintCurFile(CWnd* parent, bool defaultPrinter) {
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
  if (done) m_nPrintFormat = CPrintFile::GetPrintFormat();
}
