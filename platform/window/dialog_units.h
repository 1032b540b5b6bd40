#pragma once

#include "platform/base/export.h"
#include "platform/base/types.h"

/// Turns dialog units of the dialog's font into units of the screen.
PLATFORM_API BOOL MapDialogRect(HWND dialog, RECT* rect);

namespace platform {

/// How large a dialog unit is: horizontally a quarter, vertically an eighth of these.
struct DialogBaseUnits {
  int x;
  int y;
};
PLATFORM_API DialogBaseUnits BaseUnitsOf(HFONT font);

}  // namespace platform
