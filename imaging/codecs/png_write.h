#pragma once

#include "imaging/pixels/storage.h"

namespace imaging {

/// Writes the pixels in their own depth; order is that of 24 and 32 bits, resolutions are dots per inch, 0
/// unknown. The file appears under its name only when it is whole. Throws kErrorFileWrite.
void WritePng(const char* path, const PixelStorage& pixels, int order, int xResolution, int yResolution);

}  // namespace imaging
