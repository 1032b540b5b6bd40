#pragma once

#include <array>

#include "platform/base/geometry.h"

// The mark of a page that can't be shown: a box with a cross, in the view and in the strip of thumbnails.
namespace crossed_box {

struct Line {
  POINT from;
  POINT to;
};

/// From corner to corner; the last pixel of a line isn't drawn. upEnd: the row at the left edge where the
/// second one ends, just below the box in a strip, the last row in a view.
inline std::array<Line, 2> Cross(SIZE box, LONG upEnd) {
  return {{{{0, 0}, {box.cx, box.cy}}, {{box.cx - 1, 0}, {0, upEnd}}}};
}

/// Where the text about it lies, given its height: in the middle, and down to the lower edge.
inline CRect TextRect(SIZE client, int textHeight) {
  return {0, (client.cy - textHeight) / 2, client.cx, client.cy};
}

inline constexpr unsigned kColour = 0x9e9e9e;  ///< the three parts are equal

}  // namespace crossed_box
