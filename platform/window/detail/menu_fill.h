#pragma once

#include "platform/window/detail/menu_widgets.h"

namespace platform {

/// Adds an action for each item of the menu.
void FillFromMenu(QWidget& target, HWND owner, HMENU menu, MenuChoice choice);
/// Takes away what FillFromMenu added.
void DropItems(QWidget& target);

}  // namespace platform
