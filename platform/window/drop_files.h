#pragma once

#include "platform/base/export.h"
#include "platform/base/types.h"
#include "platform/window/messages.h"

// Files that the user drags from elsewhere and drops on a window. The window gets WM_DROPFILES with the
// handle; default processing of that message ends the handle.

/// Lets the window take files, or no longer.
PLATFORM_API void DragAcceptFiles(HWND window, BOOL accept);
/// index 0xFFFFFFFF: how many files there are. Otherwise the length of that path; buffer, if not null, gets
/// it, cut to fit with its end mark. 0 for no such file.
PLATFORM_API UINT DragQueryFileA(HDROP drop, UINT index, LPSTR buffer, UINT bufferSize);
PLATFORM_API void DragFinish(HDROP drop);
