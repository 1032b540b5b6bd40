#include <array>
#include <optional>
#include <vector>

#include "imaging/codecs/bilevel_page.h"
#include "imaging/codecs/fax.h"
#include "imaging/codecs/rows.h"
#include "imaging/codecs/tiff_bands.h"
#include "imaging/codecs/tiff_decode.h"
#include "imaging/core/limits.h"

namespace imaging {
namespace {

/// What the decoder of our own takes: no uncompressed stretches, no mixture of both kinds of rows.
std::optional<FaxCoding> FaxCodingOf(const TiffHandle& tiff, const TiffLayout& layout) {
  if (layout.tiled) return std::nullopt;
  if (layout.compression == COMPRESSION_CCITTFAX4 && tiff.Long(TIFFTAG_GROUP4OPTIONS, 0) == 0)
    return FaxCoding::kGroup4;
  const bool plain = (tiff.Long(TIFFTAG_GROUP3OPTIONS, 0) & ~std::uint32_t{GROUP3OPT_FILLBITS}) == 0;
  if (layout.compression == COMPRESSION_CCITTFAX3 && plain) return FaxCoding::kOneDimensional;
  return std::nullopt;
}

/// Fax strips by the decoder of our own, which takes half the library's time.
class FaxStrips {
 public:
  FaxStrips(const TiffHandle& tiff, const TiffLayout& layout, std::uint8_t white, const DecodeWish& wish)
      : m_tiff(tiff),
        m_wish(wish),
        m_white(white),
        m_reversed(tiff.Short(TIFFTAG_FILLORDER, FILLORDER_MSB2LSB) == FILLORDER_LSB2MSB),
        m_coding(FaxCodingOf(tiff, layout)),
        m_decoder(m_coding ? layout.width : 1),
        m_row(m_coding ? (static_cast<std::size_t>(layout.width) + 63) / 64 * 8 : 0) {}

  /// False if the strip isn't sound; what was stored of it is then to be overwritten.
  bool Decode(int firstRow, int endRow, BilevelPage& page) {
    if (!m_coding || !ReadStrip(firstRow)) return false;
    m_decoder.Start(std::span(m_coded).first(m_coded.size() - FaxDecoder::kPadding));
    for (int y = firstRow; y < endRow; ++y) {
      const FaxDecoder::Row row =
          m_coding == FaxCoding::kGroup4 ? m_decoder.Next() : m_decoder.NextAfterEndOfLine();
      if (row == FaxDecoder::Row::kDamaged) return false;
      if (row == FaxDecoder::Row::kEndOfBlock) return y > firstRow && FillRest(y, endRow, page);
      if (row == FaxDecoder::Row::kSameAsAbove && y > firstRow)
        page.Repeat(y);
      else
        StoreRow(y, page);
      m_wish.Reached(page.Pixels(), 0, y + 1);
    }
    return m_decoder.WithinData();
  }
  /// Whether a strip said that it has fewer rows than the page wants of it.
  bool EndedEarly() const { return m_endedEarly; }

 private:
  bool ReadStrip(int firstRow) {
    const std::uint32_t strip = TIFFComputeStrip(m_tiff.Get(), static_cast<std::uint32_t>(firstRow), 0);
    const std::uint64_t offset = TIFFGetStrileOffset(m_tiff.Get(), strip);
    const std::uint64_t count = TIFFGetStrileByteCount(m_tiff.Get(), strip);
    const auto fileSize = static_cast<std::uint64_t>(m_tiff.File().Size());
    if (offset == 0 || count == 0 || offset > fileSize || count > fileSize - offset ||
        count > static_cast<std::uint64_t>(Limit().codecBytes))
      return false;
    m_coded.assign(static_cast<std::size_t>(count) + FaxDecoder::kPadding, 0);
    const auto target = std::span(m_coded).first(static_cast<std::size_t>(count));
    if (!m_tiff.File().ReadExactly(static_cast<std::int64_t>(offset), target)) return false;
    if (m_reversed) TIFFReverseBits(m_coded.data(), static_cast<tmsize_t>(count));
    return true;
  }

  void StoreRow(int y, BilevelPage& page) { m_decoder.Paint(page.Row(y), m_white); }

  /// Rows that the strip says it doesn't have are white.
  bool FillRest(int y, int endRow, BilevelPage& page) {
    m_endedEarly = true;
    std::fill(m_row.begin(), m_row.end(), m_white);
    for (; y < endRow; ++y) page.Store(m_row.data(), y, 0);
    return true;
  }

  const TiffHandle& m_tiff;
  const DecodeWish& m_wish;
  std::uint8_t m_white;
  bool m_reversed;
  std::optional<FaxCoding> m_coding;
  FaxDecoder m_decoder;
  std::vector<std::uint8_t> m_row;
  std::vector<std::uint8_t> m_coded;
  bool m_endedEarly = false;
};

}  // namespace

std::unique_ptr<PixelStorage> DecodeBilevelTiff(const TiffHandle& tiff, const TiffLayout& layout,
                                                const DecodeWish& wish, FaxOutcome& fax) {
  BilevelColors colors{{0, 0, 0, 0}, {255, 255, 255, 0}};
  if (layout.Palette()) {
    const auto table = ReadTiffColors(tiff, layout);
    colors = {table[0], table[1]};
  }
  const std::uint8_t flip = layout.MinIsWhite() ? 0xff : 0;
  TiffBands bands(tiff, layout);
  BilevelPage page(layout.width, layout.height, colors);
  // The fax coders write white as 0, so that it is the file's 0 that is turned over.
  FaxStrips strips(tiff, layout, flip, wish);
  while (!bands.AtEnd()) {
    if (strips.Decode(bands.EndRow(), bands.NextEndRow(), page)) {
      bands.Skip();
      continue;
    }
    fax.sound = false;
    bands.Next();
    for (int y = bands.FirstRow(); y < bands.EndRow(); ++y) page.Store(bands.Row(y), y, flip);
    wish.Reached(page.Pixels(), 0, bands.EndRow());
  }
  fax.sound = fax.sound && !strips.EndedEarly();
  fax.damagedRows = bands.DamagedRows();
  bands.Next();  // tells if nothing was decoded
  return page.Take();
}

}  // namespace imaging
