#include "imaging/codecs/raster.h"
#include "imaging/codecs/rows.h"
#include "imaging/codecs/runs.h"

// Sun's raster files of 1, 8, 24 and 32 bits.
namespace imaging {
namespace {

constexpr std::array<std::uint8_t, 4> kMark = {0x59, 0xa6, 0x6a, 0x95};
constexpr std::int64_t kHeaderBytes = 32;
enum Type : std::uint32_t { kOld = 0, kStandard = 1, kByteEncoded = 2, kRgb = 3 };

RunStep NextStep(ByteReader& data) {
  constexpr std::uint8_t kEscape = 0x80;
  const std::uint8_t code = data.U8();
  if (code != kEscape) return {RunStep::kValue, 1, code};
  const int count = data.U8();
  return count == 0 ? RunStep{RunStep::kValue, 1, kEscape} : RunStep{RunStep::kRepeat, count + 1};
}

/// All reds, then all greens, then all blues.
std::vector<RGBQUAD> ReadTable(const Source& source, std::uint32_t bytes) {
  const std::size_t count = std::min<std::uint32_t>(bytes / 3, 256);
  std::vector<std::uint8_t> table(count * 3);
  table.resize(source.ReadAt(kHeaderBytes, table));
  table.resize(count * 3);
  std::vector<RGBQUAD> colors;
  for (std::size_t i = 0; i < count; ++i)
    colors.push_back({table[2 * count + i], table[count + i], table[i], 0});
  return colors;
}

RasterPage ReadSunRaster(const Source& source) {
  const auto header = ReadHeader<kHeaderBytes>(source);
  const auto field = [&](std::size_t index) { return BigU32(&header[index * 4]); };
  const std::uint32_t bits = field(3);
  const std::uint32_t type = field(5);
  if (type > kRgb || (bits != 1 && bits != 8 && bits != 24 && bits != 32))
    Fail(kErrorUnsupported, "%s: a Sun raster file of type %u and %u bits can't be decoded",
         source.Name().c_str(), type, bits);
  RasterPage page = MakePage(source, kFormatSunRaster, field(1), field(2), static_cast<int>(bits),
                             type == kByteEncoded ? "RLE" : "None");
  page.info.order = type == kRgb ? 0 : 1;
  if (bits == 32) page.memoryBits = 24;
  page.expansion = 128;
  constexpr std::uint32_t kTableOfColors = 1;
  if (field(6) == kTableOfColors && bits <= 8) page.colors = ReadTable(source, field(7));
  if (page.colors.empty() && bits == 1) page.colors = OneIsBlack();
  page.dataOffset = kHeaderBytes + std::int64_t{field(7)};
  const std::size_t width = field(1);
  std::vector<std::uint8_t> line((width * bits + 15) / 16 * 2);
  page.nextRow = [=, runs = RunDecoder<NextStep>()](ByteReader& data, std::uint8_t* row) mutable {
    if (type == kByteEncoded)
      runs.Read(data, line);
    else
      data.Read(line);
    if (bits != 32)
      std::copy_n(line.begin(), (width * bits + 7) / 8, row);
    else  // a byte of nothing before each colour
      for (std::size_t x = 0; x < width; ++x) std::copy_n(&line[x * 4 + 1], 3, row + x * 3);
    return !data.AtEnd();
  };
  return page;
}

bool Recognise(const Candidate& candidate) {
  return candidate.head.size() >= 32 && std::equal(kMark.begin(), kMark.end(), candidate.head.begin());
}

}  // namespace

const Codec kSunRasterCodec = {Recognise, OpenRasterAs<ReadSunRaster>};

}  // namespace imaging
