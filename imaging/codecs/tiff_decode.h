#pragma once

#include <memory>
#include <vector>

#include "imaging/codecs/codec.h"
#include "imaging/codecs/tiff_layout.h"
#include "imaging/pixels/storage.h"

namespace imaging {

/// How a page in fax coding came through.
struct FaxOutcome {
  bool sound = true;    ///< false if the coding was at fault somewhere
  int damagedRows = 0;  ///< that couldn't be decoded or only in part
};

/// Decodes a page whose samples are levels, indices or amounts of RGB and ink. 24 and 32 bits come red first.
std::unique_ptr<PixelStorage> DecodeTiffPage(const TiffHandle& tiff, const TiffLayout& layout,
                                             const DecodeWish& wish, FaxOutcome& fax);

/// A page of one bit a pixel, held with 1 or 8 bits. Without colours of its own it is held as 0 = black, 1 =
/// white whichever way the file counts.
std::unique_ptr<PixelStorage> DecodeBilevelTiff(const TiffHandle& tiff, const TiffLayout& layout,
                                                const DecodeWish& wish, FaxOutcome& fax);

/// The colours of a palette page, one for each index. Throws if the table is missing.
std::vector<RGBQUAD> ReadTiffColors(const TiffHandle& tiff, const TiffLayout& layout);

/// The colour spaces that need the library's own conversion (subsampled YCbCr, Lab, log luminance).
bool NeedsTiffColorConversion(const TiffLayout& layout);
std::unique_ptr<PixelStorage> ConvertTiffPage(const TiffHandle& tiff, const TiffLayout& layout);

}  // namespace imaging
