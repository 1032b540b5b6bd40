#pragma once

#include "platform/base/export.h"
#include "platform/base/types.h"

/// Draws what the window shows, bars and children included, with the corner at 0, 0 of the device context, a
/// unit of the window to a unit of it. The window may be hidden. flags are 0.
PLATFORM_API BOOL PrintWindow(HWND window, HDC dc, UINT flags);
