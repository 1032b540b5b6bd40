#include <cstring>

#include "imaging/codecs/raster.h"
#include "imaging/codecs/rows.h"
#include "imaging/codecs/runs.h"

// Microsoft Paint, whose first version is plain and whose second has runs and a table of line lengths.
namespace imaging {
namespace {

constexpr std::size_t kHeaderBytes = 32;

RunStep NextStep(ByteReader& data) {
  const int code = data.U8();
  if (code != 0) return {RunStep::kLiteral, code};
  return {RunStep::kRepeat, data.U8()};
}

RasterPage ReadMsPaint(const Source& source) {
  const auto header = ReadHeader<kHeaderBytes>(source);
  const bool packed = header[0] == 'L';
  RasterPage page = MakePage(source, kFormatMsPaint, LittleU16(&header[4]), LittleU16(&header[6]), 1,
                             packed ? "RLE" : "None");
  page.dataOffset = kHeaderBytes;
  const auto bytes = static_cast<std::size_t>(page.info.width + 7) / 8;
  if (!packed) {
    page.nextRow = [=](ByteReader& data, std::uint8_t* row) {
      data.Read(std::span(row, bytes));
      return !data.AtEnd();
    };
    return page;
  }
  // A line of length 0 is white.
  std::vector<std::uint8_t> lengths(static_cast<std::size_t>(page.info.height) * 2);
  if (!source.ReadExactly(kHeaderBytes, lengths))
    Fail(kErrorCorrupt, "%s: the table of lines is cut off", source.Name().c_str());
  page.dataOffset += std::ssize(lengths);
  page.nextRow = [=, line = std::size_t{0}](ByteReader& data, std::uint8_t* row) mutable {
    const unsigned length = LittleU16(&lengths[2 * line++]);
    const std::int64_t next = data.Position() + length;
    if (length == 0)
      std::memset(row, 0xff, bytes);
    else
      RunDecoder<NextStep>(1, next).Read(data, std::span(row, bytes));
    data.Seek(next);
    return !data.AtEnd();
  };
  return page;
}

/// A wrong check sum is let pass: such files are whole.
bool Recognise(const Candidate& candidate) {
  return candidate.head.size() >= kHeaderBytes && (std::memcmp(candidate.head.data(), "DanM", 4) == 0 ||
                                                   std::memcmp(candidate.head.data(), "LinS", 4) == 0);
}

}  // namespace

const Codec kMsPaintCodec = {Recognise, OpenRasterAs<ReadMsPaint>};

}  // namespace imaging
