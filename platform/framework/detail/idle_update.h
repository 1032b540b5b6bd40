#pragma once

namespace platform {

/// Sends WM_IDLEUPDATECMDUI to the visible frames and all windows in them, of document windows to the active
/// ones only.
void UpdateFramesAtIdle();
/// The same for a few of the other document windows, so that many of them don't hold up the next message.
/// True while there are more.
bool UpdateMoreFramesAtIdle();

}  // namespace platform
