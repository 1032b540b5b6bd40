#pragma once

#include <cstdint>
#include <span>
#include <vector>

#include "imaging/codecs/fax_codes.h"
#include "imaging/core/export.h"

namespace imaging {

/// Decodes fax coding row by row: group 4 (ITU-T T.6) and the one-dimensional coding of T.4. A row is kept as
/// the list of its changing elements, so in group 4 a row or a stretch of it that equals the row above costs
/// a copy, whatever its number of pixels. Made for sound streams: at the first code that can't be it stops,
/// and a more forgiving decoder may follow.
class LTWRAP_API FaxDecoder {
 public:
  explicit FaxDecoder(int width);

  /// Begins a strip; most significant bit first. The bytes must be followed by kPadding zero bytes and stay
  /// until the strip is done.
  void Start(std::span<const std::uint8_t> coded);
  static constexpr std::size_t kPadding = 32;

  enum class Row {
    kDecoded,
    kSameAsAbove,
    kEndOfBlock,  ///< no row: the strip ends here by its own account
    kDamaged,
  };
  /// The next row of group 4 coding.
  Row Next();
  /// The next row of one-dimensional coding, with end-of-line codes (T.4, 4.1.2) and filling or without.
  Row NextOneDimensional();
  /// The same where exactly one end-of-line code stands before the row, as T.4 wants it. Without one, or at
  /// the several that end a page, kDamaged.
  Row NextAfterEndOfLine();
  /// Whether what was decoded lies within the strip.
  bool WithinData() const;

  /// Paints the row just decoded, most significant bit first, in whole words of 64 pixels. white is 0xff or
  /// 0: the bits of a white pixel.
  void Paint(std::uint8_t* row, std::uint8_t white);

 private:
  void Refill();
  void Consume(int count) {
    m_bits <<= count;
    m_have -= count;
  }
  int ReadRun(const FaxRunTable& table);
  bool DecodeHorizontal(int& position, int& count);
  Row DecodeRow();
  bool AtEndOfLine() const;
  bool SkipEndOfLine();
  bool SkipEndsOfLine();

  const FaxRunTable& m_white;
  const FaxRunTable& m_black;
  int m_width;
  std::vector<std::int32_t> m_above;  ///< columns where the colour changes, from white, then the width
  std::vector<std::int32_t> m_current;
  int m_aboveCount = 0;
  int m_currentCount = 0;
  std::vector<std::uint64_t> m_words;

  std::uint64_t m_bits = 0;  ///< the next bits, from the top
  int m_have = 0;            ///< how many of them are there
  const std::uint8_t* m_next = nullptr;
  std::span<const std::uint8_t> m_coded;
};

}  // namespace imaging
