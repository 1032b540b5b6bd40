#pragma once

namespace platform {

/// Sends WM_IDLEUPDATECMDUI to every visible frame and all windows in it.
void UpdateFramesAtIdle();

}  // namespace platform
