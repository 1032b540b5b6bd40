#include "imaging/codecs/tiff_lossless.h"

#include <algorithm>
#include <cstring>
#include <vector>

#include "imaging/codecs/jpeg_lossless.h"
#include "imaging/core/exception.h"
#include "imaging/core/limits.h"

namespace imaging {
namespace {

constexpr std::size_t kMarker = 2;

/// The JPEG stream of a strip or tile, behind the tables that all of them share (TIFF technical note 2). Null
/// if it lies outside of the file.
std::unique_ptr<Source> OpenPiece(const TiffHandle& tiff, std::uint32_t index) {
  const auto offset = static_cast<std::int64_t>(TIFFGetStrileOffset(tiff.Get(), index));
  const auto size = static_cast<std::int64_t>(TIFFGetStrileByteCount(tiff.Get(), index));
  const std::int64_t there = std::min(size, tiff.File().Size() - offset);
  if (offset <= 0 || there <= static_cast<std::int64_t>(kMarker) || there > limits::kMaxCodecBytes)
    return nullptr;
  std::uint32_t tablesSize = 0;
  const std::uint8_t* tables = nullptr;
  std::vector<std::uint8_t> bytes;
  // The end of the tables and the start of the picture meet in the middle.
  if (TIFFGetField(tiff.Get(), TIFFTAG_JPEGTABLES, &tablesSize, &tables) != 0 && tablesSize > 2 * kMarker)
    bytes.assign(tables, tables + tablesSize - kMarker);
  const std::size_t skip = bytes.empty() ? 0 : kMarker;
  const std::size_t start = bytes.size();
  bytes.resize(start + static_cast<std::size_t>(there) - skip);
  const std::size_t got =
      tiff.File().ReadAt(offset + static_cast<std::int64_t>(skip), std::span(bytes).subspan(start));
  bytes.resize(start + got);
  return OpenBlockSource(std::move(bytes), tiff.File().Name());
}

}  // namespace

bool IsLosslessTiff(const TiffHandle& tiff, const TiffLayout& layout) {
  if (layout.compression != COMPRESSION_JPEG || layout.separatePlanes) return false;
  const auto piece = OpenPiece(tiff, 0);
  return piece != nullptr && ReadJpegHeader(*piece).process == JpegProcess::kLossless;
}

std::unique_ptr<PixelStorage> DecodeLosslessTiff(const TiffHandle& tiff, const TiffLayout& layout) {
  auto pixels = PixelStorage::Create(layout.width, layout.height, layout.samples == 1 ? 8 : 24);
  for (int y = 0; y < layout.height; ++y) std::memset(pixels->Row(y), 0xff, pixels->RowBytes());
  const int across = layout.tiled ? layout.tileWidth : layout.width;
  std::uint32_t index = 0;
  int rows = 0;
  for (int top = 0; top < layout.height; top += std::min(layout.bandHeight, layout.height))
    for (int left = 0; left < layout.width; left += std::min(across, layout.width)) {
      const auto piece = OpenPiece(tiff, index++);
      if (piece == nullptr) continue;
      const JpegHeader header = ReadJpegHeader(*piece);
      if (header.process != JpegProcess::kLossless || header.width < 1 || header.width > limits::kMaxSide)
        continue;
      rows += DecodeLosslessInto(*piece, header, *pixels, left, top);
    }
  if (rows == 0) tiff.FailDecoding();
  if (layout.MinIsWhite())
    for (int y = 0; y < layout.height; ++y)
      for (std::size_t x = 0; x < pixels->RowBytes(); ++x) pixels->Row(y)[x] ^= 0xff;
  return pixels;
}

}  // namespace imaging
