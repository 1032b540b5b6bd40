#include "imaging/pixels/kernels.h"

#include <algorithm>
#include <array>
#include <bit>
#include <cstring>

#include "imaging/pixels/eight_rows.h"

// The inner loops for any processor, in forms that the compiler makes vectors of: fixed counts, narrow types,
// and products of two 16-bit numbers, for which even the oldest vector units have instructions.

namespace imaging {
namespace {

constexpr std::size_t kRows = 8;

void WeighRows(std::uint16_t* __restrict out, const std::uint16_t* __restrict full,
               const std::uint8_t* __restrict first, const std::uint8_t* __restrict last,
               const RowWeights& weights, std::size_t count) {
  const auto byFirst = static_cast<std::int16_t>(weights.first);
  const auto byLast = static_cast<std::int16_t>(weights.last);
  const int fraction = weights.fraction;
  const int shift = weights.shift;
  for (std::size_t i = 0; i < count; ++i) {
    const std::int16_t begin = first[i];
    const std::int16_t end = last[i];
    const int ends = begin * byFirst + end * byLast;
    out[i] = static_cast<std::uint16_t>(
        ((std::uint32_t{full[i]} << fraction) + static_cast<std::uint32_t>(ends)) >> shift);
  }
}

/// The sums of rows of 16 columns, which stay in registers meanwhile.
void AddRows(std::uint16_t* out, const std::uint8_t* rows, std::ptrdiff_t pitch, int count) {
  using eight_rows::Bytes;
  using eight_rows::Words;
  const Bytes zero{};
  Words sums[2]{};
  for (int k = 0; k < count; ++k, rows += pitch) {
    const auto row = eight_rows::Load<Bytes>(rows);
    sums[0] += reinterpret_cast<Words>(eight_rows::Low(row, zero));
    sums[1] += reinterpret_cast<Words>(eight_rows::High(row, zero));
  }
  std::memcpy(out, sums, sizeof sums);
}

/// By stretches whose sums stay in the first-level cache.
void SumRows(std::uint16_t* out, const std::uint8_t* rows, std::ptrdiff_t pitch, int full,
             const RowWeights& weights, std::size_t count) {
  constexpr std::size_t kStretch = 512;
  constexpr std::size_t kVector = 16;
  const std::uint8_t* last = weights.last == 0 ? rows : rows + (full + 1) * pitch;
  const std::uint8_t* between = rows + pitch;
  std::array<std::uint16_t, kStretch> sums;
  for (std::size_t begin = 0; begin < count; begin += kStretch) {
    const std::size_t n = std::min(kStretch, count - begin);
    std::size_t i = 0;
    for (; i + kVector <= n; i += kVector) AddRows(&sums[i], between + begin + i, pitch, full);
    for (; i < n; ++i) {
      sums[i] = 0;
      for (int k = 0; k < full; ++k)
        sums[i] =
            static_cast<std::uint16_t>(sums[i] + between[k * pitch + static_cast<std::ptrdiff_t>(begin + i)]);
    }
    WeighRows(out + begin, sums.data(), rows + begin, last + begin, weights, n);
  }
}

using Quad = std::uint32_t __attribute__((vector_size(16)));

/// Eight sums of 32 bits.
struct Eight {
  Quad low;
  Quad high;

  static Eight At(const std::uint16_t* sums) {
    const auto eight = eight_rows::Load<eight_rows::Words>(sums);
    const eight_rows::Words zero{};
    return {reinterpret_cast<Quad>(eight_rows::Low(eight, zero)),
            reinterpret_cast<Quad>(eight_rows::High(eight, zero))};
  }
  Eight operator+(const Eight& other) const { return {low + other.low, high + other.high}; }
  Eight operator<<(int bits) const { return {low << bits, high << bits}; }
  Eight operator*(std::uint32_t factor) const { return {low * factor, high * factor}; }
};

/// One channel of a pixel in eight rows: from is its first sum.
Eight WeighColumns(const std::uint16_t* from, std::ptrdiff_t step, const BoxSpan& span, int fraction) {
  Eight sum = {};
  const std::uint16_t* at = from;
  for (int x = 0; x < span.full; ++x) sum = sum + Eight::At(at += step);
  sum = (sum << fraction) + Eight::At(from) * span.firstWeight;
  if (span.lastWeight != 0) sum = sum + Eight::At(at + step) * span.lastWeight;
  return sum;
}

/// The divisions follow for many pixels at once.
void BoxEight(std::uint8_t* out, const std::uint16_t* sums, int channels, const BoxSpan* spans,
              std::size_t count, int fraction, BoxDivisor divisor) {
  constexpr std::size_t kTogether = 64;
  const std::ptrdiff_t step = std::ptrdiff_t{channels} * static_cast<std::ptrdiff_t>(kRows);
  std::array<std::uint32_t, kTogether * kRows * 4> weighed;
  for (std::size_t begin = 0; begin < count; begin += kTogether) {
    std::uint32_t* end = weighed.data();
    for (std::size_t i = begin; i < std::min(begin + kTogether, count); ++i) {
      const std::uint16_t* from = sums + spans[i].first * step;
      for (int c = 0; c < channels; ++c, from += kRows, end += kRows) {
        const Eight sum = WeighColumns(from, step, spans[i], fraction);
        std::memcpy(end, &sum, sizeof sum);
      }
    }
    const auto bytes = static_cast<std::size_t>(end - weighed.data());
    for (std::size_t i = 0; i < bytes; ++i) out[i] = divisor.Apply(weighed[i]);
    out += bytes;
  }
}

/// A byte of 0 or 1 for each bit of a byte, the highest first in memory.
constexpr std::array<std::uint64_t, 256> SpreadTable() {
  std::array<std::uint64_t, 256> table{};
  for (std::size_t byte = 0; byte < table.size(); ++byte)
    for (unsigned bit = 0; bit < 8; ++bit) {
      const unsigned place = std::endian::native == std::endian::little ? bit : 7 - bit;
      table[byte] |= std::uint64_t{byte >> (7 - bit) & 1} << 8 * place;
    }
  return table;
}
constexpr std::array<std::uint64_t, 256> kSpread = SpreadTable();

std::uint64_t Repeated(std::uint8_t byte) {
  return byte * std::uint64_t{0x0101010101010101};
}

void ExpandBits(std::uint8_t* out, const std::uint8_t* row, std::size_t firstBit, std::size_t count,
                std::uint8_t zero, std::uint8_t one) {
  const std::uint64_t zeros = Repeated(zero);
  const auto change = static_cast<std::uint8_t>(zero ^ one);
  const std::size_t shift = 8 - firstBit % 8;
  row += firstBit / 8;
  std::size_t i = 0;
  for (; i + 8 <= count; i += 8, ++row) {
    const unsigned two = static_cast<unsigned>(row[0]) << 8 | row[1];
    const std::uint64_t eight = zeros ^ (kSpread[two >> shift & 0xff] * change);
    std::memcpy(out + i, &eight, sizeof eight);
  }
  const std::size_t begun = firstBit % 8;
  for (std::size_t k = 0; i < count; ++i, ++k)
    out[i] = (row[(begun + k) / 8] >> (7 - (begun + k) % 8) & 1) != 0 ? one : zero;
}

/// Column by column of bytes, so that the counts of eight columns stay in a register.
void CountBits(std::uint8_t* out, const std::uint8_t* rows, std::ptrdiff_t pitch, int height,
               std::size_t bytes) {
  constexpr std::size_t kBytes = 4;  // neighbours that are counted together
  std::size_t i = 0;
  for (; i + kBytes <= bytes; i += kBytes) {
    std::array<std::uint64_t, kBytes> counts{};
    const std::uint8_t* at = rows + i;
    for (int y = 0; y < height; ++y, at += pitch)
      for (std::size_t k = 0; k < kBytes; ++k) counts[k] += kSpread[at[k]];
    std::memcpy(out + 8 * i, counts.data(), sizeof counts);
  }
  for (; i < bytes; ++i) {
    std::uint64_t counts = 0;
    for (int y = 0; y < height; ++y) counts += kSpread[rows[y * pitch + static_cast<std::ptrdiff_t>(i)]];
    std::memcpy(out + 8 * i, &counts, sizeof counts);
  }
}

void GrayToPixels(std::uint32_t* __restrict out, const std::uint8_t* __restrict grays, std::size_t count) {
  for (std::size_t i = 0; i < count; ++i) out[i] = 0xff000000U | grays[i] * 0x010101U;
}

/// The pixel that begins at a byte, which three more follow.
template <bool RedFirst>
std::uint32_t PixelAt(const std::uint8_t* bytes) {
  std::uint32_t four = 0;
  std::memcpy(&four, bytes, sizeof four);
  if constexpr (std::endian::native == std::endian::big) four = __builtin_bswap32(four);
  if constexpr (RedFirst) four = (four & 0xff) << 16 | (four & 0xff00) | (four >> 16 & 0xff);
  return four | 0xff000000U;
}

template <bool RedFirst>
void ColorsOf(std::uint32_t* __restrict out, const std::uint8_t* __restrict bytes, std::size_t count,
              std::size_t channels) {
  if (count == 0) return;
  for (std::size_t i = 0; i + 1 < count; ++i) out[i] = PixelAt<RedFirst>(bytes + i * channels);
  // Of three channels nothing may follow the last.
  const std::uint8_t* last = bytes + (count - 1) * channels;
  const std::uint8_t four[] = {last[0], last[1], last[2], 0};
  out[count - 1] = PixelAt<RedFirst>(four);
}

void ColorsToPixels(std::uint32_t* out, const std::uint8_t* bytes, std::size_t count, int channels,
                    bool redFirst) {
  const auto step = static_cast<std::size_t>(channels);
  if (redFirst)
    ColorsOf<true>(out, bytes, count, step);
  else
    ColorsOf<false>(out, bytes, count, step);
}

}  // namespace

const Kernels& PlainKernels() {
  static constexpr Kernels kernels{
      SumRows,   eight_rows::Interleave, BoxEight,      eight_rows::Deinterleave, ExpandBits,
      CountBits, GrayToPixels,           ColorsToPixels};
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
