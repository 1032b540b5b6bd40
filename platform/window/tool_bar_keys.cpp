#include <algorithm>
#include <optional>

#include "platform/window/accessible.h"
#include "platform/window/detail/tool_bar_record.h"
#include "platform/window/window.h"

namespace platform {
namespace {

bool IsButton(const TBBUTTON& button) {
  return (button.fsStyle & TBSTYLE_SEP) == 0 && (button.fsState & TBSTATE_HIDDEN) == 0;
}

bool TakesKeys(const TBBUTTON& button) {
  return IsButton(button) && (button.fsState & TBSTATE_ENABLED) != 0;
}

bool TakesKeys(const ToolbarRecord& toolbar, int index) {
  if (toolbar.IsChevron(index)) return true;
  return index >= 0 && index < static_cast<int>(toolbar.buttons.size()) && !toolbar.IsBehindChevron(index) &&
         TakesKeys(toolbar.buttons[static_cast<std::size_t>(index)]);
}

/// The first button from a place on that can be pressed; the present one if there is none.
int Walk(const ToolbarRecord& toolbar, int from, int step) {
  const int count = static_cast<int>(toolbar.buttons.size());
  for (int at = from; at >= 0 && at <= count; at += step)
    if (TakesKeys(toolbar, at)) return at;
  return toolbar.current;
}

/// The button that a key leads to; none for other keys. Behind the last one the walk ends, as in a list.
std::optional<int> Target(const ToolbarRecord& toolbar, WPARAM key) {
  switch (key) {
    case VK_LEFT:
    case VK_UP:
      return Walk(toolbar, toolbar.current - 1, -1);
    case VK_RIGHT:
    case VK_DOWN:
      return Walk(toolbar, toolbar.current + 1, 1);
    case VK_HOME:
      return Walk(toolbar, 0, 1);
    case VK_END:
      return Walk(toolbar, static_cast<int>(toolbar.buttons.size()), -1);
    default:
      return std::nullopt;
  }
}

void MakeCurrent(HWND window, ToolbarRecord& toolbar, int index) {
  toolbar.current = index;
  InvalidateRect(window, nullptr, FALSE);
  if (index < 0) return;
  // Told by its place among those that are read: without gaps and hidden ones.
  const auto end = toolbar.buttons.begin() + index;
  AnnounceAccessibleItem(window, static_cast<int>(std::count_if(toolbar.buttons.begin(), end, IsButton)));
}

/// Back to where the keyboard came from, else to the window that holds the bar.
void GiveBackFocus(HWND window, const ToolbarRecord& toolbar) {
  const HWND former = toolbar.formerFocus;
  SetFocus(IsWindow(former) != 0 && IsWindowVisible(former) != 0 ? former : GetParent(window));
}

}  // namespace

void ToolbarGotFocus(HWND window, ToolbarRecord& toolbar, HWND former) {
  // A control in one of the gaps is no place to go back to.
  if (IsChild(window, former) == 0) toolbar.formerFocus = former;
  const bool keeps = TakesKeys(toolbar, toolbar.current);
  if (!keeps) toolbar.current = -1;
  MakeCurrent(window, toolbar, keeps ? toolbar.current : Walk(toolbar, 0, 1));
}

bool ToolbarKey(HWND window, ToolbarRecord& toolbar, WPARAM key) {
  if (const std::optional<int> target = Target(toolbar, key)) {
    if (*target != toolbar.current) MakeCurrent(window, toolbar, *target);
    return true;
  }
  if (key == VK_SPACE || key == VK_RETURN)
    PressToolButton(window, toolbar.current);
  else if (key == VK_ESCAPE)
    GiveBackFocus(window, toolbar);
  else
    return false;
  return true;
}

}  // namespace platform
