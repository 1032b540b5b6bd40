#pragma once

#include <functional>
#include <string>
#include <vector>

#include "tests/imaging/codec_support.h"

// Files of the small raster kinds, by writers of the tests' own.
namespace codec_test {

/// A file and what a reader must make of it.
struct RasterFile {
  std::string name;
  Bytes bytes;
  int format;
  int bits;  ///< in the file
  const char* compression;
  std::function<Color(int x, int y)> color;
  int memoryBits = 0;  ///< 0: as in the file
  int xResolution = 0;
  int yResolution = 0;
};

/// At least one of each kind and coding; all but those of a fixed size have 13 by 7 pixels.
std::vector<RasterFile> MakeRasterFiles();
inline constexpr int kRasterWidth = 13;
inline constexpr int kRasterHeight = 7;

/// Of these the first of each kind, coding and depth, and files of several pages.
std::vector<Bytes> MakeRasterSamples();

/// A file of Dr. Halo and the one with its colours.
RasterFile MakeDrHalo();
Bytes MakeDrHaloColors();
/// Pages of these bilevel pictures, the last one first in the file.
Bytes MakeDcx(const std::vector<Bytes>& pages);
RasterFile MakePcx(int bits, int planes, bool packed);
/// Icons, or cursors, of these sizes and depths, in that order.
struct IconForm {
  int size;
  int bits;
  bool masked = false;
  bool png = false;
};
Bytes MakeIcons(const std::vector<IconForm>& forms, bool cursors = false);
Bytes MakeAnimatedCursor(const std::vector<Bytes>& frames);

/// An animation with each kind of chunk and of packet, and the red of each page's pixels row by row. Behind
/// its pages comes the frame that leads back to the first.
struct FlicFile {
  Bytes bytes;
  std::vector<std::vector<int>> pages;
};
inline constexpr int kFlicWidth = 21;
inline constexpr int kFlicHeight = 6;
FlicFile MakeFlic(bool fli);

}  // namespace codec_test
