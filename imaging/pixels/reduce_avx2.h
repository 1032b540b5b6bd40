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

/// Blocks that need no counts of single columns: packed ones of 2, 4 and multiples of 8, bytes two by two.
/// False, and nothing done, for others.
bool ReduceWhole(const TwoLevelBlocks& blocks);

}  // namespace imaging::avx2

#endif
