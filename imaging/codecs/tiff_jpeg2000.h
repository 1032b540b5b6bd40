#pragma once

#include "imaging/codecs/tiff_layout.h"
#include "imaging/pixels/storage.h"

namespace imaging {

/// A page whose strips or tiles are JPEG 2000 codestreams, each read by the helper. What can't be decoded
/// stays white; throws if nothing can. Colours come red first.
std::unique_ptr<PixelStorage> DecodeJpeg2000Tiff(const TiffHandle& tiff, const TiffLayout& layout,
                                                 const DecodeWish& wish);

}  // namespace imaging
