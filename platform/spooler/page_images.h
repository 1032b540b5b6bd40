#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <span>

#include "platform/base/export.h"
#include "platform/base/types.h"

// Images for printing device contexts, placed by the device: nothing is resampled on the way to it.

namespace platform {

/// Pixels of an image, borrowed for the length of a call.
struct PrinterImage {
  const std::uint8_t* top = nullptr;  ///< first byte of the topmost row
  std::ptrdiff_t stride = 0;          ///< bytes from a row to the one below it; below 0 in bottom-up blocks
  int width = 0;
  int height = 0;
  /// 1, 4, 8: colour numbers, first pixel in the high bits; 24 and 32: a byte for each channel.
  int bits = 0;
  std::span<const RGBQUAD> colors;  ///< for 1, 4 and 8 bits: one for each number that occurs
  bool blueFirst = true;            ///< order of 24 and 32 bits; the fourth byte isn't looked at
};

/// True for a device context that CreateDC, ResetDC or the print dialog has made, and that is alive.
PLATFORM_API bool IsPrinterDC(HDC dc);

/// Draws the source rectangle (image pixels) into the destination rectangle (logical units) of the open page.
/// A bilevel image stays bilevel. What lies outside the image or the page is cut off. False without an open
/// page, for a dead handle or an image that isn't one; a failed write shows at EndPage.
PLATFORM_API bool DrawImageOnPrinter(HDC dc, const PrinterImage& image, const RECT& destination,
                                     const RECT& source);

}  // namespace platform
