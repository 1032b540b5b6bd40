#include <algorithm>
#include <vector>

#include "docview/zp_doc.h"
#include "library/report_error.h"
#include "print/page_as_shown.h"
#include "print/print_bitmap.h"
#include "print/print_command.h"
#include "print/print_file.h"

namespace {

/// A page's header with the resolution that its stretched pixels have.
struct_LEAD_Bitmap HeaderOf(CZPPage& page, const struct_LEAD_Bitmap& bitmap) {
  return page_as_shown::Header(bitmap, *page.GetPageInfo());
}

/// What the print dialog offers as the selection: a copy of the rectangle round the region that is set on a
/// page. None without a region, or where the copy fails.
class PrintSelection {
 public:
  PrintSelection(struct_LEAD_Bitmap* page, CZPPage* owner) {
    if (page == nullptr) return;
    try {
      if (LEADTOOLS::BitmapHasRgn(page) == 0) return;
      RECT bounds{};
      LEADTOOLS::GetBitmapRgnBounds(page, nullptr, &bounds);
      LEADTOOLS::CopyBitmapRect(&m_bitmap, page, static_cast<unsigned>(bounds.left),
                                static_cast<unsigned>(bounds.top),
                                static_cast<unsigned>(bounds.right - bounds.left),
                                static_cast<unsigned>(bounds.bottom - bounds.top));
      const struct_LEAD_Bitmap shown = HeaderOf(*owner, *page);
      m_bitmap.XResolution = shown.XResolution;
      m_bitmap.YResolution = shown.YResolution;
    } catch (CLeadtoolsException* exception) {
      exception->Delete();
    }
  }
  PrintSelection(const PrintSelection&) = delete;
  PrintSelection& operator=(const PrintSelection&) = delete;
  ~PrintSelection() {
    if (IsThere()) LEADTOOLS::FreeBitmap(&m_bitmap);
  }

  struct_LEAD_Bitmap* Bitmap() { return IsThere() ? &m_bitmap : nullptr; }

 private:
  bool IsThere() const { return (m_bitmap.Flags & leadtools12::kAllocated) != 0; }

  struct_LEAD_Bitmap m_bitmap{};
};

/// The bitmaps of all pages while a job needs them; null for a page that could not be decoded.
class BorrowedPages {
 public:
  BorrowedPages(CZPDoc& document, const CPtrArray& pages) : m_watch(document) {
    m_headers.reserve(static_cast<std::size_t>(document.GetPagesNum()));
    for (int i = 0; i < document.GetPagesNum(); ++i)
      Borrow(static_cast<CZPPage*>(pages.GetAt(i)), document.GetHBitmap(i));
  }
  BorrowedPages(const BorrowedPages&) = delete;
  BorrowedPages& operator=(const BorrowedPages&) = delete;
  ~BorrowedPages() {
    for (int i = 0; i < Count() && Document() != nullptr; ++i) Document()->ReleaseHBitmap(i);
  }

  struct_LEAD_Bitmap** Bitmaps() { return m_bitmaps.data(); }
  int Count() const { return static_cast<int>(m_bitmaps.size()); }
  /// Null once the pages have gone.
  CZPDoc* Document() const { return m_watch.Get(); }

 private:
  void Borrow(CZPPage* page, const struct_LEAD_Bitmap* bitmap) {
    if (bitmap != nullptr) m_headers.push_back(HeaderOf(*page, *bitmap));
    m_bitmaps.push_back(bitmap == nullptr ? nullptr : &m_headers.back());
  }

  JobWatch<CZPDoc> m_watch;
  std::vector<struct_LEAD_Bitmap> m_headers;
  std::vector<struct_LEAD_Bitmap*> m_bitmaps;
};

}  // namespace

void CZPDoc::StopPrinting() {
  JobWatch<CZPDoc>::Gone(*this);
}

void CZPDoc::PrintPage(int nPage) {
  CZPPage* const page = PageOrActive(nPage);
  struct_LEAD_Bitmap* const bitmap = page == nullptr ? nullptr : page->GetHBitmap();
  if (bitmap == nullptr) return;
  const JobWatch<CZPDoc> watch(*this);
  CPrintBitmap job(PrintAppName());
  const auto format = static_cast<PrintFormat>(m_nPrintFormat);
  struct_LEAD_Bitmap shown = HeaderOf(*page, *bitmap);
  if (RunPrintJob(&ReportError, [&] { job.Print(&shown, PrintParent(), true, format); }) &&
      watch.Get() != nullptr)
    m_nPrintFormat = CPrintBitmap::GetPrintFormat();
}

int CZPDoc::PrintDocument(CWnd* pParent, bool bDefaultPrinter, int nFirstPage, int nLastPage) {
  const int count = GetPagesNum();
  if (count == 0) return 0;
  CPrintFile job(PrintAppName());
  TakePrinterDefaults(job);
  const int first = std::clamp(nFirstPage, 0, count - 1);
  const int last = nLastPage == -1 ? count - 1 : std::min(nLastPage, count - 1);
  if (first > last) return 0;
  BorrowedPages pages(*this, m_arrPages);
  PrintSelection selection(GetHBitmap(-1), PageOrActive(-1));
  const auto format = static_cast<PrintFormat>(m_nPrintFormat);
  try {
    const bool done = RunPrintJob(&ReportError, [&] {
      job.PrintBitmaps(pages.Bitmaps(), pages.Count(), selection.Bitmap(), 1, pParent, bDefaultPrinter,
                       format, first, last, m_strTitle);
    });
    if (!done) return 0;
    if (pages.Document() != nullptr) m_nPrintFormat = CPrintFile::GetPrintFormat();
  } catch (...) {
    // A host's own exception ends the job, but not the command.
  }
  return 1;
}
