#include "placement.h"

#include <array>
#include <cstdio>

#include "settings.h"

namespace {

constexpr char kValue[] = "Placement";  // width, height, left, top, whether maximized

}  // namespace

Placement SavedPlacement() {
  constexpr int kLeast = 200;
  constexpr int kReach = 100;  // of the title bar, so that it can be taken hold of
  Placement saved;
  Geometry place;
  int maximized = 0;
  const std::string text = settings::ReadText(kValue);
  if (std::sscanf(text.c_str(), "%dx%d %d %d %d", &place.width, &place.height, &place.x, &place.y,
                  &maximized) != 5)
    return saved;
  saved.maximized = maximized != 0;
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
  const CRect normal = placement.rcNormalPosition;
  const bool maximized = placement.showCmd == SW_SHOWMAXIMIZED;
  Geometry place{normal.Width(), normal.Height(), normal.left, normal.top};
  // Of a window that was never anything but maximized the desktop hasn't told where its frame would lie.
  const Placement former = SavedPlacement();
  if (maximized && former.place.width > 0) place = former.place;
  std::array<char, 100> text{};
  std::snprintf(text.data(), text.size(), "%dx%d %d %d %d", place.width, place.height, place.x, place.y,
                maximized ? 1 : 0);
  settings::WriteText(kValue, text.data());
}
