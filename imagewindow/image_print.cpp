#include "imagewindow/image_window.h"
#include "platform/base/aside.h"
#include "print/page_as_shown.h"
#include "print/print_bitmap.h"
#include "print/print_command.h"
#include "print/print_file.h"

void CImageWindow::StopPrinting() {
  JobWatch<CImageWindow>::Gone(*this);
  if (m_pFileBuf != nullptr) platform::AwaitAside();  // the host may free the block next
}

void CImageWindow::PostNcDestroy() {
  if (m_pFileBuf != nullptr) StopPrinting();
  CPageWindow<CWnd>::PostNcDestroy();
}

void CImageWindow::StopPrintingPage() {
  JobWatch<struct_LEAD_Bitmap>::Gone(m_Bitmap);
}

struct_LEAD_Bitmap CImageWindow::GetShownBitmap() const {
  return page_as_shown::Header(m_Bitmap, m_pageInfo);
}

void CImageWindow::PrintCurrentPage() {
  const JobWatch<struct_LEAD_Bitmap> watch(m_Bitmap);
  CPrintBitmap job(PrintAppName());
  const auto format = static_cast<PrintFormat>(m_nPrintFormat);
  struct_LEAD_Bitmap page = GetShownBitmap();
  if (RunPrintJob(m_pfnReportError, [&] { job.Print(&page, PrintParent(), true, format); }) &&
      watch.Get() != nullptr)
    m_nPrintFormat = CPrintBitmap::GetPrintFormat();
}

void CImageWindow::PrintCurFile(CWnd* parent, bool defaultPrinter) {
  const JobWatch<CImageWindow> watch(*this);
  CPrintFile job(PrintAppName());
  TakePrinterDefaults(job);
  const auto format = static_cast<PrintFormat>(m_nPrintFormat);
  const bool done = RunPrintJob(m_pfnReportError, [&] {
    if (m_strFilePath.IsEmpty() == FALSE)
      job.Print(m_strFilePath, 1, parent, defaultPrinter, format);
    else
      job.PrintMem(m_pFileBuf, static_cast<unsigned long>(m_nFileBufSize), 1, parent, defaultPrinter, format);
  });
  if (done && watch.Get() != nullptr) m_nPrintFormat = CPrintFile::GetPrintFormat();
}
