#include "imaging/codecs/tiff_pieces.h"

#include <cstring>
#include <utility>

#include "imaging/core/limits.h"

namespace imaging {

std::unique_ptr<Source> OpenTiffPiece(const TiffHandle& tiff, std::uint32_t index,
                                      std::vector<std::uint8_t> head, std::size_t skip) {
  const auto offset = static_cast<std::int64_t>(TIFFGetStrileOffset(tiff.Get(), index));
  const auto size = static_cast<std::int64_t>(TIFFGetStrileByteCount(tiff.Get(), index));
  const std::int64_t there = std::min(size, tiff.File().Size() - offset) - static_cast<std::int64_t>(skip);
  if (offset <= 0 || there <= 0 || there > Limit().codecBytes) return nullptr;
  const std::size_t start = head.size();
  head.resize(start + static_cast<std::size_t>(there));
  const std::size_t got =
      tiff.File().ReadAt(offset + static_cast<std::int64_t>(skip), std::span(head).subspan(start));
  head.resize(start + got);
  return OpenBlockSource(std::move(head), tiff.File().Name());
}

std::unique_ptr<PixelStorage> CreateWhitePage(const TiffLayout& layout, int bits) {
  auto pixels = PixelStorage::Create(layout.width, layout.height, bits);
  for (int y = 0; y < layout.height; ++y) std::memset(pixels->Row(y), 0xff, pixels->RowBytes());
  return pixels;
}

void InvertLevels(PixelStorage& pixels) {
  for (int y = 0; y < pixels.Height(); ++y)
    for (std::size_t x = 0; x < pixels.RowBytes(); ++x) pixels.Row(y)[x] ^= 0xff;
}

}  // namespace imaging
