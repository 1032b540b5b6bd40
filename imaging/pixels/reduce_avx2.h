#pragma once

#include "imaging/pixels/reduce.h"

#if defined(__x86_64__)

#include <immintrin.h>

#include <cstddef>
#include <cstdint>

// The attribute stands at each function, so that nothing else of the library needs such a processor; lambdas
// don't inherit it and are not used here.
#define TARGET_AVX2 __attribute__((target("avx2")))

namespace imaging::avx2 {

inline constexpr std::size_t kVector = 32;

TARGET_AVX2 inline __m256i Load(const std::uint8_t* at) {
  return _mm256_loadu_si256(reinterpret_cast<const __m256i*>(at));
}
TARGET_AVX2 inline __m128i LoadHalf(const std::uint8_t* at) {
  return _mm_loadu_si128(reinterpret_cast<const __m128i*>(at));
}
TARGET_AVX2 inline void Store(std::uint8_t* at, __m256i value) {
  _mm256_storeu_si256(reinterpret_cast<__m256i*>(at), value);
}

inline const std::uint8_t* SourceOf(const TwoLevelBlocks& blocks, int y) {
  return blocks.source + static_cast<std::ptrdiff_t>(y) * blocks.divisor * blocks.sourcePitch;
}
inline std::uint8_t* TargetOf(const TwoLevelBlocks& blocks, int y) {
  return blocks.target + y * blocks.targetPitch;
}

inline constexpr int kShift = 23;
/// count * 255 / (n * n), cut off, is count * Multiplier(n) >> kShift: the multiplier is too large by less
/// than 1, so the product by less than n * n, and the quotient by less than n * n / 2^23, which for n up to
/// 16 stays below the distance 1 / (n * n) to the next whole number. The product stays below 2^32.
inline std::uint32_t Multiplier(int n) {
  const auto pixels = static_cast<std::uint32_t>(n * n);
  return ((255U << kShift) + pixels - 1) / pixels;
}

/// Grey of 8 counts, a byte each.
TARGET_AVX2 inline std::int64_t GrayOf(__m256i counts, __m256i multiplier) {
  const __m256i gray = _mm256_srli_epi32(_mm256_mullo_epi32(counts, multiplier), kShift);
  const __m256i gather = _mm256_set1_epi32(0x0c080400);  // the low byte of each word
  const __m256i packed = _mm256_shuffle_epi8(gray, gather);
  return _mm_cvtsi128_si64(
      _mm_unpacklo_epi32(_mm256_castsi256_si128(packed), _mm256_extracti128_si256(packed, 1)));
}

/// Blocks that need no counts of single columns: packed ones of 2, 4 and multiples of 8, bytes two by two.
/// False, and nothing done, for others.
bool ReduceWhole(const TwoLevelBlocks& blocks);
/// Packed blocks of 3 to 15 but for those: the columns' counts stay one bit beside the other, each place of
/// the counts in a row of its own. False, and nothing done, for others.
bool ReducePlanes(const TwoLevelBlocks& blocks);

}  // namespace imaging::avx2

#endif
