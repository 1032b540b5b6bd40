#include "imaging/core/waiting.h"

#include <gtest/gtest.h>

#include <string>

#include "imaging/core/exception.h"
#include "tests/imaging/codec_files.h"
#include "tests/imaging/raster_files.h"

// Who waits for a page can end its decoding, whatever it is packed with.

using namespace codec_test;

namespace {

std::uint8_t Ramp(int x, int y, int component) {
  return static_cast<std::uint8_t>(x * 5 ^ y * 3 ^ component * 77);
}

TEST(Waiting, EachDecodeCanBeEnded) {
  const auto level = [](int x, int y, int) { return static_cast<unsigned>(x * y) & 255U; };
  const TiffForm packed{"packed", 8, 3, PHOTOMETRIC_RGB, COMPRESSION_ADOBE_DEFLATE};
  const TiffForm tiled{"tiled", 8, 3, PHOTOMETRIC_RGB, COMPRESSION_LZW, false, true};
  const TiffForm fax{"fax", 1, 1, PHOTOMETRIC_MINISWHITE, COMPRESSION_CCITTFAX4};
  const struct {
    const char* name;
    Bytes file;
    int page = 1;
  } rows[] = {{"jpeg", MakeJpeg(300, 200, 3, false, Ramp)},
              {"progressive jpeg", MakeJpeg(300, 200, 3, true, Ramp)},
              {"png", MakePng(300, 200, 8, 2, false, level)},
              {"interlaced png", MakePng(300, 200, 8, 2, true, level)},
              {"gif", MakeGif(300, 200, {{0, 0, 300, 200, 1}})},
              {"frames of a gif", MakeGif(300, 200, {{0, 0, 300, 200, 1}, {0, 0, 300, 200, 2, 1, 0}}), 2},
              {"bmp", MakeBmp(60, 30, 8, 0, Bytes(1024, 9), Bytes(1800, 7))},
              {"tiff", MakeTiff({packed})},
              {"tiled tiff", MakeTiff({tiled})},
              {"fax tiff", MakeTiff({fax})}};
  for (const auto& row : rows) {
    SCOPED_TRACE(row.name);
    int asked = 0;
    const auto load = [&](int endAt) {
      asked = 0;
      const imaging::WaitScope scope([&] { return ++asked == endAt; });
      return LoadMemory(row.file, row.page);
    };
    EXPECT_EQ(load(1).code, imaging::kErrorUserAbort);
    EXPECT_EQ(asked, 1);
    EXPECT_EQ(load(1'000'000).error, "");
    EXPECT_GE(asked, 1);
    // What it throws comes out of whatever library asked.
    const imaging::WaitScope scope([&]() -> bool { throw std::string("thrown"); });
    EXPECT_THROW(LoadMemory(row.file, row.page), std::string);
  }
}

}  // namespace
