#include "imaging/codecs/raster.h"

#include <cstring>

#include "imaging/codecs/rows.h"

namespace imaging {
namespace {

int Brightness(const RGBQUAD& color) {
  return color.rgbRed + color.rgbGreen + color.rgbBlue;
}

/// What rows show that a file doesn't have: white, or the first colour of a larger table.
std::uint8_t Blank(const PixelStorage& pixels) {
  if (pixels.Bits() > 8) return 0xff;
  const auto& colors = pixels.Palette();
  return pixels.Bits() == 1 && Brightness(colors[1]) > Brightness(colors[0]) ? 0xff : 0;
}

class RasterReader final : public Reader {
 public:
  RasterReader(const Source& source, RasterParser parse) : m_source(source), m_parse(parse) {}

  int CountPages() override { return 1; }
  PageInfo Describe(int page) override { return Parse(page).info; }

  DecodedPage Decode(int number, const DecodeWish& wish) override {
    RasterPage page = Parse(number);
    DecodedPage decoded;
    decoded.info = page.info;
    decoded.order = page.info.order;
    decoded.pixels = PixelStorage::Create(page.info.width, page.info.height, page.memoryBits);
    if (page.memoryBits <= 8) SetPalette(*decoded.pixels, page.colors);
    ReadRows(page, *decoded.pixels, wish);
    return decoded;
  }

 private:
  RasterPage Parse(int number) const {
    RequirePage(m_source, number, 1);
    RasterPage page = m_parse(m_source);
    CheckPlausible(m_source, std::int64_t{page.info.width} * page.info.height * page.memoryBits / 8,
                   page.expansion);
    if (page.dataOffset >= m_source.Size()) FailShort();
    return page;
  }

  void ReadRows(RasterPage& page, PixelStorage& pixels, const DecodeWish& wish) const {
    // Rows that are still to be turned over or changed can't be told yet.
    const bool telling = !page.bottomUp && pixels.Bits() != 32;
    ByteReader data(m_source, page.dataOffset);
    int line = 0;
    const auto row = [&] { return pixels.Row(page.bottomUp ? pixels.Height() - 1 - line : line); };
    while (line < pixels.Height() && page.nextRow(data, row())) {
      ++line;
      FailIfEndWanted();
      if (telling) wish.Reached(pixels, page.info.order, line);
    }
    if (line == 0) FailShort();
    const int first = page.bottomUp ? pixels.Height() - line : 0;
    if (pixels.Bits() == 32) MakeOpaqueIfClear(pixels, first, first + line);
    for (const int blank = Blank(pixels); line < pixels.Height(); ++line)
      std::memset(row(), blank, pixels.RowBytes());
  }

  [[noreturn]] void FailShort() const {
    Fail(kErrorCorrupt, "%s: the file ends before its pixels", m_source.Name().c_str());
  }

  const Source& m_source;
  RasterParser m_parse;
};

class AlbumReader final : public Reader {
 public:
  using Opener = std::unique_ptr<Reader> (*)(const Source& part);
  AlbumReader(const Source& source, std::vector<AlbumPart> parts, int format, Opener open)
      : m_source(source), m_parts(std::move(parts)), m_format(format), m_open(open) {}

  int CountPages() override { return static_cast<int>(m_parts.size()); }

  PageInfo Describe(int page) override {
    Select(page);
    return Renamed(m_reader->Describe(1));
  }
  DecodedPage Decode(int page, const DecodeWish& wish) override {
    Select(page);
    DecodedPage decoded = m_reader->Decode(1, wish);
    decoded.info = Renamed(decoded.info);
    return decoded;
  }

 private:
  void Select(int page) {
    RequirePage(m_source, page, CountPages());
    if (page == m_selected) return;
    const AlbumPart& part = m_parts[static_cast<std::size_t>(page) - 1];
    if (part.offset >= m_source.Size())
      Fail(kErrorCorrupt, "%s, page %d: the file ends before its picture", m_source.Name().c_str(), page);
    m_selected = 0;
    m_reader.reset();
    m_part = OpenWindowSource(m_source, part.offset, part.size);
    m_reader = m_open(*m_part);
    m_selected = page;
  }
  PageInfo Renamed(PageInfo info) const {
    info.format = m_format;
    return info;
  }

  const Source& m_source;
  std::vector<AlbumPart> m_parts;
  int m_format;
  Opener m_open;
  int m_selected = 0;
  std::unique_ptr<Source> m_part;
  std::unique_ptr<Reader> m_reader;
};

}  // namespace

RasterPage MakePage(const Source& source, FileFormat format, std::int64_t width, std::int64_t height,
                    int bits, const char* compression) {
  CheckPageSize(source, width, height);
  RasterPage page;
  page.info.format = format;
  page.info.width = static_cast<int>(width);
  page.info.height = static_cast<int>(height);
  page.info.bits = page.memoryBits = bits;
  page.info.compression = compression;
  return page;
}

std::unique_ptr<Reader> OpenRaster(const Source& source, RasterParser parse) {
  return std::make_unique<RasterReader>(source, parse);
}

std::unique_ptr<Reader> OpenAlbum(const Source& source, std::vector<AlbumPart> parts, int format,
                                  std::unique_ptr<Reader> (*open)(const Source& part)) {
  return std::make_unique<AlbumReader>(source, std::move(parts), format, open);
}

}  // namespace imaging
