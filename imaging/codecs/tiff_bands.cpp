#include "imaging/codecs/tiff_bands.h"

#include <algorithm>
#include <cstring>
#include <span>

#include "imaging/codecs/fax.h"
#include "imaging/core/exception.h"
#include "imaging/core/limits.h"

namespace imaging {
namespace {

// A strip's rows are of this pattern before a damaged strip is decoded, so that the rows that the decoder
// never reached can be told from those that it wrote.
constexpr std::uint8_t kUntouched = 0x55;

/// At the end of a piece.
int UntouchedRows(std::span<const std::uint8_t> piece, std::size_t rowBytes) {
  const auto last =
      std::find_if(piece.rbegin(), piece.rend(), [](std::uint8_t byte) { return byte != kUntouched; });
  return static_cast<int>(static_cast<std::size_t>(last - piece.rbegin()) / rowBytes);
}

std::uint8_t PaperByte(const TiffLayout& layout) {
  const bool zeroIsWhite =
      layout.MinIsWhite() || layout.photometric == PHOTOMETRIC_SEPARATED || layout.Palette();
  return zeroIsWhite ? 0x00 : 0xff;
}

}  // namespace

TiffBands::TiffBands(const TiffHandle& tiff, const TiffLayout& layout)
    : m_tiff(tiff),
      m_layout(layout),
      m_planes(layout.separatePlanes ? layout.samples : 1),
      m_paper(PaperByte(layout)) {
  const int samples = layout.separatePlanes ? 1 : layout.samples;
  const std::int64_t pixelBits = static_cast<std::int64_t>(layout.bitsPerSample) * samples;
  std::int64_t columns = layout.width;
  std::int64_t rowBytes = (columns * pixelBits + 7) / 8;
  if (layout.tiled) {
    if (layout.tileWidth * pixelBits % 8 != 0)
      Fail(kErrorUnsupported, "%s, page %d: tiles %d pixels wide", tiff.File().Name().c_str(), tiff.Page(),
           layout.tileWidth);
    const std::int64_t across = (columns + layout.tileWidth - 1) / layout.tileWidth;
    m_tileRowBytes = static_cast<std::size_t>(layout.tileWidth * pixelBits / 8);
    rowBytes = across * static_cast<std::int64_t>(m_tileRowBytes);
  }
  const std::int64_t planeRows = std::min<std::int64_t>(layout.bandHeight, layout.height);
  if (rowBytes > Limit().codecBytes || rowBytes * planeRows * m_planes > Limit().codecBytes ||
      static_cast<std::int64_t>(m_tileRowBytes) > Limit().codecBytes / layout.bandHeight)
    Fail(kErrorLimit, "%s, page %d: strips or tiles of %d rows are too large", tiff.File().Name().c_str(),
         tiff.Page(), layout.bandHeight);
  m_rowBytes = static_cast<std::size_t>(rowBytes);
  m_planeBytes = m_rowBytes * static_cast<std::size_t>(planeRows);
}

int TiffBands::NextEndRow() const {
  return std::min(m_layout.height - m_endRow, m_layout.bandHeight) + m_endRow;
}

void TiffBands::Skip() {
  m_firstRow = m_endRow;
  m_endRow = NextEndRow();
  m_anythingDecoded = true;
}

bool TiffBands::Next() {
  FailIfEndWanted();
  if (AtEnd()) {
    RequireSomething();
    return false;
  }
  m_buffer.resize(m_planeBytes * static_cast<std::size_t>(m_planes));
  if (m_layout.tiled) m_tile.resize(m_tileRowBytes * static_cast<std::size_t>(m_layout.bandHeight));
  m_firstRow = m_endRow;
  m_endRow = NextEndRow();
  for (int plane = 0; plane < m_planes; ++plane) {
    if (m_layout.tiled)
      ReadTiles(plane);
    else
      ReadStrip(plane);
  }
  return true;
}

void TiffBands::Rewind() {
  m_firstRow = m_endRow = 0;
}

void TiffBands::ReadStrip(int plane) {
  const auto row = static_cast<std::uint32_t>(m_firstRow);
  const std::uint32_t strip = TIFFComputeStrip(m_tiff.Get(), row, static_cast<std::uint16_t>(plane));
  const std::size_t bytes = m_rowBytes * static_cast<std::size_t>(m_endRow - m_firstRow);
  std::uint8_t* target = m_buffer.data() + static_cast<std::size_t>(plane) * m_planeBytes;
  ReadPiece(strip, target, bytes, m_rowBytes);
}

void TiffBands::ReadTiles(int plane) {
  const auto rows = static_cast<std::size_t>(m_endRow - m_firstRow);
  std::uint8_t* target = m_buffer.data() + static_cast<std::size_t>(plane) * m_planeBytes;
  for (int x = 0; x < m_layout.width; x += m_layout.tileWidth, target += m_tileRowBytes) {
    const std::uint32_t tile =
        TIFFComputeTile(m_tiff.Get(), static_cast<std::uint32_t>(x), static_cast<std::uint32_t>(m_firstRow),
                        0, static_cast<std::uint16_t>(plane));
    ReadPiece(tile, m_tile.data(), m_tile.size(), m_tileRowBytes);
    for (std::size_t row = 0; row < rows; ++row)
      std::memcpy(target + row * m_rowBytes, m_tile.data() + row * m_tileRowBytes, m_tileRowBytes);
    if (x > m_layout.width - m_layout.tileWidth) break;
  }
}

/// The fax decoder goes on over bad codes and stops in silence at a premature end of block, which leaves the
/// rest as it was: white. So white rows together with errors are no decoded rows.
bool TiffBands::ReadPiece(std::uint32_t index, std::uint8_t* target, std::size_t bytes,
                          std::size_t rowBytes) {
  const int errors = m_tiff.ErrorCount();
  m_faultsBefore = m_tiff.FaxFaults();
  m_lostRows = 0;
  if (m_layout.FaxCoded()) std::memset(target, m_paper, bytes);
  const bool whole = Read(index, target, bytes);
  bool decoded = whole || Salvage(index, target, bytes, rowBytes);
  const bool damaged = !whole || m_tiff.ErrorCount() != errors;
  if (m_layout.FaxCoded() && damaged) decoded = decoded && !IsPaper({target, bytes});
  if (m_layout.FaxCoded()) CountDamage(index, bytes, rowBytes);
  m_anythingDecoded = m_anythingDecoded || decoded;
  return decoded;
}

bool TiffBands::Read(std::uint32_t index, std::uint8_t* target, std::size_t bytes) {
  const auto size = static_cast<tmsize_t>(bytes);
  return size == (m_layout.tiled ? TIFFReadEncodedTile(m_tiff.Get(), index, target, size)
                                 : TIFFReadEncodedStrip(m_tiff.Get(), index, target, size));
}

/// The rows of the piece that the library has named, and those behind the last one that it reached.
void TiffBands::CountDamage(std::uint32_t index, std::size_t bytes, std::size_t rowBytes) {
  const int named = m_tiff.FaxFaults() - m_faultsBefore;
  if (named > 0 && m_lostRows == 0) {
    std::vector<std::uint8_t> again(bytes, kUntouched);
    Read(index, again.data(), bytes);
    m_lostRows = UntouchedRows(again, rowBytes);
  }
  m_damagedRows += std::min(named + m_lostRows, static_cast<int>(bytes / rowBytes));
}

bool TiffBands::IsPaper(std::span<const std::uint8_t> pixels) const {
  return std::all_of(pixels.begin(), pixels.end(), [this](std::uint8_t byte) { return byte == m_paper; });
}

/// Decodes what the file still holds of a strip or tile that the library refuses as a whole.
bool TiffBands::Salvage(std::uint32_t index, std::uint8_t* target, std::size_t bytes, std::size_t rowBytes) {
  std::memset(target, kUntouched, bytes);
  m_faultsBefore = m_tiff.FaxFaults();  // the rows are decoded anew
  const std::uint64_t offset = TIFFGetStrileOffset(m_tiff.Get(), index);
  const std::uint64_t count = TIFFGetStrileByteCount(m_tiff.Get(), index);
  const auto fileSize = static_cast<std::uint64_t>(m_tiff.File().Size());
  if (offset != 0 && offset < fileSize && count != 0) {
    const std::uint64_t there =
        std::min({count, fileSize - offset, static_cast<std::uint64_t>(Limit().codecBytes)});
    std::vector<std::uint8_t> coded(static_cast<std::size_t>(there));
    coded.resize(m_tiff.File().ReadAt(static_cast<std::int64_t>(offset), coded));
    if (ReadWithoutEndsOfLine(coded, target, bytes, rowBytes)) return true;
    if (!coded.empty())
      TIFFReadFromUserBuffer(m_tiff.Get(), index, coded.data(), static_cast<tmsize_t>(coded.size()), target,
                             static_cast<tmsize_t>(bytes));
  }
  m_lostRows = UntouchedRows({target, bytes}, rowBytes);
  const std::size_t lost = static_cast<std::size_t>(m_lostRows) * rowBytes;
  std::memset(target + bytes - lost, m_paper, lost);
  return lost < bytes;
}

/// The library wants an end-of-line code in front of each row of group 3 coding (T.4, 4.1.2), but some
/// writers leave them out. Only a strip that is whole in that reading is taken for one of theirs.
bool TiffBands::ReadWithoutEndsOfLine(std::span<const std::uint8_t> coded, std::uint8_t* target,
                                      std::size_t bytes, std::size_t rowBytes) const {
  const bool twoDimensional = (m_tiff.Long(TIFFTAG_GROUP3OPTIONS, 0) & GROUP3OPT_2DENCODING) != 0;
  if (m_layout.compression != COMPRESSION_CCITTFAX3 || twoDimensional || m_layout.tiled) return false;
  std::vector<std::uint8_t> padded(coded.begin(), coded.end());
  padded.resize(coded.size() + FaxDecoder::kPadding);
  if (m_tiff.Short(TIFFTAG_FILLORDER, FILLORDER_MSB2LSB) == FILLORDER_LSB2MSB)
    TIFFReverseBits(padded.data(), static_cast<tmsize_t>(coded.size()));
  FaxDecoder decoder(m_layout.width);
  decoder.Start(std::span(padded).first(coded.size()));
  std::vector<std::uint8_t> row((rowBytes + 7) / 8 * 8);
  for (std::size_t at = 0; at < bytes; at += rowBytes) {
    if (decoder.NextOneDimensional() != FaxDecoder::Row::kDecoded) return false;
    decoder.Paint(row.data(), 0);
    std::memcpy(target + at, row.data(), rowBytes);
  }
  return true;
}

void TiffBands::RequireSomething() const {
  if (m_anythingDecoded) return;
  m_tiff.FailDecoding();
}

}  // namespace imaging
