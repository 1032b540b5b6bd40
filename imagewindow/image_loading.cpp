#include <cstdint>
#include <limits>
#include <optional>

#include "imagewindow/image_window.h"
#include "library/resource_ids.h"
#include "platform/framework/object_hold.h"
#include "viewing/long_command.h"
#include "viewing/page_source.h"
#include "viewing/saved_scale.h"
#include "viewing/square_pixels.h"

namespace {

constexpr int kBilevelDepthInMemory = 8;  // what the grey reduction works on

/// Whether a user would notice how long the page takes. A sheet of a fax doesn't.
bool TakesLong(const struct_file_information& page) {
  constexpr std::int64_t kLongBits = std::int64_t{32} << 20;
  return std::int64_t{page.Width} * page.Height * page.BitsPerPixel >= kLongBits;
}

}  // namespace

void CImageWindow::FreeBitmaps() {
  StopPrintingPage();
  if (HasPage()) LEADTOOLS::FreeBitmap(&m_Bitmap);
  FreeSmartBitmap();
}

void CImageWindow::Initialize() {
  ++m_nLoads;
  BreakOff();
  if (m_pFileBuf != nullptr) StopPrinting();
  m_bMultiLevel = false;
  m_nCurrPage = 0;
  m_nRotation = 0;
  m_nMaxPage = 0;
  FreeBitmaps();
  m_strFilePath.Empty();
  m_pFileBuf = nullptr;
  m_nFileBufSize = 0;
}

bool CImageWindow::Count(const PageSource& source, int& pages) {
  const unsigned load = m_nLoads;
  const platform::ObjectHold hold(this);
  try {
    const LongCommand command(this, IDS_ZP_OPENING_PAGE);
    pages = source.CountPages();
  } catch (CLeadtoolsException* exception) {
    if (hold.Exists())
      Report(exception);
    else
      exception->Delete();
    return false;
  }
  return hold.Exists() && load == m_nLoads;
}

bool CImageWindow::OpenImageFile(const char* path) {
  const CString copy(path);  // the caller's text may be the field that is emptied next
  Initialize();
  int pages = 0;
  if (!Count(PageSource::File(copy), pages)) return false;
  m_nMaxPage = pages;
  m_nCurrPage = 1;
  m_strFilePath = copy;
  SetMouseMode(MouseModeNone);
  return true;
}

bool CImageWindow::OpenImageMemory(void* block, unsigned long size) {
  Initialize();
  int pages = 0;
  // The window's own record of the size is an int.
  if (size > static_cast<unsigned long>(std::numeric_limits<int>::max())) {
    Report(new CLeadtoolsException(imaging::kErrorLimit));
    return false;
  }
  if (!Count(PageSource::Memory(block, static_cast<long>(size)), pages)) return false;
  m_nCurrPage = 1;
  m_nMaxPage = pages;
  m_pFileBuf = static_cast<char*>(block);
  m_nFileBufSize = static_cast<int>(size);
  SetMouseMode(MouseModeNone);
  return true;
}

bool CImageWindow::Decode(int page) {
  const unsigned load = ++m_nLoads;
  const platform::ObjectHold hold(this);
  // A handler of the host, which runs while a page takes long, may end the window or show something else.
  const auto isOvertaken = [&] { return !hold.Exists() || load != m_nLoads; };
  _LOADFILEOPTION options{};
  LEADTOOLS::GetDefaultLoadFileOption(&options);
  options.PageNumber = page;
  const PageSource source = PageSource::Of(m_strFilePath, m_pFileBuf, m_nFileBufSize);
  m_pageInfo = {};
  struct_file_information info{};
  source.Describe(&info, &options, !source.IsFile());
  if (isOvertaken()) return false;
  m_pageInfo = info;
  m_bMultiLevel = info.BitsPerPixel != 1;
  std::optional<LongCommand> command;
  if (TakesLong(info)) command.emplace(this, IDS_ZP_OPENING_PAGE);
  struct_file_information loaded{};
  struct_LEAD_Bitmap bitmap{};
  if (info.BitsPerPixel != 1)
    source.Load(&bitmap, info.BitsPerPixel, 1, &options, &loaded);
  else
    source.Load(&bitmap, kBilevelDepthInMemory, 0, &options, &loaded);
  if (isOvertaken()) {
    LEADTOOLS::FreeBitmap(&bitmap);
    return false;
  }
  m_Bitmap = bitmap;
  m_pageInfo.DamagedRows = loaded.DamagedRows;  // known only once the page is decoded
  if (m_Bitmap.ViewPerspective != 0) LEADTOOLS::ChangeBitmapViewPerspective(nullptr, &m_Bitmap, 0);
  return true;
}

void CImageWindow::MakePixelsSquare() {
  const square_pixels::Correction correction =
      square_pixels::WholeFactor({m_Bitmap.XResolution, m_Bitmap.YResolution}, square_pixels::OfScreen());
  if (!correction.known) return;
  square_pixels::Resize(&m_Bitmap, {square_pixels::Stretched(m_Bitmap.Width, correction.stretch.across),
                                    square_pixels::Stretched(m_Bitmap.Height, correction.stretch.down)});
}

bool CImageWindow::LoadPage(int page) {
  if (page > m_nMaxPage || page < 1) return false;
  FreeBitmaps();
  const platform::ObjectHold hold(this);  // what fails is told, and the window may go
  try {
    if (!Decode(page)) return false;
    MakePixelsSquare();
  } catch (CLeadtoolsException* exception) {
    if (!hold.Exists()) {
      exception->Delete();
      return false;
    }
    FreeBitmaps();
    m_nCurrPage = page;  // before the report, which may open something else
    Report(exception);
    return false;
  }
  m_nCurrPage = page;
  if (IsReduced()) DoSmartResizing();
  if (hold.Exists() && !saved_scale::IsLegal(m_dScaleFactor)) ZoomToScaleFactor(saved_scale::kDefaultFactor);
  if (hold.Exists() && m_nRotation != 0) Rotate(m_nRotation, false);
  if (!hold.Exists()) return false;
  UpdateScroll();
  SetScrollPos(CPoint(0, 0), TRUE);
  if (!HasPage())
    SetMouseMode(MouseModeNone);
  else if (m_nMouseMode == MouseModeNone)
    SetMouseMode(MouseModeDrag);
  return true;
}
