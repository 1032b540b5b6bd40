#pragma once

#include "platform/base/export.h"
#include "platform/base/string.h"
#include "platform/base/types.h"

// Seams for tests and for programs without a user: boxes answered by a function, time that goes by at once,
// real input of the desktop, pictures of windows. Nothing in the product calls these.
namespace platform::testing {

/// Takes the place of the box on the screen: text and MB_ flags in, the button out. Null brings the real box
/// back.
using MessageBoxAnswer = int (*)(const CString& text, UINT type);
PLATFORM_API void SetMessageBoxAnswer(MessageBoxAnswer answer);

/// Timers whose period lies within that time become due.
PLATFORM_API void AdvanceTimers(UINT milliseconds);
/// Dispatches what is queued and paints what is invalid, until nothing is left; at most so long.
PLATFORM_API void PumpUntilIdle(int milliseconds = 2000);
/// While true, only a pump of the program takes messages from the queue, no event loop of the desktop.
PLATFORM_API void HoldQueue(bool hold);

enum class Button { Left, Right, Middle };
// Input as the desktop would send it to a shown window, in client coordinates. The messages are queued.
PLATFORM_API void PressKey(HWND window, int virtualKey, bool shift = false, bool control = false,
                           bool alt = false);
PLATFORM_API void ReleaseKey(HWND window, int virtualKey, bool shift = false, bool control = false,
                             bool alt = false);
PLATFORM_API void PressMouse(HWND window, POINT point, Button button = Button::Left, bool shift = false);
PLATFORM_API void ReleaseMouse(HWND window, POINT point, Button button = Button::Left);
PLATFORM_API void MoveMouse(HWND window, POINT point, bool leftDown = false);
PLATFORM_API void LeaveWindow(HWND window);
/// The tool tip that appears when the pointer rests there; empty for none.
PLATFORM_API CString ToolTipAt(HWND window, POINT point);
PLATFORM_API void TurnWheel(HWND window, POINT point, int delta, bool shift = false, bool control = false,
                            bool alt = false);
/// Drags the thumb of a scroll bar to a position: tracking at it, and letting go if asked.
PLATFORM_API void DragThumb(HWND window, int bar, int position, bool release);
/// Clicks an arrow (page false) or the trough of a scroll bar.
PLATFORM_API void ClickScrollBar(HWND window, int bar, bool forward, bool page);

/// Writes what a window shows, bars and children included, as a PNG in device pixels. False if it can't.
PLATFORM_API bool SaveWindowPicture(HWND window, const char* path);
/// 0xffRRGGBB of one device pixel of what a window shows, counted from its top left corner; 0 outside.
PLATFORM_API std::uint32_t WindowPixel(HWND window, int x, int y);

}  // namespace platform::testing
