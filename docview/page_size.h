#pragma once

#include <cstdint>
#include <optional>

#include "imagewindow/square_pixels.h"
#include "imagewindow/zoom_steps.h"
#include "platform/base/geometry.h"

// The size at which a page of a document has square pixels on the screen.
namespace page_size {

/// side * numerator / denominator to the nearest pixel, halves up.
inline int Scaled(int side, std::int64_t numerator, std::int64_t denominator) {
  return zoom::TruncateToInt(static_cast<double>(side * numerator) / static_cast<double>(denominator) + 0.5);
}

/// The page stretched in the direction of the lower resolution, by the exact ratio and not by whole pixels as
/// the image window does it. None if a resolution is unknown, or so absurd that no pixel would be left.
inline std::optional<CSize> WithSquarePixels(SIZE page, square_pixels::Resolution resolution,
                                             square_pixels::Resolution screen) {
  const std::int64_t a = square_pixels::Product(resolution.x, screen.x);
  const std::int64_t b = square_pixels::Product(resolution.y, screen.y);
  if (a == 0 || b == 0) return std::nullopt;
  const CSize size = a < b ? CSize(Scaled(page.cx, b, a), page.cy) : CSize(page.cx, Scaled(page.cy, a, b));
  if (size.cx < 1 || size.cy < 1) return std::nullopt;
  return size;
}

}  // namespace page_size
