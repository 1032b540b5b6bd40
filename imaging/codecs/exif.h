#pragma once

#include <cstdint>
#include <span>
#include <vector>

namespace imaging {

/// What a picture's Exif block says of its place and density.
struct ExifData {
  int orientation = 1;  ///< 1 to 8
  int xResolution = 0;  ///< dots per inch, 0 unknown
  int yResolution = 0;
};

/// Reads the first directory of a TIFF structure as it stands in an Exif segment (Exif 2.3, 4.5). Fields that
/// are damaged or absent keep their defaults.
ExifData ReadExif(std::span<const std::uint8_t> tiff);

/// The contents of an APP1 segment for a picture of YCbCr samples.
std::vector<std::uint8_t> MakeExifSegment(const ExifData& exif, int width, int height);

}  // namespace imaging
