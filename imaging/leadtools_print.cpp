#include "imaging/core/guard.h"
#include "imaging/device/printing.h"
#include "imaging/device/upright.h"
#include "imaging/ltwrap.h"
#include "platform/graphics/gdi.h"
#include "platform/spooler/page_images.h"

HDC LEADTOOLS::PrintBitmapExt(HDC dc, struct_LEAD_Bitmap* bitmap, int x, int y, int width, int height,
                              unsigned int /*flags*/) {
  return imaging::Guarded([&]() -> HDC {
    imaging::RequirePixels(bitmap, "print");
    if (!platform::IsPrinterDC(dc)) return nullptr;
    const imaging::Upright upright(bitmap, "print");
    imaging::Bitmap& shown = *upright.Get();
    const SIZE page{GetDeviceCaps(dc, HORZRES), GetDeviceCaps(dc, VERTRES)};
    const SIZE dots{GetDeviceCaps(dc, LOGPIXELSX), GetDeviceCaps(dc, LOGPIXELSY)};
    const RECT place = imaging::PrintedRect(shown, {x, y, x + width, y + height}, page, dots);
    const RECT whole{0, 0, shown.Width, shown.Height};
    imaging::Bitmap* const stored = &shown == bitmap ? nullptr : bitmap;
    return imaging::DrawOnPrinter(dc, &shown, whole, place, stored) ? dc : nullptr;
  });
}
