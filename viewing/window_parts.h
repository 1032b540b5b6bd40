#pragma once

#include <cstdint>

#include "platform/base/geometry.h"
#include "platform/base/types.h"
#include "platform/window/messages.h"
#include "viewing/viewport.h"

class CDC;
class CWnd;

// What the windows that show a page have in common as windows: their class, their scroll bars, the ground
// without a page and the context menu.
namespace window_parts {

/// The window class, for PreCreateWindow.
LPCTSTR WindowClass();

/// Gives a new window both scroll bars, which are hidden until there is something to scroll.
void AddScrollBars(CWnd& window);

/// Range and page of a bar for a page of this scaled size, pixels. The mask has no position.
SCROLLINFO BarOf(int scaled, int client);

/// Tells the bars the client area's size, without drawing them.
void SetClientSize(CWnd& window, SIZE client);

/// Moves the thumbs.
void ShowPosition(CWnd& window, POINT position);

/// A bar's event as it came.
struct ScrollEvent {
  int bar;
  UINT code;
  UINT position;  ///< of the thumb; a message holds 16 bits of it
};

/// Does what a scroll bar event asks for: moves the position along the bar's axis, and the thumb, and has the
/// window painted. Gives the event its position in full. False: nothing is to be scrolled.
bool Scroll(CWnd& window, ScrollEvent* event, const viewport::Axis& axis, LONG* position);

/// Bytes of a row of so many bits, padded to 4 bytes.
inline int WidthBytes(int bits) {
  return static_cast<int>((std::int64_t{bits} + 31) / 32 * 4);
}

/// The client area of a window without a page.
void FillGray(CWnd& window, CDC& dc);

/// The menu of the right button, at a point of the screen. Its items are commands of the frame.
void ShowContextMenu(POINT point, CWnd* frame);

}  // namespace window_parts
