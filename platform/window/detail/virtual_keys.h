#pragma once

#include "platform/base/types.h"

class QKeyEvent;

namespace platform {

/// The virtual key of a Qt key, 0 for one that has none.
int VirtualKeyOf(const QKeyEvent& event);

// Of a mouse message from the desktop, in MSG::lPrivate: that Alt is known, and that it is down.
inline constexpr DWORD kAltKnown = 1;
inline constexpr DWORD kAltDown = 2;

}  // namespace platform
