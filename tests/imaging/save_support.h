#pragma once

#include <tiffio.h>

#include <string>
#include <vector>

#include "tests/imaging/codec_files.h"

// Pages to write, and readers of what was written that share no code with ours.
namespace codec_test {

enum class Look {
  kNoise,       ///< every pixel another; grey where there is a colour table
  kRuns,        ///< runs of 1 to some hundred pixels; grey
  kPalette,     ///< noise in a colour table that isn't grey
  kWhiteFirst,  ///< noise, white before black
  kSoft,        ///< without edges, for lossy coding
};

/// A page with 204 by 98 dots per inch and orientation 6.
Loaded MakePage(int bits, Look look, int width = 37, int order = 1);

struct Picture {
  int width = 0;
  int height = 0;
  int xResolution = 0;
  int yResolution = 0;
  int orientation = 1;
  int compression = 0;
  std::vector<Color> colors;
  std::string error;
};

Picture ReadTiff(const std::string& path, int page);
/// Insists on 4:2:2 sampling, an Exif segment in front, and none of JFIF.
Picture ReadExifJpeg(const std::string& path);
/// Plain, RLE8 and RLE4 bitmaps, by the letter.
Picture ReadBmp(const Bytes& file);

int ShortTag(TIFF* tiff, std::uint32_t tag);
std::uint32_t LongTag(TIFF* tiff, std::uint32_t tag);

/// The first pixel that is further off than the tolerance, with both colours; empty if there is none.
std::string FirstDifference(const Loaded& page, const Picture& picture, int tolerance);
std::string FirstDifference(const Loaded& page, const Loaded& again, int tolerance);

}  // namespace codec_test
