#include <algorithm>

#include "platform/graphics/dc.h"

namespace {

/// Inverts the sides of a rectangle, each pixel once; all of it where the sides meet.
void InvertFrame(HDC dc, const RECT& rect, SIZE size) {
  const CRect outer(rect);
  if (outer.Width() <= 0 || outer.Height() <= 0) return;
  const int across = std::min<int>(size.cx, (outer.Width() + 1) / 2);
  const int down = std::min<int>(size.cy, (outer.Height() + 1) / 2);
  const int innerTop = outer.top + down;
  const int innerBottom = std::max<int>(innerTop, outer.bottom - down);
  const int rightSide = std::max<int>(outer.left + across, outer.right - across);
  const RECT sides[] = {{outer.left, outer.top, outer.right, innerTop},
                        {outer.left, innerBottom, outer.right, outer.bottom},
                        {outer.left, innerTop, outer.left + across, innerBottom},
                        {rightSide, innerTop, outer.right, innerBottom}};
  for (const RECT& side : sides)
    if (side.left < side.right && side.top < side.bottom) InvertRect(dc, &side);
}

}  // namespace

void CDC::DrawDragRect(LPCRECT rect, SIZE size, LPCRECT last, SIZE lastSize, CBrush*, CBrush*) {
  if (last != nullptr) InvertFrame(m_hDC, *last, lastSize);
  InvertFrame(m_hDC, *rect, size);
}
