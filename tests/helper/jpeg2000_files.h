#pragma once

#include <openjpeg.h>

#include "tests/imaging/codec_files.h"

namespace codec_test {

/// A picture without loss, which is given up. With a transform its first three components are coded as one.
Bytes EncodeJpeg2000(opj_image_t* image, bool container, bool transform = false);

}  // namespace codec_test
