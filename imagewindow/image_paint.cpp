#include <cstring>

#include "imagewindow/image_window.h"
#include "imagewindow/smart_resize.h"
#include "platform/base/bitmapinfo.h"
#include "platform/base/global_memory.h"
#include "platform/framework/object_hold.h"
#include "viewing/accessible_page.h"
#include "viewing/page_paint.h"
#include "viewing/viewport.h"

namespace {

/// The address of a global block while it is in use.
class LockedBlock {
 public:
  explicit LockedBlock(HGLOBAL block)
      : m_block(block), m_data(static_cast<std::uint8_t*>(GlobalLock(block))) {}
  LockedBlock(const LockedBlock&) = delete;
  LockedBlock& operator=(const LockedBlock&) = delete;
  ~LockedBlock() {
    if (m_data != nullptr) GlobalUnlock(m_block);
  }
  std::uint8_t* Data() const { return m_data; }

 private:
  HGLOBAL m_block;
  std::uint8_t* m_data;
};

}  // namespace

void CImageWindow::OnPaint() {
  const platform::ObjectHold hold(this);  // a failure is told
  CPaintDC dc(this);
  const bool drawn = DoDraw(&dc);
  if (!hold.Exists()) return;
  if (!drawn) FillGray(*this, dc);
  RestoreBand(&dc);
  DescribePage(m_hWnd, GetFileName(), m_nCurrPage, m_nMaxPage, GetScalePercent());
}

BOOL CImageWindow::OnEraseBkgnd(CDC* dc) {
  if (ShownPage() == nullptr) return CWnd::OnEraseBkgnd(dc);
  // The page will cover its place; short of its edge, which may fall between two pixels of a scaled display.
  CRect page = viewport::PageRect(m_ptScroll, m_szScaled);
  page.DeflateRect(1, 1);
  const int saved = dc->SaveDC();
  dc->ExcludeClipRect(page);
  const BOOL erased = CWnd::OnEraseBkgnd(dc);
  dc->RestoreDC(saved);
  return erased;
}

bool CImageWindow::DoDraw(CPaintDC* dc) {
  // Without pixels the failure has been told already, when the page was loaded.
  return PaintShown(dc->m_hDC, &dc->m_ps.rcPaint);
}

void CImageWindow::DoSmartResizing() {
  try {
    FreeSmartBitmap();
    LEADTOOLS::ReduceToGray(&m_Bitmap, &m_SmartBitmap, m_nZoomDivisor, m_GrayPalette.data());
  } catch (CLeadtoolsException* exception) {
    Report(exception);
  }
}

void* CImageWindow::SmartResize(void* sourceBlock) {
  const LockedBlock source(sourceBlock);
  smart_resize::Job job;
  if (!smart_resize::Plan(source.Data(), GlobalSize(sourceBlock), m_nZoomDivisor, &job)) return nullptr;
  HGLOBAL reduced = GlobalAlloc(GMEM_MOVEABLE | GMEM_ZEROINIT, job.targetBytes);
  if (reduced == nullptr) return nullptr;
  const LockedBlock target(reduced);
  if (target.Data() == nullptr) return nullptr;
  smart_resize::WriteReduced(job, m_GrayPalette, target.Data());
  return reduced;
}
