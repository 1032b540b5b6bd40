#include "viewing/page_paint.h"

#include "platform/framework/wnd.h"
#include "platform/graphics/gdi.h"
#include "platform/graphics/surface.h"
#include "viewing/viewport.h"

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

}  // namespace

void PaintPage(HDC dc, const struct_LEAD_Bitmap& page, POINT position, SIZE scaled, RECT* clip) {
  auto* const bitmap = const_cast<struct_LEAD_Bitmap*>(&page);  // the service only reads it
  const PaintPalette palette(dc, bitmap);
  CRect destination = viewport::PageRect(position, scaled);
  LEADTOOLS::PaintDC(dc, bitmap, nullptr, nullptr, destination, clip, SRCCOPY);
}

bool ShowsReducedCopy(HDC dc, const struct_LEAD_Bitmap& copy) {
  return (copy.Flags & leadtools12::kAllocated) != 0 && platform::DeviceScale(dc) <= 1.0;
}

void FillGray(CWnd& window, CDC& dc) {
  CRect client;
  window.GetClientRect(client);
  dc.DPtoLP(static_cast<LPRECT>(client));
  CGdiObject* former = dc.SelectStockObject(GRAY_BRUSH);
  dc.PatBlt(0, 0, client.right, client.bottom, PATCOPY);
  dc.SelectObject(former);
}
