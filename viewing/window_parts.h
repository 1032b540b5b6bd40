#pragma once

#include "platform/base/types.h"

class CWnd;

// What a window that shows a page has of the system.
namespace window_parts {

/// The window class, for PreCreateWindow.
LPCTSTR WindowClass();

/// The menu of the right button, at a point of the screen. Its items are commands of the frame.
void ShowContextMenu(POINT point, CWnd* frame);

}  // namespace window_parts
