#pragma once

namespace platform {

/// Sets the style of an application object of ours: the desktop's, but reading no picture at the start.
void SetProgramStyle();

}  // namespace platform
