#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <vector>

#include "imaging/core/guard.h"
#include "imaging/device/paint_dc.h"
#include "imaging/ltwrap.h"
#include "imaging/pixels/record.h"
#include "platform/graphics/gdi.h"

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
    imaging::PaintOnDC(dc, bitmap, {source, sourceClip, destination, destinationClip},
                       static_cast<std::uint32_t>(rasterOperation));
    return 1;
  });
}
