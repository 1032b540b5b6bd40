#pragma once

#include <array>
#include <cstddef>
#include <cstdint>

#include "imaging/ltwrap.h"
#include "platform/base/bitmapinfo.h"
#include "platform/base/types.h"

// Reduction of a two-level page to grey: every block of n by n pixels becomes one byte, the share of light
// pixels in it. Pages come as packed device-independent bitmaps of 8 bits with all 256 colours, so that the
// rows begin at a fixed place; rows are padded to 4 bytes.
namespace smart_resize {

inline constexpr std::size_t kRowsOffset = sizeof(BITMAPINFOHEADER) + 256 * sizeof(RGBQUAD);

/// What becomes of a block.
struct Job {
  BITMAPINFOHEADER head;           ///< of the reduced block
  leadtools12::TwoLevelRows rows;  ///< target still null
  std::size_t targetBytes;
};

/// False if the block isn't a bitmap of this kind with all its rows, or is smaller than the divisor.
bool Plan(const std::uint8_t* block, std::size_t bytes, int divisor, Job* job);
/// Fills a zeroed block of targetBytes.
void WriteReduced(const Job& job, const std::array<RGBQUAD, 256>& palette, std::uint8_t* block);

}  // namespace smart_resize
