#include <algorithm>
#include <limits>

#include "library/resource_ids.h"
#include "platform/graphics/gdi.h"
#include "print/print_dialogs.h"
#include "print/print_file.h"
#include "print/print_job.h"
#include "print/printer_search.h"
#include "print/sheet_size.h"
#include "viewing/long_command.h"
#include "viewing/page_source.h"

namespace {

/// The sheet in a printer, and the settings of a job that may turn it. It stays turned for the pages that
/// follow.
class PrinterPaper : public sheet::Paper {
 public:
  PrinterPaper(CDC& dc, HGLOBAL mode) : m_dc(dc), m_mode(mode) {}

  sheet::Measures Measure() const override {
    return {m_dc.GetDeviceCaps(HORZRES),
            m_dc.GetDeviceCaps(VERTRES),
            {m_dc.GetDeviceCaps(LOGPIXELSX), m_dc.GetDeviceCaps(LOGPIXELSY)}};
  }

  bool TurnTo(sheet::Orientation orientation) override {
    auto* mode = static_cast<DEVMODE*>(GlobalLock(m_mode));
    if (mode == nullptr) return false;
    const bool turned = Turn(*mode, static_cast<short>(orientation));
    GlobalUnlock(m_mode);
    return turned;
  }

 private:
  bool Turn(DEVMODE& mode, short orientation) {
    if ((mode.dmFields & DM_ORIENTATION) == 0 || mode.dmOrientation == orientation) return false;
    const short before = mode.dmOrientation;
    mode.dmOrientation = orientation;
    if (m_dc.ResetDC(&mode) != 0) return true;
    mode.dmOrientation = before;
    return false;
  }

  CDC& m_dc;
  HGLOBAL m_mode;
};

/// A record's page number; documents longer than it can tell are printed up to there.
WORD PageNumber(int page) {
  return static_cast<WORD>(std::clamp(page, 0, static_cast<int>(std::numeric_limits<WORD>::max())));
}

}  // namespace

/// Takes the job's source back when it ends.
class CPrintFile::SourceReset {
 public:
  explicit SourceReset(CPrintFile& job) : m_job(&job) {}
  SourceReset(const SourceReset&) = delete;
  SourceReset& operator=(const SourceReset&) = delete;
  ~SourceReset() {
    if (m_job != nullptr) m_job->Initialize();
  }
  void Dismiss() { m_job = nullptr; }

 private:
  CPrintFile* m_job;
};

/// The format of one job, beside the current one of the process.
class CPrintFile::JobFormat {
 public:
  JobFormat(CPrintFile& job, PrintFormat format) : m_job(job) { job.m_jobFormat = format; }
  JobFormat(const JobFormat&) = delete;
  JobFormat& operator=(const JobFormat&) = delete;
  ~JobFormat() { m_job.m_jobFormat.reset(); }

 private:
  CPrintFile& m_job;
};

int CPrintFile::CountJobPages() {
  if (m_strFile.IsEmpty() == FALSE) return static_cast<int>(CountPages(m_strFile));
  if (m_pFileMem != nullptr) return static_cast<int>(CountPagesMem(m_pFileMem, m_dwFileMemSize));
  return m_nBitmaps;
}

void CPrintFile::FillRecord(CPrintDialog& dialog, short copies, int first, int last, int pages) const {
  CustomizePrintDialog(dialog);
  dialog.m_pd.nCopies = static_cast<WORD>(copies);
  dialog.m_pd.nFromPage = PageNumber(first + 1);
  dialog.m_pd.nToPage = PageNumber(last + 1);
  dialog.m_pd.nMinPage = 1;
  dialog.m_pd.nMaxPage = PageNumber(pages);
}

/// Lends the device defaults to the dialog, with the paper upright or lying as the page in m_Bitmap is.
void CPrintFile::PresetOrientation(CPrintDialog& dialog) const {
  dialog.m_pd.hDevMode = m_hDevMode;
  dialog.m_pd.hDevNames = m_hDevNames;
  auto* mode = static_cast<DEVMODE*>(GlobalLock(m_hDevMode));
  if (mode == nullptr) return;
  mode->dmOrientation = static_cast<short>(sheet::PresetFor(sheet::UprightPage(m_Bitmap)));
  GlobalUnlock(m_hDevMode);
}

void CPrintFile::DoPrint(short copies, CWnd* parent, bool defaultPrinter, int first, int last) {
  // The dialog and the abort stage have loops of their own.
  std::optional<LongCommand> command(std::in_place, parent, IDS_ZP_PRINTING_PAGE);
  const int pages = CountJobPages();
  if (last == -1) last = pages - 1;
  DWORD flags = m_pSelBitmap == nullptr ? PD_NOSELECTION : PD_ALLPAGES;
  if (first != 0 || last != pages - 1) flags |= PD_PAGENUMS;
  CPrintDialog dialog(FALSE, flags, parent);
  FillRecord(dialog, copies, first, last, pages);
  // They end in the opposite order, after the device context.
  SourceReset reset(*this);
  const DialogHandles handles(dialog.m_pd, m_hDevMode, m_hDevNames);
  AbortStage stage(parent);
  if (LoadPage(first + 1, nullptr) != 0 && !defaultPrinter) PresetOrientation(dialog);
  command.reset();
  if (!ChoosePrinter(dialog, defaultPrinter)) {
    stage.Dismiss();
    reset.Dismiss();
    return;
  }
  CDC dc;  // ends what the dialog has made, whatever comes
  TakeDeviceContext(dialog.m_pd.hDC, dc);
  stage.ThrowIfParentGone();
  Print_Work(m_strFile, dialog.m_pd, pages, dc, parent, false);
}

void CPrintFile::Print_Work(const char*, PRINTDLGA& record, int, CDC& dc, CWnd* parent, bool byPage) {
  AbortStage::Open(dc, parent);
  ProgressPane pane(parent, IDS_ZP_PRINTING_PAGE);
  const CString document = m_strAppName + ": " + m_strDocName;
  ThrowIfAborted();
  Check(dc.StartDoc(document));
  PrintPages(record, dc, byPage, pane);
  ThrowIfAborted();
  Check(dc.EndDoc());
}

void CPrintFile::PrintPages(const PRINTDLGA& record, CDC& dc, bool byPage, ProgressPane& pane) {
  const bool selection = (record.Flags & PD_SELECTION) != 0;
  const int first = selection ? -1 : record.nFromPage;
  const int last = selection ? -1 : record.nToPage;
  const int rounds = byPage ? 1 : record.nCopies;
  const int sheets = byPage ? record.nCopies : 1;
  for (int round = 0; round < rounds; ++round)
    for (int page = first; page <= last; ++page) {
      pane.Show(page - first + 1, last - first + 1);
      if (LoadPage(page, &dc) == 0) continue;
      for (int sheet = 0; sheet < sheets; ++sheet) PrintSheet(dc, record.hDevMode);
    }
}

/// All arithmetic comes before StartPage: the paper can't turn while a page is open.
void CPrintFile::PrintSheet(CDC& dc, HGLOBAL mode) {
  ThrowIfAborted();
  const int format = m_jobFormat ? *m_jobFormat : GetPrintFormat();
  const sheet::Page page = sheet::UprightPage(m_Bitmap);
  PrinterPaper paper(dc, mode);
  sheet::Correction correction;
  if (m_ppBitmaps != nullptr) correction = square_pixels::OfScreen();
  if (const auto size = sheet::Place(format, page, correction, paper)) {
    // The true size counts from the corner of the paper, as a ruler does; all else from the printable area.
    if (format == PrintFormatActualSize && sheet::IsKnown(page.dpi))
      dc.SetWindowOrg(dc.GetDeviceCaps(PHYSICALOFFSETX), dc.GetDeviceCaps(PHYSICALOFFSETY));
    else
      dc.SetWindowOrg(0, 0);
    Check(dc.StartPage());
    LEADTOOLS::PrintBitmapExt(dc, &m_Bitmap, 1, 1, size->cx, size->cy, 0);
  }
  ThrowIfAborted();
  Check(dc.EndPage());
}

void CPrintFile::PrintNamed(const char* printerName, const char* path, short copies, PrintFormat format,
                            std::optional<WORD> fromPage, std::optional<WORD> toPage) {
  const CString file(path);  // it may be the field that is emptied now
  SourceReset reset(*this);
  const printers::NamedPrinter printer(printerName);
  CDC dc;
  const HDC context = printer.CreateContext();
  if (context != nullptr) dc.Attach(context);
  Initialize();
  m_strFile = file;
  m_strDocName = file;
  const int pages = PageSource::Of(m_strFile, m_pFileMem, static_cast<long>(m_dwFileMemSize)).CountPages();
  PRINTDLGA record{};
  record.lStructSize = sizeof record;
  record.nCopies = static_cast<WORD>(std::max<short>(copies, 0));
  record.nFromPage = record.nMinPage = fromPage.value_or(1);
  record.nToPage = record.nMaxPage = toPage.value_or(PageNumber(pages));
  record.hDevMode = printer.Mode();
  record.hDC = context;
  if (dc.m_hDC == nullptr) throw static_cast<int>(PrintFailureNoDeviceContext);
  const JobFormat jobFormat(*this, format);
  Print_Work(path, record, pages, dc, nullptr, false);
}
