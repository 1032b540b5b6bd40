#include "imaging/pixels/kernels.h"

#if defined(__x86_64__)

#include <immintrin.h>

#include <cstring>

#include "imaging/pixels/eight_rows.h"

// The inner loops for processors with AVX2. The attribute stands at each function, so that nothing else of
// the library needs such a processor; lambdas don't inherit it and are not used here.
#define TARGET_AVX2 __attribute__((target("avx2")))

namespace imaging {
namespace {

TARGET_AVX2 inline __m256i Load16(const std::uint8_t* bytes) {
  return _mm256_cvtepu8_epi16(_mm_loadu_si128(reinterpret_cast<const __m128i*>(bytes)));
}

struct VectorWeights {
  __m256i pair;  ///< of the first and the last row, side by side
  __m128i fraction;
  __m128i shift;
};

/// 16 sums of full rows with the first and last row, weighed and added in pairs. Unpacking and packing both
/// work within half a register, so the order comes back.
TARGET_AVX2 inline __m256i WeighRows(__m256i full, __m256i first, __m256i last,
                                     const VectorWeights& weights) {
  const __m256i zero = _mm256_setzero_si256();
  const __m256i low = _mm256_add_epi32(_mm256_madd_epi16(_mm256_unpacklo_epi16(first, last), weights.pair),
                                       _mm256_sll_epi32(_mm256_unpacklo_epi16(full, zero), weights.fraction));
  const __m256i high =
      _mm256_add_epi32(_mm256_madd_epi16(_mm256_unpackhi_epi16(first, last), weights.pair),
                       _mm256_sll_epi32(_mm256_unpackhi_epi16(full, zero), weights.fraction));
  return _mm256_packus_epi32(_mm256_srl_epi32(low, weights.shift), _mm256_srl_epi32(high, weights.shift));
}

/// All rows of a block of columns at once: each byte is read once and no sum leaves the registers.
TARGET_AVX2 void SumRows(std::uint16_t* out, const std::uint8_t* rows, std::ptrdiff_t pitch, int full,
                         const RowWeights& weights, std::size_t count) {
  const std::uint8_t* last = weights.last == 0 ? rows : rows + (full + 1) * pitch;
  const VectorWeights by{_mm256_set1_epi32(static_cast<int>(weights.first | weights.last << 16)),
                         _mm_cvtsi32_si128(weights.fraction), _mm_cvtsi32_si128(weights.shift)};
  std::size_t i = 0;
  for (; i + 32 <= count; i += 32) {
    __m256i low = _mm256_setzero_si256();
    __m256i high = low;
    const std::uint8_t* row = rows + i;
    for (int k = 0; k < full; ++k) {
      row += pitch;
      low = _mm256_add_epi16(low, Load16(row));
      high = _mm256_add_epi16(high, Load16(row + 16));
    }
    auto* to = reinterpret_cast<__m256i*>(out + i);
    _mm256_storeu_si256(to, WeighRows(low, Load16(rows + i), Load16(last + i), by));
    _mm256_storeu_si256(to + 1, WeighRows(high, Load16(rows + i + 16), Load16(last + i + 16), by));
  }
  PlainKernels().sumRows(out + i, rows + i, pitch, full, weights, count - i);
}

struct VectorDivisor {
  __m256i factor;
  __m256i half;
  __m128i shift;
};

TARGET_AVX2 VectorDivisor ToVector(BoxDivisor divisor) {
  return {_mm256_set1_epi64x(divisor.factor), _mm256_set1_epi64x(std::int64_t{1} << (divisor.shift - 1)),
          _mm_cvtsi32_si128(divisor.shift)};
}

/// Eight sums of 32 bits to results of at most 255.
TARGET_AVX2 inline __m256i Divide(__m256i sums, const VectorDivisor& divisor) {
  const __m256i even = _mm256_add_epi64(_mm256_mul_epu32(sums, divisor.factor), divisor.half);
  const __m256i odd =
      _mm256_add_epi64(_mm256_mul_epu32(_mm256_srli_epi64(sums, 32), divisor.factor), divisor.half);
  return _mm256_or_si256(_mm256_srl_epi64(even, divisor.shift),
                         _mm256_slli_epi64(_mm256_srl_epi64(odd, divisor.shift), 32));
}

TARGET_AVX2 inline __m256i LoadSums(const std::uint16_t* sums) {
  return _mm256_cvtepu16_epi32(_mm_loadu_si128(reinterpret_cast<const __m128i*>(sums)));
}

/// The rows are the lanes.
TARGET_AVX2 void BoxEight(std::uint8_t* out, const std::uint16_t* sums, int channels, const BoxSpan* spans,
                          std::size_t count, int fraction, BoxDivisor divisor) {
  const VectorDivisor by = ToVector(divisor);
  const __m128i left = _mm_cvtsi32_si128(fraction);
  const std::ptrdiff_t step = static_cast<std::ptrdiff_t>(channels) * 8;
  for (std::size_t i = 0; i < count; ++i) {
    const BoxSpan span = spans[i];
    const __m256i firstWeight = _mm256_set1_epi32(static_cast<int>(span.firstWeight));
    const __m256i lastWeight = _mm256_set1_epi32(static_cast<int>(span.lastWeight));
    const std::uint16_t* channel = sums + span.first * step;
    for (int c = 0; c < channels; ++c, channel += 8, out += 8) {
      const std::uint16_t* at = channel;
      const __m256i first = _mm256_mullo_epi32(LoadSums(at), firstWeight);
      at += step;
      __m256i full = _mm256_setzero_si256();
      for (int x = 0; x < span.full; ++x, at += step) full = _mm256_add_epi32(full, LoadSums(at));
      const __m256i last = _mm256_mullo_epi32(LoadSums(at), lastWeight);
      const __m256i levels =
          Divide(_mm256_add_epi32(_mm256_sll_epi32(full, left), _mm256_add_epi32(first, last)), by);
      const __m128i words =
          _mm_packus_epi32(_mm256_castsi256_si128(levels), _mm256_extracti128_si256(levels, 1));
      _mm_storel_epi64(reinterpret_cast<__m128i*>(out), _mm_packus_epi16(words, words));
    }
  }
}

/// 32 bits to bytes: each byte of a register takes the source byte of its bit and tests that bit.
TARGET_AVX2 void ExpandBits(std::uint8_t* out, const std::uint8_t* row, std::size_t firstBit,
                            std::size_t count, std::uint8_t zero, std::uint8_t one) {
  const __m256i spread = _mm256_set_epi64x(0x0303030303030303, 0x0202020202020202, 0x0101010101010101, 0);
  const __m256i bit = _mm256_set1_epi64x(0x0102040810204080);
  const __m256i zeros = _mm256_set1_epi8(static_cast<char>(zero));
  const __m256i ones = _mm256_set1_epi8(static_cast<char>(one));
  std::size_t i = 0;
  for (; i + 32 <= count; i += 32) {
    std::uint64_t bits = 0;
    std::memcpy(&bits, row + (firstBit + i) / 8, sizeof bits);
    bits = __builtin_bswap64(__builtin_bswap64(bits) << (firstBit + i) % 8);
    const __m256i bytes = _mm256_shuffle_epi8(_mm256_set1_epi32(static_cast<int>(bits)), spread);
    const __m256i isSet = _mm256_cmpeq_epi8(_mm256_and_si256(bytes, bit), bit);
    _mm256_storeu_si256(reinterpret_cast<__m256i*>(out + i), _mm256_blendv_epi8(zeros, ones, isSet));
  }
  PlainKernels().expandBits(out + i, row, firstBit + i, count - i, zero, one);
}

/// The same for 64 columns.
TARGET_AVX2 void CountEightBytes(std::uint8_t* out, const std::uint8_t* rows, std::ptrdiff_t pitch,
                                 int height) {
  const __m256i spreadLow = _mm256_set_epi64x(0x0303030303030303, 0x0202020202020202, 0x0101010101010101, 0);
  const __m256i spreadHigh = _mm256_add_epi8(spreadLow, _mm256_set1_epi8(4));
  const __m256i bit = _mm256_set1_epi64x(0x0102040810204080);
  __m256i low = _mm256_setzero_si256();
  __m256i high = low;
  for (int y = 0; y < height; ++y, rows += pitch) {
    long long eight = 0;
    std::memcpy(&eight, rows, sizeof eight);
    const __m256i bytes = _mm256_set1_epi64x(eight);
    // Equal is -1.
    low = _mm256_sub_epi8(
        low, _mm256_cmpeq_epi8(_mm256_and_si256(_mm256_shuffle_epi8(bytes, spreadLow), bit), bit));
    high = _mm256_sub_epi8(
        high, _mm256_cmpeq_epi8(_mm256_and_si256(_mm256_shuffle_epi8(bytes, spreadHigh), bit), bit));
  }
  _mm256_storeu_si256(reinterpret_cast<__m256i*>(out), low);
  _mm256_storeu_si256(reinterpret_cast<__m256i*>(out + 32), high);
}

TARGET_AVX2 void CountBits(std::uint8_t* out, const std::uint8_t* rows, std::ptrdiff_t pitch, int height,
                           std::size_t bytes) {
  constexpr std::size_t kStep = 8;
  if (bytes < kStep) {
    PlainKernels().countBits(out, rows, pitch, height, bytes);
    return;
  }
  for (std::size_t i = 0; i + kStep <= bytes; i += kStep)
    CountEightBytes(out + 8 * i, rows + i, pitch, height);
  // The last eight again, so that nothing past them is read.
  if (bytes % kStep != 0) CountEightBytes(out + 8 * (bytes - kStep), rows + (bytes - kStep), pitch, height);
}

TARGET_AVX2 void GrayToPixels(std::uint32_t* out, const std::uint8_t* grays, std::size_t count) {
  const __m256i spread = _mm256_set_epi32(static_cast<int>(0x800c0c0c), static_cast<int>(0x80080808),
                                          static_cast<int>(0x80040404), static_cast<int>(0x80000000),
                                          static_cast<int>(0x800c0c0c), static_cast<int>(0x80080808),
                                          static_cast<int>(0x80040404), static_cast<int>(0x80000000));
  const __m256i opaque = _mm256_set1_epi32(static_cast<int>(0xff000000));
  std::size_t i = 0;
  for (; i + 8 <= count; i += 8) {
    const __m256i wide = _mm256_cvtepu8_epi32(_mm_loadl_epi64(reinterpret_cast<const __m128i*>(grays + i)));
    _mm256_storeu_si256(reinterpret_cast<__m256i*>(out + i),
                        _mm256_or_si256(_mm256_shuffle_epi8(wide, spread), opaque));
  }
  PlainKernels().grayToPixels(out + i, grays + i, count - i);
}

/// The places of blue, green and red of a pixel that begins at a byte of a register; the fourth byte becomes
/// 0.
int ColorPlaces(int at, bool redFirst) {
  const unsigned begin = static_cast<unsigned>(at);
  const unsigned red = redFirst ? 0 : 2;
  return static_cast<int>(0x80000000U | (begin + red) << 16 | (begin + 1) << 8 | (begin + 2 - red));
}

TARGET_AVX2 void ColorsToPixels(std::uint32_t* out, const std::uint8_t* bytes, std::size_t count,
                                int channels, bool redFirst) {
  const int s = channels;
  const __m128i order = _mm_set_epi32(ColorPlaces(3 * s, redFirst), ColorPlaces(2 * s, redFirst),
                                      ColorPlaces(s, redFirst), ColorPlaces(0, redFirst));
  const __m128i opaque = _mm_set1_epi32(static_cast<int>(0xff000000));
  std::size_t i = 0;
  // Of three channels a register holds four pixels and four bytes more, which must be pixels still.
  for (; i + 6 <= count; i += 4) {
    const __m128i four =
        _mm_loadu_si128(reinterpret_cast<const __m128i*>(bytes + i * static_cast<std::size_t>(s)));
    _mm_storeu_si128(reinterpret_cast<__m128i*>(out + i),
                     _mm_or_si128(_mm_shuffle_epi8(four, order), opaque));
  }
  PlainKernels().colorsToPixels(out + i, bytes + i * static_cast<std::size_t>(s), count - i, channels,
                                redFirst);
}

}  // namespace

const Kernels& Avx2Kernels() {
  static constexpr Kernels kernels{
      SumRows,   eight_rows::Interleave, BoxEight,      eight_rows::Deinterleave, ExpandBits,
      CountBits, GrayToPixels,           ColorsToPixels};
  return kernels;
}

}  // namespace imaging

#endif
