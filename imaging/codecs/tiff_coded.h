#pragma once

#include <memory>

#include "imaging/codecs/tiff_layout.h"
#include "imaging/pixels/coded_page.h"

namespace imaging {

/// How the coded bytes of a page that was decoded without a fault can be passed on; null if they can't.
std::shared_ptr<const CodedPage> CodedTiffPage(const TiffHandle& tiff, const TiffLayout& layout,
                                               std::uint64_t directory);

}  // namespace imaging
