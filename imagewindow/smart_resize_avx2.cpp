#include <algorithm>
#include <array>
#include <cstring>
#include <vector>

#include "imagewindow/smart_resize.h"

#if defined(__x86_64__)

#include <immintrin.h>

#define FAST __attribute__((target("avx2")))

namespace smart_resize {
namespace {

constexpr int kLargestDivisor = 16;  // a block's row fits into half a vector
constexpr std::size_t kOutputs = 8;  // written at a time
constexpr std::size_t kReadAhead = kOutputs * kLargestDivisor + 32;
constexpr int kShift = 23;

/// count * 255 / (n * n), cut off, is count * Multiplier(n) >> kShift: the multiplier is too large by less
/// than 1, so the product by less than n * n, and the quotient by less than n * n / 2^23, which for n up to
/// 16 stays below the distance 1 / (n * n) to the next whole number. The product stays below 2^32.
std::uint32_t Multiplier(int n) {
  const auto pixels = static_cast<std::uint32_t>(n * n);
  return ((255U << kShift) + pixels - 1) / pixels;
}

FAST inline __m256i Load(const std::uint8_t* at) {
  return _mm256_loadu_si256(reinterpret_cast<const __m256i*>(at));
}

FAST inline __m256i LoadHalves(const std::uint8_t* low, const std::uint8_t* high) {
  const __m128i lower = _mm_loadu_si128(reinterpret_cast<const __m128i*>(low));
  return _mm256_inserti128_si256(_mm256_castsi128_si256(lower),
                                 _mm_loadu_si128(reinterpret_cast<const __m128i*>(high)), 1);
}

FAST inline void Store(std::uint8_t* at, __m256i value) {
  _mm256_storeu_si256(reinterpret_cast<__m256i*>(at), value);
}

/// Light pixels of a block row's columns, a byte each.
class ColumnCounter {
 public:
  ColumnCounter(const Rows& rows, std::size_t columns) : m_rows(rows), m_columns(columns) {}

  FAST void Count(const std::uint8_t* source, std::uint8_t* counts) const {
    constexpr std::size_t kVector = 32;
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

 private:
  template <int kVectors>
  FAST void CountVectors(const std::uint8_t* source, std::uint8_t* counts) const {
    const __m256i zero = _mm256_setzero_si256();
    __m256i sums[kVectors];  // NOLINT: no template takes a vector type
    std::fill(sums, sums + kVectors, zero);
    for (int i = 0; i < m_rows.divisor; ++i, source += m_rows.sourcePitch)
      for (int v = 0; v < kVectors; ++v)  // where equal, -1
        sums[v] = _mm256_sub_epi8(sums[v], _mm256_cmpeq_epi8(Load(source + 32 * v), zero));
    const __m256i all = _mm256_set1_epi8(static_cast<char>(m_rows.divisor));
    for (int v = 0; v < kVectors; ++v)
      Store(counts + 32 * v, m_rows.zeroIsLight ? sums[v] : _mm256_sub_epi8(all, sums[v]));
  }

  void CountSingly(const std::uint8_t* source, std::uint8_t* counts) const {
    for (std::size_t x = 0; x < m_columns; ++x) {
      int light = 0;
      for (int i = 0; i < m_rows.divisor; ++i)
        light +=
            (source[static_cast<std::size_t>(i) * m_rows.sourcePitch + x] == 0) == m_rows.zeroIsLight ? 1 : 0;
      counts[x] = static_cast<std::uint8_t>(light);
    }
  }

  const Rows& m_rows;
  std::size_t m_columns;
};

/// Byte shuffle that moves the blocks' columns, n by n, into slots of a fixed width, the rest of a slot being
/// 0.
FAST __m256i SlotShuffle(int n, int slot) {
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
  FAST static __m256i Sum(const std::uint8_t* counts, std::size_t n, __m256i order) {
    const __m256i slots = _mm256_shuffle_epi8(LoadHalves(counts, counts + 4 * n), order);
    const __m256i pairs = _mm256_maddubs_epi16(slots, _mm256_set1_epi8(1));
    return _mm256_madd_epi16(pairs, _mm256_set1_epi16(1));
  }
};

/// The same for n up to 8: slots of 8 bytes, added by the sum of differences to 0.
struct SumInEights {
  static constexpr int kSlot = 8;
  FAST static __m256i Sum(const std::uint8_t* counts, std::size_t n, __m256i order) {
    const __m256i zero = _mm256_setzero_si256();
    // Halves in an order that the last step undoes: blocks 0 1 | 4 5 and 2 3 | 6 7.
    const __m256i first = _mm256_shuffle_epi8(LoadHalves(counts, counts + 4 * n), order);
    const __m256i second = _mm256_shuffle_epi8(LoadHalves(counts + 2 * n, counts + 6 * n), order);
    return LowWords(_mm256_sad_epu8(first, zero), _mm256_sad_epu8(second, zero));
  }
  /// The lower words of four sums: of each half the two of a, then the two of b.
  FAST static __m256i LowWords(__m256i a, __m256i b) {
    return _mm256_castps_si256(_mm256_shuffle_ps(_mm256_castsi256_ps(a), _mm256_castsi256_ps(b), 0x88));
  }
};

/// The same for n up to 16: a slot is half a vector, and its two sums are added.
struct SumInSixteens {
  static constexpr int kSlot = 16;
  FAST static __m256i Sum(const std::uint8_t* counts, std::size_t n, __m256i order) {
    const __m256i zero = _mm256_setzero_si256();
    __m256i sums[4];  // NOLINT: no template takes a vector type
    for (std::size_t i = 0; i < 4; ++i)
      sums[i] =
          _mm256_sad_epu8(_mm256_shuffle_epi8(LoadHalves(counts + i * n, counts + (i + 4) * n), order), zero);
    return _mm256_hadd_epi32(SumInEights::LowWords(sums[0], sums[1]),
                             SumInEights::LowWords(sums[2], sums[3]));
  }
};

/// Grey of 8 counts, a byte each.
FAST inline std::int64_t GrayOf(__m256i counts, __m256i multiplier) {
  const __m256i gray = _mm256_srli_epi32(_mm256_mullo_epi32(counts, multiplier), kShift);
  const __m256i gather = _mm256_set1_epi32(0x0c080400);  // the low byte of each word
  const __m256i packed = _mm256_shuffle_epi8(gray, gather);
  return _mm_cvtsi128_si64(
      _mm_unpacklo_epi32(_mm256_castsi256_si128(packed), _mm256_extracti128_si256(packed, 1)));
}

template <typename Summing>
FAST void ReduceRows(const Rows& rows) {
  const auto n = static_cast<std::size_t>(rows.divisor);
  const auto width = static_cast<std::size_t>(rows.width);
  const ColumnCounter counter(rows, width * n);
  std::vector<std::uint8_t> counts(width * n + kReadAhead);
  const __m256i order = SlotShuffle(rows.divisor, Summing::kSlot);
  const __m256i multiplier = _mm256_set1_epi32(static_cast<int>(Multiplier(rows.divisor)));
  for (int y = 0; y < rows.height; ++y) {
    counter.Count(rows.source + static_cast<std::size_t>(y) * n * rows.sourcePitch, counts.data());
    std::uint8_t* target = rows.target + static_cast<std::size_t>(y) * rows.targetPitch;
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

/// Blocks of 2 by 2 are so small that going through column counts would cost more than the page's bytes.
class HalvingReducer {
 public:
  FAST explicit HalvingReducer(const Rows& rows) : m_rows(rows) {
    // Found by the low four bits of minus the count of zero bytes.
    std::array<std::uint8_t, 16> gray{};
    for (int zeros = 0; zeros <= 4; ++zeros)
      gray[static_cast<std::size_t>(-zeros & 15)] =
          static_cast<std::uint8_t>((rows.zeroIsLight ? zeros : 4 - zeros) * 255 / 4);
    m_gray = _mm256_broadcastsi128_si256(_mm_loadu_si128(reinterpret_cast<const __m128i*>(gray.data())));
  }

  FAST void Run() const {
    for (int y = 0; y < m_rows.height; ++y) {
      const std::uint8_t* upper = m_rows.source + 2 * static_cast<std::size_t>(y) * m_rows.sourcePitch;
      std::uint8_t* target = m_rows.target + static_cast<std::size_t>(y) * m_rows.targetPitch;
      const auto width = static_cast<std::size_t>(m_rows.width);
      for (std::size_t x = 0; x + 32 <= width; x += 32) Store(target + x, Gray(upper + 2 * x));
      if (width % 32 != 0)
        Store(target + width - 32, Gray(upper + 2 * (width - 32)));  // some of them once more
    }
  }

 private:
  /// Minus the zero bytes of 16 blocks, a word each.
  FAST __m256i MinusZeros(const std::uint8_t* upper) const {
    const __m256i zero = _mm256_setzero_si256();
    const __m256i columns = _mm256_add_epi8(_mm256_cmpeq_epi8(Load(upper), zero),
                                            _mm256_cmpeq_epi8(Load(upper + m_rows.sourcePitch), zero));
    return _mm256_maddubs_epi16(_mm256_set1_epi8(1), columns);
  }

  /// 32 blocks.
  FAST __m256i Gray(const std::uint8_t* upper) const {
    const __m256i packed = _mm256_packs_epi16(MinusZeros(upper), MinusZeros(upper + 32));
    const __m256i inOrder = _mm256_permute4x64_epi64(packed, 0xd8);
    return _mm256_shuffle_epi8(m_gray, _mm256_and_si256(inOrder, _mm256_set1_epi8(15)));
  }

  const Rows& m_rows;
  __m256i m_gray;
};

}  // namespace

bool ReduceToGrayFast(const Rows& rows) {
  if (__builtin_cpu_supports("avx2") == 0 || rows.divisor < 2 || rows.divisor > kLargestDivisor) return false;
  if (rows.divisor == 2 && rows.width >= 32)
    HalvingReducer(rows).Run();
  else if (rows.divisor <= SumInFours::kSlot)
    ReduceRows<SumInFours>(rows);
  else if (rows.divisor <= SumInEights::kSlot)
    ReduceRows<SumInEights>(rows);
  else
    ReduceRows<SumInSixteens>(rows);
  return true;
}

}  // namespace smart_resize

#else

namespace smart_resize {

bool ReduceToGrayFast(const Rows&) {
  return false;
}

}  // namespace smart_resize

#endif
