#pragma once

#include "platform/base/string.h"
#include "platform/base/types.h"

namespace platform {

/// Asked when the pointer rests in a window: the text to show, empty for none, and the part of the client
/// area for which it holds.
using ToolTipSource = CString (*)(HWND window, POINT point, RECT* area);
void SetToolTipSource(HWND window, ToolTipSource source);

}  // namespace platform
