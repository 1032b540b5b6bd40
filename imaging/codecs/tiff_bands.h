#pragma once

#include <cstdint>
#include <span>
#include <vector>

#include "imaging/codecs/tiff_layout.h"

namespace imaging {

/// Decodes a page band by band, a band being one strip or one row of tiles, of all planes. A band stays in
/// cache while its rows are converted. What a damaged strip or tile doesn't give is filled with the paper.
class TiffBands {
 public:
  /// Throws kErrorLimit if a band needs more memory than the limits allow.
  TiffBands(const TiffHandle& tiff, const TiffLayout& layout);

  /// Decodes the next band; false after the last. Throws at the end if nothing of the page could be decoded.
  bool Next();
  /// The rows of this band: [FirstRow, EndRow).
  int FirstRow() const { return m_firstRow; }
  int EndRow() const { return m_endRow; }
  const std::uint8_t* Row(int y, int plane = 0) const {
    return m_buffer.data() + static_cast<std::size_t>(plane) * m_planeBytes +
           static_cast<std::size_t>(y - m_firstRow) * m_rowBytes;
  }
  /// For a caller that decodes a band in another way: its rows are [EndRow, NextEndRow) before it is skipped.
  bool AtEnd() const { return m_endRow >= m_layout.height; }
  int NextEndRow() const;
  void Skip();
  /// Rows in fax coding, of the bands so far, that couldn't be decoded or only in part.
  int DamagedRows() const { return m_damagedRows; }
  /// Back to the first band, for a page that is read twice.
  void Rewind();

 private:
  void ReadStrip(int plane);
  void ReadTiles(int plane);
  bool ReadPiece(std::uint32_t index, std::uint8_t* target, std::size_t bytes, std::size_t rowBytes);
  bool Salvage(std::uint32_t index, std::uint8_t* target, std::size_t bytes, std::size_t rowBytes);
  bool ReadWithoutEndsOfLine(std::span<const std::uint8_t> coded, std::uint8_t* target, std::size_t bytes,
                             std::size_t rowBytes) const;
  bool Read(std::uint32_t index, std::uint8_t* target, std::size_t bytes);
  void CountDamage(std::uint32_t index, std::size_t bytes, std::size_t rowBytes);
  bool IsPaper(std::span<const std::uint8_t> pixels) const;
  void RequireSomething() const;

  const TiffHandle& m_tiff;
  const TiffLayout& m_layout;
  int m_planes;
  std::uint8_t m_paper;        ///< byte of an undecoded place
  std::size_t m_rowBytes = 0;  ///< of one plane, all tiles across
  std::size_t m_tileRowBytes = 0;
  std::size_t m_planeBytes = 0;
  std::vector<std::uint8_t> m_buffer;
  std::vector<std::uint8_t> m_tile;
  int m_firstRow = 0;
  int m_endRow = 0;
  bool m_anythingDecoded = false;
  int m_faultsBefore = 0;  ///< the piece that is read
  int m_lostRows = 0;      ///< of that piece, at its end, which the library never reached
  int m_damagedRows = 0;
};

}  // namespace imaging
