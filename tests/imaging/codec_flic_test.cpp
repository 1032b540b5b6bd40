#include <gtest/gtest.h>

#include <algorithm>

#include "tests/imaging/codec_support.h"
#include "tests/imaging/raster_files.h"

namespace codec_test {
namespace {

/// The first pixel that isn't as it should be; empty if there is none.
std::string PageDifference(const Loaded& page, const std::vector<int>& expected) {
  for (int y = 0; y < kFlicHeight; ++y)
    for (int x = 0; x < kFlicWidth; ++x)
      if (ColorAt(page, x, y).red != expected[static_cast<std::size_t>(y * kFlicWidth + x)])
        return std::to_string(x) + "," + std::to_string(y) + ": " + std::to_string(ColorAt(page, x, y).red);
  return "";
}

TEST(Flic, FramesArePagesInAnyOrder) {
  for (const bool fli : {false, true}) {
    const FlicFile file = MakeFlic(fli);
    const auto count = static_cast<int>(file.pages.size());
    EXPECT_EQ(InformMemory(file.bytes).record.TotalPages, count);
    for (const int number : {5, 2, 3, 1, 4}) {
      SCOPED_TRACE(number);
      const Loaded page = LoadMemory(file.bytes, number);
      EXPECT_EQ(page.error, "");
      if (!page.error.empty()) continue;
      EXPECT_EQ(page.info.Format, fli ? 61 : 134);
      EXPECT_STREQ(page.info.Compression, "FLIC");
      EXPECT_EQ(page.record.BitsPerPixel, 8);
      EXPECT_EQ(PageDifference(page, file.pages[static_cast<std::size_t>(number) - 1]), "");
    }
    EXPECT_EQ(LoadMemory(file.bytes, count + 1).code, imaging::kErrorPageNotFound);
  }
}

// A count that isn't told, sizes that lie, and many small chunks that would each read the rest of the file.
TEST(Flic, FilesThatLie) {
  Bytes untold = MakeFlic(false).bytes;
  untold[6] = 0;
  EXPECT_EQ(InformMemory(untold).record.TotalPages, 6);
  Bytes endless = MakeFlic(false).bytes;
  std::fill_n(endless.begin() + 128, 4, 0xff);
  const Loaded page = LoadMemory(endless);
  ASSERT_EQ(page.error, "");
  EXPECT_EQ(PageDifference(page, MakeFlic(false).pages[0]), "");
  Bytes greedy = MakeFlic(false).bytes;
  greedy.resize(128 + 16);
  greedy[6] = 1;
  for (int chunk = 0; chunk < 0xffff; ++chunk) greedy.insert(greedy.end(), {6, 0, 0, 0, 7, 0});
  const auto size = static_cast<unsigned>(greedy.size() - 128);
  for (std::size_t i = 0; i < 4; ++i) greedy[128 + i] = static_cast<std::uint8_t>(size >> 8 * i);
  greedy[134] = greedy[135] = 0xff;
  EXPECT_EQ(LoadMemory(greedy).error, "");
}

}  // namespace
}  // namespace codec_test
