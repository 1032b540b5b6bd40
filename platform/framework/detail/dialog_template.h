#pragma once

#include "platform/resources/resource_tables.h"
#include "platform/window/window.h"

namespace platform {

/// The template's font; the caller's.
HFONT FontOfTemplate(const DialogResource& dialog);
/// Makes the template's controls in a dialog that has its font. The id of the default button, 0 without one.
UINT MakeControls(const DialogResource& dialog, HWND parent, HFONT font);

}  // namespace platform
