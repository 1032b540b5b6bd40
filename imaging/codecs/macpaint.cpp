#include <algorithm>
#include <cstring>

#include "imaging/codecs/raster.h"
#include "imaging/codecs/rows.h"
#include "imaging/codecs/runs.h"

// MacPaint: always 576 by 720 pixels of one bit, with or without the Macintosh's file header before it.
namespace imaging {
namespace {

constexpr std::int64_t kMacintoshHeader = 128;
constexpr std::int64_t kPatternHeader = 512;
constexpr std::size_t kRowBytes = 72;

bool HasMacintoshHeader(std::span<const std::uint8_t> head) {
  return head.size() > 69 && head[0] == 0 && std::memcmp(&head[65], "PNTG", 4) == 0;
}

RunStep NextStep(ByteReader& data) {
  constexpr int kNothing = 128;
  const int code = data.U8();
  if (code == kNothing) return {};
  return code < kNothing ? RunStep{RunStep::kLiteral, code + 1} : RunStep{RunStep::kRepeat, 257 - code};
}

RasterPage ReadMacPaint(const Source& source) {
  RasterPage page = MakePage(source, kFormatMacPaint, 576, 720, 1, "RLE");
  page.colors = OneIsBlack();
  page.dataOffset =
      kPatternHeader + (HasMacintoshHeader(ReadHeader<kPatternHeader>(source)) ? kMacintoshHeader : 0);
  page.nextRow = [runs = RunDecoder<NextStep>()](ByteReader& data, std::uint8_t* row) mutable {
    runs.Read(data, std::span(row, kRowBytes));
    return !data.AtEnd();
  };
  return page;
}

/// A bare file begins with its version, in four bytes, the patterns and then nothing but zeros; with version
/// 0 only its name tells it from others.
bool Recognise(const Candidate& candidate) {
  const auto head = candidate.head;
  if (HasMacintoshHeader(head)) return true;
  if (head.size() < kPatternHeader) return false;
  const std::uint32_t version = BigU32(head.data());
  const bool named = candidate.ending == "mac" || candidate.ending == "pntg" || candidate.ending == "macp";
  constexpr std::size_t kEndOfPatterns = 4 + 38 * 8;
  return (version == 2 || version == 3 || (version == 0 && named)) &&
         std::all_of(head.begin() + kEndOfPatterns, head.end(), [](std::uint8_t byte) { return byte == 0; });
}

}  // namespace

const Codec kMacPaintCodec = {Recognise, OpenRasterAs<ReadMacPaint>, Evidence::kLikeness};

}  // namespace imaging
