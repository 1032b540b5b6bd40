#pragma once

#include <memory>

#include "imaging/pixels/record.h"

namespace imaging {

/// The pixels of one orientation in another one; null where they stand as they should already.
std::unique_ptr<PixelStorage> TurnedBetween(const PixelStorage& pixels, int from, int to);
/// What the record says once its pixels stand in another orientation.
Bitmap HeaderInPerspective(const Bitmap& source, int viewPerspective);
/// A record with pixels of its own, which show the source's in another orientation.
Bitmap CopyInPerspective(const Bitmap& source, const PixelStorage& pixels, int viewPerspective);

}  // namespace imaging
