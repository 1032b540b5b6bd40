#pragma once

#include <cstdint>
#include <limits>
#include <optional>

#include "imaging/ltwrap.h"
#include "platform/base/geometry.h"
#include "viewing/zoom_steps.h"

// Fax pages have pixels that are taller than wide; stretched, they come out square on the screen. A page of
// an image window, or of a file that is printed, is stretched by whole pixels, a document's page by the exact
// ratio; one that was made square for the screen is narrowed for the paper.
namespace square_pixels {

/// Dots per inch in both directions.
struct Resolution {
  int x = 0;
  int y = 0;
};

/// The screen's.
Resolution OfScreen();

/// How many times each pixel is repeated.
struct Stretch {
  std::int64_t across = 1;
  std::int64_t down = 1;
};

/// Whether the resolutions tell anything, and the stretch if so.
struct Correction {
  bool known = false;
  Stretch stretch;
};

/// The product as a 32-bit word, as the rule wants it: absurd resolutions wrap round.
inline std::int64_t Product(int resolution, int dots) {
  return static_cast<std::int32_t>(static_cast<std::uint32_t>(resolution) * static_cast<std::uint32_t>(dots));
}

/// The whole-number stretch in the direction of the lower resolution. A resolution of 0 is unknown; so is one
/// so absurd that no pixel would be left.
inline Correction WholeFactor(Resolution page, Resolution screen) {
  const std::int64_t a = Product(page.x, screen.x);
  const std::int64_t b = Product(page.y, screen.y);
  if (a == 0 || b == 0) return {};
  const std::int64_t factor = a < b ? b / a : a / b;
  if (factor < 1) return {};
  return {true, a < b ? Stretch{factor, 1} : Stretch{1, factor}};
}

/// A side after the stretch. One that no int holds becomes the largest, which the imaging service refuses.
inline int Stretched(int side, std::int64_t times) {
  constexpr std::int64_t kLargest = std::numeric_limits<int>::max();
  return static_cast<int>(side > kLargest / times ? kLargest : side * times);
}

/// side * numerator / denominator to the nearest pixel, halves up.
inline int Scaled(int side, std::int64_t numerator, std::int64_t denominator) {
  return zoom::TruncateToInt(static_cast<double>(side * numerator) / static_cast<double>(denominator) + 0.5);
}

/// The page stretched in the direction of the lower resolution, by the exact ratio. None if a resolution is
/// unknown, or so absurd that no pixel would be left.
inline std::optional<CSize> StretchedExactly(SIZE page, Resolution resolution, Resolution screen) {
  const std::int64_t a = Product(resolution.x, screen.x);
  const std::int64_t b = Product(resolution.y, screen.y);
  if (a == 0 || b == 0) return std::nullopt;
  const CSize size = a < b ? CSize(Scaled(page.cx, b, a), page.cy) : CSize(page.cx, Scaled(page.cy, a, b));
  if (size.cx < 1 || size.cy < 1) return std::nullopt;
  return size;
}

/// Gives a bitmap the size that makes its pixels square. A page that would be larger than any may be, of an
/// absurd resolution, stays as it is; false then. Throws.
bool Resize(struct_LEAD_Bitmap* bitmap, SIZE size);

/// The page narrowed in the direction of the higher resolution. Unknown or absurd resolutions leave it alone.
inline SIZE Narrowed(SIZE page, Resolution resolution, Resolution screen) {
  const std::int64_t a = Product(resolution.x, screen.x);
  const std::int64_t b = Product(resolution.y, screen.y);
  if (a <= 0 || b <= 0) return page;
  if (a < b) return {static_cast<LONG>(page.cx * a / b), page.cy};
  return {page.cx, static_cast<LONG>(page.cy * b / a)};
}

}  // namespace square_pixels
