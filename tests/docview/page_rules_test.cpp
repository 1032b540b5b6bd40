// Arithmetic of a document's pages, without a window.

#include <gtest/gtest.h>

#include <climits>
#include <optional>

#include "docview/load_progress.h"
#include "docview/page_size.h"

namespace {

TEST(PageSize, PixelsBecomeSquareByTheExactRatio) {
  const struct {
    SIZE page;
    square_pixels::Resolution resolution, screen;
    std::optional<SIZE> size;
  } cases[] = {
      {{1728, 1078}, {204, 98}, {96, 96}, SIZE{1728, 2244}},  // 2244.0 exactly
      {{1728, 1079}, {204, 98}, {96, 96}, SIZE{1728, 2246}},  // 2246.08; repeated whole pixels give 2158
      {{1728, 1080}, {204, 98}, {96, 96}, SIZE{1728, 2248}},  // 2248.16
      {{100, 200}, {100, 200}, {96, 96}, SIZE{200, 200}},     // the other direction
      {{101, 50}, {200, 300}, {96, 96}, SIZE{152, 50}},       // 151.5: halves go up
      {{100, 200}, {150, 150}, {96, 96}, SIZE{100, 200}},     // equal: asked for all the same
      {{100, 100}, {100, 100}, {96, 192}, SIZE{200, 100}},    // the screen's pixels count too
      {{100, 100}, {0, 98}, {96, 96}, std::nullopt},          // unknown
      {{100, 100}, {204, 0}, {96, 96}, std::nullopt},
      {{100, 100}, {204, 98}, {0, 96}, std::nullopt},
      {{1000, 100}, {1, 20000000}, {96, 96}, SIZE{INT_MAX, 100}},  // 2e10 pixels: no int holds them
      {{100, 100}, {1, 40000000}, {96, 96}, std::nullopt},         // wraps round and would leave none
  };
  for (const auto& c : cases) {
    const auto size = page_size::WithSquarePixels(c.page, c.resolution, c.screen);
    ASSERT_EQ(size.has_value(), c.size.has_value()) << c.page.cy;
    if (!size) continue;
    EXPECT_EQ(size->cx, c.size->cx) << c.page.cy;
    EXPECT_EQ(size->cy, c.size->cy) << c.page.cy;
  }
}

TEST(LoadProgress, PercentOfARow) {
  const struct {
    int row, height, percent;
  } cases[] = {{0, 1, 100},     {0, 2, 0},        {1, 2, 100},       {0, 2000, 0},
               {999, 2000, 49}, {1998, 2000, 99}, {1999, 2000, 100}, {INT_MAX - 1, INT_MAX, 100}};
  for (const auto& c : cases)
    EXPECT_EQ(load_progress::Percent(c.row, c.height), c.percent) << c.row << " of " << c.height;
}

}  // namespace
