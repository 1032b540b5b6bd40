#include <cstring>

#include "imaging/codecs/raster.h"
#include "imaging/codecs/rows.h"

// The images of GEM, one plane or several, with colours in the extended form.
namespace imaging {
namespace {

constexpr std::size_t kHeaderBytes = 16;
constexpr std::uint32_t kExtended = 0x58494d47;  // "XIMG"

/// The colours that the system shows for the values of four planes.
constexpr std::array<std::uint32_t, 16> kColors = {0xffffff, 0xff0000, 0x00ff00, 0xffff00, 0x0000ff, 0xff00ff,
                                                   0x00ffff, 0xc0c0c0, 0x808080, 0x800000, 0x008000, 0x808000,
                                                   0x000080, 0x800080, 0x008080, 0x000000};

/// Lines of all planes, which may be repeated.
class Lines {
 public:
  Lines(int width, int planes, std::size_t patternBytes)
      : m_planeBytes(static_cast<std::size_t>(width + 7) / 8),
        m_planes(planes),
        m_pattern(patternBytes),
        m_line(m_planeBytes * static_cast<std::size_t>(planes)) {}

  const std::uint8_t* Plane(int plane) const {
    return &m_line[m_planeBytes * static_cast<std::size_t>(plane)];
  }

  bool Next(ByteReader& data) {
    if (m_repeats > 1) {
      --m_repeats;
      return true;
    }
    m_repeats = 1;
    for (int plane = 0; plane < m_planes; ++plane) {
      auto rest = std::span(m_line).subspan(m_planeBytes * static_cast<std::size_t>(plane), m_planeBytes);
      while (!rest.empty() && !data.AtEnd()) rest = rest.subspan(Step(data, rest));
    }
    return !data.AtEnd();
  }

 private:
  /// One item of the coding; returns how many bytes it made.
  std::size_t Step(ByteReader& data, std::span<std::uint8_t> rest) {
    constexpr unsigned kBitString = 0x80;
    const unsigned code = data.U8();
    if (code == 0) return Pattern(data, rest);
    const std::size_t count =
        std::min<std::size_t>(code == kBitString ? data.U8() : code & 0x7f, rest.size());
    if (code == kBitString)
      data.Read(rest.first(count));
    else
      std::memset(rest.data(), (code & 0x80) != 0 ? 0xff : 0, count);
    return count;
  }
  /// A count and a pattern; with count 0, mark and count, how often the line is shown.
  std::size_t Pattern(ByteReader& data, std::span<std::uint8_t> rest) {
    const std::size_t count = data.U8();
    if (count == 0) {
      constexpr unsigned kRepeatMark = 0xff;
      if (data.U8() == kRepeatMark) m_repeats = data.U8();
      return 0;
    }
    data.Read(m_pattern);
    const std::size_t bytes = std::min(count * m_pattern.size(), rest.size());
    for (std::size_t i = 0; i < bytes; ++i) rest[i] = m_pattern[i % m_pattern.size()];
    return bytes;
  }

  std::size_t m_planeBytes;
  int m_planes;
  std::vector<std::uint8_t> m_pattern;
  std::vector<std::uint8_t> m_line;
  int m_repeats = 1;
};

/// Red, green and blue in thousandths, behind the mark and a word that tells so.
std::vector<RGBQUAD> ReadTable(const Source& source, std::int64_t headerBytes, int planes) {
  std::vector<RGBQUAD> colors;
  ByteReader data(source, kHeaderBytes);
  const std::int64_t entries = (headerBytes - static_cast<std::int64_t>(kHeaderBytes) - 6) / 6;
  if (entries < 1 << planes || data.BigU32() != kExtended || data.BigU16() != 0) return colors;
  for (int i = 0; i < 1 << planes; ++i) {
    constexpr std::uint64_t kMost = 1000;
    const std::uint8_t red = ScaleLevel(data.BigU16(), kMost);
    const std::uint8_t green = ScaleLevel(data.BigU16(), kMost);
    colors.push_back({ScaleLevel(data.BigU16(), kMost), green, red, 0});
  }
  return colors;
}

std::vector<RGBQUAD> UsualTable(int planes) {
  std::vector<RGBQUAD> colors;
  if (planes == 1) return OneIsBlack();
  if (planes > 4) return colors;
  for (int i = 0; i < 1 << planes; ++i)
    colors.push_back(ColorOf(kColors[i == (1 << planes) - 1 ? 15 : static_cast<std::size_t>(i)]));
  return colors;
}

RasterPage ReadGem(const Source& source) {
  const auto header = ReadHeader<kHeaderBytes>(source);
  const auto field = [&](std::size_t index) { return static_cast<int>(BigU16(&header[index * 2])); };
  const int planes = field(2);
  if (planes < 1 || planes > 8 || field(3) < 1)
    Fail(kErrorCorrupt, "%s: a GEM image of %d planes", source.Name().c_str(), planes);
  RasterPage page = MakePage(source, kFormatGem, field(6), field(7), planes, "RLE");
  constexpr double kMicrons = 25400;
  page.info.xResolution = DotsPerInch(kMicrons / field(4));
  page.info.yResolution = DotsPerInch(kMicrons / field(5));
  page.memoryBits = planes == 1 ? 1 : planes <= 4 ? 4 : 8;
  page.dataOffset = std::int64_t{field(1)} * 2;
  page.expansion = 255 * 255;
  page.colors = ReadTable(source, page.dataOffset, planes);
  if (page.colors.empty()) page.colors = UsualTable(planes);
  page.nextRow = [bits = page.memoryBits, width = page.info.width, planes,
                  lines = Lines(page.info.width, planes, static_cast<std::size_t>(field(3)))](
                     ByteReader& data, std::uint8_t* row) mutable {
    const bool whole = lines.Next(data);
    std::vector<std::uint8_t> samples(static_cast<std::size_t>(width));
    for (int plane = 0; plane < planes; ++plane) AddPlane(lines.Plane(plane), plane, samples.data(), width);
    PackSamples(samples.data(), bits, row, width);
    return whole;
  };
  return page;
}

/// Words that are small numbers are no mark, so each must make sense.
bool Recognise(const Candidate& candidate) {
  const auto head = candidate.head;
  if (head.size() < kHeaderBytes) return false;
  const auto field = [&](std::size_t index) { return BigU16(&head[index * 2]); };
  return (field(0) == 1 || field(0) == 2) && field(1) >= 8 && field(1) < 2000 && field(2) >= 1 &&
         field(2) <= 8 && field(3) >= 1 && field(3) <= 8 && field(4) > 0 && field(5) > 0 && field(6) > 0 &&
         field(7) > 0;
}

}  // namespace

const Codec kGemCodec = {Recognise, OpenRasterAs<ReadGem>, Evidence::kLikeness};

}  // namespace imaging
