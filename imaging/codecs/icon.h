#pragma once

#include "imaging/codecs/codec.h"

namespace imaging {

/// Icons and cursors of a file or a frame, the largest first.
std::unique_ptr<Reader> OpenIcons(const Source& source);

}  // namespace imaging
