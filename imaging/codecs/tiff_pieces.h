#pragma once

#include <algorithm>
#include <cstdint>
#include <memory>
#include <vector>

#include "imaging/codecs/tiff_layout.h"
#include "imaging/pixels/storage.h"

// Strips and tiles whose coding libtiff doesn't know, each a picture of its own.
namespace imaging {

/// The coded bytes of a strip or tile from that byte on, behind a head, as a file of its own. Null if it lies
/// outside of the file.
std::unique_ptr<Source> OpenTiffPiece(const TiffHandle& tiff, std::uint32_t index,
                                      std::vector<std::uint8_t> head = {}, std::size_t skip = 0);

/// Calls visit with the number of each piece and the place of its first pixel on the page.
template <typename Visit>
void ForEachTiffPiece(const TiffLayout& layout, const Visit& visit) {
  const int across = layout.tiled ? layout.tileWidth : layout.width;
  std::uint32_t index = 0;
  for (int top = 0; top < layout.height; top += std::min(layout.bandHeight, layout.height))
    for (int left = 0; left < layout.width; left += std::min(across, layout.width)) visit(index++, left, top);
}

std::unique_ptr<PixelStorage> CreateWhitePage(const TiffLayout& layout, int bits);
/// Where levels count from white to black.
void InvertLevels(PixelStorage& pixels);

}  // namespace imaging
