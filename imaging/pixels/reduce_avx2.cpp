#include <algorithm>
#include <array>
#include <cstring>
#include <vector>

#include "imaging/pixels/reduce.h"

#if defined(__x86_64__)

#include <immintrin.h>

// The attribute stands at each function, so that nothing else of the library needs such a processor; lambdas
// don't inherit it and are not used here.
#define TARGET_AVX2 __attribute__((target("avx2")))

namespace imaging {
namespace {

constexpr std::size_t kVector = 32;
constexpr int kLargestDivisor = 255;  // a column's count fits into a byte

TARGET_AVX2 inline __m256i Load(const std::uint8_t* at) {
  return _mm256_loadu_si256(reinterpret_cast<const __m256i*>(at));
}
TARGET_AVX2 inline void Store(std::uint8_t* at, __m256i value) {
  _mm256_storeu_si256(reinterpret_cast<__m256i*>(at), value);
}
TARGET_AVX2 inline __m256i Table(const std::array<std::uint8_t, 16>& entries) {
  return _mm256_broadcastsi128_si256(_mm_loadu_si128(reinterpret_cast<const __m128i*>(entries.data())));
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
  const BitBlocks& blocks;
  std::size_t width;
  __m256i flip;  ///< all ones if clear bits count

  TARGET_AVX2 explicit Job(const BitBlocks& of)
      : blocks(of),
        width(static_cast<std::size_t>(of.width)),
        flip(_mm256_set1_epi8(static_cast<char>(of.invert ? -1 : 0))) {}
  const std::uint8_t* Source(int y) const {
    return blocks.source + static_cast<std::ptrdiff_t>(y) * blocks.divisor * blocks.sourcePitch;
  }
  std::uint8_t* Target(int y) const { return blocks.target + y * blocks.targetPitch; }
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

template <typename Step>
TARGET_AVX2 void ReduceInSteps(const Job& job) {
  const Step step;
  std::array<std::uint8_t, Step::kOutputs> rest;
  for (int y = 0; y < job.blocks.height; ++y) {
    const std::uint8_t* source = job.Source(y);
    std::uint8_t* target = job.Target(y);
    std::size_t x = 0;
    for (; x + Step::kOutputs <= job.width; x += Step::kOutputs, source += kVector)
      step.Run(job, source, target + x);
    if (x == job.width) continue;
    step.Run(job, source, rest.data());
    std::memcpy(target + x, rest.data(), job.width - x);
  }
}

/// count * 255 / (n * n), cut off, for n up to 255: by a table, since larger blocks are few.
std::vector<std::uint8_t> GrayTable(int n) {
  const std::size_t pixels = static_cast<std::size_t>(n) * static_cast<std::size_t>(n);
  std::vector<std::uint8_t> gray(pixels + 1);
  for (std::size_t count = 0; count <= pixels; ++count)
    gray[count] = static_cast<std::uint8_t>(count * 255 / pixels);
  return gray;
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
    const std::uint8_t* source = job.Source(y);
    std::fill(sums.begin(), sums.end(), 0);
    for (std::size_t i = 0; i < bytes; ++i, source += 8 * job.blocks.sourcePitch) {
      CountEightRows(job, source, counts.data(), job.width * bytes);
      const std::uint8_t* count = counts.data();
      for (std::uint32_t& sum : sums)
        for (std::size_t k = 0; k < bytes; ++k) sum += *count++;
    }
    std::uint8_t* target = job.Target(y);
    for (std::size_t x = 0; x < job.width; ++x) target[x] = gray[sums[x]];
  }
}

/// Counts of the bits in each of columns columns over divisor rows, a byte each; writes whole vectors.
TARGET_AVX2 void CountColumns(const Job& job, const std::uint8_t* source, std::uint8_t* counts,
                              std::size_t columns) {
  const __m256i spread = _mm256_set_epi64x(0x0303030303030303, 0x0202020202020202, 0x0101010101010101, 0);
  const __m256i bit = _mm256_set1_epi64x(0x0102040810204080);
  for (std::size_t x = 0; x < columns; x += 2 * kVector) {  // 8 bytes of a row, which rows are padded to
    __m256i first = _mm256_setzero_si256();
    __m256i second = first;
    const std::uint8_t* row = source + x / 8;
    for (int i = 0; i < job.blocks.divisor; ++i, row += job.blocks.sourcePitch) {
      std::uint64_t bits = 0;
      std::memcpy(&bits, row, sizeof bits);
      const __m256i low = _mm256_shuffle_epi8(_mm256_set1_epi32(static_cast<int>(bits)), spread);
      const __m256i high = _mm256_shuffle_epi8(_mm256_set1_epi32(static_cast<int>(bits >> 32)), spread);
      // Equal is -1.
      first = _mm256_sub_epi8(first, _mm256_cmpeq_epi8(_mm256_and_si256(low, bit), bit));
      second = _mm256_sub_epi8(second, _mm256_cmpeq_epi8(_mm256_and_si256(high, bit), bit));
    }
    if (job.blocks.invert) {
      const __m256i all = _mm256_set1_epi8(static_cast<char>(job.blocks.divisor));
      first = _mm256_sub_epi8(all, first);
      second = _mm256_sub_epi8(all, second);
    }
    Store(counts + x, first);
    Store(counts + x + kVector, second);
  }
}

/// Sums of n column counts for blocks of up to 8 columns, eight blocks at a time, as shares of 255.
class NarrowSums {
 public:
  static constexpr std::size_t kOutputs = 8;
  static constexpr int kLargest = 8;
  /// Counts that are read beyond the first of eight blocks.
  static constexpr std::size_t kReach = 7 * kLargest + 16;

  TARGET_AVX2 explicit NarrowSums(int n) : m_n(static_cast<std::size_t>(n)) {
    alignas(32) std::array<std::int8_t, 32> order;
    order.fill(-1);  // gives 0
    for (int block = 0; block < 4; ++block)
      for (int i = 0; i < n; ++i)
        order[8U * static_cast<unsigned>(block) + static_cast<unsigned>(i)] =
            static_cast<std::int8_t>(block % 2 * n + i);
    m_order = _mm256_load_si256(reinterpret_cast<const __m256i*>(order.data()));
    // The multiplier is too large by less than 1, so the quotient by less than n * n / 2^23, which stays
    // below the distance 1 / (n * n) to the next whole number; the product stays below 2^32.
    const auto pixels = static_cast<std::uint32_t>(n * n);
    m_multiplier = _mm256_set1_epi32(static_cast<int>(((255U << kShift) + pixels - 1) / pixels));
  }

  /// Eight shares from the counts of eight blocks.
  TARGET_AVX2 void Run(const std::uint8_t* counts, std::uint8_t* out) const {
    const __m256i sums = _mm256_or_si256(FourSums(counts), _mm256_slli_epi64(FourSums(counts + 4 * m_n), 32));
    const __m256i shares = _mm256_srli_epi32(_mm256_mullo_epi32(sums, m_multiplier), kShift);
    // Now blocks 0 4 1 5 and 2 6 3 7 stand in the halves, four bytes each.
    const __m128i low = _mm256_castsi256_si128(shares);
    const __m128i high = _mm256_extracti128_si256(shares, 1);
    const __m128i words = _mm_packus_epi32(low, high);
    const __m128i pick = _mm_set_epi64x(-1, 0x0e0a06020c080400);
    _mm_storel_epi64(reinterpret_cast<__m128i*>(out), _mm_shuffle_epi8(words, pick));
  }

 private:
  static constexpr int kShift = 23;

  /// A sum in each 64 bits.
  TARGET_AVX2 __m256i FourSums(const std::uint8_t* counts) const {
    const __m128i two = _mm_loadu_si128(reinterpret_cast<const __m128i*>(counts));
    const __m128i more = _mm_loadu_si128(reinterpret_cast<const __m128i*>(counts + 2 * m_n));
    const __m256i slots =
        _mm256_shuffle_epi8(_mm256_inserti128_si256(_mm256_castsi128_si256(two), more, 1), m_order);
    return _mm256_sad_epu8(slots, _mm256_setzero_si256());
  }

  std::size_t m_n;
  __m256i m_order;
  __m256i m_multiplier;
};

TARGET_AVX2 void ReduceNarrow(const Job& job) {
  const auto n = static_cast<std::size_t>(job.blocks.divisor);
  const NarrowSums sums(job.blocks.divisor);
  std::vector<std::uint8_t> counts((job.width + NarrowSums::kOutputs) * n + NarrowSums::kReach + 2 * kVector);
  std::array<std::uint8_t, NarrowSums::kOutputs> rest;
  for (int y = 0; y < job.blocks.height; ++y) {
    CountColumns(job, job.Source(y), counts.data(), job.width * n);
    std::uint8_t* target = job.Target(y);
    std::size_t x = 0;
    for (; x + NarrowSums::kOutputs <= job.width; x += NarrowSums::kOutputs)
      sums.Run(counts.data() + x * n, target + x);
    if (x == job.width) continue;
    sums.Run(counts.data() + x * n, rest.data());
    std::memcpy(target + x, rest.data(), job.width - x);
  }
}

/// The sum of n bytes; reads up to 16 beyond the last.
TARGET_AVX2 inline std::uint32_t SumBytes(const std::uint8_t* bytes, int n, __m128i lastMask) {
  const __m128i zero = _mm_setzero_si128();
  __m128i sum = zero;
  for (; n > 16; n -= 16, bytes += 16)
    sum = _mm_add_epi64(sum, _mm_sad_epu8(_mm_loadu_si128(reinterpret_cast<const __m128i*>(bytes)), zero));
  const __m128i last = _mm_and_si128(_mm_loadu_si128(reinterpret_cast<const __m128i*>(bytes)), lastMask);
  sum = _mm_add_epi64(sum, _mm_sad_epu8(last, zero));
  return static_cast<std::uint32_t>(_mm_cvtsi128_si32(_mm_add_epi64(sum, _mm_unpackhi_epi64(sum, sum))));
}

TARGET_AVX2 void ReduceWide(const Job& job) {
  const int divisor = job.blocks.divisor;
  const auto n = static_cast<std::size_t>(divisor);
  const std::vector<std::uint8_t> gray = GrayTable(divisor);
  std::vector<std::uint8_t> counts(job.width * n + 16 + 2 * kVector);
  std::array<std::uint8_t, 16> mask{};
  std::fill_n(mask.begin(), (divisor - 1) % 16 + 1, std::uint8_t{255});
  const __m128i lastMask = _mm_loadu_si128(reinterpret_cast<const __m128i*>(mask.data()));
  for (int y = 0; y < job.blocks.height; ++y) {
    CountColumns(job, job.Source(y), counts.data(), job.width * n);
    std::uint8_t* target = job.Target(y);
    for (std::size_t x = 0; x < job.width; ++x)
      target[x] = gray[SumBytes(counts.data() + x * n, divisor, lastMask)];
  }
}

TARGET_AVX2 void Reduce(const BitBlocks& blocks) {
  const Job job(blocks);
  if (blocks.divisor == 2)
    ReduceInSteps<Halving>(job);
  else if (blocks.divisor == 4)
    ReduceInSteps<Quartering>(job);
  else if (blocks.divisor == 8)
    ReduceInSteps<Eighth>(job);
  else if (blocks.divisor % 8 == 0)
    ReduceByBytes(job);
  else if (blocks.divisor < NarrowSums::kLargest)
    ReduceNarrow(job);
  else
    ReduceWide(job);
}

}  // namespace

bool ReduceBitsFast(const BitBlocks& blocks) {
  if (__builtin_cpu_supports("avx2") == 0 || blocks.divisor < 2 || blocks.divisor > kLargestDivisor)
    return false;
  Reduce(blocks);
  return true;
}

}  // namespace imaging

#else

namespace imaging {

bool ReduceBitsFast(const BitBlocks& /*blocks*/) {
  return false;
}

}  // namespace imaging

#endif
