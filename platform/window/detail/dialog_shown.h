#pragma once

#include "platform/base/types.h"

namespace platform {

/// Before a modal dialog is shown: keeps the desktop from giving its owner the keyboard meanwhile, and a
/// host's shortcuts from acting there.
void BlockOwner(HWND dialog);

}  // namespace platform
