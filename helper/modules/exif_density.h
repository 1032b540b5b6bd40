#pragma once

#include <cstdint>
#include <span>

#include "helper/module.h"

namespace helper {

/// Sets the dots per inch that the first directory of a TIFF structure tells; leaves them if it tells none.
void ReadExifDensity(std::span<const std::uint8_t> tiff, PageRecord& record);

}  // namespace helper
