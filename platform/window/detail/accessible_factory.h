#pragma once

namespace platform {

/// From now on until the end of the application Qt asks us about our own widgets. Again, it does nothing.
void ServeAccessibility();

}  // namespace platform
