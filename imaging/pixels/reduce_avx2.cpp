#include "imaging/pixels/reduce_avx2.h"

#include <algorithm>
#include <array>
#include <cstring>

#if defined(__x86_64__)

namespace imaging::avx2 {
namespace {

constexpr int kLargestDivisor = 255;       // a column's count fits into a byte
constexpr int kLargestForMultiplier = 16;  // a block's columns fit into half a vector
constexpr std::size_t kOutputs = 8;        // written at a time
constexpr std::size_t kReadAhead = kOutputs * kLargestForMultiplier + kVector;

TARGET_AVX2 inline __m256i LoadHalves(const std::uint8_t* low, const std::uint8_t* high) {
  return _mm256_inserti128_si256(_mm256_castsi128_si256(LoadHalf(low)), LoadHalf(high), 1);
}

/// Counts the set pixels (with invert: the clear ones) of a block row's columns, a byte each. May write up to
/// two vectors past the last.
class ColumnCounter {
 public:
  explicit ColumnCounter(const TwoLevelBlocks& blocks)
      : m_blocks(blocks),
        m_columns(static_cast<std::size_t>(blocks.width) * static_cast<std::size_t>(blocks.divisor)) {}
  std::size_t Columns() const { return m_columns; }

  TARGET_AVX2 void Count(int y, std::uint8_t* counts) const {
    const std::uint8_t* source = SourceOf(m_blocks, y);
    if (m_blocks.bits == 8)
      CountBytes(source, counts);
    else
      CountPacked(source, counts);
  }

 private:
  TARGET_AVX2 void CountBytes(const std::uint8_t* source, std::uint8_t* counts) const {
    constexpr std::size_t kWide = 4 * kVector;
    std::size_t x = 0;
    for (; x + kWide <= m_columns; x += kWide) CountVectors<4>(source + x, counts + x);
    for (; x + kVector <= m_columns; x += kVector) CountVectors<1>(source + x, counts + x);
    if (x == m_columns) return;
    if (m_columns >= kVector)
      CountVectors<1>(source + m_columns - kVector, counts + m_columns - kVector);  // some of them once more
    else
      CountSingly(source, counts);
  }

  template <int kVectors>
  TARGET_AVX2 void CountVectors(const std::uint8_t* source, std::uint8_t* counts) const {
    const __m256i zero = _mm256_setzero_si256();
    __m256i sums[kVectors];  // NOLINT: no template takes a vector type
    std::fill(sums, sums + kVectors, zero);
    for (int i = 0; i < m_blocks.divisor; ++i, source += m_blocks.sourcePitch)
      for (int v = 0; v < kVectors; ++v)  // where equal, -1
        sums[v] = _mm256_sub_epi8(sums[v], _mm256_cmpeq_epi8(Load(source + 32 * v), zero));
    for (int v = 0; v < kVectors; ++v) Store(counts + 32 * v, m_blocks.invert ? sums[v] : Others(sums[v]));
  }

  void CountSingly(const std::uint8_t* source, std::uint8_t* counts) const {
    for (std::size_t x = 0; x < m_columns; ++x) {
      int zeros = 0;
      for (int i = 0; i < m_blocks.divisor; ++i)
        zeros += source[i * m_blocks.sourcePitch + static_cast<std::ptrdiff_t>(x)] == 0 ? 1 : 0;
      counts[x] = static_cast<std::uint8_t>(m_blocks.invert ? zeros : m_blocks.divisor - zeros);
    }
  }

  TARGET_AVX2 void CountPacked(const std::uint8_t* source, std::uint8_t* counts) const {
    const __m256i spread = _mm256_set_epi64x(0x0303030303030303, 0x0202020202020202, 0x0101010101010101, 0);
    const __m256i bit = _mm256_set1_epi64x(0x0102040810204080);
    for (std::size_t x = 0; x < m_columns; x += 2 * kVector) {  // 8 bytes of a row, which rows are padded to
      __m256i first = _mm256_setzero_si256();
      __m256i second = first;
      const std::uint8_t* row = source + x / 8;
      for (int i = 0; i < m_blocks.divisor; ++i, row += m_blocks.sourcePitch) {
        std::uint64_t bits = 0;
        std::memcpy(&bits, row, sizeof bits);
        const __m256i low = _mm256_shuffle_epi8(_mm256_set1_epi32(static_cast<int>(bits)), spread);
        const __m256i high = _mm256_shuffle_epi8(_mm256_set1_epi32(static_cast<int>(bits >> 32)), spread);
        // Equal is -1.
        first = _mm256_sub_epi8(first, _mm256_cmpeq_epi8(_mm256_and_si256(low, bit), bit));
        second = _mm256_sub_epi8(second, _mm256_cmpeq_epi8(_mm256_and_si256(high, bit), bit));
      }
      Store(counts + x, m_blocks.invert ? Others(first) : first);
      Store(counts + x + kVector, m_blocks.invert ? Others(second) : second);
    }
  }

  TARGET_AVX2 __m256i Others(__m256i counts) const {
    return _mm256_sub_epi8(_mm256_set1_epi8(static_cast<char>(m_blocks.divisor)), counts);
  }

  const TwoLevelBlocks& m_blocks;
  std::size_t m_columns;
};

/// Byte shuffle that moves the blocks' columns, n by n, into slots of a fixed width, the rest of a slot being
/// 0.
TARGET_AVX2 __m256i SlotShuffle(int n, int slot) {
  alignas(32) std::array<std::int8_t, 32> order;
  order.fill(-1);
  for (int half = 0; half < 2; ++half)
    for (int i = 0; i < 16 / slot; ++i)
      for (int j = 0; j < n; ++j) order[half * 16 + i * slot + j] = static_cast<std::int8_t>(i * n + j);
  return _mm256_load_si256(reinterpret_cast<const __m256i*>(order.data()));
}

/// Sums of 8 blocks that follow each other, for n up to 4: slots of 4 bytes, added in pairs twice.
struct SumInFours {
  static constexpr int kSlot = 4;
  TARGET_AVX2 static __m256i Sum(const std::uint8_t* counts, std::size_t n, __m256i order) {
    const __m256i slots = _mm256_shuffle_epi8(LoadHalves(counts, counts + 4 * n), order);
    const __m256i pairs = _mm256_maddubs_epi16(slots, _mm256_set1_epi8(1));
    return _mm256_madd_epi16(pairs, _mm256_set1_epi16(1));
  }
};

/// The same for n up to 8: slots of 8 bytes, added by the sum of differences to 0.
struct SumInEights {
  static constexpr int kSlot = 8;
  TARGET_AVX2 static __m256i Sum(const std::uint8_t* counts, std::size_t n, __m256i order) {
    const __m256i zero = _mm256_setzero_si256();
    // Halves in an order that the last step undoes: blocks 0 1 | 4 5 and 2 3 | 6 7.
    const __m256i first = _mm256_shuffle_epi8(LoadHalves(counts, counts + 4 * n), order);
    const __m256i second = _mm256_shuffle_epi8(LoadHalves(counts + 2 * n, counts + 6 * n), order);
    return LowWords(_mm256_sad_epu8(first, zero), _mm256_sad_epu8(second, zero));
  }
  /// The lower words of four sums: of each half the two of a, then the two of b.
  TARGET_AVX2 static __m256i LowWords(__m256i a, __m256i b) {
    return _mm256_castps_si256(_mm256_shuffle_ps(_mm256_castsi256_ps(a), _mm256_castsi256_ps(b), 0x88));
  }
};

/// The same for n up to 16: a slot is half a vector, and its two sums are added.
struct SumInSixteens {
  static constexpr int kSlot = 16;
  TARGET_AVX2 static __m256i Sum(const std::uint8_t* counts, std::size_t n, __m256i order) {
    const __m256i zero = _mm256_setzero_si256();
    __m256i sums[4];  // NOLINT: no template takes a vector type
    for (std::size_t i = 0; i < 4; ++i)
      sums[i] =
          _mm256_sad_epu8(_mm256_shuffle_epi8(LoadHalves(counts + i * n, counts + (i + 4) * n), order), zero);
    return _mm256_hadd_epi32(SumInEights::LowWords(sums[0], sums[1]),
                             SumInEights::LowWords(sums[2], sums[3]));
  }
};

template <typename Summing>
TARGET_AVX2 void ReduceNarrow(const TwoLevelBlocks& blocks) {
  const auto n = static_cast<std::size_t>(blocks.divisor);
  const auto width = static_cast<std::size_t>(blocks.width);
  const ColumnCounter counter(blocks);
  std::vector<std::uint8_t> counts(counter.Columns() + kReadAhead);
  const __m256i order = SlotShuffle(blocks.divisor, Summing::kSlot);
  const __m256i multiplier = _mm256_set1_epi32(static_cast<int>(Multiplier(blocks.divisor)));
  for (int y = 0; y < blocks.height; ++y) {
    counter.Count(y, counts.data());
    std::uint8_t* target = TargetOf(blocks, y);
    std::size_t x = 0;
    for (; x + kOutputs <= width; x += kOutputs) {
      const std::int64_t gray = GrayOf(Summing::Sum(counts.data() + x * n, n, order), multiplier);
      std::memcpy(target + x, &gray, kOutputs);
    }
    if (x == width) continue;
    const std::int64_t gray = GrayOf(Summing::Sum(counts.data() + x * n, n, order), multiplier);
    std::memcpy(target + x, &gray, width - x);
  }
}

/// The sum of n bytes; reads up to 16 beyond the last.
TARGET_AVX2 inline std::uint32_t SumBytes(const std::uint8_t* bytes, int n, __m128i lastMask) {
  const __m128i zero = _mm_setzero_si128();
  __m128i sum = zero;
  for (; n > 16; n -= 16, bytes += 16) sum = _mm_add_epi64(sum, _mm_sad_epu8(LoadHalf(bytes), zero));
  const __m128i last = _mm_and_si128(LoadHalf(bytes), lastMask);
  sum = _mm_add_epi64(sum, _mm_sad_epu8(last, zero));
  return static_cast<std::uint32_t>(_mm_cvtsi128_si32(_mm_add_epi64(sum, _mm_unpackhi_epi64(sum, sum))));
}

TARGET_AVX2 void ReduceWide(const TwoLevelBlocks& blocks) {
  const ColumnCounter counter(blocks);
  const std::vector<std::uint8_t> gray = GrayTable(blocks.divisor);
  std::vector<std::uint8_t> counts(counter.Columns() + kReadAhead);
  std::array<std::uint8_t, 16> mask{};
  std::fill_n(mask.begin(), (blocks.divisor - 1) % 16 + 1, std::uint8_t{255});
  const __m128i lastMask = LoadHalf(mask.data());
  for (int y = 0; y < blocks.height; ++y) {
    counter.Count(y, counts.data());
    std::uint8_t* target = TargetOf(blocks, y);
    const std::uint8_t* block = counts.data();
    for (int x = 0; x < blocks.width; ++x, block += blocks.divisor)
      target[x] = gray[SumBytes(block, blocks.divisor, lastMask)];
  }
}

TARGET_AVX2 void ReduceColumns(const TwoLevelBlocks& blocks) {
  if (blocks.divisor <= SumInFours::kSlot)
    ReduceNarrow<SumInFours>(blocks);
  else if (blocks.divisor <= SumInEights::kSlot)
    ReduceNarrow<SumInEights>(blocks);
  else if (blocks.divisor <= SumInSixteens::kSlot)
    ReduceNarrow<SumInSixteens>(blocks);
  else
    ReduceWide(blocks);
}

}  // namespace

}  // namespace imaging::avx2

bool imaging::ReduceBlocksFast(const TwoLevelBlocks& blocks) {
  if (__builtin_cpu_supports("avx2") == 0 || blocks.divisor < 2 || blocks.divisor > avx2::kLargestDivisor)
    return false;
  if (!avx2::ReduceWhole(blocks) && !avx2::ReducePlanes(blocks)) avx2::ReduceColumns(blocks);
  return true;
}

#else

bool imaging::ReduceBlocksFast(const TwoLevelBlocks& /*blocks*/) {
  return false;
}

#endif
