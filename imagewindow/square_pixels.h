#pragma once

#include <cstdint>
#include <limits>

// Fax pages have pixels that are taller than wide; stretched, they come out square on the screen.
namespace square_pixels {

/// Dots per inch in both directions.
struct Resolution {
  int x = 0;
  int y = 0;
};

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

}  // namespace square_pixels
