#include <cstring>
#include <filesystem>

#include "imaging/codecs/raster.h"
#include "imaging/codecs/rows.h"
#include "imaging/codecs/runs.h"

// Dr. Halo's pictures of 8 bits, whose colours lie in a file of their own beside them.
namespace imaging {
namespace {

constexpr std::size_t kHeaderBytes = 6;

RunStep NextStep(ByteReader& data) {
  const int code = data.U8();
  return {code < 128 ? RunStep::kLiteral : RunStep::kRepeat, code & 127};
}

/// The header tells the largest index and levels; then come three words a colour, none of them across a
/// border of 512 bytes.
std::vector<RGBQUAD> ReadTable(const Source& source) {
  constexpr std::int64_t kHeader = 40;
  constexpr std::int64_t kBlock = 512;
  const auto header = ReadHeader<kHeader>(source);
  if (std::memcmp(header.data(), "AH", 2) != 0) return {};
  const auto level = [&](ByteReader& data, std::size_t most) {
    return ScaleLevel(data.LittleU16(), LittleU16(&header[most]));
  };
  std::vector<RGBQUAD> colors;
  ByteReader data(source, kHeader);
  for (unsigned i = 0; i <= std::min(LittleU16(&header[12]), 255U) && !data.AtEnd(); ++i) {
    if (data.Position() % kBlock > kBlock - 6) data.Seek((data.Position() / kBlock + 1) * kBlock);
    const std::uint8_t red = level(data, 14);
    const std::uint8_t green = level(data, 16);
    colors.push_back({level(data, 18), green, red, 0});
  }
  return colors;
}

/// Without its file of colours, and in memory, a picture is grey.
std::vector<RGBQUAD> FindTable(const Source& source) {
  const std::string& name = source.Name();
  if (source.Stamp() == SourceIdentity{} || name.size() < 4 || name[name.size() - 4] != '.') return {};
  for (const char* ending : {"pal", "PAL"}) {
    const std::string beside = name.substr(0, name.size() - 3) + ending;
    std::error_code none;
    if (std::filesystem::is_regular_file(beside, none)) return ReadTable(*OpenFileSource(beside.c_str()));
  }
  return {};
}

/// Each line tells its bytes.
RasterPage ReadDrHalo(const Source& source) {
  const auto header = ReadHeader<kHeaderBytes>(source);
  RasterPage page = MakePage(source, kFormatDrHalo, LittleU16(&header[0]), LittleU16(&header[2]), 8, "RLE");
  page.dataOffset = kHeaderBytes;
  page.expansion = 128;
  page.colors = FindTable(source);
  page.nextRow = [width = static_cast<std::size_t>(page.info.width)](ByteReader& data, std::uint8_t* row) {
    const unsigned bytes = data.LittleU16();
    const std::int64_t next = data.Position() + bytes;
    RunDecoder<NextStep>(1, next).Read(data, std::span(row, width));
    data.Seek(next);
    return !data.AtEnd();
  };
  return page;
}

/// There is no mark, but the lengths of lines lead from the header to the end of the file, or near it.
bool Recognise(const Candidate& candidate) {
  const auto head = candidate.head;
  if (head.size() < kHeaderBytes + 2 || LittleU16(&head[0]) == 0 || LittleU16(&head[2]) == 0 ||
      LittleU16(&head[4]) != 0)
    return false;
  if (candidate.ending == "cut") return true;
  ByteReader data(candidate.source, kHeaderBytes);
  for (unsigned line = 0; line < LittleU16(&head[2]); ++line) {
    const unsigned bytes = data.LittleU16();
    if (bytes < 2 || data.AtEnd()) return false;
    data.Skip(bytes);
  }
  constexpr std::int64_t kPadding = 512;
  return data.Position() <= candidate.source.Size() && candidate.source.Size() - data.Position() < kPadding;
}

}  // namespace

const Codec kDrHaloCodec = {Recognise, OpenRasterAs<ReadDrHalo>, Evidence::kLikeness};

}  // namespace imaging
