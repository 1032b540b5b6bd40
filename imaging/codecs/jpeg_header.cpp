#include "imaging/codecs/jpeg_header.h"

#include <cstring>
#include <vector>

#include "imaging/codecs/work.h"
#include "imaging/core/limits.h"

namespace imaging {
namespace {

// Markers, ITU-T T.81, table B.1.
enum : unsigned {
  kSof0 = 0xc0,
  kDht = 0xc4,
  kSof15 = 0xcf,
  kJpg = 0xc8,
  kDac = 0xcc,
  kRst0 = 0xd0,
  kEoi = 0xd9,
  kSos = 0xda,
  kDnl = 0xdc,
  kApp0 = 0xe0,
  kApp1 = 0xe1,
  kApp14 = 0xee,
  kTem = 0x01,
};

bool IsFrame(unsigned marker) {
  return marker >= kSof0 && marker <= kSof15 && marker != kDht && marker != kJpg && marker != kDac;
}

JpegProcess ProcessOf(unsigned marker) {
  switch (marker) {
    case 0xc0:
      return JpegProcess::kBaseline;
    case 0xc1:
    case 0xc9:
      return JpegProcess::kExtended;
    case 0xc2:
    case 0xca:
      return JpegProcess::kProgressive;
    case 0xc3:
    case 0xcb:
      return JpegProcess::kLossless;
    default:
      return JpegProcess::kOther;
  }
}

/// B.2.2
void ReadFrame(ByteReader& reader, unsigned marker, JpegHeader& header) {
  header.process = ProcessOf(marker);
  header.arithmetic = marker > 0xc8;
  header.precision = reader.U8();
  header.heightAt = reader.Position();
  header.height = reader.BigU16();
  header.width = reader.BigU16();
  header.components = reader.U8();
  for (std::size_t i = 0; i < 4 && i < static_cast<std::size_t>(header.components); ++i) {
    header.ids[i] = reader.U8();
    const unsigned sampling = reader.U8();
    header.horizontal[i] = static_cast<int>(sampling >> 4);
    header.vertical[i] = static_cast<int>(sampling & 15);
    reader.U8();
  }
}

void ReadJfif(std::span<const std::uint8_t> segment, JpegHeader& header) {
  if (segment.size() < 12 || std::memcmp(segment.data(), "JFIF", 5) != 0) return;
  header.jfif = true;
  header.densityUnit = segment[7];
  header.xDensity = segment[8] << 8 | segment[9];
  header.yDensity = segment[10] << 8 | segment[11];
}

void ReadSegment(unsigned marker, std::span<const std::uint8_t> segment, JpegHeader& header) {
  constexpr std::size_t kExifName = 6;
  if (marker == kApp0 && !header.jfif) ReadJfif(segment, header);
  if (marker == kApp1 && !header.exif && segment.size() > kExifName &&
      std::memcmp(segment.data(), "Exif\0", kExifName) == 0)
    header.exif = ReadExif(segment.subspan(kExifName));
  if (marker == kApp14 && segment.size() >= 12 && std::memcmp(segment.data(), "Adobe", 5) == 0)
    header.adobeTransform = segment[11];
}

/// Gives up a file whose picture doesn't begin, or end, within what is worth reading.
void RequireWorth(const Source& source, const ByteReader& reader) {
  if (reader.Position() > Limit().workBytes) WorkBudget(source).Fail();
}

/// Finds the height behind the first scan (B.2.5); restart markers and stuffed zeros belong to the scan.
void FindLineCount(ByteReader& reader, const Source& source, JpegHeader& header) {
  reader.Seek(header.scanData);
  while (!reader.AtEnd()) {
    RequireWorth(source, reader);
    if (reader.U8() != 0xff) continue;
    unsigned marker = reader.U8();
    while (marker == 0xff && !reader.AtEnd()) marker = reader.U8();
    if (marker == 0 || (marker >= kRst0 && marker < kRst0 + 8)) continue;
    if (marker != kDnl) return;
    reader.BigU16();
    header.height = reader.BigU16();
    header.heightFromDnl = true;
    return;
  }
}

}  // namespace

bool JpegHeader::ColorsAreYcc() const {
  if (components != 3 || jfif) return components == 3;
  if (adobeTransform) return *adobeTransform != 0;
  return !(ids[0] == 'R' && ids[1] == 'G' && ids[2] == 'B');
}

JpegHeader ReadJpegHeader(const Source& source) {
  JpegHeader header;
  ByteReader reader(source, 2);  // behind SOI
  std::vector<std::uint8_t> segment;
  while (!reader.AtEnd()) {
    RequireWorth(source, reader);
    unsigned marker = reader.U8();
    if (marker != 0xff) continue;  // filling between segments
    while (marker == 0xff && !reader.AtEnd()) marker = reader.U8();
    if (marker == 0 || marker == kTem || (marker >= kRst0 && marker < kRst0 + 8)) continue;
    if (marker == kEoi) break;
    const int length = reader.BigU16();
    if (length < 2) break;
    const std::int64_t end = reader.Position() + length - 2;
    if (IsFrame(marker) && header.process == JpegProcess::kNone) {
      ReadFrame(reader, marker, header);
    } else if (marker == kApp0 || marker == kApp1 || marker == kApp14) {
      segment.resize(static_cast<std::size_t>(length) - 2);
      reader.Read(segment);
      if (!reader.AtEnd()) ReadSegment(marker, segment, header);
    }
    reader.Seek(end);
    if (marker != kSos) continue;
    header.scanData = end;
    if (header.height == 0 && header.process != JpegProcess::kNone) FindLineCount(reader, source, header);
    break;
  }
  return header;
}

}  // namespace imaging
