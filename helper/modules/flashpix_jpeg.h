#pragma once

#include <cstddef>
#include <cstdio>

extern "C" {
#include <jpeglib.h>
}

#include <csetjmp>
#include <cstdint>
#include <span>

namespace helper {

/// Tiles in JPEG whose tables stand elsewhere: they are read once, and kept for the tiles that follow.
class TileJpeg {
 public:
  TileJpeg();
  ~TileJpeg() { jpeg_destroy_decompress(&m_info); }
  TileJpeg(const TileJpeg&) = delete;
  TileJpeg& operator=(const TileJpeg&) = delete;

  bool ReadTables(std::span<const std::uint8_t> tables);
  /// The same for a tile that has tables of its own.
  bool ReadTablesOf(std::span<const std::uint8_t> tile);
  /// Whether the quantisation read last is the standard's example as it stands (ITU-T T.81, annex K.1), which
  /// no factor has made coarser or finer.
  bool HasStandardQuantisation() const;
  /// Fills pixels, a square of that side with the channels of a pixel together. Converted: the channels are
  /// as JPEG likes them, and come as red, green and blue; four of these are the complements.
  bool Decode(std::span<const std::uint8_t> tile, int side, int channels, bool converted,
              std::span<std::uint8_t> pixels);

 private:
  bool ReadHeader(std::span<const std::uint8_t> bytes, int expected);
  bool Begin(int side, int channels, bool converted);

  jpeg_decompress_struct m_info{};
  jpeg_error_mgr m_errors{};
  std::jmp_buf m_jump;
};

}  // namespace helper
