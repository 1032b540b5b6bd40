#pragma once

#include <cstdint>
#include <functional>
#include <span>

#include "imaging/codecs/jpeg_header.h"
#include "imaging/pixels/storage.h"

namespace imaging {

/// Told of each row of each component; samples are of the frame's precision.
using LosslessRow = std::function<void(int component, int y, std::span<const std::uint16_t> samples)>;

/// Decodes a frame of the lossless process with Huffman coding (ITU-T T.81, annex H), which the JPEG library
/// can't. Returns how many rows came out in every component: fewer than the frame has if the stream is
/// damaged. Throws kErrorUnsupported for a frame that it can't decode.
int DecodeLosslessJpeg(const Source& source, const JpegHeader& header, const LosslessRow& take);

/// Takes the rows of a grey or red, green and blue frame into 8 or 24 bits, from a place of the page on. What
/// lies outside of the page is dropped. Returns the rows as above.
int DecodeLosslessInto(const Source& source, const JpegHeader& header, PixelStorage& pixels, int left,
                       int top);

}  // namespace imaging
