#pragma once

#include "helper/modules/media_decoder.h"

namespace helper {

/// Size, depth in memory and colours of a frame; the bits of a pixel as its samples have them.
PageRecord DescribeFrame(const AVFrame& frame);

/// Writes the frame as DescribeFrame told, or as one bit a pixel if the page was so described.
void WriteFrame(const AVFrame& frame, const PageRecord& page, const Canvas& canvas);

}  // namespace helper
