#pragma once

#include <cstdint>
#include <memory>
#include <span>
#include <vector>

#include "imaging/codecs/codec.h"
#include "imaging/codecs/fax.h"
#include "imaging/pixels/storage.h"

namespace imaging {

/// Coded data in memory as the decoder wants it: most significant bit first, zeros behind it.
class FaxData {
 public:
  /// What the source holds of the stretch; empty for one larger than the limits allow.
  static FaxData Read(const Source& source, std::int64_t offset, std::int64_t size, bool reversed = false);
  explicit FaxData(std::vector<std::uint8_t> coded);

  std::span<const std::uint8_t> Coded() const {
    return std::span(m_bytes).first(m_bytes.size() - FaxDecoder::kPadding);
  }
  std::int64_t Bits() const { return std::ssize(Coded()) * 8; }
  /// Exchanges the bits of each byte, first for last.
  void Reverse();

 private:
  std::vector<std::uint8_t> m_bytes;
};

/// Goes through the rows of a page, over damaged ones where the coding allows.
class FaxRows {
 public:
  FaxRows(int width, FaxCoding coding) : m_coding(coding), m_decoder(width) {}
  void Start(std::span<const std::uint8_t> coded, std::int64_t firstBit = 0);

  enum class Step {
    kRow,
    kRepeat,  ///< equals the row above, or is damaged and shows it again
    kEnd,
  };
  Step Next();
  void Paint(std::uint8_t* row, std::uint8_t white) { m_decoder.Paint(row, white); }
  int Count() const { return m_sound + m_repeated; }
  int Sound() const { return m_sound; }
  /// Damaged rows. After one group 4 coding can't go on: it ends there, and the row isn't in the count.
  int Damaged() const { return m_damaged; }
  /// After the end: goes behind the page's end, also where damage ended it. False if no page follows.
  bool SkipToNextPage() {
    return m_coding == FaxCoding::kGroup4 ? m_decoder.SkipToEndOfBlock() : m_endsWhole;
  }
  std::int64_t BitPosition() const { return m_decoder.BitPosition(); }

 private:
  Step NextGroup4();

  FaxCoding m_coding;
  FaxDecoder m_decoder;
  int m_sound = 0;
  int m_repeated = 0;  ///< damaged ones in the middle
  int m_damaged = 0;
  bool m_endsWhole = false;
};

const char* FaxCodingName(FaxCoding coding);

/// A page of the size that info tells, white and black, in 1 bit or 8. Rows that aren't there are white and
/// are counted in info with the damaged ones. Throws if there is no sound row at all.
std::unique_ptr<PixelStorage> DecodeFaxPage(const Source& source, const FaxData& data, FaxCoding coding,
                                            const DecodeWish& wish, PageInfo& info,
                                            std::int64_t firstBit = 0);

}  // namespace imaging
