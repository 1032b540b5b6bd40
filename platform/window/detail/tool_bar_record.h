#pragma once

#include <span>
#include <vector>

#include "platform/base/geometry.h"
#include "platform/graphics/image_list.h"
#include "platform/window/tool_bar_control.h"

namespace platform {

/// What a control of class ToolbarWindow32 holds.
struct ToolbarRecord {
  std::vector<TBBUTTON> buttons;
  SIZE buttonSize = {24, 22};
  SIZE imageSize = {16, 15};
  RECT margins = {};      ///< room at each side for borders and the gripper
  bool vertical = false;  ///< the buttons stand below each other
  bool gripper = false;
  DWORD borders = 0;  ///< CBRS_BORDER_... lines
  HIMAGELIST images = nullptr;
  HIMAGELIST disabledImages = nullptr;
  int hot = -1;                ///< under the pointer
  int pressed = -1;            ///< held down with the mouse
  int current = -1;            ///< where the keys act while the bar has the focus
  HWND formerFocus = nullptr;  ///< had the keyboard before, and gets it back by Escape
  bool hasChevron = false;     ///< what doesn't fit whole is found behind one
  int behind = -1;             ///< the first button that is; -1 while all fit
  RECT chevron = {};           ///< its place then
  std::vector<HWND> stowed;    ///< child windows hidden with their gaps

  /// While there is one, the chevron counts as the button behind the last.
  bool IsChevron(int index) const { return behind >= 0 && index == static_cast<int>(buttons.size()); }
  bool IsBehindChevron(int index) const { return behind >= 0 && index >= behind && !IsChevron(index); }
  /// As if the bar were as long as it needs.
  std::vector<RECT> Places() const;
  /// The size of all buttons with the margins.
  SIZE Extent() const;
};

/// Null for a window that isn't such a control.
ToolbarRecord* FindToolbar(HWND window);
void RegisterToolbarClass();
/// Finds out again what fits: after a change of the bar's size, of its buttons and of their places.
void FitToolbar(HWND window);
/// Shows what stands behind the chevron as a menu, and does what is chosen. The bar may be gone afterwards.
void OpenChevron(HWND window);
void DrawChevron(HDC dc, const ToolbarRecord& toolbar, bool focused);
/// What a click on a button does; nothing on a disabled one.
void PressToolButton(HWND window, int index);
/// The bar gets the keyboard: the first button that can be pressed, or the one of the last time, becomes
/// current.
void ToolbarGotFocus(HWND window, ToolbarRecord& toolbar, HWND former);
/// Arrows, Home and End go to other buttons, space bar and Enter press one, Escape leaves the bar. False for
/// other keys.
bool ToolbarKey(HWND window, ToolbarRecord& toolbar, WPARAM key);
/// The button, no separator, or the chevron at a point of the client area; -1 if there is none.
int ToolbarButtonAt(const ToolbarRecord& toolbar, POINT point);

/// Where each button lies: one behind the other from the margin's corner on, hidden ones without extent. In a
/// column a gap with a number has none either, since the control that stands in it doesn't fit there.
std::vector<RECT> PlaceToolButtons(std::span<const TBBUTTON> buttons, SIZE size, const RECT& margins,
                                   bool vertical);

void PaintToolbar(HWND window, HDC dc, const ToolbarRecord& toolbar);

}  // namespace platform
