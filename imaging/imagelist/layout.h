#pragma once

#include <utility>

#include "platform/base/geometry.h"

namespace imaging {

/// Where the cells of an image list stand: rows from the top, as many columns as the width holds, the rest of
/// the width shared evenly by the gaps. Plain arithmetic in logical units; scroll is how many of them lie
/// above the client area.
struct ImageListLayout {
  static constexpr int kGap = 6;  ///< between rows, and at least between columns

  /// A client area narrower than a cell narrows the cell, so that nothing is cut off.
  static ImageListLayout Make(int count, SIZE item, SIZE client);

  int Rows() const { return (count + columns - 1) / columns; }
  int RowPitch() const { return cell.cy + kGap; }
  int ContentHeight() const { return count == 0 ? 0 : Rows() * RowPitch() + kGap; }
  bool NeedsScrolling() const { return ContentHeight() > client.cy; }
  int ClampScroll(int scroll) const;
  /// In client coordinates.
  RECT CellAt(int index, int scroll) const;
  /// The item under a point of the client area, -1 for a gap.
  int HitTest(POINT point, int scroll) const;
  /// First and one past the last item of the rows that lie between two heights of the client area.
  std::pair<int, int> Between(int top, int bottom, int scroll) const;
  /// The first item of the row at the top of the client area, be it in part.
  int Top(int scroll) const { return Between(kGap, kGap + 1, scroll).first; }
  /// The nearest scroll at which the whole cell is in view.
  int ScrollToShow(int index, int scroll) const;

  /// Items in rows that fit the client area; one row at least.
  int ItemsPerScreen() const;
  /// Screenfuls of items, 0 if nothing needs scrolling.
  int Screens() const;
  /// The screenful in view, from 1. A caller takes the items of screenful s for the s-th of Screens() equal
  /// shares and scrolls to none of these; so it is 0 where no such share is wholly in view.
  int Screen(int scroll) const;

  int count = 0;
  int columns = 1;
  SIZE cell{};
  SIZE client{};
};

}  // namespace imaging
