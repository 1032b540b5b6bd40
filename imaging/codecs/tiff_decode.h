#pragma once

#include <memory>
#include <vector>

#include "imaging/codecs/codec.h"
#include "imaging/codecs/tiff_layout.h"
#include "imaging/pixels/storage.h"

namespace imaging {

/// Decodes a page whose samples are levels, indices or amounts of RGB and ink. 24 and 32 bits come red first.
/// sound becomes false if fax coding was at fault somewhere.
std::unique_ptr<PixelStorage> DecodeTiffPage(const TiffHandle& tiff, const TiffLayout& layout,
                                             const DecodeWish& wish, bool& sound);

/// A page of one bit a pixel, held with 1 or 8 bits. Without colours of its own it is held as 0 = black, 1 =
/// white whichever way the file counts.
std::unique_ptr<PixelStorage> DecodeBilevelTiff(const TiffHandle& tiff, const TiffLayout& layout,
                                                const DecodeWish& wish, bool& sound);

/// The colours of a palette page, one for each index. Throws if the table is missing.
std::vector<RGBQUAD> ReadTiffColors(const TiffHandle& tiff, const TiffLayout& layout);

/// The colour spaces that need the library's own conversion (subsampled YCbCr, Lab, log luminance).
bool NeedsTiffColorConversion(const TiffLayout& layout);
std::unique_ptr<PixelStorage> ConvertTiffPage(const TiffHandle& tiff, const TiffLayout& layout);

}  // namespace imaging
