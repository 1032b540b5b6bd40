#include <cstring>

#include "imagewindow/image_window.h"
#include "imagewindow/smart_resize.h"
#include "imagewindow/viewport.h"
#include "platform/base/bitmapinfo.h"
#include "platform/base/global_memory.h"
#include "platform/graphics/surface.h"

namespace {

/// The bitmap's colours, selected while it is painted, also if painting throws.
class PaintPalette {
 public:
  PaintPalette(HDC dc, struct_LEAD_Bitmap* bitmap)
      : m_dc(dc), m_palette(LEADTOOLS::CreatePaintPalette(dc, bitmap)) {
    m_former = SelectPalette(m_dc, m_palette, FALSE);
    RealizePalette(m_dc);
  }
  PaintPalette(const PaintPalette&) = delete;
  PaintPalette& operator=(const PaintPalette&) = delete;
  ~PaintPalette() {
    SelectPalette(m_dc, m_former, FALSE);
    DeleteObject(m_palette);
  }

 private:
  HDC m_dc;
  HPALETTE m_palette;
  HPALETTE m_former;
};

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
  CPaintDC dc(this);
  if (!DoDraw(&dc)) {
    CRect client;
    GetClientRect(client);
    dc.DPtoLP(static_cast<LPRECT>(client));
    CGdiObject* former = dc.SelectStockObject(GRAY_BRUSH);
    dc.PatBlt(0, 0, client.right, client.bottom, PATCOPY);
    dc.SelectObject(former);
  }
  RestoreBand(&dc);
}

bool CImageWindow::DoDraw(CPaintDC* dc) {
  // Without pixels the failure has been told already, when the page was loaded.
  if (m_nCurrPage < 1 || !HasPage()) return false;
  // On a scaled display the copy has fewer pixels than the screen; the page itself is then scaled straight to
  // the screen's pixels.
  const bool reduced = NeedsSmartBitmap() && (m_SmartBitmap.Flags & leadtools12::kAllocated) != 0 &&
                       platform::DeviceScale(dc->m_hDC) <= 1.0;
  struct_LEAD_Bitmap* bitmap = reduced ? &m_SmartBitmap : &m_Bitmap;
  try {
    const PaintPalette palette(dc->m_hDC, bitmap);
    CRect destination = viewport::PageRect(m_ptScroll, m_szScaled);
    LEADTOOLS::PaintDC(dc->m_hDC, bitmap, nullptr, nullptr, destination, &dc->m_ps.rcPaint, SRCCOPY);
  } catch (CLeadtoolsException* exception) {
    Report(exception);
    return false;
  }
  return true;
}

void CImageWindow::DoSmartResizing() {
  void* reduced = nullptr;
  try {
    if ((m_SmartBitmap.Flags & leadtools12::kAllocated) != 0) LEADTOOLS::FreeBitmap(&m_SmartBitmap);
    void* source = LEADTOOLS::ConvertToDIB(&m_Bitmap);
    reduced = SmartResize(source);
    GlobalFree(source);
    if (reduced != nullptr) LEADTOOLS::ChangeFromDIB(&m_SmartBitmap, reduced);
  } catch (CLeadtoolsException* exception) {
    if (reduced != nullptr) GlobalFree(reduced);  // not taken over
    Report(exception);
  }
}

int CImageWindow::GetWidthBytes(int bits) {
  return static_cast<int>((std::int64_t{bits} + 31) / 32 * 4);
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
