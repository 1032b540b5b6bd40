#pragma once

#include "platform/base/export.h"
#include "platform/base/types.h"

namespace platform {

/// Lets a main window take the whole screen, without the desktop's title bar, or brings it back to where it
/// was. False for a window that is none.
PLATFORM_API bool ShowFullScreen(HWND window, bool full);

}  // namespace platform
