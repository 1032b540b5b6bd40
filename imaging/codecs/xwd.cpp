#include <algorithm>

#include "imaging/codecs/raster.h"
#include "imaging/codecs/rows.h"

// Dumps of X windows, of protocol versions 10 and 11.
namespace imaging {
namespace {

enum Version : std::uint32_t { kX10 = 6, kX11 = 7 };
constexpr std::uint32_t kByPixel = 2;  // the other formats are a plane of bits, or several
constexpr std::uint32_t kTrueColor = 4;
constexpr std::size_t kX10Header = 40;
constexpr std::size_t kX11Header = 100;
constexpr std::int64_t kX10Color = 8;
constexpr std::int64_t kX11Color = 12;

/// Where the pixels lie, for both versions.
struct Layout {
  bool byPixel = false;
  int planes = 1;  ///< of a picture that isn't stored by pixel
  int bits = 1;    ///< of a pixel, or 1
  std::size_t stride = 0;
  bool bigEndian = false;
  bool highBitFirst = false;
  std::size_t unit = 2;              ///< bytes of the words that bits stand in
  std::array<BitField, 3> fields{};  ///< of direct colours

  bool Direct() const { return fields[0].Present(); }
};

/// A header of 32-bit words, of either byte order.
class Words {
 public:
  explicit Words(std::span<const std::uint8_t> bytes) : m_bytes(bytes), m_big(BigU32(&bytes[4]) <= kX11) {}
  std::uint32_t operator[](std::size_t index) const {
    const std::uint8_t* word = &m_bytes[index * 4];
    return m_big ? BigU32(word) : LittleU32(word);
  }
  bool BigEndian() const { return m_big; }

 private:
  std::span<const std::uint8_t> m_bytes;
  bool m_big;
};

/// Colours are pixel value, red, green and blue, in the order of the values; in version 11 the value has 32
/// bits, and two bytes follow.
std::vector<RGBQUAD> ReadTable(const Source& source, const Words& header, std::uint32_t count,
                               std::int64_t entry) {
  std::vector<RGBQUAD> colors;
  const std::size_t red = (entry == kX11Color ? 4 : 2) + (header.BigEndian() ? 0 : 1);  // the upper half
  ByteReader data(source, header[0]);
  std::array<std::uint8_t, kX11Color> bytes{};
  for (std::uint32_t i = 0; i < std::min(count, 256U) && !data.AtEnd(); ++i) {
    data.Read(std::span(bytes).first(static_cast<std::size_t>(entry)));
    colors.push_back({bytes[red + 4], bytes[red + 2], bytes[red], 0});
  }
  return colors;
}

/// Bits in words: exchanged where the word's order isn't that of memory, most significant bit first.
void OrderBits(std::span<std::uint8_t> line, const Layout& layout) {
  if (layout.bigEndian != layout.highBitFirst)
    for (std::size_t at = 0; at + layout.unit <= line.size(); at += layout.unit)
      std::reverse(line.begin() + static_cast<std::ptrdiff_t>(at),
                   line.begin() + static_cast<std::ptrdiff_t>(at + layout.unit));
  if (!layout.highBitFirst) std::transform(line.begin(), line.end(), line.begin(), ReverseBits);
}

std::uint32_t PixelAt(const std::uint8_t* stored, int bytes, bool big) {
  std::uint32_t pixel = 0;
  for (int i = 0; i < bytes; ++i) pixel = pixel << 8 | stored[big ? i : bytes - 1 - i];
  return pixel;
}

void StoreDirect(const std::uint8_t* line, const Layout& layout, int width, std::uint8_t* row) {
  const int bytes = layout.bits / 8;
  for (int x = 0; x < width; ++x, line += bytes, row += 3) {
    const std::uint32_t pixel = PixelAt(line, bytes, layout.bigEndian);
    for (std::size_t i = 0; i < 3; ++i) row[i] = layout.fields[i].Level(pixel);
  }
}

/// Planes lie one after another, the most significant first; a row takes a line of each.
class RowMaker {
 public:
  RowMaker(const Layout& layout, const RasterPage& page)
      : m_layout(layout),
        m_width(page.info.width),
        m_height(page.info.height),
        m_memoryBits(page.memoryBits),
        m_offset(page.dataOffset),
        m_line(layout.stride + 8) {}

  bool operator()(ByteReader& data, std::uint8_t* row) {
    if (m_layout.byPixel)
      ByPixel(data, row);
    else
      ByPlane(data, row);
    ++m_row;
    return !data.AtEnd();
  }

 private:
  std::span<std::uint8_t> Read(ByteReader& data) {
    data.Read(std::span(m_line).first(m_layout.stride));
    return std::span(m_line).first(m_layout.stride);
  }
  void ByPixel(ByteReader& data, std::uint8_t* row) {
    const auto line = Read(data);
    if (m_layout.Direct()) {
      StoreDirect(line.data(), m_layout, m_width, row);
      return;
    }
    if (m_layout.bits == 1) OrderBits(line, m_layout);
    std::copy_n(line.begin(), (static_cast<std::size_t>(m_width * m_layout.bits) + 7) / 8, row);
  }
  void ByPlane(ByteReader& data, std::uint8_t* row) {
    std::vector<std::uint8_t> samples(static_cast<std::size_t>(m_width));
    const auto stride = static_cast<std::int64_t>(m_layout.stride);
    for (int plane = 0; plane < m_layout.planes; ++plane) {
      data.Seek(m_offset + (std::int64_t{plane} * m_height + m_row) * stride);
      const auto line = Read(data);
      OrderBits(line, m_layout);
      AddPlane(line.data(), m_layout.planes - 1 - plane, samples.data(), m_width);
    }
    PackSamples(samples.data(), m_memoryBits, row, m_width);
  }

  Layout m_layout;
  int m_width;
  int m_height;
  int m_memoryBits;
  std::int64_t m_offset;
  std::vector<std::uint8_t> m_line;
  std::int64_t m_row = 0;
};

/// A depth of which there are no pictures stays one.
int DepthOf(std::uint32_t depth) {
  constexpr std::uint32_t kNone = 33;
  return static_cast<int>(std::min(depth, kNone));
}

Layout LayoutOf11(const Words& header) {
  Layout layout;
  layout.byPixel = header[2] == kByPixel;
  layout.planes = DepthOf(header[3]);
  if (layout.byPixel) layout.bits = DepthOf(header[11]);
  layout.stride = header[12];
  layout.bigEndian = header[7] != 0;
  layout.highBitFirst = header[9] != 0;
  layout.unit = std::clamp<std::size_t>(header[8] / 8, 1, 4);
  const bool direct = header[13] >= kTrueColor;
  for (std::size_t i = 0; direct && i < 3; ++i) layout.fields[i] = BitField(header[14 + i]);
  return layout;
}

/// Version 10 tells neither orders nor strides: words of 16 bits, whose first pixel is the least significant
/// bit.
Layout LayoutOf10(const Words& header) {
  Layout layout;
  const bool bilevel = header[3] <= 1;
  layout.byPixel = header[4] == kByPixel || bilevel;
  layout.planes = DepthOf(header[3]);
  layout.bits = bilevel || !layout.byPixel ? 1 : std::max(layout.planes, 8);
  layout.stride = (std::size_t{header[5]} * static_cast<std::size_t>(layout.bits) + 15) / 16 * 2;
  layout.bigEndian = header.BigEndian();
  return layout;
}

void RequireSound(const Source& source, const Layout& layout, std::int64_t width) {
  static constexpr std::array kDirect = {8, 16, 24, 32};
  static constexpr std::array kIndexed = {1, 4, 8};
  const bool known =
      layout.Direct()
          ? layout.byPixel && std::find(kDirect.begin(), kDirect.end(), layout.bits) != kDirect.end()
      : layout.byPixel ? std::find(kIndexed.begin(), kIndexed.end(), layout.bits) != kIndexed.end()
                       : layout.planes >= 1 && layout.planes <= 8;
  if (!known)
    Fail(kErrorUnsupported, "%s: a window dump of %d bits in this form can't be decoded",
         source.Name().c_str(), layout.bits);
  constexpr std::size_t kMostPadding = 4096;
  const auto needed = static_cast<std::size_t>((width * layout.bits + 7) / 8);
  if (layout.stride < needed || layout.stride > needed + kMostPadding)
    Fail(kErrorCorrupt, "%s: a window dump with lines of %zu bytes", source.Name().c_str(), layout.stride);
}

RasterPage ReadXwd(const Source& source) {
  std::array<std::uint8_t, kX11Header> bytes = {};
  const std::size_t size = source.ReadAt(0, bytes);
  const Words header(bytes);
  const bool x11 = header[1] == kX11;
  if (size < (x11 ? kX11Header : kX10Header) || header[0] < (x11 ? kX11Header : kX10Header))
    Fail(kErrorCorrupt, "%s: the header is cut off", source.Name().c_str());
  const Layout layout = x11 ? LayoutOf11(header) : LayoutOf10(header);
  const std::uint32_t colors = x11                  ? header[19]
                               : header.BigEndian() ? BigU16(&bytes[38])
                                                    : LittleU16(&bytes[38]);
  const std::int64_t entry = x11 ? kX11Color : kX10Color;
  const std::size_t sizeAt = x11 ? 4 : 5;
  RequireSound(source, layout, header[sizeAt]);
  RasterPage page = MakePage(source, x11 ? kFormatXwd11 : kFormatXwd10, header[sizeAt], header[sizeAt + 1],
                             layout.byPixel ? layout.bits : layout.planes, "None");
  page.memoryBits = layout.Direct() ? 24 : page.info.bits == 1 ? 1 : page.info.bits <= 4 ? 4 : 8;
  if (!layout.Direct()) page.colors = ReadTable(source, header, colors, entry);
  page.dataOffset = header[0] + entry * colors;
  page.nextRow = RowMaker(layout, page);
  return page;
}

bool Recognise(const Candidate& candidate) {
  if (candidate.head.size() < kX10Header) return false;
  const Words header(candidate.head);
  constexpr std::uint32_t kMostFormat = 2;
  return (header[1] == kX11 && header[2] <= kMostFormat && header[3] <= 32) ||
         (header[1] == kX10 && header[4] <= kMostFormat && header[3] <= 32 && header[0] >= kX10Header &&
          header[0] < 4096);
}

}  // namespace

const Codec kXwdCodec = {Recognise, OpenRasterAs<ReadXwd>};

}  // namespace imaging
