#include <QtWidgets/QApplication>

#include "platform/graphics/detail/device_context.h"
#include "tests/graphics/canvas.h"

namespace {

class Text : public testing::Test {
 protected:
  static void SetUpTestSuite() {
    static int count = 1;
    static char name[] = "text";
    static char* arguments[] = {name, nullptr};
    if (qApp == nullptr) new QApplication(count, arguments);
  }
  static void TearDownTestSuite() { delete qApp; }
};

TEST(TextWithoutApplication, FailsSoftly) {
  if (qApp != nullptr) GTEST_SKIP();
  Canvas canvas(9, 9);
  SIZE size;
  RECT rect = {0, 0, 9, 9};
  EXPECT_FALSE(TextOut(canvas, 0, 0, "x", 1));
  EXPECT_EQ(DrawText(canvas, "x", 1, &rect, 0), 0);
  EXPECT_FALSE(GetTextExtentPoint32(canvas, "x", 1, &size));
}

CRect Ink(Canvas& canvas, int width, int height, COLORREF paper) {
  CRect box;
  for (int y = 0; y < height; ++y)
    for (int x = 0; x < width; ++x)
      if (canvas.Color(x, y) != paper) box |= CRect(x, y, x + 1, y + 1);
  return box;
}

TEST_F(Text, OpaqueTextCoversExactlyItsExtent) {
  Canvas canvas(200, 60, kWhite);
  SIZE size;
  ASSERT_TRUE(GetTextExtentPoint32(canvas, "Pagina \xc3\xa8", -1, &size));
  SetBkColor(canvas, kGreen);
  EXPECT_TRUE(TextOut(canvas, 10, 5, "Pagina \xc3\xa8", -1));
  EXPECT_TRUE(Ink(canvas, 200, 60, kWhite) == CRect(CPoint(10, 5), CSize(size)));
  // Some of it must be letters.
  int dark = 0;
  for (int y = 5; y < 5 + size.cy; ++y)
    for (int x = 10; x < 10 + size.cx; ++x) dark += GetGValue(canvas.Color(x, y)) < 100 ? 1 : 0;
  EXPECT_GT(dark, 20);
}

TEST_F(Text, TransparentTextLeavesThePaper) {
  Canvas canvas(100, 40, kWhite);
  SetBkMode(canvas, TRANSPARENT);
  SetTextColor(canvas, kRed);
  EXPECT_TRUE(TextOut(canvas, 5, 5, "l", 1));
  SIZE size;
  GetTextExtentPoint32(canvas, "l", 1, &size);
  const CRect ink = Ink(canvas, 100, 40, kWhite);
  EXPECT_FALSE(ink.IsRectEmpty());
  EXPECT_LT(ink.Height(), size.cy);
}

TEST_F(Text, FontHeights) {
  Canvas canvas(1, 1);
  for (const LONG height : {-20, 20}) {
    LOGFONT log = {};
    log.lfHeight = height;
    const Selected font(canvas, CreateFontIndirect(&log));
    TEXTMETRIC metrics;
    ASSERT_TRUE(GetTextMetrics(canvas, &metrics));
    if (height > 0)
      EXPECT_LE(metrics.tmHeight, 20);
    else
      EXPECT_EQ(metrics.tmHeight - metrics.tmInternalLeading, 20);
    EXPECT_GE(metrics.tmHeight, 17);
  }
}

TEST_F(Text, DrawTextPlacesAndMeasures) {
  struct Row {
    const char* name;
    UINT format;
    bool touchesLeft, touchesTop, touchesRight, touchesBottom;
  };
  const Row rows[] = {{"left top", DT_SINGLELINE, true, true, false, false},
                      {"centre", DT_SINGLELINE | DT_CENTER | DT_VCENTER, false, false, false, false},
                      {"right bottom", DT_SINGLELINE | DT_RIGHT | DT_BOTTOM, false, false, true, true},
                      {"many lines aren't centred downwards", DT_VCENTER, true, true, false, false}};
  for (const Row& row : rows) {
    SCOPED_TRACE(row.name);
    Canvas canvas(200, 100, kWhite);
    SetBkColor(canvas, kGreen);
    CRect box(0, 0, 200, 100);
    EXPECT_GT(DrawText(canvas, "HH", -1, box, row.format), 0);
    const CRect ink = Ink(canvas, 200, 100, kWhite);
    ASSERT_FALSE(ink.IsRectEmpty());
    EXPECT_EQ(ink.left < 20, row.touchesLeft);
    EXPECT_EQ(ink.top < 20, row.touchesTop);
    EXPECT_EQ(ink.right > 180, row.touchesRight);
    EXPECT_EQ(ink.bottom > 80, row.touchesBottom);
  }
}

TEST_F(Text, CalcRectWrapsAndDrawsNothing) {
  Canvas canvas(300, 100, kWhite);
  CRect wide(10, 10, 300, 11);
  const int line = DrawText(canvas, "some words to wrap", -1, wide, DT_CALCRECT | DT_WORDBREAK);
  EXPECT_EQ(wide.Height(), line);
  EXPECT_EQ(wide.left, 10);
  CRect narrow(10, 10, 10 + wide.Width() / 2 + 5, 11);
  EXPECT_GE(DrawText(canvas, "some words to wrap", -1, narrow, DT_CALCRECT | DT_WORDBREAK), 2 * line);
  EXPECT_LT(narrow.Width(), wide.Width());
  CRect prefixed(0, 0, 300, 100);
  CRect plain(0, 0, 300, 100);
  DrawText(canvas, "&File", -1, prefixed, DT_CALCRECT | DT_SINGLELINE);
  DrawText(canvas, "&File", -1, plain, DT_CALCRECT | DT_SINGLELINE | DT_NOPREFIX);
  EXPECT_LT(prefixed.Width(), plain.Width());
  EXPECT_TRUE(canvas.Is([](int, int) { return kWhite; }));
}

TEST_F(Text, BottomUpAndBilevelTargets) {
  for (const int bits : {1, 24}) {
    struct {
      BITMAPINFOHEADER head;
      RGBQUAD colors[2];
    } info = {{sizeof(BITMAPINFOHEADER), 60, 30, 1, static_cast<WORD>(bits), 0, 0, 0, 0, 0, 0},
              {{0, 0, 0, 0}, {255, 255, 255, 0}}};
    const HBITMAP bitmap =
        CreateDIBSection(nullptr, reinterpret_cast<BITMAPINFO*>(&info), DIB_RGB_COLORS, nullptr, nullptr, 0);
    const HDC dc = CreateCompatibleDC(nullptr);
    SelectObject(dc, bitmap);
    PatBlt(dc, 0, 0, 60, 30, WHITENESS);
    const int whole = SaveDC(dc);
    IntersectClipRect(dc, 0, 0, 60, 12);
    EXPECT_TRUE(TextOut(dc, 2, 2, "HHHH", 4));
    RestoreDC(dc, whole);
    int above = 0;
    int below = 0;
    for (int y = 0; y < 30; ++y)
      for (int x = 0; x < 60; ++x)
        if (GetPixel(dc, x, y) != kWhite) ++(y < 12 ? above : below);
    EXPECT_GT(above, 10) << bits;
    EXPECT_EQ(below, 0) << bits;
    DeleteDC(dc);
    DeleteObject(bitmap);
  }
}

}  // namespace
