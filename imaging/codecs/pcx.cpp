#include <algorithm>
#include <cstring>

#include "imaging/codecs/raster.h"
#include "imaging/codecs/rows.h"
#include "imaging/codecs/runs.h"
#include "imaging/core/limits.h"

// ZSoft's PCX, and DCX, which is a list of them: a format of fax programs.
namespace imaging {
namespace {

constexpr std::size_t kHeaderBytes = 128;
constexpr std::int64_t kPaletteBytes = 769;  // at the file's end: a mark, then 256 colours
using Header = std::array<std::uint8_t, kHeaderBytes>;

/// The colours of the adapter for which files without a table were made.
constexpr std::array<std::uint32_t, 16> kEga = {0x000000, 0x0000aa, 0x00aa00, 0x00aaaa, 0xaa0000, 0xaa00aa,
                                                0xaa5500, 0xaaaaaa, 0x555555, 0x5555ff, 0x55ff55, 0x55ffff,
                                                0xff5555, 0xff55ff, 0xffff55, 0xffffff};

RunStep NextStep(ByteReader& data) {
  const std::uint8_t code = data.U8();
  return code < 0xc0 ? RunStep{RunStep::kValue, 1, code} : RunStep{RunStep::kRepeat, code & 0x3f};
}

std::vector<RGBQUAD> ReadTable(std::span<const std::uint8_t> triples) {
  std::vector<RGBQUAD> colors;
  for (std::size_t i = 0; i + 3 <= triples.size(); i += 3)
    colors.push_back({triples[i + 2], triples[i + 1], triples[i], 0});
  return colors;
}

/// 256 colours stand behind the pixels; without their mark the page is grey.
std::vector<RGBQUAD> ReadLargeTable(const Source& source) {
  std::array<std::uint8_t, kPaletteBytes> tail{};
  if (!source.ReadExactly(source.Size() - kPaletteBytes, tail) || tail[0] != 12) return {};
  return ReadTable(std::span(tail).subspan(1));
}

/// Up to 16 colours stand in the header, unless the version says that there are none. A table of nothing but
/// zeros isn't one either.
std::vector<RGBQUAD> ReadSmallTable(const Header& header) {
  const auto table = std::span(header).subspan(16, 48);
  const bool empty = std::all_of(table.begin(), table.end(), [](std::uint8_t byte) { return byte == 0; });
  constexpr int kWithoutTable = 3;
  if (header[1] != kWithoutTable && !empty) return ReadTable(table);
  std::vector<RGBQUAD> colors(kEga.size());
  std::transform(kEga.begin(), kEga.end(), colors.begin(), ColorOf);
  return colors;
}

struct Planes {
  int bits;           ///< of a sample
  int count;          ///< of planes
  std::size_t bytes;  ///< of a plane's line
  std::size_t width;
};

void Interleave(const std::uint8_t* line, const Planes& planes, std::uint8_t* row) {
  for (std::size_t plane = 0; plane < 3; ++plane)
    for (std::size_t x = 0; x < planes.width; ++x) row[x * 3 + plane] = line[plane * planes.bytes + x];
}

/// Lines of 1, 4, 8 and 24 bits in one plane are rows as they stand; others are samples to be put together.
void StoreLine(const std::uint8_t* line, const Planes& planes, std::uint8_t* row) {
  const auto width = static_cast<int>(planes.width);
  if (planes.count == 1 && planes.bits != 2) {
    std::memcpy(row, line, (planes.width * static_cast<std::size_t>(planes.bits) + 7) / 8);
  } else if (planes.bits == 8) {
    Interleave(line, planes, row);
  } else {
    std::vector<std::uint8_t> samples(planes.width);
    if (planes.bits == 2) SpreadSamples(line, 2, samples.data(), width);
    for (int plane = 0; planes.bits == 1 && plane < planes.count; ++plane)
      AddPlane(line + static_cast<std::size_t>(plane) * planes.bytes, plane, samples.data(), width);
    PackSamples(samples.data(), 4, row, width);
  }
}

Planes ReadPlanes(const Source& source, const Header& header, std::int64_t width) {
  const Planes planes{header[3], header[65], LittleU16(&header[66]), static_cast<std::size_t>(width)};
  const bool known = planes.bits == 1 ? planes.count >= 1 && planes.count <= 4
                     : planes.bits == 8
                         ? planes.count == 1 || planes.count == 3
                         : planes.count == 1 && (planes.bits == 2 || planes.bits == 4 || planes.bits == 24);
  if (!known)
    Fail(kErrorUnsupported, "%s: a PCX file of %d planes of %d bits can't be decoded", source.Name().c_str(),
         planes.count, planes.bits);
  return planes;
}

RasterPage ReadPcx(const Source& source) {
  const Header header = ReadHeader<kHeaderBytes>(source);
  const auto span = [&](std::size_t first, std::size_t last) {
    return std::int64_t{LittleU16(&header[last])} - LittleU16(&header[first]) + 1;
  };
  const Planes planes = ReadPlanes(source, header, span(4, 8));
  const bool packed = header[2] != 0;
  RasterPage page = MakePage(source, kFormatPcx, span(4, 8), span(6, 10), planes.bits * planes.count,
                             packed ? "RLE" : "None");
  page.info.xResolution = static_cast<int>(LittleU16(&header[12]));
  page.info.yResolution = static_cast<int>(LittleU16(&header[14]));
  if (page.info.bits == 2 || page.info.bits == 3) page.memoryBits = 4;
  // Of two colours 0 is black, whatever the table says: most writers leave it as it was.
  if (page.memoryBits == 4) page.colors = ReadSmallTable(header);
  if (page.memoryBits == 8) page.colors = ReadLargeTable(source);
  page.dataOffset = kHeaderBytes;
  // A line that is told too short for its pixels is made up with zeros.
  const std::size_t needed = (planes.width * static_cast<std::size_t>(planes.bits) + 7) / 8;
  const std::size_t stored = planes.bytes * static_cast<std::size_t>(planes.count);
  std::vector<std::uint8_t> line(stored + needed);
  page.nextRow = [=, runs = RunDecoder<NextStep>()](ByteReader& data, std::uint8_t* row) mutable {
    if (packed)
      runs.Read(data, std::span(line).first(stored));
    else
      data.Read(std::span(line).first(stored));
    StoreLine(line.data(), planes, row);
    return !data.AtEnd();
  };
  return page;
}

bool RecognisePcx(const Candidate& candidate) {
  const auto head = candidate.head;
  return head.size() >= kHeaderBytes && head[0] == 10 && head[1] <= 5 && head[2] <= 1 && head[3] >= 1 &&
         head[3] <= 24 && head[65] >= 1 && head[65] <= 4;
}

constexpr std::array<std::uint8_t, 4> kDcxMark = {0xb1, 0x68, 0xde, 0x3a};

/// A page ends where the next one begins, wherever in the file that is.
std::vector<AlbumPart> ReadParts(const Source& source) {
  constexpr int kMostPages = 1023;
  std::vector<std::int64_t> offsets;
  ByteReader list(source, kDcxMark.size());
  for (std::uint32_t offset = list.LittleU32(); offset != 0 && offsets.size() < kMostPages;
       offset = list.LittleU32())
    offsets.push_back(offset);
  std::vector<AlbumPart> parts;
  for (const std::int64_t offset : offsets) {
    std::int64_t end = source.Size();
    for (const std::int64_t other : offsets)
      if (other > offset) end = std::min(end, other);
    parts.push_back({offset, end - offset});
  }
  return parts;
}

std::unique_ptr<Reader> OpenDcx(const Source& source) {
  return OpenAlbum(source, ReadParts(source), kFormatPcx, OpenRasterAs<ReadPcx>);
}

bool RecogniseDcx(const Candidate& candidate) {
  return candidate.head.size() >= 8 && std::equal(kDcxMark.begin(), kDcxMark.end(), candidate.head.begin());
}

}  // namespace

const Codec kPcxCodec = {RecognisePcx, OpenRasterAs<ReadPcx>};
const Codec kDcxCodec = {RecogniseDcx, OpenDcx};

}  // namespace imaging
