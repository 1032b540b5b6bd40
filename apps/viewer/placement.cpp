#include "placement.h"

#include "settings.h"

Placement SavedPlacement() {
  constexpr int kLeast = 200;
  constexpr int kReach = 100;  // of the title bar, so that it can be taken hold of
  Placement saved;
  saved.maximized = settings::ReadNumber("Maximized", 0) != 0;
  const Geometry place{settings::ReadNumber("Width", 0), settings::ReadNumber("Height", 0),
                       settings::ReadNumber("Left", -1), settings::ReadNumber("Top", -1)};
  const int right = GetSystemMetrics(SM_CXSCREEN);
  const int bottom = GetSystemMetrics(SM_CYSCREEN);
  if (place.width < kLeast || place.height < kLeast || place.width > right || place.height > bottom)
    return saved;
  saved.place = place;
  if (place.x < 0 || place.y < 0 || place.x + kReach > right || place.y + kReach > bottom)
    saved.place.x = saved.place.y = -1;
  return saved;
}

void SavePlacement(HWND window) {
  WINDOWPLACEMENT placement{};
  if (GetWindowPlacement(window, &placement) == FALSE) return;
  const CRect place = placement.rcNormalPosition;
  settings::WriteNumber("Maximized", placement.showCmd == SW_SHOWMAXIMIZED ? 1 : 0);
  settings::WriteNumber("Width", place.Width());
  settings::WriteNumber("Height", place.Height());
  settings::WriteNumber("Left", place.left);
  settings::WriteNumber("Top", place.top);
}
