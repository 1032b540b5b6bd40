#pragma once

#include "platform/base/types.h"

namespace platform {

/// Shows a modal box with MB_ flags over the active window; the IDOK ... of the button. During a paint cycle,
/// in which no event loop may run, a box with one button is shown right after it instead, and IDOK comes at
/// once.
int ShowMessageBox(const char* title, const char* text, UINT type);

}  // namespace platform
