#include "imaging/codecs/bmp_header.h"

#include <algorithm>

#include "imaging/core/exception.h"

namespace imaging {
namespace {

constexpr std::size_t kFileHeader = 14;
constexpr std::size_t kMostHeader = 124;
// Of the compression field; 3 and 4 mean other things in OS/2 2.x files.
enum : std::uint32_t {
  kRgb = 0,
  kRle8 = 1,
  kRle4 = 2,
  kBitFields = 3,
  kJpeg = 4,
  kPng = 5,
  kAlphaBitFields = 6,
  kOs2Huffman = 3,
  kOs2Rle24 = 4,
};

BmpCoding CodingOf(const BmpHeader& header, std::uint32_t compression, const char* name) {
  switch (compression) {
    case kRgb:
      return BmpCoding::kNone;
    case kRle8:
      return BmpCoding::kRle8;
    case kRle4:
      return BmpCoding::kRle4;
    case kBitFields:
      return header.Os2V2() ? BmpCoding::kHuffman : BmpCoding::kBitFields;
    case kJpeg:
      return header.Os2V2() ? BmpCoding::kRle24 : BmpCoding::kJpeg;
    case kPng:
      return BmpCoding::kPng;
    case kAlphaBitFields:
      return BmpCoding::kBitFields;
    default:
      Fail(kErrorUnsupported, "%s: bitmap compression %u can't be decoded", name, compression);
  }
}

void RequireDepth(const BmpHeader& header, const char* name) {
  static constexpr std::array kDepths = {1, 2, 4, 8, 16, 24, 32};
  bool fits = header.Embedded() || std::find(kDepths.begin(), kDepths.end(), header.bits) != kDepths.end();
  if (header.coding == BmpCoding::kRle8) fits = header.bits == 8;
  if (header.coding == BmpCoding::kRle4) fits = header.bits == 4;
  if (header.coding == BmpCoding::kRle24) fits = header.bits == 24;
  if (header.coding == BmpCoding::kBitFields) fits = header.bits == 16 || header.bits == 32;
  if (!fits) Fail(kErrorCorrupt, "%s: bitmap of %d bits in this coding", name, header.bits);
}

/// Masks stand in the header from 52 bytes on, behind it in files with one of 40.
void ReadMasks(BmpHeader& header, const std::uint8_t* fields, std::uint32_t compression) {
  if (header.coding != BmpCoding::kBitFields) {
    if (header.bits == 16) header.masks = {0x7c00, 0x03e0, 0x001f, 0};
    if (header.bits == 32) header.masks = {0xff0000, 0xff00, 0xff, 0};
    return;
  }
  const bool alpha = header.headerSize >= 56 || compression == kAlphaBitFields;
  for (std::size_t i = 0; i < (alpha ? 4U : 3U); ++i) header.masks[i] = LittleU32(fields + 40 + 4 * i);
}

void ReadColors(const Source& source, BmpHeader& header, std::uint32_t used, std::size_t masksBehind) {
  const std::int64_t start = static_cast<std::int64_t>(kFileHeader + header.headerSize + masksBehind);
  if (header.bits > 8) {  // colours that a palette screen would use
    if (header.dataOffset == 0) header.dataOffset = start + std::int64_t{used} * 4;
    return;
  }
  const std::uint32_t most = 1U << header.bits;
  std::uint32_t count = used == 0 ? most : std::min(used, most);
  const std::size_t entry = header.Os2V1() ? 3 : 4;
  if (header.dataOffset > start)
    count =
        std::min(count, static_cast<std::uint32_t>((header.dataOffset - start) / static_cast<int>(entry)));
  std::vector<std::uint8_t> table(count * entry);
  table.resize(source.ReadAt(start, table));
  for (std::size_t at = 0; at + entry <= table.size(); at += entry)
    header.colors.push_back({table[at], table[at + 1], table[at + 2], 0});
  if (header.dataOffset == 0) header.dataOffset = start + static_cast<std::int64_t>(count * entry);
}

void ReadOs2V1(BmpHeader& header, const std::uint8_t* fields) {
  header.width = LittleU16(fields + 4);
  header.height = LittleU16(fields + 6);
  header.bits = static_cast<int>(LittleU16(fields + 10));
}

void ReadSize(BmpHeader& header, const std::uint8_t* fields) {
  header.width = static_cast<std::int32_t>(LittleU32(fields + 4));
  header.height = static_cast<std::int32_t>(LittleU32(fields + 8));
  header.topDown = header.height < 0;
  if (header.topDown) header.height = -header.height;
  header.bits = static_cast<int>(LittleU16(fields + 14));
}

}  // namespace

BmpHeader ReadBmpHeader(const Source& source) {
  // What a short header or file doesn't have reads as 0; the 16 bytes more are masks behind a short header.
  std::array<std::uint8_t, kFileHeader + kMostHeader> block{};
  const std::size_t size = source.ReadAt(0, block);
  const char* name = source.Name().c_str();
  const std::uint8_t* fields = block.data() + kFileHeader;
  BmpHeader header;
  header.headerSize = LittleU32(fields);
  if (header.headerSize < 12 || header.headerSize > 1000 ||
      size < kFileHeader + std::min<std::size_t>(header.headerSize, 40))
    Fail(kErrorCorrupt, "%s: the bitmap's header is damaged or cut off", name);
  header.dataOffset = LittleU32(block.data() + 10);
  if (header.Os2V1()) {
    ReadOs2V1(header, fields);
    RequireDepth(header, name);
    ReadColors(source, header, 0, 0);
    return header;
  }
  const bool whole = header.headerSize >= 40;
  if (header.headerSize < 16) Fail(kErrorCorrupt, "%s: the bitmap's header is damaged", name);
  ReadSize(header, fields);
  const std::uint32_t compression = whole ? LittleU32(fields + 16) : kRgb;
  header.coding = CodingOf(header, compression, name);
  RequireDepth(header, name);
  if (whole) {
    header.dataSize = LittleU32(fields + 20);
    header.xPerMetre = LittleU32(fields + 24);
    header.yPerMetre = LittleU32(fields + 28);
  }
  const bool masksBehind = header.headerSize == 40 && header.coding == BmpCoding::kBitFields;
  ReadMasks(header, fields, compression);
  ReadColors(source, header, whole ? LittleU32(fields + 32) : 0,
             !masksBehind                     ? 0
             : compression == kAlphaBitFields ? 16
                                              : 12);
  return header;
}

}  // namespace imaging
