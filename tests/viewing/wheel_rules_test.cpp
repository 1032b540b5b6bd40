// What the wheel asks for, by tables.

#include "viewing/wheel_rules.h"

#include <gtest/gtest.h>

namespace {

using wheel::WheelAction;

TEST(WheelRules, TheFirstRowThatFitsDecidesOverTheWheel) {
  const struct {
    UINT flags;
    bool alt;
    WheelAction action;
  } rows[] = {
      {0, false, WheelAction::ScrollVertically},
      {MK_LBUTTON | MK_MBUTTON, false, WheelAction::ScrollVertically},
      {MK_SHIFT, false, WheelAction::ScrollHorizontally},
      {MK_SHIFT | MK_RBUTTON, false, WheelAction::ScrollHorizontally},
      {MK_CONTROL, false, WheelAction::Zoom},
      {MK_CONTROL | MK_LBUTTON, false, WheelAction::None},
      {MK_CONTROL | MK_SHIFT, false, WheelAction::None},
      {0, true, WheelAction::TurnPage},
      {MK_SHIFT, true, WheelAction::None},
      {MK_RBUTTON, true, WheelAction::None},
      {MK_CONTROL, true, WheelAction::None},
      {MK_CONTROL | MK_SHIFT, true, WheelAction::None},
  };
  for (const auto& row : rows)
    EXPECT_EQ(wheel::ActionOfWheel(row.flags, row.alt), row.action) << row.flags << row.alt;
}

TEST(WheelRules, WheelStepsAreLinesOf25Pixels) {
  const struct {
    int delta;
    UINT lines;
    int step;
  } rows[] = {{120, 3, -75}, {-120, 3, 75}, {-60, 3, 38}, {60, 3, -38},
              {-1, 3, 1},    {0, 3, 0},     {-120, 0, 0}, {-240, 1, 50}};
  for (const auto& row : rows) EXPECT_EQ(wheel::WheelStep(row.delta, row.lines), row.step) << row.delta;
  EXPECT_GT(wheel::WheelStep(-32768, 0xFFFFFFFF), 1000000) << "a page at a time is far, not an overflow";
}

}  // namespace
