#include <limits>

#include "imagewindow/image_window.h"
#include "platform/framework/object_hold.h"
#include "viewing/page_source.h"
#include "viewing/saved_scale.h"
#include "viewing/square_pixels.h"

namespace {

constexpr int kBilevelDepthInMemory = 8;  // what the grey reduction works on

}  // namespace

void CImageWindow::FreeBitmaps() {
  StopPrintingPage();
  if (HasPage()) LEADTOOLS::FreeBitmap(&m_Bitmap);
  FreeSmartBitmap();
}

void CImageWindow::Initialize() {
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

bool CImageWindow::OpenImageFile(const char* path) {
  const CString copy(path);  // the caller's text may be the field that is emptied next
  Initialize();
  int pages = 0;
  try {
    pages = PageSource::File(copy).CountPages();
  } catch (CLeadtoolsException* exception) {
    Report(exception);
    return false;
  }
  m_nMaxPage = pages;
  m_nCurrPage = 1;
  m_strFilePath = copy;
  SetMouseMode(MouseModeNone);
  return true;
}

bool CImageWindow::OpenImageMemory(void* block, unsigned long size) {
  Initialize();
  int pages = 0;
  try {
    // The window's own record of the size is an int.
    if (size > static_cast<unsigned long>(std::numeric_limits<int>::max()))
      throw new CLeadtoolsException(imaging::kErrorLimit);
    pages = PageSource::Memory(block, static_cast<long>(size)).CountPages();
  } catch (CLeadtoolsException* exception) {
    Report(exception);
    return false;
  }
  m_nCurrPage = 1;
  m_nMaxPage = pages;
  m_pFileBuf = static_cast<char*>(block);
  m_nFileBufSize = static_cast<int>(size);
  SetMouseMode(MouseModeNone);
  return true;
}

void CImageWindow::Decode(int page) {
  _LOADFILEOPTION options{};
  LEADTOOLS::GetDefaultLoadFileOption(&options);
  options.PageNumber = page;
  const PageSource source = PageSource::Of(m_strFilePath, m_pFileBuf, m_nFileBufSize);
  m_pageInfo = {};
  source.Describe(&m_pageInfo, &options, !source.IsFile());
  m_bMultiLevel = m_pageInfo.BitsPerPixel != 1;
  struct_file_information loaded{};
  if (m_bMultiLevel)
    source.Load(&m_Bitmap, m_pageInfo.BitsPerPixel, 1, &options, &loaded);
  else
    source.Load(&m_Bitmap, kBilevelDepthInMemory, 0, &options, &loaded);
  m_pageInfo.DamagedRows = loaded.DamagedRows;  // known only once the page is decoded
  if (m_Bitmap.ViewPerspective != 0) LEADTOOLS::ChangeBitmapViewPerspective(nullptr, &m_Bitmap, 0);
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
  try {
    Decode(page);
    MakePixelsSquare();
  } catch (CLeadtoolsException* exception) {
    FreeBitmaps();
    m_nCurrPage = page;  // before the report, which may open something else
    Report(exception);
    return false;
  }
  m_nCurrPage = page;
  const platform::ObjectHold hold(this);  // what fails is told, and the window may go
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
