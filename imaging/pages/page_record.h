#pragma once

#include "imaging/codecs/codec.h"
#include "imaging/pixels/record.h"

namespace imaging {

/// The record of a page that was decoded, without its pixels.
Bitmap HeaderOf(const DecodedPage& page);
/// The record of a page that was decoded; it owns the pixels.
Bitmap RecordOf(DecodedPage page);

}  // namespace imaging
