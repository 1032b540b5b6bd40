#pragma once

#include "platform/base/string.h"
#include "platform/base/types.h"

namespace platform {

/// The part of an item's string that is a prompt (before the line end) or a tip (behind it).
CString ItemText(UINT id, bool tip);

}  // namespace platform
