// The rules of scale, fit, scrolling and square pixels, without a window.

#include <gtest/gtest.h>

#include <climits>
#include <cmath>
#include <optional>
#include <vector>

#include "viewing/crossed_box.h"
#include "viewing/fit.h"
#include "viewing/mouse_rules.h"
#include "viewing/page_window.h"
#include "viewing/saved_scale.h"
#include "viewing/square_pixels.h"
#include "viewing/viewport.h"
#include "viewing/zoom_steps.h"

namespace {

const double kNaN = std::nan("");
const double kInfinity = HUGE_VAL;

TEST(ZoomSteps, RoundingSendsHalvesDown) {
  const struct {
    double value;
    int rounded;
  } cases[] = {{12.5, 12},
               {12.51, 13},
               {0.5, 0},
               {0.75, 1},
               {3, 3},
               {1.0 / 3 * 100, 33},
               {1e300, INT_MAX},
               {-1e300, INT_MIN},
               {kInfinity, INT_MAX},
               {kNaN, 0}};
  for (const auto& c : cases) EXPECT_EQ(zoom::RoundHalfDown(c.value), c.rounded) << c.value;
}

TEST(ZoomSteps, LimitsAreLegalAndNothingBeyondThem) {
  const struct {
    double factor;
    bool legal, wholePercent;
  } cases[] = {{0.01, true, true},         {10.0, true, true},    {0.0099, false, false},
               {10.01, false, false},      {10.005, false, true}, {0, false, false},
               {-1, false, false},         {kNaN, false, false},  {kInfinity, false, false},
               {-kInfinity, false, false}, {1e300, false, false}};
  for (const auto& c : cases) {
    EXPECT_EQ(zoom::IsLegalFactor(c.factor), c.legal) << c.factor;
    EXPECT_EQ(saved_scale::IsLegal(c.factor), c.wholePercent) << c.factor;
  }
}

TEST(ZoomSteps, DivisorNearestToAFactor) {
  const struct {
    double factor;
    int divisor;
  } cases[] = {{0.75, 1},     {2.0 / 3, 1}, {0.6, 2},  {0.4, 2},  {0.37, 3}, {1, 1},      {1.5, 1},
               {1.50001, -2}, {1.6, -2},    {2.5, -2}, {2.6, -3}, {10, -10}, {0.01, 100}, {0.05, 20}};
  for (const auto& c : cases) EXPECT_EQ(zoom::DivisorOfFactor(c.factor), c.divisor) << c.factor;
}

TEST(ZoomSteps, SmallestSidePullsUpWidthFirst) {
  const struct {
    SIZE page;
    double asked, got;
  } cases[] = {{{100, 3000}, 0.01, 0.05},
               {{3000, 100}, 0.01, 0.05},
               {{500, 500}, 0.01, 0.01},
               {{50, 20}, 0.05, 0.25},
               {{1, 1}, 1, 5},
               {{1000, 1000}, 2, 2}};
  for (const auto& c : cases) EXPECT_DOUBLE_EQ(zoom::KeepSmallestSide(c.asked, c.page), c.got) << c.page.cx;
}

std::vector<int> Chain(int divisor, int (*next)(int), bool (*possible)(int)) {
  std::vector<int> chain = {divisor};
  while (possible(chain.back()) && chain.size() < 50) chain.push_back(next(chain.back()));
  return chain;
}

TEST(ZoomSteps, ChainsOfSteps) {
  const std::vector<std::vector<int>> in = {{64, 32, 16, 8, 4, 2, 1, -2, -3, -4, -5, -6, -7, -8, -9, -10},
                                            {5, 2, 1, -2, -3, -4, -5, -6, -7, -8, -9, -10},
                                            {-1, -2, -3, -4, -5, -6, -7, -8, -9, -10}};
  const std::vector<std::vector<int>> out = {{-10, -9, -8, -7, -6, -5, -4, -3, -2, -1, 2, 4, 8, 16, 32, 64},
                                             {1, 2, 4, 8, 16, 32, 64},
                                             {3, 6, 12, 24, 48, 96},
                                             {50, 100},
                                             {51}};
  for (const auto& chain : in) EXPECT_EQ(Chain(chain[0], zoom::NextDivisorIn, zoom::CanStepIn), chain);
  for (const auto& chain : out) EXPECT_EQ(Chain(chain[0], zoom::NextDivisorOut, zoom::CanStepOut), chain);
  EXPECT_EQ(zoom::FactorOfDivisor(-1), 1.0);
  EXPECT_EQ(zoom::FactorOfDivisor(-7), 7.0);
  EXPECT_EQ(zoom::FactorOfDivisor(4), 0.25);
}

TEST(Fit, LeavesRoomForTheBarThatTheFittedPageNeeds) {
  constexpr int kBar = 17;
  const struct {
    const char* name;
    fit::Situation at;
    double width, height;
  } cases[] = {
      // 799 / 1700 would be 1034 high: the vertical bar comes.
      {"no bar yet, one needed", {{800, 600}, {100, 100}, {1700, 2200}}, 782.0 / 1700, 599.0 / 2200},
      {"bars up already", {{783, 583}, {1700, 2200}, {1700, 2200}}, 782.0 / 1700, 599.0 / 2200},
      {"bars up, not needed after",
       {{783, 583}, {3000, 2000}, {3000, 300}},
       799.0 / 3000,
       (599.0 - 17) / 300},
      {"bar from equal size on", {{783, 600}, {100, 600}, {2000, 100}}, 799.0 / 2000, (599.0 - 17) / 100},
  };
  for (const auto& c : cases) {
    EXPECT_DOUBLE_EQ(fit::ToWidth(c.at, kBar), c.width) << c.name;
    EXPECT_DOUBLE_EQ(fit::ToHeight(c.at, kBar), c.height) << c.name;
  }
  // Exactly as high as the window is too high.
  EXPECT_DOUBLE_EQ(fit::ToWidth({{101, 50}, {0, 0}, {100, 50}}, kBar), 83.0 / 100);
  EXPECT_DOUBLE_EQ(fit::ToWidth({{101, 51}, {0, 0}, {100, 50}}, kBar), 1.0);
}

TEST(Fit, BestTakesTheSideThatLimitsAndWidthOnATie) {
  EXPECT_EQ(fit::Best({{800, 600}, {}, {1700, 2200}}), fit::Side::Height);
  EXPECT_EQ(fit::Best({{800, 600}, {}, {2200, 1000}}), fit::Side::Width);
  EXPECT_EQ(fit::Best({{800, 600}, {}, {400, 300}}), fit::Side::Width);
}

TEST(Fit, WithoutAPageOrWindowNoLegalFactorComesOut) {
  for (SIZE client : {SIZE{800, 600}, SIZE{0, 0}, SIZE{1, 1}}) {
    EXPECT_FALSE(zoom::IsLegalFactor(fit::ToWidth({client, {0, 0}, {0, 0}}, 17)));
    EXPECT_FALSE(zoom::IsLegalFactor(fit::ToHeight({client, {0, 0}, {0, 0}}, 17)));
  }
  EXPECT_FALSE(zoom::IsLegalFactor(fit::ToWidth({{0, 0}, {0, 0}, {100, 100}}, 0)));
}

TEST(Viewport, SizesAndLimits) {
  EXPECT_EQ(viewport::ScaledSize({100, 33}, 0.37), CSize(37, 12));
  EXPECT_EQ(viewport::ScaledSize({INT_MAX, 1}, 10), CSize(INT_MAX, 10));
  EXPECT_EQ(viewport::LargestPosition({500, 100}, {200, 300}), CPoint(300, 0));
  EXPECT_EQ(viewport::Limit(CPoint(-5, 999), CPoint(10, 20)), CPoint(0, 20));
  EXPECT_EQ(viewport::Moved({5, 5}, {INT_MAX, INT_MIN}, {30, 30}), CPoint(30, 0));
  EXPECT_EQ(viewport::PageStep(402), 302);
  EXPECT_EQ(viewport::PageStep(3), 3);
  EXPECT_EQ(viewport::AfterResize(100, 400, 500, 100), 100);
  EXPECT_EQ(viewport::AfterResize(100, 401, 500, 99), 99);
}

TEST(Viewport, StepsOfScrollCodes) {
  const struct {
    int code;
    viewport::Axis at;
    int step;
  } cases[] = {{SB_LINEUP, {10, 300, 402}, -15},   {SB_LINEUP, {0, 300, 402}, 0},
               {SB_LINEDOWN, {299, 300, 402}, 15}, {SB_LINEDOWN, {300, 300, 402}, 0},
               {SB_PAGEUP, {1, 300, 402}, -302},   {SB_PAGEUP, {0, 300, 402}, 0},
               {SB_PAGEDOWN, {0, 300, 402}, 302},  {SB_PAGEDOWN, {300, 300, 402}, 0},
               {SB_TOP, {10, 300, 402}, 0},        {SB_BOTTOM, {10, 300, 402}, 0},
               {SB_ENDSCROLL, {10, 300, 402}, 0}};
  for (const auto& c : cases) EXPECT_EQ(viewport::StepOf(c.code, c.at), c.step) << "code " << c.code;
}

TEST(SquarePixels, WholeFactorInOneDirection) {
  const struct {
    square_pixels::Resolution page;
    bool known;
    int across, down;
  } cases[] = {{{204, 98}, true, 1, 2},
               {{98, 204}, true, 2, 1},
               {{300, 200}, true, 1, 1},
               {{200, 200}, true, 1, 1},
               {{0, 200}, false, 1, 1},
               {{200, 0}, false, 1, 1},
               {{204, 51}, true, 1, 4},
               {{-200, 100}, false, 1, 1},
               {{-100, -200}, false, 1, 1},
               // 2^31 / 96 and more leave the 32-bit word and come out negative or as nothing.
               {{22369622, 200}, false, 1, 1},
               {{1 << 27, 200}, false, 1, 1}};
  for (const auto& c : cases) {
    const auto got = square_pixels::WholeFactor(c.page, {96, 96});
    EXPECT_EQ(got.known, c.known) << c.page.x << " x " << c.page.y;
    EXPECT_EQ(got.stretch.across, c.across) << c.page.x << " x " << c.page.y;
    EXPECT_EQ(got.stretch.down, c.down) << c.page.x << " x " << c.page.y;
  }
}

TEST(SquarePixels, AStretchThatNoIntHoldsIsTheLargest) {
  EXPECT_EQ(square_pixels::Stretched(50, 2), 100);
  EXPECT_EQ(square_pixels::Stretched(100, 2'000'000'000), INT_MAX);
}

TEST(SquarePixels, OfADocumentByTheExactRatio) {
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
    const auto size = square_pixels::StretchedExactly(c.page, c.resolution, c.screen);
    ASSERT_EQ(size.has_value(), c.size.has_value()) << c.page.cy;
    if (!size) continue;
    EXPECT_EQ(size->cx, c.size->cx) << c.page.cy;
    EXPECT_EQ(size->cy, c.size->cy) << c.page.cy;
  }
}

TEST(ZoomSteps, OneStepOutOfADocumentLeavesFivePixels) {
  const struct {
    int divisor;
    SIZE page;
    bool possible;
  } cases[] = {{4, {20, 20}, false},    {2, {20, 20}, true},       {2, {19, 200}, false},
               {2, {200, 19}, false},   {64, {9999, 9999}, false}, {32, {320, 320}, true},
               {32, {319, 320}, false}, {-2, {4, 4}, false},       {-2, {5, 5}, true}};
  for (const auto& c : cases)
    EXPECT_EQ(zoom::CanStepOut(c.divisor, c.page), c.possible) << c.divisor << ", " << c.page.cx;
}

TEST(Viewport, TheMiddleStaysWhereItIs) {
  const struct {
    POINT position;
    SIZE client;
    double ratio;
    POINT kept;
  } cases[] = {{{100, 200}, {400, 300}, 2, {400, 550}},
               {{400, 550}, {400, 300}, 0.5, {100, 200}},
               {{0, 0}, {401, 301}, 1.5, {100, 75}},
               {{10, 10}, {400, 300}, 0.5, {-95, -70}},
               {{7, 8}, {400, 300}, 1, {7, 8}},
               {{INT_MAX, 0}, {2, 2}, 10, {INT_MAX, 9}},
               {{1, 1}, {2, 2}, HUGE_VAL, {INT_MAX, INT_MAX}}};
  for (const auto& c : cases) {
    const CPoint kept = viewport::KeepingCentre(c.position, c.client, c.ratio);
    EXPECT_EQ(kept.x, c.kept.x) << c.position.x << ", " << c.ratio;
    EXPECT_EQ(kept.y, c.kept.y) << c.position.y << ", " << c.ratio;
  }
}

TEST(ZoomSteps, AMultipliedScaleEndsAtTheHighest) {
  const struct {
    double factor, multiplier, used, result;
  } cases[] = {{2, 3, 3, 6}, {2, 5, 5, 10}, {2, 6, 5, 10}, {0.5, 0.1, 0.1, 0.05}, {2, HUGE_VAL, 1, 2}};
  for (const auto& c : cases) {
    const zoom::Multiplied got = zoom::MultiplyFactor(c.factor, c.multiplier);
    EXPECT_DOUBLE_EQ(got.multiplier, c.used) << c.multiplier;
    EXPECT_DOUBLE_EQ(got.factor, c.result) << c.multiplier;
  }
}

TEST(MouseModes, WhatAClickDoesInADocumentAndItsCursor) {
  constexpr mouse::Modes modes = PageWindowTraits<CView>::kModes;
  const struct {
    int mode;
    bool shift, drags, zooms, in;
    UINT cursor, atLimit;
  } cases[] = {{0, false, false, false, false, 0, 0},       {1, false, true, false, false, 0, 0},
               {2, true, true, false, false, 0, 0},         {3, false, false, true, true, 30008, 30010},
               {3, true, false, true, false, 30009, 30010}, {4, false, false, true, false, 30009, 30010},
               {4, true, false, true, true, 30008, 30010},  {5, false, false, false, false, 0, 0}};
  for (const auto& c : cases) {
    EXPECT_EQ(modes.Drags(c.mode), c.drags) << c.mode;
    ASSERT_EQ(modes.Zooms(c.mode), c.zooms) << c.mode;
    if (!c.zooms) continue;
    EXPECT_EQ(modes.ZoomsIn(c.mode, c.shift), c.in) << c.mode;
    EXPECT_EQ(mouse::ZoomCursor(c.in, true), c.cursor) << c.mode;
    EXPECT_EQ(mouse::ZoomCursor(c.in, false), c.atLimit) << c.mode;
  }
}

TEST(ZoomSteps, OnlyReducedBilevelPagesHaveACopy) {
  const struct {
    int divisor, bits;
    bool reduced;
  } cases[] = {{2, 1, true}, {1, 1, false}, {-2, 1, false}, {2, 8, false}, {64, 1, true}};
  for (const auto& c : cases) EXPECT_EQ(zoom::IsReduced(c.divisor, c.bits == 1), c.reduced) << c.divisor;
}

TEST(CrossedBox, TheTextStandsInTheMiddleOfTheBox) {
  EXPECT_TRUE(crossed_box::TextRect({300, 200}, 41) == CRect(0, 79, 300, 200));
  EXPECT_TRUE(crossed_box::TextRect({30, 20}, 41) == CRect(0, -10, 30, 20));  // more text than room
}

TEST(CrossedBox, LinesReachTheCornerPixels) {
  for (const LONG end : {80L, 79L}) {
    const auto [down, up] = crossed_box::Cross({108, 80}, end);
    EXPECT_TRUE(CPoint(down.from) == CPoint(0, 0) && CPoint(down.to) == CPoint(108, 80));
    EXPECT_TRUE(CPoint(up.from) == CPoint(107, 0) && CPoint(up.to) == CPoint(0, end));
  }
}

}  // namespace
