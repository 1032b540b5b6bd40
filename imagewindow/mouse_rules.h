#pragma once

#include <algorithm>
#include <cstdint>
#include <limits>

#include "platform/base/types.h"
#include "platform/window/messages.h"

// What the wheel asks for, as arithmetic without windows.
namespace mouse {

/// What a turn of the wheel does, by the keys that are down with it.
enum class WheelAction { None, ScrollVertically, ScrollHorizontally, Zoom, TurnPage };

/// flags: MK_... of the message. Scrolling goes on with a mouse button held, the rest doesn't.
inline WheelAction ActionOfWheel(UINT flags, bool altDown) {
  const bool shift = (flags & MK_SHIFT) != 0;
  const bool control = (flags & MK_CONTROL) != 0;
  const bool button = (flags & (MK_LBUTTON | MK_RBUTTON | MK_MBUTTON)) != 0;
  if (!control && !altDown) return shift ? WheelAction::ScrollHorizontally : WheelAction::ScrollVertically;
  if (shift || button || (control && altDown)) return WheelAction::None;
  return control ? WheelAction::Zoom : WheelAction::TurnPage;
}

inline constexpr int kPixelsPerWheelLine = 25;

/// Pixels that a turn scrolls, towards the user forwards; lines is what the user set for a notch of 120.
/// Rounded half away from zero.
inline int WheelStep(int delta, UINT lines) {
  const std::int64_t product = -std::int64_t{delta} * lines * kPixelsPerWheelLine;
  const std::int64_t rounded = (product + (product < 0 ? -WHEEL_DELTA / 2 : WHEEL_DELTA / 2)) / WHEEL_DELTA;
  constexpr std::int64_t kFar = std::numeric_limits<int>::max() / 2;  // a position plus this still fits
  return static_cast<int>(std::clamp(rounded, -kFar, kFar));
}

}  // namespace mouse
