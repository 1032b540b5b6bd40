#pragma once

#include "platform/base/types.h"

namespace platform {

/// A modal dialog is up and about to run its loop.
void DialogShown(HWND dialog);

}  // namespace platform
