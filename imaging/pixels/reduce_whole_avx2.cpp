#include <algorithm>
#include <array>
#include <cstring>

#include "imaging/pixels/reduce_avx2.h"

#if defined(__x86_64__)

namespace imaging::avx2 {
namespace {

TARGET_AVX2 inline __m256i Table(const std::array<std::uint8_t, 16>& entries) {
  return _mm256_broadcastsi128_si256(LoadHalf(entries.data()));
}

/// The halves of all bytes, as indices of a table of 16.
struct Nibbles {
  __m256i high;
  __m256i low;
};
TARGET_AVX2 inline Nibbles Split(__m256i bytes) {
  const __m256i mask = _mm256_set1_epi8(15);
  return {_mm256_and_si256(_mm256_srli_epi16(bytes, 4), mask), _mm256_and_si256(bytes, mask)};
}

constexpr std::array<std::uint8_t, 16> kBitsOfNibble{0, 1, 1, 2, 1, 2, 2, 3, 1, 2, 2, 3, 2, 3, 3, 4};
constexpr std::array<std::uint8_t, 16> kBitsOfHighPair{0, 0, 0, 0, 1, 1, 1, 1, 1, 1, 1, 1, 2, 2, 2, 2};
constexpr std::array<std::uint8_t, 16> kBitsOfLowPair{0, 1, 1, 2, 0, 1, 1, 2, 0, 1, 1, 2, 0, 1, 1, 2};

/// What the row kernels share.
struct Job {
  const TwoLevelBlocks& blocks;
  std::size_t width;
  __m256i flip;  ///< all ones if clear bits count

  TARGET_AVX2 explicit Job(const TwoLevelBlocks& of)
      : blocks(of),
        width(static_cast<std::size_t>(of.width)),
        flip(_mm256_set1_epi8(static_cast<char>(of.invert ? -1 : 0))) {}
  TARGET_AVX2 __m256i Bits(const std::uint8_t* at) const { return _mm256_xor_si256(Load(at), flip); }
};

/// Blocks of 2 by 2: 32 bytes of two rows become 128 bytes.
struct Halving {
  static constexpr std::size_t kOutputs = 128;
  __m256i highPair = Table(kBitsOfHighPair);
  __m256i lowPair = Table(kBitsOfLowPair);
  __m256i gray = Table({0, 63, 127, 191, 255});
  TARGET_AVX2 Halving() = default;

  TARGET_AVX2 __m256i Gray(__m256i pairs, __m256i upper, __m256i lower) const {
    return _mm256_shuffle_epi8(
        gray, _mm256_add_epi8(_mm256_shuffle_epi8(pairs, upper), _mm256_shuffle_epi8(pairs, lower)));
  }
  TARGET_AVX2 void Run(const Job& job, const std::uint8_t* source, std::uint8_t* out) const {
    const Nibbles upper = Split(job.Bits(source));
    const Nibbles lower = Split(job.Bits(source + job.blocks.sourcePitch));
    const __m256i first = Gray(highPair, upper.high, lower.high);  // of each byte the blocks 0 to 3
    const __m256i second = Gray(lowPair, upper.high, lower.high);
    const __m256i third = Gray(highPair, upper.low, lower.low);
    const __m256i fourth = Gray(lowPair, upper.low, lower.low);
    const __m256i a0 = _mm256_unpacklo_epi8(first, second);
    const __m256i a1 = _mm256_unpackhi_epi8(first, second);
    const __m256i b0 = _mm256_unpacklo_epi8(third, fourth);
    const __m256i b1 = _mm256_unpackhi_epi8(third, fourth);
    // Unpacking works within the halves of a register: these hold bytes 0 to 3 and 16 to 19 of the source,
    // 4 to 7 and 20 to 23, and so on.
    const __m256i c0 = _mm256_unpacklo_epi16(a0, b0);
    const __m256i c1 = _mm256_unpackhi_epi16(a0, b0);
    const __m256i c2 = _mm256_unpacklo_epi16(a1, b1);
    const __m256i c3 = _mm256_unpackhi_epi16(a1, b1);
    Store(out, _mm256_permute2x128_si256(c0, c1, 0x20));
    Store(out + 32, _mm256_permute2x128_si256(c2, c3, 0x20));
    Store(out + 64, _mm256_permute2x128_si256(c0, c1, 0x31));
    Store(out + 96, _mm256_permute2x128_si256(c2, c3, 0x31));
  }
};

/// count * 255 / 2^(8 - shift), cut off, of counts from 0 to 2^(8 - shift): one less than count * 2^shift,
/// except that 0 stays. The largest wraps round to 0 and then to 255.
template <int shift>
TARGET_AVX2 inline __m256i GrayOf(__m256i counts) {
  const __m256i isZero = _mm256_cmpeq_epi8(counts, _mm256_setzero_si256());
  const __m256i less = _mm256_andnot_si256(isZero, _mm256_set1_epi8(1));
  // Shifts work on words, so what leaves a byte is masked from its neighbour.
  const __m256i mask = _mm256_set1_epi8(static_cast<char>(0xff << shift));
  return _mm256_sub_epi8(_mm256_and_si256(_mm256_slli_epi16(counts, shift), mask), less);
}

/// Blocks of 4 by 4: 32 bytes of four rows become 64 bytes.
struct Quartering {
  static constexpr std::size_t kOutputs = 64;
  __m256i bits = Table(kBitsOfNibble);
  TARGET_AVX2 Quartering() = default;

  TARGET_AVX2 void Run(const Job& job, const std::uint8_t* source, std::uint8_t* out) const {
    __m256i high = _mm256_setzero_si256();
    __m256i low = high;
    for (int i = 0; i < 4; ++i, source += job.blocks.sourcePitch) {
      const Nibbles nibbles = Split(job.Bits(source));
      high = _mm256_add_epi8(high, _mm256_shuffle_epi8(bits, nibbles.high));
      low = _mm256_add_epi8(low, _mm256_shuffle_epi8(bits, nibbles.low));
    }
    const __m256i a = _mm256_unpacklo_epi8(GrayOf<4>(high), GrayOf<4>(low));
    const __m256i b = _mm256_unpackhi_epi8(GrayOf<4>(high), GrayOf<4>(low));
    Store(out, _mm256_permute2x128_si256(a, b, 0x20));
    Store(out + 32, _mm256_permute2x128_si256(a, b, 0x31));
  }
};

/// Set bits of each of 32 bytes over 8 rows; bits counts those of a nibble.
TARGET_AVX2 inline __m256i CountEightRows(const Job& job, const std::uint8_t* source, __m256i bits) {
  __m256i sum = _mm256_setzero_si256();
  for (int i = 0; i < 8; ++i, source += job.blocks.sourcePitch) {
    const Nibbles nibbles = Split(job.Bits(source));
    sum = _mm256_add_epi8(sum, _mm256_add_epi8(_mm256_shuffle_epi8(bits, nibbles.high),
                                               _mm256_shuffle_epi8(bits, nibbles.low)));
  }
  return sum;
}

/// Blocks of 8 by 8: the bytes themselves.
struct Eighth {
  static constexpr std::size_t kOutputs = 32;
  __m256i bits = Table(kBitsOfNibble);
  TARGET_AVX2 Eighth() = default;

  TARGET_AVX2 void Run(const Job& job, const std::uint8_t* source, std::uint8_t* out) const {
    Store(out, GrayOf<2>(CountEightRows(job, source, bits)));
  }
};

/// Blocks of 16 by 16: two bytes of 16 rows. count * 255 / 256, cut off, is one less than the count, but 0
/// stays.
struct Sixteenth {
  static constexpr std::size_t kOutputs = 16;
  __m256i bits = Table(kBitsOfNibble);
  TARGET_AVX2 Sixteenth() = default;

  TARGET_AVX2 void Run(const Job& job, const std::uint8_t* source, std::uint8_t* out) const {
    const __m256i upper = CountEightRows(job, source, bits);
    const __m256i lower = CountEightRows(job, source + 8 * job.blocks.sourcePitch, bits);
    const __m256i counts = _mm256_maddubs_epi16(_mm256_add_epi8(upper, lower), _mm256_set1_epi8(1));
    const __m256i gray = _mm256_subs_epu16(counts, _mm256_set1_epi16(1));
    // Packing works within the halves of a register.
    const __m256i packed = _mm256_permute4x64_epi64(_mm256_packus_epi16(gray, gray), 0x08);
    _mm_storeu_si128(reinterpret_cast<__m128i*>(out), _mm256_castsi256_si128(packed));
  }
};

template <typename Step>
TARGET_AVX2 void ReduceInSteps(const Job& job) {
  const Step step;
  std::array<std::uint8_t, Step::kOutputs> rest;
  for (int y = 0; y < job.blocks.height; ++y) {
    const std::uint8_t* source = SourceOf(job.blocks, y);
    std::uint8_t* target = TargetOf(job.blocks, y);
    std::size_t x = 0;
    for (; x + Step::kOutputs <= job.width; x += Step::kOutputs, source += kVector)
      step.Run(job, source, target + x);
    if (x == job.width) continue;
    step.Run(job, source, rest.data());
    std::memcpy(target + x, rest.data(), job.width - x);
  }
}

/// Set bits of each byte over 8 rows, written for whole vectors.
TARGET_AVX2 void CountEightRows(const Job& job, const std::uint8_t* source, std::uint8_t* counts,
                                std::size_t bytes) {
  const __m256i bits = Table(kBitsOfNibble);
  for (std::size_t x = 0; x < bytes; x += kVector) Store(counts + x, CountEightRows(job, source + x, bits));
}

/// Divisors that are multiples of 8: blocks of whole bytes.
TARGET_AVX2 void ReduceByBytes(const Job& job) {
  const auto bytes = static_cast<std::size_t>(job.blocks.divisor / 8);
  const std::vector<std::uint8_t> gray = GrayTable(job.blocks.divisor);
  std::vector<std::uint8_t> counts(job.width * bytes + kVector);
  std::vector<std::uint32_t> sums(job.width);
  for (int y = 0; y < job.blocks.height; ++y) {
    const std::uint8_t* source = SourceOf(job.blocks, y);
    std::fill(sums.begin(), sums.end(), 0);
    for (std::size_t i = 0; i < bytes; ++i, source += 8 * job.blocks.sourcePitch) {
      CountEightRows(job, source, counts.data(), job.width * bytes);
      const std::uint8_t* count = counts.data();
      for (std::uint32_t& sum : sums)
        for (std::size_t k = 0; k < bytes; ++k) sum += *count++;
    }
    std::uint8_t* target = TargetOf(job.blocks, y);
    for (std::size_t x = 0; x < job.width; ++x) target[x] = gray[sums[x]];
  }
}

/// Bytes two by two. The blocks are so small that going through column counts would cost more than the page's
/// bytes.
class ByteHalving {
 public:
  static constexpr int kOutputs = 32;
  TARGET_AVX2 explicit ByteHalving(const TwoLevelBlocks& blocks) : m_blocks(blocks) {
    // Found by the low four bits of minus the count of zero bytes.
    std::array<std::uint8_t, 16> gray{};
    for (int zeros = 0; zeros <= 4; ++zeros)
      gray[static_cast<std::size_t>(-zeros & 15)] =
          static_cast<std::uint8_t>((blocks.invert ? zeros : 4 - zeros) * 255 / 4);
    m_gray = Table(gray);
  }

  TARGET_AVX2 void Run() const {
    for (int y = 0; y < m_blocks.height; ++y) {
      const std::uint8_t* upper = SourceOf(m_blocks, y);
      std::uint8_t* target = TargetOf(m_blocks, y);
      const auto width = static_cast<std::size_t>(m_blocks.width);
      for (std::size_t x = 0; x + 32 <= width; x += 32) Store(target + x, Gray(upper + 2 * x));
      if (width % 32 != 0)
        Store(target + width - 32, Gray(upper + 2 * (width - 32)));  // some of them once more
    }
  }

 private:
  /// Minus the zero bytes of 16 blocks, a word each.
  TARGET_AVX2 __m256i MinusZeros(const std::uint8_t* upper) const {
    const __m256i zero = _mm256_setzero_si256();
    const __m256i columns = _mm256_add_epi8(_mm256_cmpeq_epi8(Load(upper), zero),
                                            _mm256_cmpeq_epi8(Load(upper + m_blocks.sourcePitch), zero));
    return _mm256_maddubs_epi16(_mm256_set1_epi8(1), columns);
  }

  /// 32 blocks.
  TARGET_AVX2 __m256i Gray(const std::uint8_t* upper) const {
    const __m256i packed = _mm256_packs_epi16(MinusZeros(upper), MinusZeros(upper + 32));
    const __m256i inOrder = _mm256_permute4x64_epi64(packed, 0xd8);
    return _mm256_shuffle_epi8(m_gray, _mm256_and_si256(inOrder, _mm256_set1_epi8(15)));
  }

  const TwoLevelBlocks& m_blocks;
  __m256i m_gray;
};

}  // namespace

bool ReduceWhole(const TwoLevelBlocks& blocks) {
  if (blocks.bits == 8) {
    if (blocks.divisor != 2 || blocks.width < ByteHalving::kOutputs) return false;
    ByteHalving(blocks).Run();
    return true;
  }
  const Job job(blocks);
  if (blocks.divisor == 2)
    ReduceInSteps<Halving>(job);
  else if (blocks.divisor == 4)
    ReduceInSteps<Quartering>(job);
  else if (blocks.divisor == 8)
    ReduceInSteps<Eighth>(job);
  else if (blocks.divisor == 16)
    ReduceInSteps<Sixteenth>(job);
  else if (blocks.divisor % 8 == 0)
    ReduceByBytes(job);
  else
    return false;
  return true;
}

}  // namespace imaging::avx2

#endif
