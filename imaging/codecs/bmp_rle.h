#pragma once

#include "imaging/core/source.h"
#include "imaging/pixels/storage.h"

namespace imaging {

enum class BmpRle { kRle4, kRle8, kRle24 };

/// Decodes run-length coded rows, bottom row first unless topDown, into storage of 4, 8 or 24 bits. Places
/// that the stream skips have index 0. A stream that is damaged or cut off ends there; runs are cut at the
/// edges. Returns false if there was nothing to decode.
bool DecodeBmpRle(const Source& source, std::int64_t offset, BmpRle kind, bool topDown, PixelStorage& pixels);

}  // namespace imaging
