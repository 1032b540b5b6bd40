#include <cstring>

#include "tests/graphics/canvas.h"

namespace {

struct Info {
  BITMAPINFOHEADER head = {};
  RGBQUAD colors[256] = {};
  const BITMAPINFO* Get() const { return reinterpret_cast<const BITMAPINFO*>(this); }
};

Info MakeInfo(int width, int height, int bits) {
  Info info;
  info.head = {sizeof info.head, width, height, 1, static_cast<WORD>(bits), BI_RGB, 0, 0, 0, 0, 0};
  // Any table with exact black, white, red, green and blue in its first entries serves; the rest is grey.
  constexpr RGBQUAD kFirst[] = {
      {0, 0, 0, 0}, {255, 255, 255, 0}, {0, 0, 255, 0}, {0, 255, 0, 0}, {255, 0, 0, 0}};
  for (int i = 0; i < 256; ++i)
    info.colors[i] =
        i < 5 ? kFirst[i] : RGBQUAD{static_cast<BYTE>(i), static_cast<BYTE>(i), static_cast<BYTE>(i), 0};
  return info;
}

class DibDepths : public testing::TestWithParam<int> {};
INSTANTIATE_TEST_SUITE_P(All, DibDepths, testing::Values(1, 4, 8, 16, 24, 32));

// Draws into a section, then sends the section's bytes back as a block: both roads must give the same
// picture.
TEST_P(DibDepths, BitsAreVisibleAndReadBack) {
  for (const int height : {3, -3}) {
    SCOPED_TRACE(height);
    const Info info = MakeInfo(13, height, GetParam());
    void* bits = nullptr;
    const HBITMAP bitmap = CreateDIBSection(nullptr, info.Get(), DIB_RGB_COLORS, &bits, nullptr, 0);
    ASSERT_NE(bitmap, nullptr);
    BITMAP described = {};
    EXPECT_EQ(GetObject(bitmap, sizeof described, &described), static_cast<int>(sizeof described));
    EXPECT_EQ(described.bmBits, bits);
    EXPECT_EQ(described.bmHeight, 3);
    const int rowBytes = (13 * GetParam() + 31) / 32 * 4;
    EXPECT_EQ(described.bmWidthBytes, rowBytes);
    const HDC dc = CreateCompatibleDC(nullptr);
    SelectObject(dc, bitmap);
    const auto wanted = [](int x, int y) { return (x + 2 * y) % 3 == 0 ? kWhite : kBlack; };
    for (int y = 0; y < 3; ++y)
      for (int x = 0; x < 13; ++x) EXPECT_EQ(SetPixel(dc, x, y, wanted(x, y)), wanted(x, y));
    // The first row in memory is the lowest one of a bottom-up block. Its first pixel:
    const int firstRow = height > 0 ? 2 : 0;
    const bool light = wanted(0, firstRow) == kWhite;
    const unsigned byte = *static_cast<BYTE*>(bits);
    if (GetParam() == 1)
      EXPECT_EQ(byte >> 7, light ? 1U : 0U);
    else if (GetParam() == 4)
      EXPECT_EQ(byte >> 4, light ? 1U : 0U);
    else
      EXPECT_EQ(byte != 0, light);
    Canvas canvas(13, 3, kRed);
    EXPECT_EQ(StretchDIBits(canvas, 0, 0, 13, 3, 0, 0, 13, 3, bits, info.Get(), DIB_RGB_COLORS, SRCCOPY), 3);
    EXPECT_TRUE(canvas.Is(wanted));
    Canvas copied(13, 3, kRed);
    EXPECT_TRUE(BitBlt(copied, 0, 0, 13, 3, dc, 0, 0, SRCCOPY));
    EXPECT_TRUE(copied.Is(wanted));
    DeleteDC(dc);
    DeleteObject(bitmap);
  }
}

TEST_P(DibDepths, ColoursAreMatched) {
  const Info info = MakeInfo(1, 1, GetParam());
  const HBITMAP bitmap = CreateDIBSection(nullptr, info.Get(), DIB_RGB_COLORS, nullptr, nullptr, 0);
  const HDC dc = CreateCompatibleDC(nullptr);
  SelectObject(dc, bitmap);
  for (const COLORREF color : {kWhite, kBlack, kRed, kGreen, kBlue}) {
    const bool known = GetParam() > 1 || color == kWhite || color == kBlack;
    // Where there is only black and white, black lies nearer to each of the pure colours.
    EXPECT_EQ(SetPixel(dc, 0, 0, color), known ? color : kBlack);
  }
  DeleteDC(dc);
  DeleteObject(bitmap);
}

TEST(DibBits, PartsOfABottomUpBlockCountFromTheBottom) {
  const Info info = MakeInfo(1, 3, 32);
  const std::uint32_t rows[] = {0x01, 0x02, 0x03};  // the lowest first
  Canvas canvas(1, 2);
  EXPECT_EQ(StretchDIBits(canvas, 0, 0, 1, 2, 0, 1, 1, 2, rows, info.Get(), DIB_RGB_COLORS, SRCCOPY), 3);
  EXPECT_EQ(canvas.Color(0, 0), RGB(0, 0, 3));
  EXPECT_EQ(canvas.Color(0, 1), RGB(0, 0, 2));
}

TEST(DibBits, FieldMasks) {
  Info info = MakeInfo(1, -1, 16);
  info.head.biCompression = BI_BITFIELDS;
  const DWORD masks[] = {0xf800, 0x07e0, 0x001f};
  std::memcpy(info.colors, masks, sizeof masks);
  const WORD pixels[] = {0x07e0, 0};
  Canvas canvas(1, 1);
  EXPECT_EQ(StretchDIBits(canvas, 0, 0, 1, 1, 0, 0, 1, 1, pixels, info.Get(), DIB_RGB_COLORS, SRCCOPY), 1);
  EXPECT_EQ(canvas.Color(0, 0), kGreen);
}

TEST(DibBits, PaletteNumbersInPlaceOfColours) {
  struct {
    WORD version = 0x300, count = 2;
    PALETTEENTRY entries[2] = {{9, 8, 7, 0}, {1, 2, 3, 0}};
  } table;
  const HPALETTE palette = CreatePalette(reinterpret_cast<LOGPALETTE*>(&table));
  Info info = MakeInfo(2, -1, 8);
  info.head.biClrUsed = 2;
  const WORD numbers[] = {1, 0};
  std::memcpy(info.colors, numbers, sizeof numbers);
  const BYTE pixels[] = {0, 1, 0, 0};
  Canvas canvas(2, 1);
  const HPALETTE old = SelectPalette(canvas, palette, FALSE);
  EXPECT_EQ(StretchDIBits(canvas, 0, 0, 2, 1, 0, 0, 2, 1, pixels, info.Get(), DIB_PAL_COLORS, SRCCOPY), 1);
  EXPECT_EQ(canvas.Color(0, 0), RGB(1, 2, 3));
  EXPECT_EQ(canvas.Color(1, 0), RGB(9, 8, 7));
  EXPECT_FALSE(DeleteObject(palette));
  EXPECT_EQ(SelectPalette(canvas, old, FALSE), palette);
  EXPECT_TRUE(DeleteObject(palette));
}

TEST(DibBits, BrokenHeadsAreRefused) {
  const Info good = MakeInfo(4, 4, 8);
  std::vector<std::pair<const char*, Info>> rows(7, {"", good});
  rows[0] = {"depth", good}, rows[0].second.head.biBitCount = 7;
  rows[1] = {"no width", good}, rows[1].second.head.biWidth = 0;
  rows[2] = {"no height", good}, rows[2].second.head.biHeight = 0;
  rows[3] = {"lowest height", good}, rows[3].second.head.biHeight = INT32_MIN;
  rows[4] = {"compressed", good}, rows[4].second.head.biCompression = BI_RLE8;
  rows[5] = {"short head", good}, rows[5].second.head.biSize = 12;
  rows[6] = {"too large", good}, rows[6].second.head.biWidth = rows[6].second.head.biHeight = 1 << 20;
  const std::vector<BYTE> pixels(1024);
  Canvas canvas(4, 4, kRed);
  for (const auto& [name, info] : rows) {
    SCOPED_TRACE(name);
    void* bits = &canvas;
    EXPECT_EQ(CreateDIBSection(nullptr, info.Get(), DIB_RGB_COLORS, &bits, nullptr, 0), nullptr);
    EXPECT_EQ(bits, nullptr);
    if (info.head.biWidth == 1 << 20) continue;  // a block may be that large, memory isn't
    EXPECT_EQ(
        StretchDIBits(canvas, 0, 0, 4, 4, 0, 0, 4, 4, pixels.data(), info.Get(), DIB_RGB_COLORS, SRCCOPY), 0);
  }
  EXPECT_TRUE(canvas.Is([](int, int) { return kRed; }));
}

}  // namespace
