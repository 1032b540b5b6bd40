#include <algorithm>
#include <cstddef>
#include <vector>

#include "imaging/guard.h"
#include "imaging/ltwrap.h"
#include "imaging/pixels/paint.h"
#include "imaging/pixels/record.h"
#include "imaging/printing.h"
#include "platform/base/bitmapinfo.h"
#include "platform/graphics/gdi.h"
#include "platform/graphics/surface.h"
#include "platform/spooler/page_images.h"

using imaging::PaintRects;

namespace {

std::vector<PALETTEENTRY> ColorsOf(const imaging::PixelStorage& pixels) {
  std::vector<PALETTEENTRY> colors;
  if (pixels.Bits() <= 8) {
    for (std::size_t i = 0; i < std::size_t{1} << pixels.Bits(); ++i) {
      const RGBQUAD& color = pixels.Palette()[i];
      colors.push_back({color.rgbRed, color.rgbGreen, color.rgbBlue, 0});
    }
    return colors;
  }
  // True colours have no table; an even cube of colours stands for them.
  constexpr int kLevels = 6;
  const auto level = [](int i) { return static_cast<BYTE>(i * 255 / (kLevels - 1)); };
  for (int i = 0; i < kLevels * kLevels * kLevels; ++i)
    colors.push_back({level(i / (kLevels * kLevels)), level(i / kLevels % kLevels), level(i % kLevels), 0});
  return colors;
}

RECT Intersect(const RECT& a, const RECT* b) {
  if (b == nullptr) return a;
  return {std::max(a.left, b->left), std::max(a.top, b->top), std::min(a.right, b->right),
          std::min(a.bottom, b->bottom)};
}

HPALETTE PaletteOf(const std::vector<PALETTEENTRY>& colors) {
  // The record ends in as many entries as it says; room for one is counted already.
  std::vector<std::byte> memory(sizeof(LOGPALETTE) + colors.size() * sizeof(PALETTEENTRY));
  auto* palette = reinterpret_cast<LOGPALETTE*>(memory.data());
  palette->palVersion = 0x300;
  palette->palNumEntries = static_cast<WORD>(colors.size());
  std::copy(colors.begin(), colors.end(),
            reinterpret_cast<PALETTEENTRY*>(memory.data() + offsetof(LOGPALETTE, palPalEntry)));
  const HPALETTE result = CreatePalette(palette);
  if (result == nullptr) imaging::Fail(imaging::kErrorNoMemory, "No palette could be made for the image");
  return result;
}

/// Draws rows top to bottom of drawn, which lies in the destination, by way of a block of pixels. For device
/// contexts whose own pixels can't be reached: printers, bilevel bitmaps.
void PaintBand(HDC dc, struct_LEAD_Bitmap* bitmap, const PaintRects& rects, const RECT& band,
               unsigned long operation) {
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
  imaging::PaintOnSurface(view, bitmap, rects, kSourceCopy, imaging::PaintUse::Once);
  BITMAPINFO info{};
  info.bmiHeader = {sizeof info.bmiHeader, width, -height, 1, 32, BI_RGB, 0, 0, 0, 0, 0};
  if (StretchDIBits(dc, band.left, band.top, width, height, 0, 0, width, height, pixels.data(), &info, 0,
                    static_cast<DWORD>(operation)) == 0)
    imaging::Fail(imaging::kErrorInvalidParameter, "The device doesn't take the image");
}

void PaintByBands(HDC dc, struct_LEAD_Bitmap* bitmap, const PaintRects& rects, unsigned long operation) {
  RECT box{};
  if (GetClipBox(dc, &box) == 0)
    imaging::Fail(imaging::kErrorInvalidParameter, "There is no device to paint the image on");
  RECT drawn = Intersect(Intersect(*rects.destination, rects.destinationClip), &box);
  if (drawn.left >= drawn.right) return;
  constexpr int kPixelsAtOnce = 1 << 20;
  const LONG rows = std::max(1, kPixelsAtOnce / (drawn.right - drawn.left));
  for (LONG top = drawn.top; top < drawn.bottom; top += rows)
    PaintBand(dc, bitmap, rects, {drawn.left, top, drawn.right, std::min(drawn.bottom, top + rows)},
              operation);
}

/// A printer scales for itself, and gets the image at its own depth.
void PaintOnPrinter(HDC dc, struct_LEAD_Bitmap* bitmap, const PaintRects& rects) {
  const RECT whole{0, 0, bitmap->Width, bitmap->Height};
  const RECT source = rects.source == nullptr ? whole : *rects.source;
  const int saved = SaveDC(dc);
  if (const RECT* clip = rects.destinationClip)
    IntersectClipRect(dc, clip->left, clip->top, clip->right, clip->bottom);
  const bool drawn = imaging::DrawOnPrinter(dc, bitmap, source, *rects.destination);
  RestoreDC(dc, saved);
  if (!drawn) imaging::Fail(imaging::kErrorInvalidParameter, "The printer doesn't take the image");
}

}  // namespace

HPALETTE LEADTOOLS::CreatePaintPalette(HDC /*dc*/, struct_LEAD_Bitmap* bitmap) {
  return imaging::Guarded([&] { return PaletteOf(ColorsOf(imaging::RequirePixels(bitmap, "paint"))); });
}

HPALETTE LEADTOOLS::DupPalette(HPALETTE palette) {
  if (palette == nullptr) return nullptr;
  return imaging::Guarded([&] {
    std::vector<PALETTEENTRY> colors(GetPaletteEntries(palette, 0, 0, nullptr));
    if (colors.empty()) imaging::Fail(imaging::kErrorInvalidParameter, "There is no palette to copy");
    GetPaletteEntries(palette, 0, static_cast<UINT>(colors.size()), colors.data());
    return PaletteOf(colors);
  });
}

int LEADTOOLS::PaintDC(HDC dc, struct_LEAD_Bitmap* bitmap, tagRECT* source, tagRECT* sourceClip,
                       tagRECT* destination, tagRECT* destinationClip, unsigned long rasterOperation) {
  return imaging::Guarded([&] {
    imaging::RequirePixels(bitmap, "paint");
    if (destination == nullptr)
      imaging::Fail(imaging::kErrorInvalidParameter, "The rectangle to paint into is missing");
    const PaintRects rects{source, sourceClip, destination, destinationClip};
    if (sourceClip == nullptr && rasterOperation == SRCCOPY && platform::IsPrinterDC(dc)) {
      PaintOnPrinter(dc, bitmap, rects);
      return 1;
    }
    platform::SurfaceView view;
    if (!platform::LockSurface(dc, view)) {
      PaintByBands(dc, bitmap, rects, rasterOperation);
      return 1;
    }
    imaging::PaintOnSurface(view, bitmap, rects, static_cast<std::uint32_t>(rasterOperation));
    platform::UnlockSurface(dc, Intersect(*destination, destinationClip));
    return 1;
  });
}
