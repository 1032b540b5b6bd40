#pragma once

#include "platform/framework/frame_wnd.h"
#include "platform/window/control_messages.h"

// What the fields for pages and scales let through, and how they hand on what was typed.

/// What may be typed into a field for a page's number.
inline bool IsDigitOrBackspace(WPARAM character) {
  return (character >= '0' && character <= '9') || character == VK_BACK;
}

/// The notification of a pick from a combo's list, sent to the frame for what was typed.
inline void TellFrameOfPick(const CWnd& combo, UINT id) {
  CFrameWnd* frame = combo.GetParentFrame();
  if (frame != nullptr)
    frame->SendMessage(WM_COMMAND, MAKEWPARAM(static_cast<int>(id), int{CBN_SELENDOK}),
                       reinterpret_cast<LPARAM>(combo.m_hWnd));
}
