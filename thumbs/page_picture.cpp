#include "thumbs/page_picture.h"

#include "platform/graphics/dc.h"
#include "thumbs/thumb_size.h"
#include "viewing/crossed_box.h"

namespace thumbs {

PagePicture::~PagePicture() {
  if ((m_bitmap.Flags & leadtools12::kAllocated) != 0) LEADTOOLS::FreeBitmap(&m_bitmap);
  if (m_palette != nullptr) DeleteObject(m_palette);
}

bool PagePicture::Reduce(struct_LEAD_Bitmap& page, double factor) {
  if (page.BitsPerPixel != 1 || factor >= 1.0) return false;
  LEADTOOLS::SmartResize(&page, &m_bitmap, factor);
  return true;
}

void PagePicture::MakeOfCopy(struct_LEAD_Bitmap& page, SIZE room) {
  const Picture picture = FitLongerSide(CSize(page.Width, page.Height), room);
  if (Reduce(page, picture.factor)) return;
  LEADTOOLS::CopyBitmap(&m_bitmap, &page);
  LEADTOOLS::SizeBitmapExt(&m_bitmap, picture.size.cx, picture.size.cy, 0);
}

void PagePicture::MakeScaled(struct_LEAD_Bitmap& page, SIZE room) {
  const Picture picture = FitLongerSide(CSize(page.Width, page.Height), room);
  if (Reduce(page, picture.factor)) return;
  if (page.BitsPerPixel < 24) return MakeOfCopy(page, room);  // averages aren't colours of its table
  LEADTOOLS::InitBitmap(&m_bitmap, picture.size.cx, picture.size.cy, page.BitsPerPixel);
  LEADTOOLS::AllocateBitmap(&m_bitmap, 1);
  m_palette = LEADTOOLS::DupPalette(page.hPalette);
  m_bitmap.hPalette = m_palette;
  m_bitmap.ViewPerspective = page.ViewPerspective;
  m_bitmap.XResolution = page.XResolution;
  m_bitmap.YResolution = page.YResolution;
  m_bitmap.Order = page.Order;
  LEADTOOLS::ResizeBitmap(&page, &m_bitmap);
}

void PagePicture::MakeCrossedBox(SIZE room) {
  DrawCrossedBox(&m_bitmap, room);
}

void DrawCrossedBox(struct_LEAD_Bitmap* picture, SIZE room) {
  LEADTOOLS::CreateBitmap(picture, 1, static_cast<unsigned>(room.cx), static_cast<unsigned>(room.cy), 0, 1,
                          nullptr, 0, nullptr, 0);
  const HDC handle = LEADTOOLS::CreateLeadDC(picture);
  CDC* const dc = CDC::FromHandle(handle);
  dc->FillSolidRect(0, 0, room.cx, room.cy, crossed_box::kColour);
  dc->SelectStockObject(BLACK_PEN);
  for (const crossed_box::Line& line : crossed_box::Cross(room, room.cy)) {
    dc->MoveTo(line.from);
    dc->LineTo(line.to);
  }
  LEADTOOLS::DeleteLeadDC(handle);
}

}  // namespace thumbs
