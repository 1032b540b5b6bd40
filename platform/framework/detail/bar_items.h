#pragma once

#include <memory>

#include "platform/window/accessible.h"

class CToolBar;
class CStatusBar;

// The buttons and panes of bars, as assistive programs see them.
namespace platform {

std::shared_ptr<AccessibleItems> ButtonsOf(const CToolBar& bar);
std::shared_ptr<AccessibleItems> PanesOf(const CStatusBar& bar);

}  // namespace platform
