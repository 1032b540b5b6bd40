#pragma once

#include <cstdint>
#include <vector>

#include "imaging/core/source.h"

namespace imaging {

/// A part of the file. The data of one image may be spread over several.
struct IocaStretch {
  std::int64_t offset = 0;
  std::int64_t size = 0;
};

/// Coding of the image data, the numbers of the image encoding field.
enum class IocaCoding : std::uint8_t {
  kNone = 0x03,
  kGroup3OneDimensional = 0x80,
  kGroup3TwoDimensional = 0x81,
  kGroup4 = 0x82,
  kJpeg = 0x83,
};

/// What the self-defining fields of an image segment say, and its image data in one piece.
struct IocaSegment {
  int width = 0;
  int height = 0;
  int xResolution = 0;  ///< dots per inch, 0 unknown
  int yResolution = 0;
  IocaCoding coding = IocaCoding::kNone;
  bool reversed = false;  ///< least significant bit first
  int bits = 1;           ///< of a pixel
  bool subtractive = false;
  bool inParts = false;  ///< tiles, or one band for each colour
  std::vector<std::uint8_t> data;
};

/// Throws kErrorLimit if there is more data than memory may be taken for.
IocaSegment ReadIocaSegment(const Source& source, const std::vector<IocaStretch>& stretches);

}  // namespace imaging
