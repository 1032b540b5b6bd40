#include "imaging/pixels/kernels.h"

#include <bit>
#include <cstring>

namespace imaging {
namespace {

void SumRows(std::uint16_t* out, const std::uint8_t* rows, std::ptrdiff_t pitch, int full,
             const RowWeights& weights, std::size_t count) {
  const std::uint8_t* last = weights.last == 0 ? rows : rows + (full + 1) * pitch;
  for (std::size_t i = 0; i < count; ++i) {
    std::uint32_t sum = 0;
    for (int k = 1; k <= full; ++k) sum += rows[k * pitch + static_cast<std::ptrdiff_t>(i)];
    sum = (sum << weights.fraction) + rows[i] * weights.first + last[i] * weights.last;
    out[i] = static_cast<std::uint16_t>(sum >> weights.shift);
  }
}

constexpr int kRows = 8;

void Interleave(std::uint16_t* out, const std::uint16_t* sums, std::ptrdiff_t stride, std::size_t count) {
  for (std::size_t i = 0; i < count; ++i, ++sums)
    for (int r = 0; r < kRows; ++r) *out++ = sums[r * stride];
}

void BoxEight(std::uint8_t* out, const std::uint16_t* sums, int channels, const BoxSpan* spans,
              std::size_t count, int fraction, BoxDivisor divisor) {
  const std::ptrdiff_t step = static_cast<std::ptrdiff_t>(channels) * kRows;
  for (std::size_t i = 0; i < count; ++i) {
    const BoxSpan& span = spans[i];
    const std::uint16_t* first = sums + span.first * step;
    for (std::ptrdiff_t k = 0; k < step; ++k, ++first) {
      std::uint32_t full = 0;
      for (int x = 1; x <= span.full; ++x) full += first[x * step];
      *out++ = divisor.Apply((full << fraction) + *first * span.firstWeight +
                             first[(span.full + 1) * step] * span.lastWeight);
    }
  }
}

void Deinterleave(std::uint8_t* out, std::ptrdiff_t stride, const std::uint8_t* bytes, std::size_t count,
                  int rows) {
  for (int r = 0; r < rows; ++r, out += stride)
    for (std::size_t i = 0; i < count; ++i) out[i] = bytes[i * kRows + static_cast<std::size_t>(r)];
}

void ExpandBits(std::uint8_t* out, const std::uint8_t* row, std::size_t firstBit, std::size_t count,
                std::uint8_t zero, std::uint8_t one) {
  for (std::size_t i = 0; i < count; ++i) {
    const std::size_t bit = firstBit + i;
    out[i] = (row[bit / 8] >> (7 - bit % 8) & 1) != 0 ? one : zero;
  }
}

void CountBits(std::uint8_t* out, const std::uint8_t* rows, std::ptrdiff_t pitch, int height,
               std::size_t bytes) {
  std::memset(out, 0, 8 * bytes);
  for (int y = 0; y < height; ++y, rows += pitch)
    for (std::size_t i = 0; i < 8 * bytes; ++i)
      out[i] = static_cast<std::uint8_t>(out[i] + (rows[i / 8] >> (7 - i % 8) & 1));
}

void GrayToPixels(std::uint32_t* out, const std::uint8_t* grays, std::size_t count) {
  for (std::size_t i = 0; i < count; ++i) out[i] = 0xff000000U | grays[i] * 0x010101U;
}

void ColorsToPixels(std::uint32_t* out, const std::uint8_t* bytes, std::size_t count, int channels,
                    bool redFirst) {
  const std::size_t red = redFirst ? 0 : 2;
  for (std::size_t i = 0; i < count; ++i, bytes += channels)
    out[i] = 0xff000000U | std::uint32_t{bytes[red]} << 16 | std::uint32_t{bytes[1]} << 8 | bytes[2 - red];
}

}  // namespace

const Kernels& PlainKernels() {
  static constexpr Kernels kernels{SumRows,    Interleave, BoxEight,     Deinterleave,
                                   ExpandBits, CountBits,  GrayToPixels, ColorsToPixels};
  return kernels;
}

const Kernels& FastKernels() {
#if defined(__x86_64__)
  static const Kernels& kernels = __builtin_cpu_supports("avx2") ? Avx2Kernels() : PlainKernels();
  return kernels;
#else
  return PlainKernels();
#endif
}

}  // namespace imaging
