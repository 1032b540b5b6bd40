#pragma once

#include "imaging/codecs/codec.h"
#include "imaging/pixels/record.h"

namespace imaging {

/// Decodes a page at the depth that is asked for: 8 shows one of 1 bit as bytes, others are the page's own.
DecodedPage DecodeAt(int bits, Reader& reader, int page, const DecodeWish& wish);
/// The record of a page that was decoded, without its pixels.
Bitmap HeaderOf(const DecodedPage& page);
/// The record of a page that was decoded; it owns the pixels.
Bitmap RecordOf(DecodedPage page);

}  // namespace imaging
