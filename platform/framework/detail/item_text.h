#pragma once

#include "platform/base/string.h"
#include "platform/base/types.h"

namespace platform {

/// Number of a toolbar's chevron, whose tip is the window layer's own.
inline constexpr UINT kChevronItem = 0xE8FE;

/// The part of an item's string that is a prompt (before the line end) or a tip (behind it).
CString ItemText(UINT id, bool tip);

}  // namespace platform
