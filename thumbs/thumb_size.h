#pragma once

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

}  // namespace thumbs
