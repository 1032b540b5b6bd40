#pragma once

#include "platform/base/geometry.h"
#include "platform/base/types.h"
#include "platform/window/messages.h"
#include "viewing/viewport.h"

class CWnd;

// The scroll bars of a window that shows a page.
namespace scroll_bars {

/// Gives a new window both, which are hidden until there is something to scroll.
void Add(CWnd& window);

/// Range and page of a bar for a page of this scaled size, pixels. The mask has no position.
SCROLLINFO Of(int scaled, int client);

/// Tells the bars the client area's size, without drawing them.
void SetClientSize(CWnd& window, SIZE client);

/// A bar's event as it came.
struct Event {
  int bar;
  UINT code;
  UINT position;  ///< of the thumb; a message holds 16 bits of it
};

/// Does what an event asks for: moves the position along the bar's axis, and the thumb, and has the window
/// painted. Gives the event its position in full. False: nothing is to be scrolled.
bool Follow(CWnd& window, Event* event, const viewport::Axis& axis, LONG* position);

}  // namespace scroll_bars
