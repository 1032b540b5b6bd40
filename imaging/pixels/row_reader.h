#pragma once

#include <array>
#include <cstddef>
#include <cstdint>

#include "imaging/pixels/storage.h"

namespace imaging {

enum class Alpha { FlattenOnWhite, Keep };

/// Gives the rows of a bitmap of any depth as bytes of 1, 3 or 4 channels, without a copy where they stand so
/// already. One channel is grey; three stand in the bitmap's own order; four from a colour table stand blue
/// first with 255 behind, four of 32 bits in the bitmap's order.
class RowReader {
 public:
  RowReader(const PixelStorage& storage, Alpha alpha);
  /// Only these rows are read; they may lie outside the image.
  RowReader(const PixelStorage& storage, Alpha alpha, int firstRow, int rows);
  int Channels() const { return m_channels; }
  /// Whether the channels' order is the record's (24 and 32 bits), not blue first.
  bool HasRecordOrder() const { return m_storage.Bits() >= 24; }
  /// Whether all rows stand as they are read, Pitch() bytes apart.
  bool IsDirect() const { return m_direct && (m_channels < 4 || m_alpha == Alpha::Keep); }
  std::ptrdiff_t Pitch() const { return m_storage.HeldPitch(); }
  /// Whether the rows hold a bit for each pixel and are read as grey: Gray(0) or Gray(1).
  bool IsBilevelGray() const { return m_storage.HeldBits() == 1 && m_channels == 1; }
  std::uint32_t Gray(unsigned index) const { return m_grays[index]; }
  /// A row as it is held.
  const std::uint8_t* Packed(int row) const { return m_storage.ReadyRow(row); }
  /// Pixels first to first + count - 1 of a row; scratch holds Channels() bytes for each.
  const std::uint8_t* Read(int row, int first, int count, std::uint8_t* scratch) const;

 private:
  void LookUp(const std::uint8_t* row, int first, int count, std::uint8_t* out) const;

  const PixelStorage& m_storage;
  Alpha m_alpha;
  int m_channels = 1;
  bool m_direct = false;
  std::array<std::uint8_t, 256> m_grays{};
  std::array<std::uint32_t, 256> m_colors{};
};

/// Composites straight alpha on white; the fourth byte becomes 255.
void FlattenOnWhite(std::uint8_t* out, const std::uint8_t* pixels, std::size_t count);

}  // namespace imaging
