#pragma once

#include <algorithm>

#include "platform/base/kernel.h"
#include "platform/base/types.h"
#include "platform/window/messages.h"

// What the wheel asks for, as arithmetic without windows.
namespace wheel {

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
inline constexpr UINT kMostWheelLines =
    100'000;  // "a page at a time" comes as the largest number; no page is longer

/// Pixels that a turn scrolls, towards the user forwards; lines is what the user set for a notch of 120.
inline int WheelStep(int delta, UINT lines) {
  return MulDiv(-delta, static_cast<int>(std::min(lines, kMostWheelLines)) * kPixelsPerWheelLine,
                WHEEL_DELTA);
}

/// Collects the parts of a notch that fine wheels and touchpads tell of, for what is done once a notch.
class Notches {
 public:
  /// Whether a notch is full with this turn. A longer turn counts once, and so does a message without one.
  bool Fills(WheelAction action, int delta) {
    if (action != m_action || (delta < 0) != (m_turned < 0)) m_turned = 0;
    m_action = action;
    m_turned += delta;
    if (delta != 0 && m_turned > -WHEEL_DELTA && m_turned < WHEEL_DELTA) return false;
    m_turned %= WHEEL_DELTA;
    return true;
  }

 private:
  WheelAction m_action = WheelAction::None;
  int m_turned = 0;
};

}  // namespace wheel
