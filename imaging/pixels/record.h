#pragma once

#include <memory>

#include "imaging/core/records.h"
#include "imaging/pixels/storage.h"

namespace imaging {

using Bitmap = leadtools12::struct_LEAD_Bitmap;

/// The record behind a pointer of the interface. Throws if it is null.
Bitmap& Require(Bitmap* bitmap);
/// The pixels of an allocated record. Throws if the pointer is null, or the record is empty or outlived its
/// pixels. operation names what was to be done, for the error text.
PixelStorage& RequirePixels(Bitmap* bitmap, const char* operation);

/// Puts new pixels in the place of those that an allocated record refers to. The storage stays the same one,
/// so that its owner, be it another record or a list, neither loses it nor frees it twice, whatever happens
/// between a change of a borrowed header and its return.
void Replace(Bitmap& bitmap, std::unique_ptr<PixelStorage> storage);
/// Makes the record the owner of new pixels; what it held before is not looked at.
void Adopt(Bitmap& bitmap, std::unique_ptr<PixelStorage> storage);
/// A record without pixels and with unknown resolution.
Bitmap EmptyBitmap(int width, int height, int bits);
/// Frees the pixels of a record that owns them. One that outlived them is only cleared, as destructors call
/// this.
void Release(Bitmap& bitmap);
std::unique_ptr<PixelStorage> Clone(const PixelStorage& source);

}  // namespace imaging
