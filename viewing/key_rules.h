#pragma once

#include "platform/base/types.h"
#include "platform/window/messages.h"

// What keys ask for, without a window.
namespace keys {

/// The scroll event that a key stands for; message 0: none.
struct Scroll {
  UINT message = 0;
  WPARAM code = 0;
};

/// How a key scrolls the page; a message of 0 if it doesn't.
inline Scroll ScrollOfKey(UINT key) {
  switch (key) {
    case VK_PRIOR:
      return {WM_VSCROLL, SB_PAGEUP};
    case VK_NEXT:
      return {WM_VSCROLL, SB_PAGEDOWN};
    case VK_LEFT:
      return {WM_HSCROLL, SB_LINELEFT};
    case VK_UP:
      return {WM_VSCROLL, SB_LINEUP};
    case VK_RIGHT:
      return {WM_HSCROLL, SB_LINERIGHT};
    case VK_DOWN:
      return {WM_VSCROLL, SB_LINEDOWN};
    default:
      return {};
  }
}

}  // namespace keys
