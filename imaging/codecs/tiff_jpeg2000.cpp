#include "imaging/codecs/tiff_jpeg2000.h"

#include <algorithm>
#include <cstring>

#include "imaging/codecs/helper.h"
#include "imaging/codecs/tiff_pieces.h"
#include "imaging/core/exception.h"

namespace imaging {
namespace {

/// The page's depth by the tags. A codestream of another one is damaged.
int MemoryBits(const TiffLayout& layout) {
  if (layout.samples == 1) return layout.bitsPerSample == 1 ? 1 : 8;
  return layout.samples == 3 ? 24 : 32;
}

void RequirePlain(const TiffHandle& tiff, const TiffLayout& layout) {
  const bool gray = layout.photometric <= PHOTOMETRIC_MINISBLACK && layout.samples <= 2;
  const bool rgb = layout.Rgb() && (layout.samples == 3 || layout.samples == 4);
  constexpr int kByte = 8;
  const bool packedTiles = MemoryBits(layout) == 1 && layout.tiled && layout.tileWidth % kByte != 0;
  if (layout.separatePlanes || packedTiles || (!gray && !rgb))
    Fail(kErrorUnsupported, "%s, page %d: JPEG 2000 in these colours or planes can't be shown",
         tiff.File().Name().c_str(), tiff.Page());
}

/// Pieces at the right and lower edge hang over.
void Place(const PixelStorage& piece, PixelStorage& page, int left, int top) {
  const int width = std::min(piece.Width(), page.Width() - left);
  const int height = std::min(piece.Height(), page.Height() - top);
  const auto bits = static_cast<std::size_t>(page.Bits());
  const std::size_t start = static_cast<std::size_t>(left) * bits / 8;
  const std::size_t bytes = (static_cast<std::size_t>(width) * bits + 7) / 8;
  for (int y = 0; y < height; ++y) std::memcpy(page.Row(top + y) + start, piece.Row(y), bytes);
}

/// Null for a damaged piece. That the user ended the loading goes on.
std::unique_ptr<PixelStorage> DecodePiece(const Source& source, const DecodeWish& wish) {
  try {
    const auto reader = OpenJpeg2000(source);
    return reader == nullptr ? nullptr : reader->Decode(1, wish).pixels;
  } catch (CLeadtoolsException* exception) {
    if (exception->m_nError != kErrorCorrupt) throw;
    exception->Delete();
    return nullptr;
  }
}

}  // namespace

std::unique_ptr<PixelStorage> DecodeJpeg2000Tiff(const TiffHandle& tiff, const TiffLayout& layout,
                                                 const DecodeWish& wish) {
  RequirePlain(tiff, layout);
  auto pixels = CreateWhitePage(layout, MemoryBits(layout));
  int decoded = 0;
  ForEachTiffPiece(layout, [&](std::uint32_t index, int left, int top) {
    const auto source = OpenTiffPiece(tiff, index);
    const auto piece = source == nullptr ? nullptr : DecodePiece(*source, wish);
    if (piece == nullptr || piece->Bits() != pixels->Bits()) return;
    Place(*piece, *pixels, left, top);
    ++decoded;
  });
  if (decoded == 0) tiff.FailDecoding();
  if (layout.MinIsWhite()) InvertLevels(*pixels);
  return pixels;
}

}  // namespace imaging
