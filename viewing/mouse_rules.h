#pragma once

#include <algorithm>

#include "library/resource_ids.h"
#include "platform/base/geometry.h"
#include "viewing/zoom_steps.h"

/// Mouse modes of the image window. Any other value is kept and does nothing.
enum : int { MouseModeNone = 0, MouseModeDrag = 1, MouseModeZoomIn = 2, MouseModeZoomOut = 3 };

/// Mouse modes of the document's view. Any other value is kept and does nothing.
enum : int {
  ViewMouseNone = 0,
  ViewMouseDrag = 1,
  ViewMouseDrag2 = 2,  ///< as ViewMouseDrag; for hosts
  ViewMouseZoomIn = 3,
  ViewMouseZoomOut = 4
};

// What clicks and selections mean, as arithmetic without windows. Points are client coordinates; a scroll
// position is the pixel of the scaled page at the client area's top left corner.
namespace mouse {

/// What a click does in the modes of a window.
struct Modes {
  int drag;
  int otherDrag;
  int zoomIn;
  int zoomOut;

  /// Whether the left button drags the page in that mode.
  constexpr bool Drags(int mode) const { return mode == drag || mode == otherDrag; }
  /// Whether it zooms by a step.
  constexpr bool Zooms(int mode) const { return mode == zoomIn || mode == zoomOut; }
  /// Shift turns the direction over. For modes in which a click zooms.
  constexpr bool ZoomsIn(int mode, bool shift) const { return (mode == zoomIn) != shift; }
};

/// The corners in either order; left and top are the smaller ones.
inline CRect SelectionRect(POINT start, POINT end) {
  return {std::min(start.x, end.x), std::min(start.y, end.y), std::max(start.x, end.x),
          std::max(start.y, end.y)};
}

/// The pixel of the page at full size under a point.
inline CPoint PagePixelAt(POINT point, POINT scroll, double factor) {
  return {zoom::TruncateToInt((point.x + scroll.x) / factor),
          zoom::TruncateToInt((point.y + scroll.y) / factor)};
}

/// The scroll position that brings a page pixel to the middle of the window, before the limits.
inline CPoint CentredOn(POINT pagePixel, double factor, SIZE client) {
  return {zoom::TruncateToInt(pagePixel.x * factor) - client.cx / 2,
          zoom::TruncateToInt(pagePixel.y * factor) - client.cy / 2};
}

/// By how much a selection is enlarged so that all of it fits the window. Its sides are above 0.
inline double SelectionMultiplier(SIZE client, SIZE selection) {
  const double across = static_cast<double>(client.cx) / selection.cx;
  const double down = static_cast<double>(client.cy) / selection.cy;
  return across < down ? across : down;
}

/// A point of the scaled page after the scale was multiplied.
inline CPoint Multiplied(POINT point, double multiplier) {
  return {zoom::TruncateToInt(point.x * multiplier), zoom::TruncateToInt(point.y * multiplier)};
}

/// The cursor of a zoom mode, for the direction in which a click zooms.
inline UINT ZoomCursor(bool in, bool possible) {
  if (!possible) return IDC_ZP_CURSOR_ZOOM_LIMIT;
  return in ? IDC_ZP_CURSOR_ZOOM_IN : IDC_ZP_CURSOR_ZOOM_OUT;
}

}  // namespace mouse
