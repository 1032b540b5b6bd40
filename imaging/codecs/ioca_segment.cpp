#include "imaging/codecs/ioca_segment.h"

#include <algorithm>
#include <numeric>
#include <span>

#include "imaging/codecs/codec.h"
#include "imaging/core/exception.h"
#include "imaging/core/limits.h"

namespace imaging {
namespace {

/// Codes of self-defining fields; those with FE in front have a length of two bytes.
enum Field : unsigned {
  kBeginTile = 0x8c,
  kImageSize = 0x94,
  kImageEncoding = 0x95,
  kElementSize = 0x96,
  kElementStructure = 0x9b,
  kImageData = 0xfe92,
  kBandData = 0xfe9c,
};
constexpr std::uint8_t kLongForm = 0xfe;

using Bytes = std::span<const std::uint8_t>;

/// Resolutions count units in ten base lengths.
void ReadSize(Bytes field, IocaSegment& segment) {
  if (field.size() < 9) return;
  const int base = field[0];
  const double perInch = base == 0 ? 0.1 : base == 1 ? kCentimetresPerInch / 10 : 0;
  segment.xResolution = DotsPerInch(BigU16(&field[1]) * perInch);
  segment.yResolution = DotsPerInch(BigU16(&field[3]) * perInch);
  segment.width = static_cast<int>(BigU16(&field[5]));
  segment.height = static_cast<int>(BigU16(&field[7]));
}

void ReadField(unsigned code, Bytes field, IocaSegment& segment) {
  constexpr std::uint8_t kSubtractive = 0x80;
  if (code == kImageSize) ReadSize(field, segment);
  if (code == kBeginTile || code == kBandData) segment.inParts = true;
  if (field.empty()) return;
  if (code == kImageEncoding) {
    segment.coding = static_cast<IocaCoding>(field[0]);
    segment.reversed = field.size() > 2 && field[2] == 1;
  } else if (code == kElementSize) {
    segment.bits = field[0];
  } else if (code == kElementStructure) {
    segment.subtractive = (field[0] & kSubtractive) != 0;
  } else if (code == kImageData) {
    segment.data.insert(segment.data.end(), field.begin(), field.end());
  }
}

/// The stretches joined, and where each of them ends.
struct Joined {
  std::vector<std::uint8_t> bytes;
  std::vector<std::size_t> ends;
};

Joined Join(const Source& source, const std::vector<IocaStretch>& stretches) {
  Joined joined;
  for (const IocaStretch& stretch : stretches) {
    const std::int64_t there = std::clamp<std::int64_t>(source.Size() - stretch.offset, 0, stretch.size);
    const std::size_t start = joined.bytes.size();
    if (there > Limit().codecBytes - static_cast<std::int64_t>(start))
      Fail(kErrorLimit, "%s: the image has too much data", source.Name().c_str());
    joined.bytes.resize(start + static_cast<std::size_t>(there));
    joined.bytes.resize(start + source.ReadAt(stretch.offset, std::span(joined.bytes).subspan(start)));
    joined.ends.push_back(joined.bytes.size());
  }
  return joined;
}

}  // namespace

IocaSegment ReadIocaSegment(const Source& source, const std::vector<IocaStretch>& stretches) {
  const Joined joined = Join(source, stretches);
  const Bytes bytes = joined.bytes;
  IocaSegment segment;
  std::size_t at = 0;
  while (bytes.size() - at >= 2) {
    const bool isLong = bytes[at] == kLongForm;
    const std::size_t header = isLong ? 4 : 2;
    if (bytes.size() - at < header) break;
    const unsigned code = isLong ? BigU16(&bytes[at]) : bytes[at];
    auto length = static_cast<std::size_t>(isLong ? BigU16(&bytes[at + 2]) : bytes[at + 1]);
    at += header;
    // Image data of no length at the end of a structured field is all of the next one.
    const auto end = std::find(joined.ends.begin(), joined.ends.end(), at);
    if (code == kImageData && length == 0 && end != joined.ends.end() && end + 1 != joined.ends.end())
      length = end[1] - at;
    length = std::min(length, bytes.size() - at);
    ReadField(code, bytes.subspan(at, length), segment);
    at += length;
  }
  return segment;
}

}  // namespace imaging
