#pragma once

#include <openjpeg.h>

#include "helper/module.h"

namespace helper {

/// How many of a decoded picture's components show colour, and which is the alpha; -1 for none.
struct Channels {
  int colors = 1;
  int alpha = -1;
  bool cmyk = false;
  bool ycc = false;
};
/// For what the library decoded.
Channels ChannelsOf(const opj_image_t& image);
/// The same before it decodes: for so many components, one of which may be alpha.
Channels ChannelsOf(int components, bool alpha, const opj_image_t& image);
/// Of a pixel in memory.
int MemoryBitsOf(const Channels& channels, const opj_image_t& image);
/// Turns components of any depth, sign, sampling and colour space to rows of pixels.
void WriteRows(const opj_image_t& image, const Channels& channels, int memoryBits, const Canvas& canvas);

}  // namespace helper
