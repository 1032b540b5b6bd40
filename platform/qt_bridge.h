#pragma once

#include "platform/base/export.h"
#include "platform/base/types.h"

class QWidget;

// For hosts that are Qt programs themselves. They run their own QApplication::exec(); messages of our windows
// are dispatched from there.

/// The widget of a window, to be put into a layout; null for a dead handle. The window stays its owner.
PLATFORM_API QWidget* AfxGetQWidget(HWND window);
/// A window that fills a widget of the host, as the parent of windows of this library. It ends with the
/// widget.
PLATFORM_API HWND AfxWindowInWidget(QWidget* host);
