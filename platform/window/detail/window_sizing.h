#pragma once

#include "platform/base/types.h"

namespace platform {

bool IsMaximized(HWND window);
/// Lets the desktop size a top-level window by its lower right corner, while the mouse button is down.
void StartSizing(HWND window);

}  // namespace platform
