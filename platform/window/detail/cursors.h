#pragma once

#include "platform/base/types.h"

class QIcon;

namespace platform {

/// The picture of an icon; empty for a dead handle.
QIcon IconOf(HICON icon);
/// Number of the resource or of the system's cursor; 0 for a dead handle.
UINT CursorNumber(HCURSOR cursor);

}  // namespace platform
