#include "tests/graphics/canvas.h"

namespace {

// The definition: bit (4 P + 2 S + D) of the table, for each bit of the colours.
std::uint32_t Ternary(unsigned table, std::uint32_t p, std::uint32_t s, std::uint32_t d) {
  std::uint32_t result = 0;
  for (int bit = 0; bit < 24; ++bit) {
    const unsigned place = (p >> bit & 1) * 4 + (s >> bit & 1) * 2 + (d >> bit & 1);
    result |= (table >> place & 1U) << bit;
  }
  return result;
}

TEST(Blits, All256OperationsFollowTheirTruthTable) {
  constexpr std::uint32_t kSource[] = {0x00ff00, 0x123456, 0xffffff, 0x000000};
  constexpr std::uint32_t kTarget[] = {0xf0f0f0, 0x654321, 0x00ff7f, 0xffffff};
  constexpr std::uint32_t kBrush = 0x3c5a96;
  Canvas source(4, 1);
  Canvas target(4, 1);
  const Selected brush(target, CreateSolidBrush(RGB(0x3c, 0x5a, 0x96)));
  for (unsigned table = 0; table < 256; ++table) {
    for (int x = 0; x < 4; ++x) {
      source.At(x, 0) = 0xff000000U | kSource[x];
      target.At(x, 0) = 0xff000000U | kTarget[x];
    }
    ASSERT_TRUE(BitBlt(target, 0, 0, 4, 1, source, 0, 0, table << 16 | 0x1234));
    for (int x = 0; x < 4; ++x)
      ASSERT_EQ(target.At(x, 0) & 0xffffff, Ternary(table, kBrush, kSource[x], kTarget[x]))
          << "table " << table;
  }
}

TEST(Blits, PartsWithoutSourceStay) {
  Canvas source(2, 2, kRed);
  Canvas target(6, 6, kBlue);
  EXPECT_TRUE(BitBlt(target, 1, 1, 5, 5, source, -1, -1, SRCCOPY));
  EXPECT_TRUE(target.Is([](int x, int y) { return x >= 2 && x < 4 && y >= 2 && y < 4 ? kRed : kBlue; }));
}

TEST(Blits, OverlappingMovesWithinOneBitmap) {
  constexpr POINT kMoves[] = {{1, 0}, {-1, 0}, {0, 1}, {0, -1}, {2, 2}, {-2, -2}, {2, -2}, {-2, 2}};
  for (const bool splitClip : {false, true})
    for (const POINT& move : kMoves) {
      SCOPED_TRACE(testing::Message() << move.x << ", " << move.y << (splitClip ? ", two clip parts" : ""));
      Canvas canvas(8, 8);
      for (int y = 0; y < 8; ++y)
        for (int x = 0; x < 8; ++x) canvas.At(x, y) = Canvas::Pixel(RGB(x, y, 9));
      const CRect hole = splitClip ? CRect(3, 3, 5, 5) : CRect();
      ExcludeClipRect(canvas, hole.left, hole.top, hole.right, hole.bottom);
      EXPECT_TRUE(BitBlt(canvas, 2 + move.x, 2 + move.y, 4, 4, canvas, 2, 2, SRCCOPY));
      const CRect moved(2 + move.x, 2 + move.y, 6 + move.x, 6 + move.y);
      EXPECT_TRUE(canvas.Is([&](int x, int y) {
        const bool there = moved.PtInRect(CPoint(x, y)) && !hole.PtInRect(CPoint(x, y));
        return there ? RGB(x - move.x, y - move.y, 9) : RGB(x, y, 9);
      }));
    }
}

TEST(Blits, StretchAndMirror) {
  Canvas source(2, 2);
  source.At(0, 0) = Canvas::Pixel(kRed);
  source.At(1, 0) = Canvas::Pixel(kGreen);
  source.At(0, 1) = Canvas::Pixel(kBlue);
  source.At(1, 1) = Canvas::Pixel(kWhite);
  const auto at = [&](int x, int y) { return source.Color(x, y); };
  Canvas target(6, 6);
  EXPECT_TRUE(StretchBlt(target, 0, 0, 6, 6, source, 0, 0, 2, 2, SRCCOPY));
  EXPECT_TRUE(target.Is([&](int x, int y) { return at(x / 3, y / 3); }));
  EXPECT_TRUE(StretchBlt(target, 6, 0, -6, 6, source, 0, 0, 2, 2, SRCCOPY));
  EXPECT_TRUE(target.Is([&](int x, int y) { return at(1 - x / 3, y / 3); }));
  EXPECT_TRUE(StretchBlt(target, 0, 0, 6, 6, source, 0, 2, 2, -2, SRCCOPY));
  EXPECT_TRUE(target.Is([&](int x, int y) { return at(x / 3, 1 - y / 3); }));
}

// A bilevel device bitmap takes its colours from the device contexts; a bilevel section has a table of its
// own.
TEST(Blits, BilevelBitmapsAndColours) {
  Canvas canvas(3, 1);
  canvas.At(0, 0) = Canvas::Pixel(kGreen);
  canvas.At(1, 0) = Canvas::Pixel(kRed);
  canvas.At(2, 0) = Canvas::Pixel(kWhite);
  const HDC mask = CreateCompatibleDC(nullptr);
  const HBITMAP bitmap = CreateBitmap(3, 1, 1, 1, nullptr);
  SelectObject(mask, bitmap);
  SetBkColor(canvas, kRed);
  EXPECT_TRUE(BitBlt(mask, 0, 0, 3, 1, canvas, 0, 0, SRCCOPY));
  const COLORREF expected[] = {kBlack, kWhite, kBlack};  // only the background colour becomes white
  for (int x = 0; x < 3; ++x) EXPECT_EQ(GetPixel(mask, x, 0), expected[x]) << x;
  SetTextColor(canvas, kBlue);
  EXPECT_TRUE(BitBlt(canvas, 0, 0, 3, 1, mask, 0, 0, SRCCOPY));
  EXPECT_TRUE(canvas.Is([](int x, int) { return x == 1 ? kRed : kBlue; }));
  DeleteDC(mask);
  DeleteObject(bitmap);
}

// The embossed look of disabled buttons: 0xB8 paints the brush where the source is black.
TEST(Blits, BrushWhereTheSourceIsBlack) {
  Canvas colours(4, 1);
  const COLORREF from[] = {RGB(20, 40, 60), RGB(192, 192, 192), kWhite, kBlack};
  for (int x = 0; x < 4; ++x) colours.At(x, 0) = Canvas::Pixel(from[x]);
  struct {
    BITMAPINFOHEADER head;
    RGBQUAD colors[2];
  } info = {{sizeof(BITMAPINFOHEADER), 4, 1, 1, 1, 0, 0, 0, 0, 0, 0}, {{0, 0, 0, 0}, {255, 255, 255, 0}}};
  const HDC section = CreateCompatibleDC(colours);
  const HBITMAP bitmap =
      CreateDIBSection(colours, reinterpret_cast<BITMAPINFO*>(&info), DIB_RGB_COLORS, nullptr, nullptr, 0);
  SelectObject(section, bitmap);
  EXPECT_TRUE(BitBlt(section, 0, 0, 4, 1, colours, 0, 0, SRCCOPY));
  Canvas target(4, 1, kGreen);
  const Selected brush(target, CreateSolidBrush(kRed));
  EXPECT_TRUE(BitBlt(target, 0, 0, 4, 1, section, 0, 0, 0xB8074A));
  EXPECT_TRUE(target.Is([](int x, int) { return x == 0 || x == 3 ? kRed : kGreen; }));
  DeleteDC(section);
  DeleteObject(bitmap);
}

}  // namespace
