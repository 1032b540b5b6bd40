#pragma once

#include "platform/window/control_messages.h"
#include "platform/window/window.h"

// What a window with controls needs to behave as a dialog.

/// The next control at which Tab stops (Shift+Tab with previous), beginning anew at the end; null if there is
/// none.
PLATFORM_API HWND GetNextDlgTabItem(HWND dialog, HWND control, BOOL previous);
/// The next or former control of the group in which a control stands.
PLATFORM_API HWND GetNextDlgGroupItem(HWND dialog, HWND control, BOOL previous);
/// Acts on the keys that move about in a dialog and press its buttons. TRUE if the message was one; every
/// other message has to be dispatched as always.
PLATFORM_API BOOL IsDialogMessage(HWND dialog, MSG* message);
