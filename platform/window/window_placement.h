#pragma once

#include "platform/base/export.h"
#include "platform/base/geometry.h"
#include "platform/base/types.h"

/// Where a main window stands, as it is kept from one run of a program to the next.
struct tagWINDOWPLACEMENT {
  UINT length;
  UINT flags;    ///< 0
  UINT showCmd;  ///< SW_SHOWNORMAL, SW_SHOWMAXIMIZED or SW_SHOWMINIMIZED
  POINT ptMinPosition;
  POINT ptMaxPosition;
  RECT rcNormalPosition;  ///< while it is neither; the corner of the desktop's frame, the size without it
};
using WINDOWPLACEMENT = tagWINDOWPLACEMENT;

/// Also of a window that is maximized or takes the whole screen at the moment; if it was so from the start,
/// the corner may be off by the desktop's frame. FALSE if it is no main window.
PLATFORM_API BOOL GetWindowPlacement(HWND window, WINDOWPLACEMENT* placement);
/// Moves and sizes the window and shows it as showCmd says.
PLATFORM_API BOOL SetWindowPlacement(HWND window, const WINDOWPLACEMENT* placement);
