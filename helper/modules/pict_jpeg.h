#pragma once

#include "helper/modules/pict_bitmap.h"

namespace helper {

/// A JPEG as a bitmap in red, green and blue, whose target is its own size. Throws if nothing can be decoded.
PictBitmap DecodePictJpeg(std::span<const std::uint8_t> jpeg);

}  // namespace helper
