#pragma once

#include "command_line.h"
#include "tessarel12.h"

/// Where the last window stood.
struct Placement {
  Geometry place;
  bool maximized = false;
};

/// The one kept for the user, if it lies on the screen; else the desktop's choice.
Placement SavedPlacement();
void SavePlacement(HWND window);
