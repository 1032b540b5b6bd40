#pragma once

#include <array>
#include <optional>
#include <vector>

#include "platform/base/bitmapinfo.h"
#include "platform/graphics/detail/dc_record.h"

namespace platform {

/// What the head of a device-independent bitmap says, checked.
struct DibFormat {
  int width = 0;
  int height = 0;
  int bits = 0;
  bool topDown = false;
  std::vector<std::uint32_t> colors;
  std::array<std::uint32_t, 3> masks = {};
};

/// None for a head that is broken or compressed. The device context's palette gives the colours where usage
/// is DIB_PAL_COLORS; it may be null otherwise.
std::optional<DibFormat> ReadDibFormat(const BITMAPINFO* info, UINT usage, const DcRecord* dc);

}  // namespace platform
