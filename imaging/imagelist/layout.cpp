#include "imaging/imagelist/layout.h"

#include <algorithm>
#include <cstdint>
#include <utility>

namespace imaging {

ImageListLayout ImageListLayout::Make(int count, SIZE item, SIZE client) {
  ImageListLayout layout;
  layout.count = count;
  layout.client = {std::max<LONG>(client.cx, 1), std::max<LONG>(client.cy, 1)};
  layout.cell = {std::min(item.cx, layout.client.cx), item.cy};
  layout.columns = std::max<int>(1, (layout.client.cx - kGap) / (layout.cell.cx + kGap));
  return layout;
}

int ImageListLayout::ClampScroll(int scroll) const {
  return std::clamp<int>(scroll, 0, std::max<int>(0, ContentHeight() - client.cy));
}

RECT ImageListLayout::CellAt(int index, int scroll) const {
  const int column = index % columns;
  const int row = index / columns;
  // The remainder of the division goes to different gaps, so that none differs from another by more than one.
  const int free = client.cx - columns * cell.cx;
  const int left = column * cell.cx + free * (column + 1) / (columns + 1);
  const int top = kGap + row * RowPitch() - scroll;
  return {left, top, left + cell.cx, top + cell.cy};
}

int ImageListLayout::HitTest(POINT point, int scroll) const {
  const auto [first, last] = Between(point.y, point.y + 1, scroll);
  for (int i = first; i < last; ++i) {
    const RECT rect = CellAt(i, scroll);
    if (PtInRect(&rect, point)) return i;
  }
  return -1;
}

std::pair<int, int> ImageListLayout::Between(int top, int bottom, int scroll) const {
  const int firstRow = std::max(0, (top + scroll - kGap) / RowPitch());
  const int lastRow = std::max(firstRow, (bottom + scroll - kGap + RowPitch() - 1) / RowPitch());
  return {static_cast<int>(std::min<std::int64_t>(count, std::int64_t{firstRow} * columns)),
          static_cast<int>(std::min<std::int64_t>(count, std::int64_t{lastRow} * columns))};
}

int ImageListLayout::ScrollToShow(int index, int scroll) const {
  const int top = index / columns * RowPitch();
  const int bottom = top + RowPitch() + kGap;
  if (top < scroll || bottom - top > client.cy) return ClampScroll(top);
  return ClampScroll(std::max<int>(scroll, bottom - client.cy));
}

int ImageListLayout::ItemsPerScreen() const {
  return std::max<int>(1, client.cy / RowPitch()) * columns;
}

int ImageListLayout::Screens() const {
  if (!NeedsScrolling()) return 0;
  return (count + ItemsPerScreen() - 1) / ItemsPerScreen();
}

int ImageListLayout::Screen(int scroll) const {
  const int screens = Screens();
  if (screens == 0) return 1;
  const int firstRow = std::max(0, scroll - kGap + RowPitch() - 1) / RowPitch();
  // A row too high for the client area counts for what can be seen of it.
  const int endRow = std::max(firstRow + 1, (scroll + static_cast<int>(client.cy)) / RowPitch());
  const int first = firstRow * columns;
  const int end = std::min(count, endRow * columns);
  const int share = std::max(1, count / screens);
  const int screen = (first + share - 1) / share;  // the first share that begins in view, from 0
  return screen < screens && (screen + 1) * share <= end ? screen + 1 : 0;
}

}  // namespace imaging
