#pragma once

#include "imaging/codecs/tiff_layout.h"
#include "imaging/pixels/storage.h"

namespace imaging {

/// Whether the strips or tiles are lossless JPEG streams, which libtiff's JPEG library can't decode.
bool IsLosslessTiff(const TiffHandle& tiff, const TiffLayout& layout);

std::unique_ptr<PixelStorage> DecodeLosslessTiff(const TiffHandle& tiff, const TiffLayout& layout);

}  // namespace imaging
