#pragma once

#include <cstddef>
#include <cstdint>
#include <memory>
#include <vector>

#include "imaging/pixels/storage.h"

namespace imaging {

/// A two-level image and its reduction: every block of divisor by divisor pixels becomes one byte, the share
/// of its set pixels (with invert: of its clear ones), 0 to 255, fractions cut off.
struct TwoLevelBlocks {
  const std::uint8_t* source;
  std::ptrdiff_t sourcePitch;  ///< bytes
  std::uint8_t* target;
  std::ptrdiff_t targetPitch;  ///< bytes
  int width;                   ///< of the target; the source has divisor times as many pixels, or more
  int height;
  int divisor;  ///< at least 1
  bool invert;
  /// 1: most significant bit first, rows readable in whole units of 64 bytes. 8: a byte each, set unless 0;
  /// nothing beside the blocks' own bytes is read.
  int bits;
};

/// Writes width bytes in each of height target rows, by vectors where it can.
void ReduceBlocks(const TwoLevelBlocks& blocks);
/// The same for any processor and divisor.
void ReduceBlocksPlain(const TwoLevelBlocks& blocks);
/// The same with vectors. False, and nothing done, for a processor without them and for divisors other than
/// 2 to 255.
bool ReduceBlocksFast(const TwoLevelBlocks& blocks);
/// The grey of each count of set pixels in a block, for divisors up to 255: count * 255 / (divisor *
/// divisor), cut off.
std::vector<std::uint8_t> GrayTable(int divisor);

/// A new image of 8 bits, smaller by a whole number, of one of 8 bits in which the byte 0 and another occur:
/// the share of the lighter one, as the first two colours of the table tell.
std::unique_ptr<PixelStorage> ReducedLevels(const PixelStorage& source, int divisor);

/// A new image, averaged down by a factor above 0 and up to 1.0, at least a pixel wide and high. 1 bit gives
/// 8 bits with shades between its two colours, other depths as SizedByAveraging. A 1-bit image that is
/// reduced by a whole number loses the pixels at the right and lower edge that make no whole block.
std::unique_ptr<PixelStorage> Reduced(const PixelStorage& source, double factor);

}  // namespace imaging
