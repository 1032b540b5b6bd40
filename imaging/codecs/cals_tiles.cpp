#include "imaging/codecs/cals_tiles.h"

#include <algorithm>
#include <cstring>
#include <optional>
#include <span>
#include <utility>

#include "imaging/core/exception.h"

namespace imaging {
namespace {

using Octets = std::span<const std::uint8_t>;

/// An element of the basic encoding rules (ITU-T X.690): what it is, and its contents.
struct Element {
  static constexpr int kUniversal = 0;
  static constexpr int kContext = 2;

  int kind = 0;  ///< the class of the tag
  bool constructed = false;
  unsigned tag = 0;
  Octets contents;

  bool Is(int wantedKind, unsigned wantedTag) const { return kind == wantedKind && tag == wantedTag; }
};

constexpr int kMostDepth = 32;

std::optional<Element> TakeElement(Octets& octets, int depth);

/// The contents that end at two zero octets; every element has to be gone through to find them.
std::optional<Octets> TakeIndefinite(Octets& octets, int depth) {
  const Octets whole = octets;
  while (octets.size() >= 2) {
    if (octets[0] == 0 && octets[1] == 0) {
      const Octets contents = whole.first(whole.size() - octets.size());
      octets = octets.subspan(2);
      return contents;
    }
    if (!TakeElement(octets, depth + 1)) break;
  }
  // A file that is cut off shows what it has.
  octets = {};
  return whole;
}

std::optional<unsigned> TakeTag(Octets& octets) {
  constexpr unsigned kMore = 0x1f;
  unsigned tag = octets[0] & kMore;
  octets = octets.subspan(1);
  if (tag != kMore) return tag;
  tag = 0;
  for (int i = 0; i < 4 && !octets.empty(); ++i) {
    const std::uint8_t octet = octets[0];
    octets = octets.subspan(1);
    tag = tag << 7 | (octet & 0x7f);
    if ((octet & 0x80) == 0) return tag;
  }
  return std::nullopt;
}

/// The next one, which is cut to what is there. None behind the last, and where none can be.
std::optional<Element> TakeElement(Octets& octets, int depth = 0) {
  if (octets.size() < 2 || depth > kMostDepth) return std::nullopt;
  Element element;
  element.kind = octets[0] >> 6;
  element.constructed = (octets[0] & 0x20) != 0;
  const auto tag = TakeTag(octets);
  if (!tag || octets.empty()) return std::nullopt;
  element.tag = *tag;
  std::uint64_t length = octets[0];
  octets = octets.subspan(1);
  if (length == 0x80) {
    if (!element.constructed) return std::nullopt;
    const auto contents = TakeIndefinite(octets, depth);
    element.contents = *contents;
    return element;
  }
  if (length > 0x80) {
    const std::size_t count = length & 0x7f;
    if (count > sizeof length || count > octets.size()) return std::nullopt;
    length = 0;
    for (const std::uint8_t octet : octets.first(count)) length = length << 8 | octet;
    octets = octets.subspan(count);
  }
  element.contents = octets.first(std::min<std::uint64_t>(length, octets.size()));
  octets = octets.subspan(element.contents.size());
  return element;
}

/// 0 for what is longer than any size could be, or below 0.
int NumberOf(const Element& element) {
  if (element.contents.empty() || element.contents.size() > 4 || element.contents[0] >= 0x80) return 0;
  int number = 0;
  for (const std::uint8_t octet : element.contents) number = number << 8 | octet;
  return number;
}

/// The attributes of raster coding. Those of tiles are the last ones of the list.
void ReadAttribute(const Source& source, const Element& element, CalsTiles& tiles) {
  switch (element.tag) {
    case 0:
      tiles.width = NumberOf(element);
      break;
    case 1:
      tiles.height = NumberOf(element);
      break;
    case 6:
      tiles.tileWidth = NumberOf(element);
      break;
    case 7:
      tiles.tileHeight = NumberOf(element);
      break;
    case 8:
      for (Octets rest = element.contents; const auto part = TakeElement(rest);)
        if (NumberOf(*part) != 0)
          Fail(kErrorUnsupported, "%s: CALS raster whose tiles begin off the corner can't be decoded",
               source.Name().c_str());
      break;
    case 9:
      for (Octets rest = element.contents; const auto type = TakeElement(rest);)
        tiles.types.push_back(NumberOf(*type));
      break;
    default:
      break;
  }
}

/// The set of coding attributes is the second of its kind's choices, wherever the writer puts it.
void ReadAttributes(const Source& source, Octets set, CalsTiles& tiles) {
  constexpr unsigned kRasterCoding = 2;
  while (const auto element = TakeElement(set)) {
    if (!element->constructed || !element->Is(Element::kContext, kRasterCoding)) continue;
    for (Octets rest = element->contents; const auto attribute = TakeElement(rest);)
      if (attribute->kind == Element::kContext) ReadAttribute(source, *attribute, tiles);
  }
}

/// A string of octets, whole or in pieces.
void AppendOctets(const Element& element, std::vector<std::uint8_t>& octets, int depth = 0) {
  if (!element.constructed) {
    octets.insert(octets.end(), element.contents.begin(), element.contents.end());
    return;
  }
  if (depth == kMostDepth) return;
  for (Octets rest = element.contents; const auto part = TakeElement(rest);)
    AppendOctets(*part, octets, depth + 1);
}

/// Where the tile lies, and its size with what stands over the picture's edge.
struct Tile {
  int x;
  int y;
  int width;
  int height;
};

/// Takes the tiles one after the other from the coded data.
class TileDecoder {
 public:
  TileDecoder(const FaxData& data, PixelStorage& pixels) : m_data(data), m_pixels(pixels) {}

  bool AtEnd() const { return m_next >= std::ssize(m_data.Coded()); }

  void Fill(const Tile& tile, std::uint8_t value) {
    for (int y = 0; y < RowsOf(tile); ++y) std::memset(RowOf(tile, y), value, BytesOf(tile));
  }

  /// How many rows are damaged. A tile that may be a plain bitmap is one if it is no clean group 4 coding.
  /// One on the edge may be cut to the picture, or not.
  int Decode(const Tile& tile, bool mayBePlain) {
    for (const int width : {tile.width, std::min(tile.width, m_pixels.Width() - tile.x)})
      if (DecodeGroup4(tile, width, true)) return 0;
    if (mayBePlain && CopyPlain(tile)) return 0;
    if (DecodeGroup4(tile, tile.width, false)) return m_damaged;
    m_next = std::ssize(m_data.Coded());
    return RowsOf(tile);
  }

 private:
  int RowsOf(const Tile& tile) const { return std::min(tile.height, m_pixels.Height() - tile.y); }
  std::size_t BytesOf(const Tile& tile) const {
    return static_cast<std::size_t>(std::min(tile.width, m_pixels.Width() - tile.x) + 7) / 8;
  }
  std::uint8_t* RowOf(const Tile& tile, int y) const { return m_pixels.Row(tile.y + y) + tile.x / 8; }

  /// Goes behind the tile's end-of-block code. Nothing is changed but pixels where a clean one is wanted and
  /// this is none.
  bool DecodeGroup4(const Tile& tile, int width, bool clean) {
    FaxRows rows(width, FaxCoding::kGroup4);
    rows.Start(m_data.Coded(), m_next * 8);
    std::vector<std::uint8_t> row((static_cast<std::size_t>(width) + 63) / 64 * 8);
    int y = 0;
    for (; y <= tile.height && rows.Next() != FaxRows::Step::kEnd; ++y) {
      if (y >= RowsOf(tile)) continue;
      rows.Paint(row.data(), 0xff);
      std::memcpy(RowOf(tile, y), row.data(), BytesOf(tile));
    }
    m_damaged = std::max(0, RowsOf(tile) - y);
    const bool isClean = rows.Damaged() == 0 && y <= tile.height && m_damaged == 0;
    if ((clean && !isClean) || (!clean && y == 0)) {
      Fill(tile, 0xff);
      return false;
    }
    m_next = rows.SkipToNextPage() ? (rows.BitPosition() + 7) / 8 : std::ssize(m_data.Coded());
    return true;
  }

  bool CopyPlain(const Tile& tile) {
    const auto pitch = static_cast<std::int64_t>(tile.width + 7) / 8;
    if (pitch * tile.height > std::ssize(m_data.Coded()) - m_next) return false;
    for (int y = 0; y < RowsOf(tile); ++y) {
      const std::uint8_t* from = m_data.Coded().data() + m_next + y * pitch;
      std::transform(from, from + BytesOf(tile), RowOf(tile, y),
                     [](std::uint8_t octet) { return static_cast<std::uint8_t>(~octet); });
    }
    m_next += pitch * tile.height;
    return true;
  }

  const FaxData& m_data;
  PixelStorage& m_pixels;
  std::int64_t m_next = 0;
  int m_damaged = 0;
};

void CheckTiles(const Source& source, const CalsTiles& tiles) {
  constexpr int kMostSide = 32768;
  if (tiles.tileWidth > kMostSide || tiles.tileHeight > kMostSide || tiles.tileWidth % 8 != 0)
    Fail(kErrorUnsupported, "%s: CALS raster in tiles of %d by %d pixels can't be decoded",
         source.Name().c_str(), tiles.tileWidth, tiles.tileHeight);
}

}  // namespace

CalsTiles ReadCalsTiles(const Source& source, std::int64_t offset) {
  constexpr unsigned kContentPortion = 3;
  constexpr unsigned kOctets = 4;
  const FaxData file = FaxData::Read(source, offset, source.Size());
  CalsTiles tiles;
  std::vector<std::uint8_t> coded;
  for (Octets rest = file.Coded(); const auto portion = TakeElement(rest);) {
    if (!portion->Is(Element::kContext, kContentPortion)) continue;
    for (Octets parts = portion->contents; const auto part = TakeElement(parts);)
      if (part->Is(Element::kUniversal, kOctets))
        AppendOctets(*part, coded);
      else if (part->constructed)
        ReadAttributes(source, part->contents, tiles);
    break;
  }
  if (coded.empty())
    Fail(kErrorCorrupt, "%s: the document of the CALS raster holds no picture", source.Name().c_str());
  if (tiles.tileWidth <= 0 || tiles.tileHeight <= 0) tiles.tileWidth = tiles.tileHeight = 0;
  CheckTiles(source, tiles);
  tiles.coded = FaxData(std::move(coded));
  return tiles;
}

int DecodeCalsTiles(const CalsTiles& tiles, PixelStorage& pixels) {
  constexpr int kWhite = 0;
  constexpr int kBlack = 1;
  constexpr int kGroup4 = 2;
  TileDecoder decoder(tiles.coded, pixels);
  std::size_t index = 0;
  int damaged = 0;
  for (int y = 0; y < pixels.Height(); y += tiles.tileHeight)
    for (int x = 0; x < pixels.Width(); x += tiles.tileWidth, ++index) {
      const Tile tile = {x, y, tiles.tileWidth, tiles.tileHeight};
      const int type = index < tiles.types.size() ? tiles.types[index] : kGroup4;
      decoder.Fill(tile, type == kBlack ? 0 : 0xff);
      if (type == kWhite || type == kBlack) continue;
      damaged +=
          decoder.AtEnd() ? std::min(tile.height, pixels.Height() - y) : decoder.Decode(tile, type > kGroup4);
    }
  return damaged;
}

}  // namespace imaging
