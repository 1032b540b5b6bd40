#include "imaging/device/paint_dc.h"

#include <algorithm>
#include <vector>

#include "imaging/core/exception.h"
#include "imaging/device/printing.h"
#include "imaging/device/upright.h"
#include "platform/base/bitmapinfo.h"
#include "platform/graphics/gdi.h"
#include "platform/graphics/surface.h"
#include "platform/spooler/page_images.h"

namespace imaging {
namespace {

RECT Intersect(const RECT& a, const RECT* b) {
  if (b == nullptr) return a;
  return {std::max(a.left, b->left), std::max(a.top, b->top), std::min(a.right, b->right),
          std::min(a.bottom, b->bottom)};
}

/// Draws rows top to bottom of drawn, which lies in the destination, by way of a block of pixels. For device
/// contexts whose own pixels can't be reached: printers, bilevel bitmaps.
void PaintBand(HDC dc, Bitmap* bitmap, const PaintRects& rects, const RECT& band, std::uint32_t operation) {
  const int width = band.right - band.left;
  const int height = band.bottom - band.top;
  std::vector<std::uint32_t> pixels(static_cast<std::size_t>(width) * static_cast<std::size_t>(height));
  const RECT whole{0, 0, width, height};
  platform::SurfaceView view;
  view.pixels = pixels.data();
  view.width = width;
  view.height = height;
  view.stride = width;
  view.originX = -static_cast<double>(band.left);
  view.originY = -static_cast<double>(band.top);
  view.clip = {&whole, 1};
  constexpr DWORD kSourceCopy = 0x00cc0020;
  PaintOnSurface(view, bitmap, rects, kSourceCopy, PaintUse::Once);
  BITMAPINFO info{};
  info.bmiHeader = {sizeof info.bmiHeader, width, -height, 1, 32, BI_RGB, 0, 0, 0, 0, 0};
  if (StretchDIBits(dc, band.left, band.top, width, height, 0, 0, width, height, pixels.data(), &info, 0,
                    operation) == 0)
    Fail(kErrorInvalidParameter, "The device doesn't take the image");
}

void PaintByBands(HDC dc, Bitmap* bitmap, const PaintRects& rects, std::uint32_t operation) {
  RECT box{};
  if (GetClipBox(dc, &box) == 0) Fail(kErrorInvalidParameter, "There is no device to paint the image on");
  RECT drawn = Intersect(Intersect(*rects.destination, rects.destinationClip), &box);
  if (drawn.left >= drawn.right) return;
  constexpr int kPixelsAtOnce = 1 << 20;
  const LONG rows = std::max(1, kPixelsAtOnce / (drawn.right - drawn.left));
  for (LONG top = drawn.top; top < drawn.bottom; top += rows)
    PaintBand(dc, bitmap, rects, {drawn.left, top, drawn.right, std::min(drawn.bottom, top + rows)},
              operation);
}

/// A printer scales for itself, and gets the image at its own depth.
void PaintOnPrinter(HDC dc, Bitmap* bitmap, const PaintRects& rects) {
  const RECT whole{0, 0, bitmap->Width, bitmap->Height};
  const RECT source = rects.source == nullptr ? whole : *rects.source;
  const int saved = SaveDC(dc);
  if (const RECT* clip = rects.destinationClip)
    IntersectClipRect(dc, clip->left, clip->top, clip->right, clip->bottom);
  const bool drawn = DrawOnPrinter(dc, bitmap, source, *rects.destination);
  RestoreDC(dc, saved);
  if (!drawn) Fail(kErrorInvalidParameter, "The printer doesn't take the image");
}

}  // namespace

void PaintOnDC(HDC dc, Bitmap* bitmap, const PaintRects& rects, std::uint32_t rasterOperation, PaintUse use) {
  if (rects.destination == nullptr) Fail(kErrorInvalidParameter, "The rectangle to paint into is missing");
  const Upright upright(bitmap, "paint");
  if (rects.sourceClip == nullptr && rasterOperation == SRCCOPY && platform::IsPrinterDC(dc)) {
    PaintOnPrinter(dc, upright.Get(), rects);
    return;
  }
  platform::SurfaceView view;
  if (!platform::LockSurface(dc, view)) {
    PaintByBands(dc, upright.Get(), rects, rasterOperation);
    return;
  }
  PaintOnSurface(view, upright.Get(), rects, rasterOperation, use);
  platform::UnlockSurface(dc, Intersect(*rects.destination, rects.destinationClip));
}

}  // namespace imaging
