#pragma once

#include <algorithm>
#include <cstdint>

#include "platform/base/geometry.h"

// How large a page's picture in the strip is.
namespace thumbs {

inline constexpr int kLandscapeWidth = 107;
inline constexpr int kPortraitHeight = 79;

/// Fractions are cut off; a side of a page that is all length can become 0, which the imaging service
/// refuses.
inline CSize StripSize(SIZE page) {
  if (page.cx > page.cy)
    return {kLandscapeWidth, static_cast<int>(std::int64_t{kLandscapeWidth} * page.cy / page.cx)};
  return {static_cast<int>(std::int64_t{kPortraitHeight} * page.cx / page.cy), kPortraitHeight};
}

// Of a document's strip, whose cells have a size of their own.

inline constexpr int kCellSide = 115;
inline constexpr int kCellMargin = 7;    ///< width that the control needs for itself
inline constexpr int kCaptionRoom = 35;  ///< height for itself and the caption

/// The most that a picture should take in a cell.
inline SIZE PictureRoom(SIZE cell) {
  return {cell.cx - kCellMargin, cell.cy - kCaptionRoom};
}

struct Picture {
  double factor;  ///< above 1.0 for a page that is smaller than the room
  CSize size;     ///< at least 1 by 1
};

/// Fits the longer side alone: an almost square page is higher or wider than the room.
inline Picture FitLongerSide(SIZE page, SIZE room) {
  const double factor =
      page.cx > page.cy ? static_cast<double>(room.cx) / page.cx : static_cast<double>(room.cy) / page.cy;
  return {factor, CSize(std::max(static_cast<int>(page.cx * factor), 1),
                        std::max(static_cast<int>(page.cy * factor), 1))};
}

/// What the control tells of its items and the screenful in view (from 1; 0 of 0: nothing scrolls).
struct Screenfuls {
  int items;
  int screens;
  int current;
};

/// Whether an item, from 0, is in view, taking all screenfuls for equally long.
inline bool IsInView(int item, const Screenfuls& at) {
  if (at.screens == 0) return true;
  const std::int64_t perScreen = at.items / at.screens;
  return item + 1 > (at.current - 1) * perScreen && item + 1 <= at.current * perScreen;
}

}  // namespace thumbs
