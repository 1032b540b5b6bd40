#include "imaging/core/guard.h"
#include "imaging/device/printing.h"
#include "imaging/ltwrap.h"
#include "platform/graphics/gdi.h"
#include "platform/spooler/page_images.h"

HDC LEADTOOLS::PrintBitmapExt(HDC dc, struct_LEAD_Bitmap* bitmap, int x, int y, int width, int height,
                              unsigned int /*flags*/) {
  return imaging::Guarded([&]() -> HDC {
    imaging::RequirePixels(bitmap, "print");
    if (!platform::IsPrinterDC(dc)) return nullptr;
    const SIZE page{GetDeviceCaps(dc, HORZRES), GetDeviceCaps(dc, VERTRES)};
    const SIZE dots{GetDeviceCaps(dc, LOGPIXELSX), GetDeviceCaps(dc, LOGPIXELSY)};
    const RECT place = imaging::PrintedRect(*bitmap, {x, y, x + width, y + height}, page, dots);
    const RECT whole{0, 0, bitmap->Width, bitmap->Height};
    return imaging::DrawOnPrinter(dc, bitmap, whole, place) ? dc : nullptr;
  });
}
