#include "imaging/core/limits.h"

#include <gtest/gtest.h>

#include <string>

#include "imaging/core/exception.h"
#include "tests/imaging/codec_files.h"
#include "tests/imaging/raster_files.h"

// What a host sets is what counts.

using namespace codec_test;
using leadtools12::Limits;

namespace {

std::uint8_t Ramp(int x, int y, int component) {
  return static_cast<std::uint8_t>(x * 5 ^ y * 3 ^ component * 77);
}

/// The picture says that it is so many pixels wide and high.
Bytes Claiming(Bytes jpeg, int side) {
  std::size_t frame = 0;
  while (jpeg[frame] != 0xff || jpeg[frame + 1] != 0xc0) ++frame;
  for (const std::size_t at : {frame + 5, frame + 7}) {
    jpeg[at] = static_cast<std::uint8_t>(side >> 8);
    jpeg[at + 1] = static_cast<std::uint8_t>(side);
  }
  return jpeg;
}

TEST(HostLimits, EachIsKeptTo) {
  const Bytes jpeg = MakeJpeg(40, 30, 3, false, Ramp);
  const Bytes scans = MakeJpeg(40, 30, 3, true, Ramp);
  const Bytes gif = MakeGif(200, 200, std::vector<GifFrame>(9, {0, 0, 200, 200, 1, 1, 0}));
  const Bytes bmp = MakeBmp(40, 30, 8, 1, Bytes(1024, 9), Bytes(1200, 7));
  const Bytes tiff = MakeTiff({{"one", 8, 3, PHOTOMETRIC_RGB, COMPRESSION_LZW},
                               {"two", 1, 1, PHOTOMETRIC_MINISWHITE, COMPRESSION_NONE}});
  const struct {
    const char* name;
    void (*lower)(Limits& limits);
    Bytes file;
    int page;
    int code;
    const char* text;
  } rows[] = {
      {"side", [](Limits& limits) { limits.side = 39; }, jpeg, 1, imaging::kErrorLimit, "too large"},
      {"pixels", [](Limits& limits) { limits.pagePixels = 1199; }, bmp, 1, imaging::kErrorLimit, "too large"},
      {"memory", [](Limits& limits) { limits.bitmapBytes = 1000; }, bmp, 1, imaging::kErrorLimit,
       "too large"},
      {"unproven", [](Limits& limits) { limits.unprovenBytes = 1; }, Claiming(jpeg, 2000), 1,
       imaging::kErrorLimit, "can't hold"},
      {"pages", [](Limits& limits) { limits.pages = 1; }, tiff, 2, imaging::kErrorPageNotFound, "page 2"},
      {"frames", [](Limits& limits) { limits.pages = 2; }, gif, 3, imaging::kErrorPageNotFound, "page 3"},
      {"scans", [](Limits& limits) { limits.scans = 3; }, scans, 1, imaging::kErrorLimit,
       "more than 3 scans"},
      {"codec", [](Limits& limits) { limits.codecBytes = 2000; }, tiff, 1, imaging::kErrorCorrupt,
       "beyond the 2000 byte limit"},
      {"bytes read", [](Limits& limits) { limits.workBytes = limits.workBytesPerPixel = 0; }, jpeg, 1,
       imaging::kErrorLimit, "more work"},
      {"pixels visited",
       [](Limits& limits) { limits.workPixels = limits.workPixelsPerPixel = limits.workPixelsPerByte = 0; },
       gif, 9, imaging::kErrorLimit, "more work"},
  };
  for (const auto& row : rows) {
    SCOPED_TRACE(row.name);
    Limits limits;
    row.lower(limits);
    leadtools12::SetLimits(limits);
    const Loaded loaded = LoadMemory(row.file, row.page);
    EXPECT_EQ(loaded.code, row.code) << loaded.error;
    EXPECT_NE(loaded.error.find(row.text), std::string::npos) << loaded.error;
    leadtools12::SetLimits({});
    EXPECT_EQ(LoadMemory(row.file, row.page).error, "");
  }
}

TEST(HostLimits, NoneIsWithoutSense) {
  Limits limits;
  limits.side = 1 << 30;
  limits.pages = -1;
  limits.workBytes = limits.workPixelsPerByte = INT64_MAX;
  leadtools12::SetLimits(limits);
  EXPECT_EQ(leadtools12::CurrentLimits().side, Limits().side);
  EXPECT_EQ(leadtools12::CurrentLimits().pages, 1);
  EXPECT_EQ(LoadMemory(MakeJpeg(40, 30, 3, false, Ramp)).error, "");
}

}  // namespace
