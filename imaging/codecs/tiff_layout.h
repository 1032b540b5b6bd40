#pragma once

#include <cstdint>

#include "imaging/codecs/codec.h"
#include "imaging/codecs/tiff_handle.h"

namespace imaging {

enum class TiffAlpha { kNone, kAssociated, kStraight };

/// What the tags of a page say of its samples (TIFF 6.0, sections 8 and following), checked for legality.
struct TiffLayout {
  int width = 0;
  int height = 0;
  int bitsPerSample = 1;
  int samples = 1;
  int sampleFormat = SAMPLEFORMAT_UINT;
  int photometric = PHOTOMETRIC_MINISBLACK;
  int compression = COMPRESSION_NONE;
  bool separatePlanes = false;
  bool tiled = false;
  int bandHeight = 0;  ///< rows of a strip or tile
  int tileWidth = 0;
  TiffAlpha alpha = TiffAlpha::kNone;  ///< of the first extra sample
  int colorSamples = 1;                ///< samples in front of the extra ones that make the colour
  int subsampling = 1;                 ///< luma samples to one pair of chroma samples

  bool Bilevel() const {
    return bitsPerSample == 1 && samples == 1 &&
           (photometric <= PHOTOMETRIC_MINISBLACK || Palette() || Mask());
  }
  bool Palette() const { return photometric == PHOTOMETRIC_PALETTE; }
  bool Rgb() const { return photometric == PHOTOMETRIC_RGB; }
  bool Mask() const { return photometric == PHOTOMETRIC_MASK; }
  bool FaxCoded() const {
    return compression == COMPRESSION_CCITTRLE || compression == COMPRESSION_CCITTFAX3 ||
           compression == COMPRESSION_CCITTFAX4 || compression == COMPRESSION_CCITTRLEW;
  }
  /// Grey levels that count from white to black.
  bool MinIsWhite() const { return photometric == PHOTOMETRIC_MINISWHITE; }
};

/// Throws kErrorCorrupt, kErrorUnsupported or kErrorLimit for a page that can't be shown.
TiffLayout ReadTiffLayout(const TiffHandle& tiff);

PageInfo DescribeTiffPage(const TiffHandle& tiff, const TiffLayout& layout);

}  // namespace imaging
