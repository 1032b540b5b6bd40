// The view's rules, without a window.

#include "docview/view_rules.h"

#include <gtest/gtest.h>

#include <climits>
#include <cmath>

#include "viewing/crossed_box.h"
#include "viewing/mouse_rules.h"

namespace {

TEST(ViewRules, AChangedPageConcernsTheViewThatShowsIt) {
  const struct {
    int hint, page, active;
    bool concerns;
  } cases[] = {{1, 3, 2, false}, {1, 2, 2, true}, {1, -1, 2, true}, {0, 0, 2, true}, {2, 0, 2, true}};
  for (const auto& c : cases)
    EXPECT_EQ(view::ConcernsActivePage(c.hint, c.page, c.active), c.concerns) << c.hint << ' ' << c.page;
}

TEST(ViewRules, AStepOutLeavesFivePixels) {
  const struct {
    int divisor;
    SIZE page;
    bool possible;
  } cases[] = {{4, {20, 20}, false},    {2, {20, 20}, true},       {2, {19, 200}, false},
               {2, {200, 19}, false},   {64, {9999, 9999}, false}, {32, {320, 320}, true},
               {32, {319, 320}, false}, {-2, {4, 4}, false},       {-2, {5, 5}, true}};
  for (const auto& c : cases)
    EXPECT_EQ(view::CanStepOut(c.divisor, c.page), c.possible) << c.divisor << ", " << c.page.cx;
}

TEST(ViewRules, TheMiddleStaysWhereItIs) {
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
    const CPoint kept = view::KeepingCentre(c.position, c.client, c.ratio);
    EXPECT_EQ(kept.x, c.kept.x) << c.position.x << ", " << c.ratio;
    EXPECT_EQ(kept.y, c.kept.y) << c.position.y << ", " << c.ratio;
  }
}

TEST(ViewRules, AMultipliedScaleEndsAtTheHighest) {
  const struct {
    double factor, multiplier, used, result;
  } cases[] = {{2, 3, 3, 6}, {2, 5, 5, 10}, {2, 6, 5, 10}, {0.5, 0.1, 0.1, 0.05}, {2, HUGE_VAL, 1, 2}};
  for (const auto& c : cases) {
    const zoom::Multiplied got = zoom::MultiplyFactor(c.factor, c.multiplier);
    EXPECT_DOUBLE_EQ(got.multiplier, c.used) << c.multiplier;
    EXPECT_DOUBLE_EQ(got.factor, c.result) << c.multiplier;
  }
}

TEST(ViewRules, ModesAndTheirCursors) {
  const struct {
    int mode;
    bool shift, drags, zooms, in;
    UINT cursor, atLimit;
  } cases[] = {{0, false, false, false, false, 0, 0},       {1, false, true, false, false, 0, 0},
               {2, true, true, false, false, 0, 0},         {3, false, false, true, true, 30008, 30010},
               {3, true, false, true, false, 30009, 30010}, {4, false, false, true, false, 30009, 30010},
               {4, true, false, true, true, 30008, 30010},  {5, false, false, false, false, 0, 0}};
  for (const auto& c : cases) {
    EXPECT_EQ(view::ClickDrags(c.mode), c.drags) << c.mode;
    ASSERT_EQ(view::ClickZooms(c.mode), c.zooms) << c.mode;
    if (!c.zooms) continue;
    EXPECT_EQ(view::ClickZoomsIn(c.mode, c.shift), c.in) << c.mode;
    EXPECT_EQ(mouse::ZoomCursor(c.in, true), c.cursor) << c.mode;
    EXPECT_EQ(mouse::ZoomCursor(c.in, false), c.atLimit) << c.mode;
  }
}

TEST(ViewRules, OnlyReducedBilevelPagesHaveACopy) {
  const struct {
    int divisor, bits;
    bool reduced;
  } cases[] = {{2, 1, true}, {1, 1, false}, {-2, 1, false}, {2, 8, false}, {64, 1, true}};
  for (const auto& c : cases) EXPECT_EQ(view::IsReduced(c.divisor, c.bits), c.reduced) << c.divisor;
}

TEST(ViewRules, TheTextStandsInTheMiddleOfTheBox) {
  EXPECT_TRUE(view::TextRect({300, 200}, 41) == CRect(0, 79, 300, 200));
  EXPECT_TRUE(view::TextRect({30, 20}, 41) == CRect(0, -10, 30, 20));  // more text than room
}

TEST(CrossedBox, LinesReachTheCornerPixels) {
  const auto [down, up] = crossed_box::Cross({108, 80});
  EXPECT_TRUE(CPoint(down.from) == CPoint(0, 0) && CPoint(down.to) == CPoint(108, 80));
  EXPECT_TRUE(CPoint(up.from) == CPoint(107, 0) && CPoint(up.to) == CPoint(0, 80));
}

}  // namespace
