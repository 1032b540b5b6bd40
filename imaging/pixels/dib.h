#pragma once

#include "imaging/core/export.h"
#include "imaging/pixels/record.h"
#include "platform/base/types.h"

namespace imaging {

/// A new global memory block: header of 40 bytes, colour table (always 2^bits entries), rows bottom-up. Owned
/// by the caller.
HGLOBAL MakeDib(const Bitmap& bitmap, const PixelStorage& pixels);
/// A record with the picture of such a block, which stays the caller's. Takes uncompressed blocks of 1, 4, 8,
/// 16, 24 and 32 bits with rows in either direction. Throws if the block is anything else or damaged.
Bitmap BitmapFromDib(HGLOBAL memory);

}  // namespace imaging
