#pragma once

#include <cstdint>
#include <vector>

#include "platform/resources/resource_tables.h"

namespace platform {

/// A picture's pixels as 0xAARRGGBB, top row first.
struct PicturePixels {
  int width = 0;
  int height = 0;
  std::vector<std::uint32_t> argb;
};

/// Empty for a picture without pixels, with rows of unequal length or with a symbol that has no colour.
/// Transparent colours have alpha 0 and keep their red, green and blue.
PicturePixels ReadPicture(const Picture* picture);

}  // namespace platform
