#include <algorithm>
#include <cstring>

#include "imaging/core/guard.h"
#include "imaging/device/paint_dc.h"
#include "imaging/imagelist/control.h"
#include "imaging/pixels/perspective.h"
#include "platform/graphics/gdi.h"

namespace imaging {
namespace {

constexpr int kMargin = 4;  // between a cell's edge and what is in it

int TextHeight(HDC dc) {
  TEXTMETRICA metrics{};
  GetTextMetrics(dc, &metrics);
  return metrics.tmHeight;
}

/// Black or white, whichever stands out from the colour more.
COLORREF TextOn(COLORREF background) {
  const unsigned luminance = 299U * GetRValue(background) + 587U * GetGValue(background) +
                             114U * GetBValue(background);  // in thousandths, by ITU-R BT.601
  return luminance >= 128'000 ? RGB(0, 0, 0) : RGB(255, 255, 255);
}

/// The picture at its own size in the middle of the box, reduced if it is larger.
RECT PlaceOf(const PixelStorage& pixels, const RECT& box) {
  const LONG width = std::max<LONG>(1, box.right - box.left);
  const LONG height = std::max<LONG>(1, box.bottom - box.top);
  const double factor = std::min(
      {1.0, static_cast<double>(width) / pixels.Width(), static_cast<double>(height) / pixels.Height()});
  const auto shownWidth = std::max<LONG>(1, static_cast<LONG>(pixels.Width() * factor));
  const auto shownHeight = std::max<LONG>(1, static_cast<LONG>(pixels.Height() * factor));
  const LONG left = box.left + (width - shownWidth) / 2;
  const LONG top = box.top + (height - shownHeight) / 2;
  return {left, top, left + shownWidth, top + shownHeight};
}

/// The pixels at once: the views that are kept for repaints belong to the page, not to its thumbnails.
void Draw(HDC dc, Bitmap& picture, RECT place) {
  Guarded([&] { PaintOnDC(dc, &picture, {nullptr, nullptr, &place, nullptr}, SRCCOPY, PaintUse::Once); });
}

void DrawFocus(HDC dc, const RECT& rect, COLORREF color) {
  const HPEN pen = CreatePen(PS_DOT, 1, color);
  const HGDIOBJ former = SelectObject(dc, pen);
  const POINT corners[] = {{rect.left, rect.top},
                           {rect.right - 1, rect.top},
                           {rect.right - 1, rect.bottom - 1},
                           {rect.left, rect.bottom - 1},
                           {rect.left, rect.top}};
  Polyline(dc, corners, 5);
  SelectObject(dc, former);
  DeleteObject(pen);
}

/// The caption without words at its front that there is no room for: the number at its end tells most.
const char* FittingEnd(HDC dc, const char* caption, LONG width) {
  RECT size{};
  while (const char* space = std::strchr(caption, ' ')) {
    DrawText(dc, caption, -1, &size, DT_CALCRECT | DT_SINGLELINE | DT_NOPREFIX);
    if (size.right - size.left <= width) break;
    caption = space + 1;
  }
  return caption;
}

}  // namespace

void ImageListControl::Paint() {
  PAINTSTRUCT paint{};
  const HDC dc = BeginPaint(m_window, &paint);
  if (dc == nullptr) return;
  const HBRUSH background = CreateSolidBrush(m_background);
  FillRect(dc, &paint.rcPaint, background);
  DeleteObject(background);
  SelectObject(dc, GetStockObject(DEFAULT_GUI_FONT));
  SetBkMode(dc, TRANSPARENT);
  const auto [first, last] = m_layout.Between(paint.rcPaint.top, paint.rcPaint.bottom, m_scroll);
  for (int i = first; i < last; ++i) PaintCell(dc, i);
  EndPaint(m_window, &paint);
}

void ImageListControl::PaintCell(HDC dc, int index) {
  const Entry& entry = m_items[static_cast<std::size_t>(index)];
  const RECT cell = m_layout.CellAt(index, m_scroll);
  if (RectVisible(dc, &cell) == 0) return;
  if (entry.isSelected) FillRect(dc, &cell, GetSysColorBrush(COLOR_HIGHLIGHT));

  RECT caption = cell;
  InflateRect(&caption, -kMargin, -kMargin);
  caption.top = std::max(caption.top, caption.bottom - TextHeight(dc));
  PaintPicture(dc, index, {cell.left + 3, cell.top + kMargin, cell.right - 3, caption.top - kMargin});

  const COLORREF color = entry.isSelected ? GetSysColor(COLOR_HIGHLIGHTTEXT) : TextOn(m_background);
  SetTextColor(dc, color);
  DrawText(dc, FittingEnd(dc, CaptionOf(index), caption.right - caption.left), -1, &caption,
           DT_CENTER | DT_VCENTER | DT_SINGLELINE | DT_END_ELLIPSIS | DT_NOPREFIX);
  if (index != m_focus || GetFocus() != m_window) return;
  RECT mark = cell;
  InflateRect(&mark, -1, -1);
  DrawFocus(dc, mark, color);
}

void ImageListControl::PaintPicture(HDC dc, int index, const RECT& box) {
  try {
    const Bitmap picture = PictureOf(index);
    if ((picture.Flags & leadtools12::kAllocated) == 0) return;
    // A list's picture may lie on its side still.
    const auto turned = TurnedBetween(*picture.pStorage, picture.ViewPerspective, 0);
    Bitmap shown = picture;
    if (turned) shown.pStorage = turned.get();
    const RECT place = PlaceOf(*shown.pStorage, box);
    // Filled, not drawn around: where a unit is no whole number of device pixels, nothing shows between.
    RECT frame = place;
    InflateRect(&frame, 1, 1);
    FillRect(dc, &frame, GetSysColorBrush(COLOR_BTNSHADOW));
    Draw(dc, shown, place);
  } catch (CLeadtoolsException* error) {
    error->Delete();  // nobody waits for the result of a repaint; an empty frame is left
  }
}

}  // namespace imaging
