#pragma once

#include <cstddef>
#include <cstdint>
#include <span>
#include <vector>

namespace platform {

/// Codes bilevel rows as group 4 fax (ITU-T T.6), the first pixel in the high bit of a byte.
class FaxEncoder {
 public:
  /// blackBit: the value of the pixels that are coded as black, 0 or 1.
  FaxEncoder(int width, int blackBit);
  /// Takes a row of (width + 7) / 8 bytes.
  void AddRow(const std::uint8_t* row);
  /// The bytes coded since the last call, the encoder's own until the next row.
  std::span<const std::uint8_t> Drain();
  /// Adds the mark of the end. The bytes that weren't drained, the encoder's own; no row may follow.
  std::span<const std::uint8_t> Finish();

 private:
  void FindChanges(const std::uint8_t* row);
  void CodeRow();
  void PutOnes(std::size_t count);
  void PutRun(int run, bool black);
  void Put(std::uint32_t code, int length) {
    m_bits = m_bits << length | code;
    m_bitCount += length;
    if (m_bitCount >= 32) Flush32();
  }
  void Flush32();

  int m_width;
  std::uint64_t m_invert;  // all ones if pixels of value 0 are black
  // Where the colour changes, the first from white to black, then a few times the width.
  std::vector<int> m_changes;
  std::vector<int> m_above;  // those of the row above
  std::size_t m_changeCount = 0;
  std::size_t m_aboveCount = 0;
  std::uint64_t m_bits = 0;
  int m_bitCount = 0;
  std::vector<std::uint8_t> m_output;
  std::size_t m_size = 0;
};

}  // namespace platform
