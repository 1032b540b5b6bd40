#pragma once

#include "platform/base/geometry.h"
#include "viewing/zoom_steps.h"

/// Mouse modes of the document's view. Higher values are kept and do nothing.
enum : int {
  ViewMouseNone = 0,
  ViewMouseDrag = 1,
  ViewMouseDrag2 = 2,  ///< as ViewMouseDrag; for hosts
  ViewMouseZoomIn = 3,
  ViewMouseZoomOut = 4
};

// Where the document's view follows other rules than the image window, as arithmetic without a window. Sizes
// and points are pixels of the screen; a scroll position is the pixel of the scaled page at the client area's
// top left corner.
namespace view {

// Updates

enum : int { kHintAllPages = 0, kHintPageChanged = 1, kHintOtherPage = 2 };
inline constexpr int kActivePage = -1;  ///< in the place of a page number

/// Whether an update concerns a view that shows the active page.
inline bool ConcernsActivePage(int hint, int page, int activePage) {
  return hint != kHintPageChanged || page == kActivePage || page == activePage;
}

// Scale

/// One step out must leave the page visible, unlike the image window's.
inline bool CanStepOut(int divisor, SIZE page) {
  const double factor = zoom::FactorOfDivisor(zoom::NextDivisorOut(divisor));
  return zoom::CanStepOut(divisor) && page.cx * factor >= zoom::kSmallestSide &&
         page.cy * factor >= zoom::kSmallestSide;
}

/// Whether a reduced copy stands for the page.
inline bool IsReduced(int divisor, int bitsPerPixel) {
  return divisor >= 2 && bitsPerPixel == 1;
}

/// The position at which the page's point in the middle of the client area stays there when the scale is
/// multiplied by ratio; before the limits.
inline CPoint KeepingCentre(POINT position, SIZE client, double ratio) {
  const CSize middle(client.cx / 2, client.cy / 2);
  return {zoom::TruncateToInt(middle.cx * (ratio - 1) + position.x * ratio),
          zoom::TruncateToInt(middle.cy * (ratio - 1) + position.y * ratio)};
}

// Mouse

inline bool ClickDrags(int mode) {
  return mode == ViewMouseDrag || mode == ViewMouseDrag2;
}
inline bool ClickZooms(int mode) {
  return mode == ViewMouseZoomIn || mode == ViewMouseZoomOut;
}
/// Shift turns the direction over. For modes in which a click zooms.
inline bool ClickZoomsIn(int mode, bool shift) {
  return (mode == ViewMouseZoomIn) != shift;
}

// A page that can't be shown (crossed_box.h)

/// Where the text about it lies, given its height: in the middle, and down to the lower edge.
inline CRect TextRect(SIZE client, int textHeight) {
  return {0, (client.cy - textHeight) / 2, client.cx, client.cy};
}

}  // namespace view
