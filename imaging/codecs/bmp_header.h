#pragma once

#include <array>
#include <cstdint>
#include <vector>

#include "imaging/codecs/codec.h"

namespace imaging {

enum class BmpCoding { kNone, kBitFields, kRle4, kRle8, kRle24, kHuffman, kJpeg, kPng };

/// The headers of a bitmap file: OS/2 1.x and 2.x and those of 40, 52, 56, 108 and 124 bytes.
struct BmpHeader {
  std::uint32_t headerSize = 0;
  std::int64_t width = 0;
  std::int64_t height = 0;
  bool topDown = false;
  int bits = 0;
  BmpCoding coding = BmpCoding::kNone;
  std::int64_t dataOffset = 0;
  std::int64_t dataSize = 0;  ///< as told, 0 if it isn't
  std::uint32_t xPerMetre = 0;
  std::uint32_t yPerMetre = 0;
  std::array<std::uint32_t, 4> masks{};  ///< red, green, blue, alpha; 0 absent
  std::vector<RGBQUAD> colors;

  bool Os2V1() const { return headerSize == 12; }
  bool Os2V2() const { return headerSize == 16 || headerSize == 64; }
  bool Embedded() const { return coding == BmpCoding::kJpeg || coding == BmpCoding::kPng; }
};

/// Throws for a header that no known writer makes.
BmpHeader ReadBmpHeader(const Source& source);

}  // namespace imaging
