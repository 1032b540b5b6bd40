#pragma once

#include <memory>

#include "imaging/codecs/tiff_layout.h"
#include "imaging/pixels/storage.h"

namespace imaging {

/// Decodes a page whose samples are levels, indices or amounts of RGB and ink. 24 and 32 bits come red first.
std::unique_ptr<PixelStorage> DecodeTiffPage(const TiffHandle& tiff, const TiffLayout& layout,
                                             const DecodeWish& wish);

/// The colour spaces that need the library's own conversion (subsampled YCbCr, Lab, log luminance).
bool NeedsTiffColorConversion(const TiffLayout& layout);
std::unique_ptr<PixelStorage> ConvertTiffPage(const TiffHandle& tiff, const TiffLayout& layout);

}  // namespace imaging
