#include <array>
#include <bit>
#include <cstring>

#include "imaging/pixels/reduce_avx2.h"

#if defined(__x86_64__)

namespace imaging::avx2 {
namespace {

constexpr int kSmallest = 3;
constexpr int kLargest = 15;
constexpr int kLargestInWords = 7;
constexpr int kBits = 8;
constexpr std::size_t kLoad = 16;  ///< bytes that are read at an output's place

/// Counts of a block row's columns as binary numbers whose digits lie in rows of bits, the planes.
class Planes {
 public:
  explicit Planes(const TwoLevelBlocks& blocks)
      : m_blocks(blocks),
        m_count(static_cast<std::size_t>(std::bit_width(static_cast<unsigned>(blocks.divisor)))),
        m_bytes(
            (static_cast<std::size_t>(blocks.width) * static_cast<std::size_t>(blocks.divisor) + kBits - 1) /
            kBits),
        m_stride((m_bytes / kVector + 2) * kVector),
        m_digits(m_stride * m_count) {}
  std::size_t Count() const { return m_count; }
  const std::uint8_t* Plane(std::size_t plane) const { return m_digits.data() + plane * m_stride; }

  TARGET_AVX2 void Add(int y) {
    if (m_count == 2)
      AddRows<2>(SourceOf(m_blocks, y));
    else if (m_count == 3)
      AddRows<3>(SourceOf(m_blocks, y));
    else
      AddRows<4>(SourceOf(m_blocks, y));
  }

 private:
  template <std::size_t kPlanes>
  TARGET_AVX2 void AddRows(const std::uint8_t* source) {
    for (std::size_t x = 0; x < m_bytes; x += kVector) {
      __m256i digits[kPlanes];  // NOLINT: no template takes a vector type
      for (std::size_t p = 0; p < kPlanes; ++p) digits[p] = _mm256_setzero_si256();
      const std::uint8_t* row = source + x;
      for (int i = 0; i < m_blocks.divisor; ++i, row += m_blocks.sourcePitch) {
        __m256i carry = Load(row);
        for (std::size_t p = 0; p < kPlanes; ++p) {
          const __m256i next = _mm256_and_si256(carry, digits[p]);
          digits[p] = _mm256_xor_si256(carry, digits[p]);
          carry = next;
        }
      }
      for (std::size_t p = 0; p < kPlanes; ++p) Store(m_digits.data() + p * m_stride + x, digits[p]);
    }
  }

  const TwoLevelBlocks& m_blocks;
  std::size_t m_count;
  std::size_t m_bytes;
  std::size_t m_stride;
  std::vector<std::uint8_t> m_digits;
};

/// Which bytes of a load hold each output's columns, most significant first, in lanes of so many bytes.
TARGET_AVX2 __m256i ByteOrder(int n, int laneBytes) {
  alignas(kVector) std::array<std::int8_t, kVector> order;
  for (int i = 0; i < static_cast<int>(kVector); ++i) {
    const int byte = i / laneBytes * n / kBits + laneBytes - 1 - i % laneBytes;
    order[static_cast<std::size_t>(i)] = static_cast<std::int8_t>(byte < static_cast<int>(kLoad) ? byte : -1);
  }
  return _mm256_load_si256(reinterpret_cast<const __m256i*>(order.data()));
}

TARGET_AVX2 inline __m256i BitsOfNibbles(__m256i nibbles) {
  const __m256i bits = _mm256_setr_epi8(0, 1, 1, 2, 1, 2, 2, 3, 1, 2, 2, 3, 2, 3, 3, 4, 0, 1, 1, 2, 1, 2, 2,
                                        3, 1, 2, 2, 3, 2, 3, 3, 4);
  return _mm256_shuffle_epi8(bits, nibbles);
}

TARGET_AVX2 inline __m256i BitsOfBytes(__m256i bytes) {
  const __m256i mask = _mm256_set1_epi8(15);
  return _mm256_add_epi8(BitsOfNibbles(_mm256_and_si256(bytes, mask)),
                         BitsOfNibbles(_mm256_and_si256(_mm256_srli_epi16(bytes, 4), mask)));
}

TARGET_AVX2 inline __m256i LoadTwice(const std::uint8_t* at) {
  return _mm256_broadcastsi128_si256(LoadHalf(at));
}

/// Blocks of up to 7, which lie in two bytes wherever they begin: 16 at a time.
class InWords {
 public:
  static constexpr std::size_t kOutputs = 16;
  TARGET_AVX2 explicit InWords(const TwoLevelBlocks& blocks)
      : m_n(blocks.divisor), m_invert(blocks.invert), m_order(ByteOrder(blocks.divisor, 2)) {
    alignas(kVector) std::array<std::uint16_t, kOutputs> factors;
    for (int i = 0; i < static_cast<int>(kOutputs); ++i)
      factors[static_cast<std::size_t>(i)] = static_cast<std::uint16_t>(1U << (i * m_n % kBits));
    m_factors = _mm256_load_si256(reinterpret_cast<const __m256i*>(factors.data()));
    // As Multiplier, but of 16 bits: too large by less than 1, so that the quotient is by less than n * n /
    // 2^11 or finer, which is less than 1 / (n * n).
    const auto pixels = static_cast<unsigned>(m_n * m_n);
    while (((255U << (16 - m_shift)) + pixels - 1) / pixels > 0xffff) ++m_shift;
    m_multiplier = _mm256_set1_epi16(static_cast<short>(((255U << (16 - m_shift)) + pixels - 1) / pixels));
  }

  TARGET_AVX2 void Run(const Planes& planes, std::size_t at, std::uint8_t* out) const {
    __m256i counts = _mm256_setzero_si256();
    for (std::size_t p = planes.Count(); p-- > 0;)
      counts = _mm256_add_epi16(_mm256_add_epi16(counts, counts), BitsOf(planes.Plane(p) + at));
    if (m_invert) counts = _mm256_sub_epi16(_mm256_set1_epi16(static_cast<short>(m_n * m_n)), counts);
    const __m256i gray =
        _mm256_mulhi_epu16(_mm256_sll_epi16(counts, _mm_cvtsi32_si128(m_shift)), m_multiplier);
    const __m256i packed = _mm256_permute4x64_epi64(_mm256_packus_epi16(gray, gray), 0x08);
    _mm_storeu_si128(reinterpret_cast<__m128i*>(out), _mm256_castsi256_si128(packed));
  }

 private:
  TARGET_AVX2 __m256i BitsOf(const std::uint8_t* plane) const {
    const __m256i words = _mm256_mullo_epi16(_mm256_shuffle_epi8(LoadTwice(plane), m_order), m_factors);
    const __m256i columns = _mm256_srl_epi16(words, _mm_cvtsi32_si128(16 - m_n));
    return m_n <= 4 ? BitsOfNibbles(columns) : BitsOfBytes(columns);
  }

  int m_n;
  bool m_invert;
  int m_shift = 0;
  __m256i m_order;
  __m256i m_factors;
  __m256i m_multiplier;
};

/// Blocks of up to 15: 8 at a time.
class InDoubleWords {
 public:
  static constexpr std::size_t kOutputs = 8;
  TARGET_AVX2 explicit InDoubleWords(const TwoLevelBlocks& blocks)
      : m_n(blocks.divisor),
        m_invert(blocks.invert),
        m_order(ByteOrder(blocks.divisor, 4)),
        m_multiplier(_mm256_set1_epi32(static_cast<int>(Multiplier(blocks.divisor)))) {
    alignas(kVector) std::array<std::int32_t, kOutputs> shifts;
    for (int i = 0; i < static_cast<int>(kOutputs); ++i)
      shifts[static_cast<std::size_t>(i)] = i * m_n % kBits;
    m_shifts = _mm256_load_si256(reinterpret_cast<const __m256i*>(shifts.data()));
  }

  TARGET_AVX2 void Run(const Planes& planes, std::size_t at, std::uint8_t* out) const {
    __m256i bytes = _mm256_setzero_si256();  // at most 8 bits of 15 rows
    for (std::size_t p = planes.Count(); p-- > 0;)
      bytes = _mm256_add_epi8(_mm256_add_epi8(bytes, bytes), BitsOf(planes.Plane(p) + at));
    __m256i counts = _mm256_maddubs_epi16(bytes, _mm256_set1_epi8(1));
    if (m_invert) counts = _mm256_sub_epi32(_mm256_set1_epi32(m_n * m_n), counts);
    const std::int64_t gray = GrayOf(counts, m_multiplier);
    std::memcpy(out, &gray, kOutputs);
  }

 private:
  TARGET_AVX2 __m256i BitsOf(const std::uint8_t* plane) const {
    const __m256i words = _mm256_sllv_epi32(_mm256_shuffle_epi8(LoadTwice(plane), m_order), m_shifts);
    return BitsOfBytes(_mm256_srl_epi32(words, _mm_cvtsi32_si128(32 - m_n)));
  }

  int m_n;
  bool m_invert;
  __m256i m_order;
  __m256i m_shifts;
  __m256i m_multiplier;
};

template <typename Step>
TARGET_AVX2 void ReduceBy(const TwoLevelBlocks& blocks) {
  const Step step(blocks);
  Planes planes(blocks);
  const auto width = static_cast<std::size_t>(blocks.width);
  const std::size_t bytesAtOnce = Step::kOutputs * static_cast<std::size_t>(blocks.divisor) / kBits;
  std::array<std::uint8_t, Step::kOutputs> rest;
  for (int y = 0; y < blocks.height; ++y) {
    planes.Add(y);
    std::uint8_t* target = TargetOf(blocks, y);
    std::size_t x = 0;
    std::size_t at = 0;
    for (; x + Step::kOutputs <= width; x += Step::kOutputs, at += bytesAtOnce)
      step.Run(planes, at, target + x);
    if (x == width) continue;
    step.Run(planes, at, rest.data());
    std::memcpy(target + x, rest.data(), width - x);
  }
}

}  // namespace

bool ReducePlanes(const TwoLevelBlocks& blocks) {
  if (blocks.bits != 1 || blocks.divisor < kSmallest || blocks.divisor > kLargest) return false;
  if (blocks.divisor <= kLargestInWords)
    ReduceBy<InWords>(blocks);
  else
    ReduceBy<InDoubleWords>(blocks);
  return true;
}

}  // namespace imaging::avx2

#endif
