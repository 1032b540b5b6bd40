#pragma once

#include "platform/base/export.h"
#include "platform/graphics/printer_image.h"

// Images for printing device contexts, placed by the device: nothing is resampled on the way to it.

namespace platform {

/// True for a device context that CreateDC, ResetDC or the print dialog has made, and that is alive.
PLATFORM_API bool IsPrinterDC(HDC dc);

/// Draws the source rectangle (image pixels) into the destination rectangle (logical units) of the open page.
/// A bilevel image stays bilevel. What lies outside the image or the page is cut off. False without an open
/// page, for a dead handle or an image that isn't one; a failed write shows at EndPage.
PLATFORM_API bool DrawImageOnPrinter(HDC dc, const PrinterImage& image, const RECT& destination,
                                     const RECT& source);

}  // namespace platform
