#pragma once

#include <cstdint>
#include <optional>
#include <span>
#include <vector>

#include "imaging/codecs/fax_codes.h"

namespace imaging {

enum class FaxCoding { kOneDimensional, kTwoDimensional, kGroup4 };

/// Decodes fax coding row by row: group 4 (ITU-T T.6) and both codings of T.4. A row is kept as the list of
/// its changing elements, so in group 4 a row or a stretch of it that equals the row above costs a copy,
/// whatever its number of pixels. It stops at the first code that can't be; in group 3 it can go on at the
/// next row.
class FaxDecoder {
 public:
  explicit FaxDecoder(int width);

  /// Begins a strip; most significant bit first. The bytes must be followed by kPadding zero bytes and stay
  /// until the strip is done.
  void Start(std::span<const std::uint8_t> coded, std::int64_t firstBit = 0);
  static constexpr std::size_t kPadding = 32;

  /// Takes another width for what is started next, for trials. No larger one than the first, and not to be
  /// painted.
  void SetWidth(int width) { m_width = width; }

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
  /// The next row of a page in group 3 coding. kEndOfBlock at the return to control, of which three
  /// end-of-line codes are enough, and at the end of the data.
  Row NextGroup3(bool twoDimensional);
  /// After a damaged row of group 3 coding: goes to the end-of-line code behind it, or to the end.
  void SkipDamagedRow();
  /// The pixels in the row of group 3 coding that comes next, by the sum of its runs; 0 for a damaged row,
  /// nothing for one that can't be measured: a two-dimensional one, or the end. Goes to the row's end.
  std::optional<int> MeasureRow(bool twoDimensional);
  /// After a damaged row of group 4 coding: goes behind the page's end-of-block code. False if there is none.
  bool SkipToEndOfBlock();
  /// Whether nothing but zeros stood where the last row began.
  bool AtFilling() const;
  /// Whether what was decoded lies within the strip.
  bool WithinData() const { return BitPosition() <= std::ssize(m_coded) * 8; }
  std::int64_t BitPosition() const { return (m_next - m_coded.data()) * 8 - m_have; }

  /// Paints the row just decoded, most significant bit first, in whole words of 64 pixels. white is 0xff or
  /// 0: the bits of a white pixel.
  void Paint(std::uint8_t* row, std::uint8_t white);

 private:
  void Refill();
  void Seek(std::int64_t bit);
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
  Row DecodeRuns();
  enum class RowStart { kOneDimensional, kTwoDimensional, kEnd };
  RowStart SkipToRow(bool twoDimensional);

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
  std::int64_t m_rowStart = 0;    ///< bit position of the last row
  bool m_endsStand = false;       ///< between the rows of group 3 coding
  bool m_aboveIsDamaged = false;  ///< a two-dimensional row has nothing to refer to
};

}  // namespace imaging
