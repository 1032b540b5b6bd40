#include "tests/imaging/pixel_support.h"

#if __has_include("platform/graphics/gdi.h")
#include "platform/graphics/gdi.h"

using pixel_test::ErrorOf;
using pixel_test::OwnedBitmap;

namespace {

constexpr unsigned long kSourceCopy = 0x00cc0020;

/// A memory device context with a bitmap of 20 by 10 pixels selected, black.
struct MemoryDevice {
  explicit MemoryDevice(UINT bits)
      : dc(CreateCompatibleDC(nullptr)), bitmap(CreateBitmap(20, 10, 1, bits, nullptr)) {
    old = SelectObject(dc, bitmap);
  }
  ~MemoryDevice() {
    SelectObject(dc, old);
    DeleteDC(dc);
    DeleteObject(bitmap);
  }
  MemoryDevice(const MemoryDevice&) = delete;
  MemoryDevice& operator=(const MemoryDevice&) = delete;
  HDC dc;
  HBITMAP bitmap;
  HGDIOBJ old;
};

// Both roads to a device, straight into its pixels and by blocks of rows (a bilevel one), respect its clip.
TEST(PaintDevice, DirectAndByBands) {
  OwnedBitmap white(4, 4, 8);
  for (int y = 0; y < 4; ++y)
    for (int x = 0; x < 4; ++x) pixel_test::SetPixel(*white.pStorage, x, y, 255);
  for (const UINT bits : {32U, 1U}) {
    const MemoryDevice device(bits);
    RECT destination{2, 1, 18, 9};
    RECT clip{0, 0, 12, 7};
    const int whole = SaveDC(device.dc);
    IntersectClipRect(device.dc, 4, 0, 20, 10);
    EXPECT_EQ(LEADTOOLS::PaintDC(device.dc, &white, nullptr, nullptr, &destination, &clip, kSourceCopy), 1);
    RestoreDC(device.dc, whole);
    for (int y = 0; y < 10; ++y)
      for (int x = 0; x < 20; ++x) {
        const bool drawn = x >= 4 && x < 12 && y >= 1 && y < 7;
        ASSERT_EQ(GetPixel(device.dc, x, y), drawn ? RGB(255, 255, 255) : RGB(0, 0, 0))
            << x << ", " << y << " of " << bits << " bits";
      }
  }
}

// A record that still says how its file stores the page is drawn as the viewer would turn it.
TEST(PaintDevice, APageIsDrawnUpright) {
  for (int orientation = 2; orientation <= 8; ++orientation) {
    OwnedBitmap stored(4, 3, 8);
    pixel_test::FillNoise(*stored.pStorage, 5);
    stored.ViewPerspective = orientation;
    OwnedBitmap upright;
    LEADTOOLS::ChangeBitmapViewPerspective(&upright, &stored, 0);
    RECT destination{3, 2, 3 + upright.Width, 2 + upright.Height};
    const MemoryDevice device(32);
    const MemoryDevice wanted(32);
    LEADTOOLS::PaintDC(device.dc, &stored, nullptr, nullptr, &destination, nullptr, kSourceCopy);
    LEADTOOLS::PaintDC(wanted.dc, &upright, nullptr, nullptr, &destination, nullptr, kSourceCopy);
    for (int y = 0; y < 10; ++y)
      for (int x = 0; x < 20; ++x)
        ASSERT_EQ(GetPixel(device.dc, x, y), GetPixel(wanted.dc, x, y))
            << orientation << ": " << x << ", " << y;
    EXPECT_EQ(stored.ViewPerspective, orientation);
  }
}

TEST(PaintDevice, Failures) {
  OwnedBitmap bitmap(4, 4, 8);
  OwnedBitmap empty;
  const MemoryDevice device(32);
  RECT destination{0, 0, 4, 4};
  const auto paint = [&](HDC dc, OwnedBitmap& page, RECT* place) {
    LEADTOOLS::PaintDC(dc, &page, nullptr, nullptr, place, nullptr, kSourceCopy);
  };
  EXPECT_EQ(ErrorOf([&] { paint(nullptr, bitmap, &destination); }), imaging::kErrorInvalidParameter);
  EXPECT_EQ(ErrorOf([&] { paint(device.dc, empty, &destination); }), imaging::kErrorNoBitmap);
  EXPECT_EQ(ErrorOf([&] { paint(device.dc, bitmap, nullptr); }), imaging::kErrorInvalidParameter);
  EXPECT_EQ(ErrorOf([&] { LEADTOOLS::CreatePaintPalette(device.dc, &empty); }), imaging::kErrorNoBitmap);
}

TEST(PaintDevice, PaletteHasTheBitmapsColors) {
  const MemoryDevice device(32);
  OwnedBitmap bitmap(4, 4, 4);
  pixel_test::SetColorTable(*bitmap.pStorage, 6);
  const HPALETTE palette = LEADTOOLS::CreatePaintPalette(device.dc, &bitmap);
  PALETTEENTRY entries[16];
  ASSERT_EQ(GetPaletteEntries(palette, 0, 16, entries), 16U);
  for (std::size_t i = 0; i < 16; ++i) {
    EXPECT_EQ(entries[i].peRed, bitmap.pStorage->Palette()[i].rgbRed) << i;
    EXPECT_EQ(entries[i].peBlue, bitmap.pStorage->Palette()[i].rgbBlue) << i;
  }
  EXPECT_TRUE(DeleteObject(palette));
  OwnedBitmap color(4, 4, 24);
  const HPALETTE cube = LEADTOOLS::CreatePaintPalette(device.dc, &color);
  EXPECT_NE(cube, nullptr);
  EXPECT_TRUE(DeleteObject(cube));
}

}  // namespace

#endif
