#include <cstring>

#include "tests/graphics/canvas.h"

namespace {

TEST(Objects, StockObjectsStay) {
  for (int index = 0; index <= DEFAULT_GUI_FONT; ++index) {
    const HGDIOBJ stock = GetStockObject(index);
    if (index == 9) {  // no such object
      EXPECT_EQ(stock, nullptr);
      continue;
    }
    EXPECT_TRUE(DeleteObject(stock)) << index;
    EXPECT_EQ(GetStockObject(index), stock);
    EXPECT_NE(GetObjectType(stock), 0U);
  }
  EXPECT_EQ(GetStockObject(-1), nullptr);
  EXPECT_EQ(GetStockObject(99), nullptr);
  LOGBRUSH brush = {};
  EXPECT_EQ(GetObject(GetStockObject(GRAY_BRUSH), sizeof brush, &brush), static_cast<int>(sizeof brush));
  EXPECT_EQ(brush.lbColor, RGB(128, 128, 128));
}

TEST(Objects, DeadHandlesAreToldFromTheirSuccessors) {
  const HBRUSH dead = CreateSolidBrush(kRed);
  EXPECT_TRUE(DeleteObject(dead));
  const HBRUSH next = CreateSolidBrush(kBlue);
  Canvas canvas(1, 1, kGreen);
  EXPECT_FALSE(DeleteObject(dead));
  EXPECT_EQ(SelectObject(canvas, dead), nullptr);
  EXPECT_EQ(GetObjectType(dead), 0U);
  const CRect all(0, 0, 1, 1);
  EXPECT_FALSE(FillRect(canvas, &all, dead));
  EXPECT_EQ(canvas.Color(0, 0), kGreen);
  EXPECT_TRUE(DeleteObject(next));
}

TEST(Objects, SelectedOnesCannotBeDeleted) {
  const HPEN pen = CreatePen(PS_SOLID, 1, kRed);
  Canvas first(1, 1);
  Canvas second(1, 1);
  const HGDIOBJ old = SelectObject(first, pen);
  SelectObject(second, pen);
  SelectObject(first, old);
  EXPECT_FALSE(DeleteObject(pen));
  SelectObject(second, old);
  EXPECT_TRUE(DeleteObject(pen));
}

TEST(Objects, PalettesKeepTheirEntries) {
  std::vector<BYTE> memory(sizeof(LOGPALETTE) + 255 * sizeof(PALETTEENTRY));
  auto* log = reinterpret_cast<LOGPALETTE*>(memory.data());
  log->palVersion = 0x300;
  log->palNumEntries = 256;
  auto* given = reinterpret_cast<PALETTEENTRY*>(memory.data() + offsetof(LOGPALETTE, palPalEntry));
  for (int i = 0; i < 256; ++i) given[i] = {static_cast<BYTE>(i), static_cast<BYTE>(255 - i), 7, 0};
  const HPALETTE palette = CreatePalette(log);
  EXPECT_EQ(GetPaletteEntries(palette, 0, 0, nullptr), 256U);
  PALETTEENTRY entries[10] = {};
  EXPECT_EQ(GetPaletteEntries(palette, 250, 10, entries), 6U);
  EXPECT_EQ(entries[5].peRed, 255);
  EXPECT_EQ(GetPaletteEntries(palette, 256, 1, entries), 0U);
  WORD count = 0;
  EXPECT_EQ(GetObject(palette, sizeof count, &count), 2);
  EXPECT_EQ(count, 256);
  DeleteObject(palette);
  EXPECT_EQ(GetPaletteEntries(palette, 0, 1, entries), 0U);
}

TEST(Objects, BitmapsOfGivenBits) {
  const BYTE rows[] = {0b10110000, 0, 0b01000000, 0};  // each padded to 16 bits
  const HBITMAP bitmap = CreateBitmap(4, 2, 1, 1, rows);
  const HDC dc = CreateCompatibleDC(nullptr);
  SelectObject(dc, bitmap);
  const char* expected[] = {"1011", "0100"};
  for (int y = 0; y < 2; ++y)
    for (int x = 0; x < 4; ++x)
      EXPECT_EQ(GetPixel(dc, x, y), expected[y][x] == '1' ? kWhite : kBlack) << x << "," << y;
  DeleteDC(dc);
  DeleteObject(bitmap);
  EXPECT_EQ(CreateBitmap(0, 5, 1, 1, nullptr), nullptr);
  EXPECT_EQ(CreateBitmap(5, 5, 1, 8, nullptr), nullptr);
  EXPECT_EQ(CreateBitmap(1 << 20, 1 << 20, 1, 32, nullptr), nullptr);
}

TEST(Objects, DescriptionsNeedRoom) {
  LOGFONT font = {};
  font.lfHeight = -11;
  std::memset(font.lfFaceName, 'x', sizeof font.lfFaceName);  // no closing 0
  const HFONT handle = CreateFontIndirect(&font);
  LOGFONT back = {};
  EXPECT_EQ(GetObject(handle, 10, &back), 0);
  EXPECT_EQ(GetObject(handle, 0, nullptr), static_cast<int>(sizeof back));
  EXPECT_EQ(GetObject(handle, sizeof back, &back), static_cast<int>(sizeof back));
  EXPECT_EQ(back.lfHeight, -11);
  EXPECT_EQ(std::strlen(back.lfFaceName), LF_FACESIZE - 1U);
  DeleteObject(handle);
}

}  // namespace
