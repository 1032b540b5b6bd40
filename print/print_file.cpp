#include "print/print_file.h"

#include <cstring>
#include <limits>

#include "platform/base/aside.h"
#include "platform/base/global_memory.h"
#include "platform/graphics/dc.h"
#include "print/print_dialogs.h"
#include "print/print_failure.h"
#include "print/sheet_size.h"
#include "viewing/page_source.h"

namespace {

constexpr int kSelection = -1;

/// What may go on to the sheets of a job that checks its format.
PrintFormat Known(PrintFormat format) {
  switch (format) {
    case PrintFormatActualSize:
    case PrintFormatPixelToPixel:
      return format;
    default:
      return PrintFormatFitToPage;
  }
}

}  // namespace

HGLOBAL DupGlobalBlock(HGLOBAL block) {
  const std::size_t size = GlobalSize(block);
  const void* source = GlobalLock(block);
  if (source == nullptr) return nullptr;
  const HGLOBAL copy = GlobalAlloc(GHND, size);
  if (void* target = GlobalLock(copy); target != nullptr) {
    std::memcpy(target, source, size);
    GlobalUnlock(copy);
  }
  GlobalUnlock(block);
  return copy;
}

CPrintFile::CPrintFile(const char* appName) : m_strAppName(appName) {
  LEADTOOLS::InitBitmap(&m_Bitmap, 0, 0, 1);
}

CPrintFile::CPrintFile(const CPrintFile& other) : CPrintFile(other.m_strAppName) {
  *this = other;
}

CPrintFile& CPrintFile::operator=(const CPrintFile& other) {
  if (this == &other) return *this;
  Initialize();
  m_ppBitmaps = other.m_ppBitmaps;
  m_nBitmaps = other.m_nBitmaps;
  m_pSelBitmap = other.m_pSelBitmap;
  m_pFileMem = other.m_pFileMem;
  m_dwFileMemSize = other.m_dwFileMemSize;
  m_strFile = other.m_strFile;
  m_strDocName = other.m_strDocName;
  m_strAppName = other.m_strAppName;
  if (!other.OwnsPage()) m_Bitmap = other.m_Bitmap;  // one that is owned has one owner
  GlobalFree(m_hDevMode);
  GlobalFree(m_hDevNames);
  m_hDevMode = DupGlobalBlock(other.m_hDevMode);
  m_hDevNames = DupGlobalBlock(other.m_hDevNames);
  return *this;
}

CPrintFile::~CPrintFile() {
  if (OwnsPage()) LEADTOOLS::FreeBitmap(&m_Bitmap);
  GlobalFree(m_hDevMode);
  GlobalFree(m_hDevNames);
}

/// Selections and pages of an array are borrowed.
bool CPrintFile::OwnsPage() const {
  return (m_Bitmap.Flags & leadtools12::kAllocated) != 0 && m_ppBitmaps == nullptr && m_pSelBitmap == nullptr;
}

void CPrintFile::Initialize() {
  if (OwnsPage()) LEADTOOLS::FreeBitmap(&m_Bitmap);
  m_Bitmap = {};
  m_strFile.Empty();
  m_pFileMem = nullptr;
  m_dwFileMemSize = 0;
  m_ppBitmaps = nullptr;
  m_nBitmaps = 0;
  m_pSelBitmap = nullptr;
}

int CPrintFile::GetPrintFormat() {
  return g_PrintFormatDlg.m_nFormat;
}

void CPrintFile::SetPrintFormat(PrintFormat format) {
  g_PrintFormatDlg.m_nFormat = format;
}

void CPrintFile::SetPrintOptions(PRINTDLGA* record) {
  GlobalFree(m_hDevMode);
  GlobalFree(m_hDevNames);
  m_hDevMode = DupGlobalBlock(record->hDevMode);
  m_hDevNames = DupGlobalBlock(record->hDevNames);
}

void CPrintFile::Print(const char* path, short copies, CWnd* parent, bool defaultPrinter,
                       PrintFormat format) {
  if (copies <= 0) return;
  SetPrintFormat(Known(format));
  const CString file(path);  // it may be the field that is emptied now
  Initialize();
  m_strFile = file;
  DoPrint(copies, parent, defaultPrinter, 0, -1);
}

void CPrintFile::PrintMem(void* image, unsigned long size, short copies, CWnd* parent, bool defaultPrinter,
                          PrintFormat format) {
  if (copies <= 0) return;
  SetPrintFormat(format);
  Initialize();
  if (size > std::numeric_limits<DWORD>::max()) throw new CLeadtoolsException(imaging::kErrorLimit);
  m_pFileMem = image;
  m_dwFileMemSize = static_cast<DWORD>(size);
  DoPrint(copies, parent, defaultPrinter, 0, -1);
}

void CPrintFile::PrintBitmaps(struct_LEAD_Bitmap** pages, int count, struct_LEAD_Bitmap* selection,
                              short copies, CWnd* parent, bool defaultPrinter, PrintFormat format, int first,
                              int last, const char* documentName) {
  m_strFile.Empty();
  m_strDocName = documentName;
  m_pFileMem = nullptr;
  if (copies <= 0) return;
  SetPrintFormat(Known(format));
  Initialize();
  m_ppBitmaps = pages;
  m_nBitmaps = count;
  m_pSelBitmap = selection;
  DoPrint(copies, parent, defaultPrinter, first, last);
}

void CPrintFile::Print_Def(const char* printer, const char* path, short copies, PrintFormat format) {
  PrintNamed(printer, path, copies, Known(format), std::nullopt, std::nullopt);
}

void CPrintFile::Print_Range(const char* printer, const char* path, short copies, short fromPage,
                             short toPage, PrintFormat format) {
  PrintNamed(printer, path, copies, Known(format), static_cast<WORD>(fromPage), static_cast<WORD>(toPage));
}

unsigned int CPrintFile::CountPages(const char* path) {
  return static_cast<unsigned int>(PageSource::File(path).CountPages());
}

unsigned int CPrintFile::CountPagesMem(void* image, unsigned long size) {
  return static_cast<unsigned int>(PageSource::Memory(image, static_cast<long>(size)).CountPages());
}

int CPrintFile::LoadPage(int page, CDC* printer) {
  if (OwnsPage()) LEADTOOLS::FreeBitmap(&m_Bitmap);
  if (page == kSelection || m_ppBitmaps != nullptr) {
    const bool inArray = page >= 1 && page <= m_nBitmaps;
    struct_LEAD_Bitmap* borrowed = inArray ? m_ppBitmaps[page - 1] : nullptr;
    if (page == kSelection) borrowed = m_pSelBitmap;
    if (borrowed == nullptr) return 0;
    LEADTOOLS::CopyBitmapHandle(&m_Bitmap, borrowed);
    return 1;
  }
  DecodePage(page);
  if (printer != nullptr) MakePixelsSquare(*printer);
  return 1;
}

/// In the depth and order of the source.
void CPrintFile::DecodePage(int page) {
  _LOADFILEOPTION options{};
  LEADTOOLS::GetDefaultLoadFileOption(&options);
  options.PageNumber = page;
  struct_file_information info{};
  const PageSource source = PageSource::Of(m_strFile, m_pFileMem, static_cast<long>(m_dwFileMemSize));
  // The job's parent stays alive meanwhile, as between the pages.
  std::optional<platform::AsideScope> aside;
  if (g_pPrintAbortDlg != nullptr) aside.emplace([] { return PrintAbortProc(nullptr, 0) != FALSE; });
  try {
    source.Describe(&info, &options);
    source.Load(&m_Bitmap, info.BitsPerPixel, info.Order, &options);
  } catch (CLeadtoolsException* exception) {
    if (exception->m_nError != imaging::kErrorUserAbort) throw;
    exception->Delete();
    throw static_cast<int>(PrintFailureAborted);
  }
}

void CPrintFile::MakePixelsSquare(CDC& printer) {
  const auto square =
      sheet::MadeSquare({m_Bitmap.Width, m_Bitmap.Height, {m_Bitmap.XResolution, m_Bitmap.YResolution}},
                        {printer.GetDeviceCaps(LOGPIXELSX), printer.GetDeviceCaps(LOGPIXELSY)});
  if (!square) return;
  const square_pixels::Resolution former{m_Bitmap.XResolution, m_Bitmap.YResolution};
  m_Bitmap.XResolution = square->dpi.x;
  m_Bitmap.YResolution = square->dpi.y;
  if (square_pixels::Resize(&m_Bitmap, {square->width, square->height})) return;
  m_Bitmap.XResolution = former.x;
  m_Bitmap.YResolution = former.y;
}

void CPrintFile::FitRect(CSize& size, CSize limit) {
  sheet::FitInto(size, limit);
}
