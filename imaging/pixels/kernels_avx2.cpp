#include "imaging/pixels/kernels.h"

#if defined(__x86_64__)

#include <immintrin.h>

#include <cstring>

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

TARGET_AVX2 inline __m128i LoadColor(const std::uint16_t* sums) {
  return _mm_cvtepu16_epi32(_mm_loadl_epi64(reinterpret_cast<const __m128i*>(sums)));
}

template <int Channels>
TARGET_AVX2 inline __m128i ColorSum(const std::uint16_t* row, const BoxSpan& span, __m128i fraction) {
  const std::uint16_t* at = row + static_cast<std::ptrdiff_t>(span.first) * Channels;
  const __m128i first = LoadColor(at);
  __m128i full = _mm_setzero_si128();
  at += Channels;
  for (int i = 0; i < span.full; ++i, at += Channels) full = _mm_add_epi32(full, LoadColor(at));
  const __m128i ends =
      _mm_add_epi32(_mm_mullo_epi32(first, _mm_set1_epi32(static_cast<int>(span.firstWeight))),
                    _mm_mullo_epi32(LoadColor(at), _mm_set1_epi32(static_cast<int>(span.lastWeight))));
  return _mm_add_epi32(_mm_sll_epi32(full, fraction), ends);
}

template <int Channels>
TARGET_AVX2 void BoxColor(std::uint32_t* out, const std::uint16_t* row, const BoxSpan* spans,
                          std::size_t count, int fraction, BoxDivisor divisor) {
  const VectorDivisor by = ToVector(divisor);
  const __m128i left = _mm_cvtsi32_si128(fraction);
  // The lowest byte of each sum, of half a register each; three channels leave the fourth byte 0.
  constexpr int kFourth = Channels == 3 ? 0x80000000 : 0x0c000000;
  const __m256i gather = _mm256_set_epi32(-1, -1, -1, kFourth | 0x080400, -1, -1, -1, kFourth | 0x080400);
  const std::uint32_t opaque = Channels == 3 ? 0xff000000U : 0;
  std::size_t i = 0;
  for (; i + 2 <= count; i += 2) {
    const __m128i even = ColorSum<Channels>(row, spans[i], left);
    const __m128i odd = ColorSum<Channels>(row, spans[i + 1], left);
    const __m256i pixels = _mm256_shuffle_epi8(Divide(_mm256_set_m128i(odd, even), by), gather);
    out[i] = static_cast<std::uint32_t>(_mm256_cvtsi256_si32(pixels)) | opaque;
    out[i + 1] = static_cast<std::uint32_t>(_mm256_extract_epi32(pixels, 4)) | opaque;
  }
  const auto rest = Channels == 3 ? PlainKernels().boxColor3 : PlainKernels().boxColor4;
  rest(out + i, row, spans + i, count - i, fraction, divisor);
}

inline std::uint32_t GraySum(const std::uint16_t* row, const BoxSpan& span, int fraction) {
  const std::uint16_t* at = row + span.first;
  std::uint32_t full = 0;
  const std::uint32_t first = *at++ * span.firstWeight;
  for (int i = 0; i < span.full; ++i) full += *at++;
  return (full << fraction) + first + *at * span.lastWeight;
}

TARGET_AVX2 void BoxGray(std::uint8_t* out, const std::uint16_t* row, const BoxSpan* spans, std::size_t count,
                         int fraction, BoxDivisor divisor) {
  const VectorDivisor by = ToVector(divisor);
  const __m256i gather = _mm256_set_epi32(-1, -1, -1, 0x0c080400, -1, -1, -1, 0x0c080400);
  std::size_t i = 0;
  for (; i + 8 <= count; i += 8) {
    alignas(32) std::uint32_t sums[8];
    for (std::size_t k = 0; k < 8; ++k) sums[k] = GraySum(row, spans[i + k], fraction);
    const __m256i grays =
        _mm256_shuffle_epi8(Divide(_mm256_load_si256(reinterpret_cast<const __m256i*>(sums)), by), gather);
    const int low = _mm256_cvtsi256_si32(grays);
    const int high = _mm256_extract_epi32(grays, 4);
    std::memcpy(out + i, &low, 4);
    std::memcpy(out + i + 4, &high, 4);
  }
  PlainKernels().boxGray(out + i, row, spans + i, count - i, fraction, divisor);
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

}  // namespace

const Kernels& Avx2Kernels() {
  static constexpr Kernels kernels{SumRows, BoxGray, BoxColor<3>, BoxColor<4>, ExpandBits, GrayToPixels};
  return kernels;
}

}  // namespace imaging

#endif
