#pragma once

#include <array>
#include <cstddef>
#include <cstdint>

#include "platform/base/bitmapinfo.h"
#include "platform/base/types.h"

// Reduction of a two-level page to grey: every block of n by n pixels becomes one byte, the share of light
// pixels in it. Pages come as packed device-independent bitmaps of 8 bits with all 256 colours, so that the
// rows begin at a fixed place; rows are padded to 4 bytes.
namespace smart_resize {

inline constexpr std::size_t kRowsOffset = sizeof(BITMAPINFOHEADER) + 256 * sizeof(RGBQUAD);

/// Rows of the page and of its reduction, in the order in which they stand in memory.
struct Rows {
  const std::uint8_t* source;
  std::size_t sourcePitch;  ///< bytes
  std::uint8_t* target;
  std::size_t targetPitch;  ///< bytes
  int width;                ///< of the target, at least 1; the source has `divisor` times as many, or more
  int height;
  int divisor;       ///< at least 1
  bool zeroIsLight;  ///< light pixels are those with the byte 0, else those with any other
};

/// Writes width bytes in each of height target rows and nothing else.
void ReduceToGray(const Rows& rows);
/// The same for any processor and divisor.
void ReduceToGrayPlain(const Rows& rows);
/// The same with 32-byte vectors. False, and nothing done, for a processor without them and for divisors
/// other than 2 to 16.
bool ReduceToGrayFast(const Rows& rows);

/// What becomes of a block.
struct Job {
  BITMAPINFOHEADER head;  ///< of the reduced block
  Rows rows;              ///< target still null
  std::size_t targetBytes;
};

/// False if the block isn't a bitmap of this kind with all its rows, or is smaller than the divisor.
bool Plan(const std::uint8_t* block, std::size_t bytes, int divisor, Job* job);
/// Fills a zeroed block of targetBytes.
void WriteReduced(const Job& job, const std::array<RGBQUAD, 256>& palette, std::uint8_t* block);

}  // namespace smart_resize
