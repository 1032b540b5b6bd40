#pragma once

#include <functional>

#include "platform/base/seams.h"

namespace platform {

/// Shows the desktop's dialog over the owner and lets the user choose until accepts says yes. False: given
/// up.
bool ShowFileDialog(HWND owner, FileDialogRequest& request,
                    const std::function<bool(const std::string& path)>& accepts);

}  // namespace platform
