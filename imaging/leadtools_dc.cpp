#include <cstddef>
#include <cstring>
#include <unordered_map>
#include <utility>

#include "imaging/core/guard.h"
#include "imaging/ltwrap.h"
#include "imaging/pixels/record.h"
#include "platform/base/bitmapinfo.h"
#include "platform/graphics/gdi.h"

using imaging::PixelStorage;

namespace {

/// The platform draws into a block of its own; pixels go to it at the start and come back at the end.
struct Canvas {
  HBITMAP block = nullptr;
  HGDIOBJ formerBitmap = nullptr;
  std::uint8_t* pixels = nullptr;  ///< of the block, top row first
  std::size_t pitch = 0;
  PixelStorage* storage = nullptr;  ///< drawn into; may be gone by the end
  std::uint64_t serial = 0;         ///< tells storage from a later one at the same address
  bool redFirst = false;            ///< the storage's order; the block's is blue first
};

std::unordered_map<HDC, Canvas>& Canvases() {
  static auto& canvases = *new std::unordered_map<HDC, Canvas>;
  return canvases;
}

struct BlockInfo {
  BITMAPINFOHEADER header{};
  RGBQUAD colors[256]{};
};

BlockInfo Describe(const PixelStorage& pixels) {
  BlockInfo info;
  info.header = {sizeof info.header,
                 pixels.Width(),
                 -pixels.Height(),
                 1,
                 static_cast<WORD>(pixels.Bits()),
                 BI_RGB,
                 0,
                 0,
                 0,
                 0,
                 0};
  std::memcpy(info.colors, pixels.Palette().data(), sizeof info.colors);
  return info;
}

/// Copies a row, exchanging red and blue if the two sides don't agree on their order.
void CopyRow(std::uint8_t* to, const std::uint8_t* from, const PixelStorage& pixels, bool exchange) {
  std::memcpy(to, from, pixels.RowBytes());
  if (!exchange) return;
  const auto bytes = static_cast<std::size_t>(pixels.Bits() / 8);
  for (std::size_t at = 0; at + bytes <= pixels.RowBytes(); at += bytes) std::swap(to[at], to[at + 2]);
}

Canvas MakeCanvas(struct_LEAD_Bitmap* bitmap) {
  PixelStorage& pixels = imaging::RequirePixels(bitmap, "draw into");
  Canvas canvas;
  const BlockInfo info = Describe(pixels);
  void* block = nullptr;
  canvas.block = CreateDIBSection(nullptr, reinterpret_cast<const BITMAPINFO*>(&info), DIB_RGB_COLORS, &block,
                                  nullptr, 0);
  if (canvas.block == nullptr) imaging::Fail(imaging::kErrorNoMemory, "Not enough memory for the image");
  canvas.pixels = static_cast<std::uint8_t*>(block);
  canvas.pitch = (pixels.RowBytes() + 3) / 4 * 4;
  canvas.storage = &pixels;
  canvas.serial = pixels.Serial();
  canvas.redFirst = pixels.Bits() >= 24 && bitmap->Order == 0;
  for (int y = 0; y < pixels.Height(); ++y)
    CopyRow(canvas.pixels + static_cast<std::size_t>(y) * canvas.pitch, std::as_const(pixels).Row(y), pixels,
            canvas.redFirst);
  return canvas;
}

/// Whether the block still fits the pixels that it was made of.
bool HasPlaceToReturn(const Canvas& canvas) {
  if (!PixelStorage::IsLive(canvas.storage) || canvas.storage->Serial() != canvas.serial) return false;
  BITMAP block{};
  return GetObject(canvas.block, sizeof block, &block) != 0 && block.bmWidth == canvas.storage->Width() &&
         block.bmHeight == canvas.storage->Height() && block.bmBitsPixel == canvas.storage->Bits();
}

}  // namespace

HDC LEADTOOLS::CreateLeadDC(struct_LEAD_Bitmap* bitmap) {
  return imaging::Guarded([&] {
    Canvas canvas = MakeCanvas(bitmap);
    const HDC dc = CreateCompatibleDC(nullptr);
    canvas.formerBitmap = SelectObject(dc, canvas.block);
    Canvases().emplace(dc, canvas);
    return dc;
  });
}

unsigned int LEADTOOLS::DeleteLeadDC(HDC dc) {
  const auto found = Canvases().find(dc);
  if (found == Canvases().end()) return 0;
  const Canvas canvas = found->second;
  Canvases().erase(found);
  if (HasPlaceToReturn(canvas))
    for (int y = 0; y < canvas.storage->Height(); ++y)
      CopyRow(canvas.storage->Row(y), canvas.pixels + static_cast<std::size_t>(y) * canvas.pitch,
              *canvas.storage, canvas.redFirst);
  SelectObject(dc, canvas.formerBitmap);
  DeleteDC(dc);
  DeleteObject(canvas.block);
  return 1;
}
