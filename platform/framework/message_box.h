#pragma once

#include "platform/base/export.h"
#include "platform/base/types.h"
#include "platform/window/message_box_flags.h"

/// Shows a modal box over the active window, with the application's name as title. The button chosen.
PLATFORM_API int AfxMessageBox(LPCTSTR text, UINT type = MB_OK, UINT helpId = 0);
/// The same with a string of the resources.
PLATFORM_API int AfxMessageBox(UINT stringId, UINT type = MB_OK, UINT helpId = static_cast<UINT>(-1));
