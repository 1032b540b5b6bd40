#include "imaging/device/printing.h"

#include <algorithm>

#include "platform/spooler/page_images.h"

namespace imaging {

RECT PrintedRect(const Bitmap& bitmap, const RECT& asked, const SIZE& page, const SIZE& dotsPerInch) {
  if (asked.right > asked.left || asked.bottom > asked.top) return asked;
  const double width = bitmap.Width;
  double height = bitmap.Height;
  if (dotsPerInch.cx > 0 && dotsPerInch.cy > 0) height = height * dotsPerInch.cy / dotsPerInch.cx;
  const double factor = std::min((page.cx - asked.left) / width, (page.cy - asked.top) / height);
  const auto scaled = [factor](double extent) { return std::max(1, static_cast<int>(extent * factor)); };
  return {asked.left, asked.top, asked.left + scaled(width), asked.top + scaled(height)};
}

bool DrawOnPrinter(HDC dc, Bitmap* bitmap, const RECT& source, const RECT& destination) {
  const PixelStorage& pixels = RequirePixels(bitmap, "print");
  platform::PrinterImage image;
  image.top = pixels.Row(0);
  image.stride = pixels.Pitch();
  image.width = pixels.Width();
  image.height = pixels.Height();
  image.bits = pixels.Bits();
  if (pixels.Bits() <= 8) image.colors = {pixels.Palette().data(), std::size_t{1} << pixels.Bits()};
  image.blueFirst = bitmap->Order != 0;
  return platform::DrawImageOnPrinter(dc, image, destination, source);
}

}  // namespace imaging
