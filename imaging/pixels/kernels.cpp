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

template <int Channels>
std::uint32_t BoxSum(const std::uint16_t* row, const BoxSpan& span, int fraction) {
  std::uint32_t full = 0;
  for (int i = 1; i <= span.full; ++i) full += row[i * Channels];
  return (full << fraction) + row[0] * span.firstWeight + row[(span.full + 1) * Channels] * span.lastWeight;
}

void BoxGray(std::uint8_t* out, const std::uint16_t* row, const BoxSpan* spans, std::size_t count,
             int fraction, BoxDivisor divisor) {
  for (std::size_t i = 0; i < count; ++i)
    out[i] = divisor.Apply(BoxSum<1>(row + spans[i].first, spans[i], fraction));
}

template <int Channels>
void BoxColor(std::uint32_t* out, const std::uint16_t* row, const BoxSpan* spans, std::size_t count,
              int fraction, BoxDivisor divisor) {
  for (std::size_t i = 0; i < count; ++i) {
    std::uint32_t pixel = Channels == 3 ? 0xff000000U : 0;
    const std::uint16_t* begin = row + static_cast<std::ptrdiff_t>(spans[i].first) * Channels;
    for (int c = 0; c < Channels; ++c)
      pixel |= std::uint32_t{divisor.Apply(BoxSum<Channels>(begin + c, spans[i], fraction))} << (8 * c);
    out[i] = pixel;
  }
}

void ExpandBits(std::uint8_t* out, const std::uint8_t* row, std::size_t firstBit, std::size_t count,
                std::uint8_t zero, std::uint8_t one) {
  for (std::size_t i = 0; i < count; ++i) {
    const std::size_t bit = firstBit + i;
    out[i] = (row[bit / 8] >> (7 - bit % 8) & 1) != 0 ? one : zero;
  }
}

void GrayToPixels(std::uint32_t* out, const std::uint8_t* grays, std::size_t count) {
  for (std::size_t i = 0; i < count; ++i) out[i] = 0xff000000U | grays[i] * 0x010101U;
}

}  // namespace

const Kernels& PlainKernels() {
  static constexpr Kernels kernels{SumRows, BoxGray, BoxColor<3>, BoxColor<4>, ExpandBits, GrayToPixels};
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
