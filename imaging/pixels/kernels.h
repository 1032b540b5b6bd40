#pragma once

#include <cstddef>
#include <cstdint>

#include "imaging/pixels/axis.h"

namespace imaging {

/// Weights of the rows of one result row and how its sums are brought to at most 16 bits.
struct RowWeights {
  std::uint32_t first;
  std::uint32_t last;
  int fraction;
  int shift;
};

/// Divides by the sum of all weights of a pixel: (sum * factor + half) >> shift.
struct BoxDivisor {
  std::uint32_t factor;
  int shift;
  std::uint8_t Apply(std::uint32_t sum) const {
    const std::uint64_t half = std::uint64_t{1} << (shift - 1);
    return static_cast<std::uint8_t>((std::uint64_t{sum} * factor + half) >> shift);
  }
};

/// The inner loops of scaling. Both sets give the same bytes.
struct Kernels {
  /// out = ((sum of full rows << fraction) + first row * weight + last row * weight) >> shift. The rows stand
  /// pitch bytes apart: the first, then full of them (at most 257), then the last, which isn't read if its
  /// weight is 0.
  void (*sumRows)(std::uint16_t* out, const std::uint8_t* rows, std::ptrdiff_t pitch, int full,
                  const RowWeights& weights, std::size_t count);
  /// Eight rows of sums side by side: out[8 i + r] = row r [i]. stride: sums from row to row.
  void (*interleave)(std::uint16_t* out, const std::uint16_t* sums, std::ptrdiff_t stride, std::size_t count);
  /// Averages along eight rows of interleaved sums of 1 to 4 channels, which stay interleaved. The spans
  /// count from the row's begin. Reads up to 8 * channels sums past the last span.
  void (*boxEight)(std::uint8_t* out, const std::uint16_t* sums, int channels, const BoxSpan* spans,
                   std::size_t count, int fraction, BoxDivisor divisor);
  /// out row r [i] = bytes[8 i + r], of the first rows of eight.
  void (*deinterleave)(std::uint8_t* out, std::ptrdiff_t stride, const std::uint8_t* bytes, std::size_t count,
                       int rows);
  /// A byte for each of count bits beginning with the given one: zero or one. Reads up to 8 bytes past the
  /// last.
  void (*expandBits)(std::uint8_t* out, const std::uint8_t* row, std::size_t firstBit, std::size_t count,
                     std::uint8_t zero, std::uint8_t one);
  /// The set bits of each column of a block of packed rows (at most 255), for the 8 columns of each of so
  /// many bytes.
  void (*countBits)(std::uint8_t* out, const std::uint8_t* rows, std::ptrdiff_t pitch, int height,
                    std::size_t bytes);
  /// 0xffRRGGBB from grey.
  void (*grayToPixels)(std::uint32_t* out, const std::uint8_t* grays, std::size_t count);
  /// 0xffRRGGBB from 3 or 4 bytes a pixel, whose red stands first or third.
  void (*colorsToPixels)(std::uint32_t* out, const std::uint8_t* bytes, std::size_t count, int channels,
                         bool redFirst);
};

const Kernels& PlainKernels();
#if defined(__x86_64__)
const Kernels& Avx2Kernels();
#endif
/// Those for this processor.
const Kernels& FastKernels();

}  // namespace imaging
