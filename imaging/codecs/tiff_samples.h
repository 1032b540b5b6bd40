#pragma once

#include <cstddef>
#include <cstdint>

#include "imaging/codecs/tiff_layout.h"

namespace imaging {

/// Values that become 0 and 255. Whole numbers use their full range, floats what the page holds.
struct SampleRange {
  double low = 0;
  double high = 1;
};

/// Reads packed samples of 1 to 64 bits, whole or float, in the machine's byte order where they are whole
/// bytes wide and most significant bit first otherwise.
class TiffSamples {
 public:
  explicit TiffSamples(const TiffLayout& layout);

  bool Floats() const { return m_format == SAMPLEFORMAT_IEEEFP; }
  /// Widens the range so that it holds the row's finite samples.
  void Measure(const std::uint8_t* packed, std::size_t count, SampleRange& range) const;
  void SetRange(const SampleRange& range) { m_range = range; }

  /// Scales to 0 .. 255; stride in bytes between results.
  void ToBytes(const std::uint8_t* packed, std::size_t count, std::uint8_t* target, std::size_t stride) const;
  /// The lowest 16 bits as they are: indices into a colour table.
  void ToIndices(const std::uint8_t* packed, std::size_t count, std::uint16_t* target,
                 std::size_t stride) const;

 private:
  std::uint64_t Whole(const std::uint8_t* packed, std::size_t index) const;
  double Float(const std::uint8_t* packed, std::size_t index) const;
  std::uint8_t Scale(std::uint64_t value) const;

  int m_bits;
  int m_format;
  std::uint64_t m_most;      ///< largest whole number of that width
  std::uint64_t m_signFlip;  ///< moves signed numbers to the unsigned range
  SampleRange m_range;
};

}  // namespace imaging
