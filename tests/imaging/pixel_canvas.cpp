// New bitmaps, and drawing into bitmaps with the platform's means.

#include "platform/graphics/gdi.h"
#include "tests/imaging/pixel_support.h"

using pixel_test::AllPixels;
using pixel_test::ErrorOf;
using pixel_test::GetPixel;
using pixel_test::OwnedBitmap;

namespace {

TEST(NewBitmap, HasTheFormThatIsAskedFor) {
  RGBQUAD colors[16]{};
  colors[0] = {1, 2, 3, 0};
  colors[15] = {40, 50, 60, 0};
  const struct {
    unsigned asked;
    int bits;
    RGBQUAD* palette;
  } cases[] = {{0, 24, nullptr}, {1, 1, nullptr},  {4, 4, colors},
               {8, 8, nullptr},  {24, 24, colors}, {32, 32, nullptr}};
  for (const auto& c : cases) {
    OwnedBitmap bitmap;
    EXPECT_EQ(LEADTOOLS::CreateBitmap(&bitmap, 1, 7, 3, c.asked, 1, c.palette, 6, nullptr, 0), 1);
    EXPECT_EQ(bitmap.Flags & 1, 1U);
    EXPECT_EQ(bitmap.Width, 7);
    EXPECT_EQ(bitmap.Height, 3);
    EXPECT_EQ(bitmap.BitsPerPixel, c.bits);
    EXPECT_EQ(bitmap.Order, 1);
    EXPECT_EQ(bitmap.ViewPerspective, 6);
    EXPECT_EQ(AllPixels(bitmap), std::vector<std::uint32_t>(21)) << c.asked;
    const int blue = bitmap.pStorage->Palette()[15].rgbBlue;
    EXPECT_TRUE(c.bits == 4 ? blue == 40 : c.bits != 8 || blue == 15) << c.asked << ": " << blue;
  }
}

TEST(NewBitmap, RefusesWhatCantBeMade) {
  BYTE data[4]{};
  const struct {
    unsigned memory, width, bits;
    BYTE* data;
    int error;
  } cases[] = {{2, 7, 8, nullptr, imaging::kErrorInvalidParameter},
               {1, 0, 8, nullptr, imaging::kErrorInvalidParameter},
               {1, 0xffffffff, 8, nullptr, imaging::kErrorInvalidParameter},
               {1, 7, 7, nullptr, imaging::kErrorInvalidParameter},
               {1, 7, 8, data, imaging::kErrorInvalidParameter},
               {1, 200'001, 8, nullptr, imaging::kErrorLimit}};
  for (const auto& c : cases) {
    OwnedBitmap bitmap;
    EXPECT_EQ(ErrorOf([&] {
                LEADTOOLS::CreateBitmap(&bitmap, c.memory, c.width, 3, c.bits, 1, nullptr, 0, c.data, 0);
              }),
              c.error);
    EXPECT_EQ(bitmap.Flags & 1, 0U);
  }
}

/// A black line over the middle of each row but the last: each depth draws into pixels of its own form, and
/// what isn't drawn on stays as it was, bit by bit.
TEST(Canvas, DrawingReachesThePixelsAndNoOthers) {
  for (const int bits : {1, 4, 8, 24, 32})
    for (const int order : {0, 1}) {
      OwnedBitmap bitmap(19, 5, bits);
      bitmap.Order = order;
      pixel_test::FillNoise(*bitmap.pStorage, 3);
      const auto before = AllPixels(bitmap);
      const HDC dc = LEADTOOLS::CreateLeadDC(&bitmap);
      ASSERT_NE(dc, nullptr);
      const RECT part{5, 0, 12, 4};
      const HBRUSH red = CreateSolidBrush(RGB(255, 0, 0));
      FillRect(dc, &part, bits >= 24 ? red : static_cast<HBRUSH>(GetStockObject(BLACK_BRUSH)));
      EXPECT_EQ(LEADTOOLS::DeleteLeadDC(dc), 1U);
      DeleteObject(red);
      const std::uint32_t colour = bits < 24 ? 0 : (order == 0 ? 0x0000ffU : 0xff0000U);
      for (int y = 0; y < 5; ++y)
        for (int x = 0; x < 19; ++x) {
          const bool drawn = x >= 5 && x < 12 && y < 4;
          const std::uint32_t pixel = GetPixel(bitmap, x, y);
          const auto old = before[static_cast<std::size_t>(y * 19 + x)];
          ASSERT_EQ(drawn ? pixel & 0xffffff : pixel, drawn ? colour : old) << x << ", " << y << ", " << bits;
        }
    }
}

TEST(Canvas, ShowsThePixelsInTheirColours) {
  for (const int order : {0, 1}) {
    OwnedBitmap bitmap(3, 2, 24);
    bitmap.Order = order;
    pixel_test::SetPixel(*bitmap.pStorage, 2, 1, order == 0 ? 0x030201 : 0x010203);
    const HDC dc = LEADTOOLS::CreateLeadDC(&bitmap);
    EXPECT_EQ(::GetPixel(dc, 2, 1), RGB(1, 2, 3));
    EXPECT_EQ(::GetPixel(dc, 3, 1), CLR_INVALID);
    LEADTOOLS::DeleteLeadDC(dc);
  }
  OwnedBitmap indexed(2, 1, 4);
  indexed.pStorage->Palette()[9] = {30, 20, 10, 0};
  pixel_test::SetPixel(*indexed.pStorage, 1, 0, 9);
  const HDC dc = LEADTOOLS::CreateLeadDC(&indexed);
  EXPECT_EQ(::GetPixel(dc, 1, 0), RGB(10, 20, 30));
  LEADTOOLS::DeleteLeadDC(dc);
}

// The end of a device context must not write where the pixels were.
TEST(Canvas, OutlivesItsBitmap) {
  OwnedBitmap freed(40, 30, 24);
  OwnedBitmap sized(40, 30, 24);
  const HDC first = LEADTOOLS::CreateLeadDC(&freed);
  const HDC second = LEADTOOLS::CreateLeadDC(&sized);
  PatBlt(first, 0, 0, 40, 30, WHITENESS);
  PatBlt(second, 0, 0, 40, 30, WHITENESS);
  LEADTOOLS::FreeBitmap(&freed);
  OwnedBitmap successor(40, 30, 24);  // may well lie at the same address
  LEADTOOLS::SizeBitmap(&sized, 10, 10);
  EXPECT_EQ(LEADTOOLS::DeleteLeadDC(first), 1U);
  EXPECT_EQ(LEADTOOLS::DeleteLeadDC(second), 1U);
  EXPECT_EQ(LEADTOOLS::DeleteLeadDC(second), 0U);
  EXPECT_EQ(LEADTOOLS::DeleteLeadDC(nullptr), 0U);
  EXPECT_EQ(AllPixels(successor), std::vector<std::uint32_t>(1200));
  EXPECT_EQ(AllPixels(sized), std::vector<std::uint32_t>(100));
  EXPECT_EQ(GetObjectType(first), 0U);
}

TEST(Canvas, NeedsABitmap) {
  OwnedBitmap empty;
  EXPECT_EQ(ErrorOf([&] { LEADTOOLS::CreateLeadDC(&empty); }), imaging::kErrorNoBitmap);
  EXPECT_EQ(ErrorOf([] { LEADTOOLS::CreateLeadDC(nullptr); }), imaging::kErrorInvalidParameter);
}

TEST(Palette, ACopyIsIndependent) {
  OwnedBitmap bitmap(2, 2, 4);
  bitmap.pStorage->Palette()[3] = {30, 20, 10, 0};
  const HPALETTE palette = LEADTOOLS::CreatePaintPalette(nullptr, &bitmap);
  const HPALETTE copy = LEADTOOLS::DupPalette(palette);
  EXPECT_NE(copy, palette);
  DeleteObject(palette);
  PALETTEENTRY entries[16]{};
  EXPECT_EQ(GetPaletteEntries(copy, 0, 16, entries), 16U);
  EXPECT_EQ(entries[3].peRed, 10);
  EXPECT_EQ(entries[3].peBlue, 30);
  DeleteObject(copy);
  EXPECT_EQ(LEADTOOLS::DupPalette(nullptr), nullptr);
  EXPECT_EQ(ErrorOf([&] { LEADTOOLS::DupPalette(palette); }), imaging::kErrorInvalidParameter);
}

}  // namespace
