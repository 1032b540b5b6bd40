#include "imaging/codecs/tiff_lossless.h"

#include <utility>
#include <vector>

#include "imaging/codecs/jpeg_lossless.h"
#include "imaging/codecs/tiff_pieces.h"
#include "imaging/core/exception.h"
#include "imaging/core/limits.h"

namespace imaging {
namespace {

constexpr std::size_t kMarker = 2;

/// The JPEG stream of a strip or tile, behind the tables that all of them share (TIFF technical note 2). Null
/// if it lies outside of the file.
std::unique_ptr<Source> OpenPiece(const TiffHandle& tiff, std::uint32_t index) {
  std::uint32_t tablesSize = 0;
  const std::uint8_t* tables = nullptr;
  std::vector<std::uint8_t> bytes;
  // The end of the tables and the start of the picture meet in the middle.
  if (TIFFGetField(tiff.Get(), TIFFTAG_JPEGTABLES, &tablesSize, &tables) != 0 && tablesSize > 2 * kMarker)
    bytes.assign(tables, tables + tablesSize - kMarker);
  const std::size_t skip = bytes.empty() ? 0 : kMarker;
  return OpenTiffPiece(tiff, index, std::move(bytes), skip);
}

}  // namespace

bool IsLosslessTiff(const TiffHandle& tiff, const TiffLayout& layout) {
  if (layout.compression != COMPRESSION_JPEG || layout.separatePlanes) return false;
  const auto piece = OpenPiece(tiff, 0);
  return piece != nullptr && ReadJpegHeader(*piece).process == JpegProcess::kLossless;
}

std::unique_ptr<PixelStorage> DecodeLosslessTiff(const TiffHandle& tiff, const TiffLayout& layout) {
  auto pixels = CreateWhitePage(layout, layout.samples == 1 ? 8 : 24);
  int rows = 0;
  ForEachTiffPiece(layout, [&](std::uint32_t index, int left, int top) {
    const auto piece = OpenPiece(tiff, index);
    if (piece == nullptr) return;
    const JpegHeader header = ReadJpegHeader(*piece);
    if (header.process != JpegProcess::kLossless || header.width < 1 || header.width > Limit().side) return;
    rows += DecodeLosslessInto(*piece, header, *pixels, left, top);
  });
  if (rows == 0) tiff.FailDecoding();
  if (layout.MinIsWhite()) InvertLevels(*pixels);
  return pixels;
}

}  // namespace imaging
