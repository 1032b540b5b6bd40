#pragma once

#include <algorithm>
#include <cstdint>

#include "platform/base/geometry.h"
#include "platform/window/messages.h"
#include "viewing/zoom_steps.h"

// The part of the scaled page that a window shows. Positions are pixels of the scaled page: the one shown at
// the client area's top left corner. Pure arithmetic, shared by every window that shows pages.
namespace viewport {

inline constexpr int kLineStep = 15;

/// Three quarters of what is seen.
inline int PageStep(int client) {
  return client - client / 4;
}

/// In screen pixels, fractions cut off: 0 for what is smaller than one.
inline CSize ScaledSize(SIZE page, double factor) {
  return {zoom::TruncateToInt(page.cx * factor), zoom::TruncateToInt(page.cy * factor)};
}

/// Largest position; 0 where all of the page is seen.
inline CPoint LargestPosition(SIZE scaled, SIZE client) {
  return {std::max(scaled.cx - client.cx, 0), std::max(scaled.cy - client.cy, 0)};
}

/// Held within 0 and the largest position.
inline int Limit(std::int64_t position, int largest) {
  return static_cast<int>(std::clamp<std::int64_t>(position, 0, largest));
}

/// Both held within 0 and the largest.
inline CPoint Limit(POINT position, POINT largest) {
  return {Limit(position.x, largest.x), Limit(position.y, largest.y)};
}

/// The position after scrolling by the offset, within the limits.
inline CPoint Moved(POINT position, SIZE offset, POINT largest) {
  return {Limit(std::int64_t{position.x} + offset.cx, largest.x),
          Limit(std::int64_t{position.y} + offset.cy, largest.y)};
}

/// Whether a client area of this size, grown or shrunk, would show more than the page's end.
inline bool IsBeyondEnd(int position, int client, int scaled) {
  return std::int64_t{client} + position > scaled;
}

/// Where a position stays after the client area has grown or shrunk to `client`.
inline int AfterResize(int position, int client, int scaled, int largest) {
  return IsBeyondEnd(position, client, scaled) ? largest : position;
}

/// The position at which the page's point in the middle of the client area stays there when the scale is
/// multiplied by ratio; before the limits.
inline CPoint KeepingCentre(POINT position, SIZE client, double ratio) {
  const CSize middle(client.cx / 2, client.cy / 2);
  return {zoom::TruncateToInt(middle.cx * (ratio - 1) + position.x * ratio),
          zoom::TruncateToInt(middle.cy * (ratio - 1) + position.y * ratio)};
}

/// One axis of the window, as a scroll bar event finds it.
struct Axis {
  int position;
  int largest;
  int client;
};

/// How far a line or page event moves the view, before the limits; 0 for every other code and at the end of
/// the way.
inline int StepOf(int code, const Axis& axis) {
  switch (code) {
    case SB_LINEUP:
      return axis.position > 0 ? -kLineStep : 0;
    case SB_PAGEUP:
      return axis.position > 0 ? -PageStep(axis.client) : 0;
    case SB_LINEDOWN:
      return axis.position < axis.largest ? kLineStep : 0;
    case SB_PAGEDOWN:
      return axis.position < axis.largest ? PageStep(axis.client) : 0;
    default:
      return 0;
  }
}

/// True for the codes that carry the thumb's place.
inline bool IsThumb(int code) {
  return code == SB_THUMBPOSITION || code == SB_THUMBTRACK;
}

/// Where the whole scaled page lies, in client coordinates.
inline CRect PageRect(POINT position, SIZE scaled) {
  return {-position.x, -position.y, scaled.cx - position.x, scaled.cy - position.y};
}

}  // namespace viewport
