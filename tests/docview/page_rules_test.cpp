// A document's rules, without a window.

#include <gtest/gtest.h>

#include <climits>

#include "docview/hints.h"
#include "docview/load_progress.h"

namespace {

TEST(LoadProgress, PercentOfARow) {
  const struct {
    int row, height, percent;
  } cases[] = {{0, 1, 100},     {0, 2, 0},        {1, 2, 100},       {0, 2000, 0},
               {999, 2000, 49}, {1998, 2000, 99}, {1999, 2000, 100}, {INT_MAX - 1, INT_MAX, 100}};
  for (const auto& c : cases)
    EXPECT_EQ(load_progress::Percent(c.row, c.height), c.percent) << c.row << " of " << c.height;
}

TEST(Hints, AChangedPageConcernsTheViewThatShowsIt) {
  const struct {
    int hint, page, active;
    bool concerns;
  } cases[] = {{1, 3, 2, false}, {1, 2, 2, true}, {1, -1, 2, true}, {0, 0, 2, true}, {2, 0, 2, true}};
  for (const auto& c : cases)
    EXPECT_EQ(view::ConcernsActivePage(c.hint, c.page, c.active), c.concerns) << c.hint << ' ' << c.page;
}

}  // namespace
