#pragma once

#include "platform/base/string.h"
#include "platform/window/window.h"

// What a frame takes from the resources under its number.

namespace platform {

/// The string's first line; the further ones tell document templates more. Without a string the title stays.
void LoadFrameTitle(UINT id, CString& title);
/// The class of frames that name none, with an icon if there is one.
LPCTSTR FrameClass(HICON icon = nullptr);
/// The same with the icon of this number; null if there is none.
LPCTSTR LoadFrameClass(UINT id);

}  // namespace platform
