// What stands on the screen, pixel by pixel. The pages are drawn by formulas, so every expected pixel is
// computed.

#include "platform/graphics/surface.h"
#include "tests/imagewindow/window_fixture.h"

namespace {

constexpr unsigned kEmptyGray = 0x808080;

unsigned Gray(int level) {
  return static_cast<unsigned>(level) * 0x010101U;
}

int Diagonals(int x, int y) {
  return (x * 7 + y * 3) % 5 < 2 ? 0 : 255;
}

int Ramp(int x, int y) {
  return (x * 5 + y * 11) & 255;
}

class Painting : public ImageWindowTest {
 protected:
  /// Compares a grid of the client area, odd steps so that every phase is met; tells the first difference.
  template <typename Expected>
  void ExpectPixels(int width, int height, const Expected& expected, const char* what) {
    for (int y = 0; y < height; y += 7)
      for (int x = 0; x < width; x += 5)
        ASSERT_EQ(Pixel(x, y), expected(x, y)) << what << ": pixel " << x << ", " << y;
  }
  void ShowAt(const Page& page, double factor, CPoint position = CPoint(0, 0)) {
    Show({page});
    ASSERT_TRUE(window->ZoomToScaleFactor(factor));
    SetClient(100, 80);
    window->SetScrollPos(position, 1);
    Settle();
    ASSERT_EQ(window->m_ptScroll, position);
  }
  /// Share of light among the n by n page pixels that a reduced pixel stands for.
  static int Share(int x, int y, int n, int firstRow) {
    int light = 0;
    for (int dy = 0; dy < n; ++dy)
      for (int dx = 0; dx < n; ++dx) light += Diagonals(x * n + dx, firstRow + y * n + dy) != 0 ? 1 : 0;
    return light * 255 / (n * n);
  }
};

TEST_F(Painting, AnEmptyWindowIsGray) {
  Settle();
  ExpectPixels(
      400, 300, [](int, int) { return kEmptyGray; }, "empty");
  ASSERT_TRUE(window->OpenImageFile(WriteFile({{500, 500}}).c_str()));
  window->Invalidate();
  Settle();
  EXPECT_EQ(Pixel(399, 299), kEmptyGray) << "opened, nothing loaded";
  EXPECT_EQ(ScreenPixel(399, 299), kEmptyGray);
  EXPECT_TRUE(Reports().empty());
}

TEST_F(Painting, AnybodyMayAskForABackgroundWithoutAContext) {
  Show({{500, 500}});
  HDC gone = CreateCompatibleDC(nullptr);
  DeleteDC(gone);
  for (const HDC dc : {HDC{}, gone})
    for (const HWND asked : {window->m_hWnd, frame->m_hWnd})
      EXPECT_EQ(SendMessage(asked, WM_ERASEBKGND, reinterpret_cast<WPARAM>(dc), 0), 0);
}

TEST_F(Painting, FullSizeIsExactAtAnyPosition) {
  for (CPoint at : {CPoint(0, 0), CPoint(13, 29), CPoint(300, 220)}) {
    ShowAt({400, 300, 1, 0, 0, Diagonals}, 1, at);
    ExpectPixels(
        100, 80, [&](int x, int y) { return Gray(Diagonals(at.x + x, at.y + y)); }, "bilevel");
    ShowAt({400, 300, 8, 0, 0, Ramp}, 1, at);
    ExpectPixels(
        100, 80, [&](int x, int y) { return Gray(Ramp(at.x + x, at.y + y)); }, "grey");
    ShowAt({400, 300, 24, 0, 0, Ramp}, 1, at);
    ExpectPixels(
        100, 80,
        [&](int x, int y) {
          const int level = Ramp(at.x + x, at.y + y);
          return static_cast<unsigned>(level << 16 | level / 2 << 8);
        },
        "colour");
    for (int x = 0; x < 20; ++x) EXPECT_EQ(ScreenPixel(x, 40), Pixel(x, 40)) << "on the screen";
  }
}

TEST_F(Painting, EnlargedPixelsAreWholeSquares) {
  for (CPoint at : {CPoint(0, 0), CPoint(10, 7)}) {
    ShowAt({100, 90, 1, 0, 0, Diagonals}, 3, at);
    ExpectPixels(
        100, 80, [&](int x, int y) { return Gray(Diagonals((at.x + x) / 3, (at.y + y) / 3)); }, "3 : 1");
  }
}

TEST_F(Painting, ReducedBilevelPagesShowTheShareOfLight) {
  // The blocks are counted from the lowest row of the page; what doesn't fill a block there is none.
  for (int n : {2, 3, 4, 8}) {
    ShowAt({240 * n, 120 * n, 1, 0, 0, Diagonals}, 1.0 / n, CPoint(9, 3));
    ExpectPixels(
        100, 80, [&](int x, int y) { return Gray(Share(x + 9, y + 3, n, 0)); },
        ("1 : " + std::to_string(n)).c_str());
  }
}

TEST_F(Painting, AScaleBesideTheDivisorStretchesTheCopy) {
  // Black and white halves: inside them the share doesn't depend on where a pixel falls.
  ShowAt({400, 400, 1, 0, 0, [](int x, int) { return x < 200 ? 0 : 255; }}, 0.37);
  ASSERT_TRUE(window->HasCopy());
  ASSERT_EQ(window->m_szScaled, CSize(148, 148));
  EXPECT_EQ(Pixel(0, 0), 0U);
  EXPECT_EQ(Pixel(71, 70), 0U);
  EXPECT_EQ(Pixel(76, 70), 0xffffffU);
  EXPECT_EQ(Pixel(99, 79), 0xffffffU);
}

TEST_F(Painting, ReducedGreyPagesAreAveragedByTheService) {
  ShowAt({400, 400, 8, 0, 0, [](int x, int y) { return (x + y) % 2 == 0 ? 40 : 80; }}, 0.5);
  EXPECT_FALSE(window->HasCopy());
  ExpectPixels(
      100, 80, [](int, int) { return Gray(60); }, "checkers");
}

TEST_F(Painting, AspectCorrectedRowsAreDoubled) {
  ShowAt({200, 100, 1, 204, 98, Diagonals}, 1, CPoint(20, 31));
  ExpectPixels(
      100, 80, [](int x, int y) { return Gray(Diagonals(x + 20, (y + 31) / 2)); }, "204 x 98");
}

TEST_F(Painting, OutsideThePageTheBackgroundStays) {
  Show({{50, 40, 1, 0, 0, [](int, int) { return 0; }}});
  EXPECT_EQ(Pixel(49, 39), 0U);
  const unsigned background = Pixel(50, 39);
  EXPECT_NE(background, 0U);
  EXPECT_EQ(Pixel(49, 40), background);
  EXPECT_EQ(Pixel(390, 290), background);
  window->ZoomToScaleFactor(2);
  Settle();
  EXPECT_EQ(Pixel(99, 79), 0U);
  window->ZoomToScaleFactor(0.5);
  Settle();
  EXPECT_EQ(Pixel(24, 19), 0U);
  EXPECT_EQ(Pixel(99, 79), background) << "what the larger page covered is erased";
  Show({{3, 400, 1, 0, 0, [](int, int) { return 0; }}});
  window->ZoomToScaleFactor(1);
  Settle();
  EXPECT_EQ(Pixel(0, 80), 0U);
  while (window->ZoomOutPossible()) window->ZoomOut();
  Settle();
  for (const int x : {0, 1, 2}) EXPECT_EQ(Pixel(x, 80), background) << "a page without a whole pixel";
}

TEST_F(Painting, APartialRepaintEqualsTheWhole) {
  ShowAt({2000, 1500, 1, 0, 0, Diagonals}, 0.37, CPoint(200, 100));
  std::vector<unsigned> whole;
  for (int y = 0; y < 80; ++y)
    for (int x = 0; x < 100; ++x) whole.push_back(Pixel(x, y));
  for (int y = 0; y < 80; y += 9)
    for (int x = 0; x < 100; x += 13) {
      const CRect tile(x, y, x + 13, y + 9);
      window->InvalidateRect(tile, TRUE);
      window->UpdateWindow();
    }
  std::size_t i = 0;
  for (int y = 0; y < 80; ++y)
    for (int x = 0; x < 100; ++x) ASSERT_EQ(Pixel(x, y), whole[i++]) << x << ", " << y;
}

// Short steps one way come to the end of the room in which the surface moves; what others have drawn goes.
TEST_F(Painting, AScrolledPageEqualsAFreshPaint) {
  const auto pixels = [&] {
    const CClientDC dc(window.get());
    platform::SurfaceView view;
    EXPECT_TRUE(platform::LockSurface(dc.m_hDC, view));
    return std::vector<std::uint32_t>(view.pixels, view.pixels + view.stride * view.height);
  };
  for (const double factor : {1.0, 0.37, 2.5}) {
    ShowAt({2000, 1500, 1, 0, 0, Diagonals}, factor);
    const CSize steps[] = {{0, 3}, {0, 3}, {0, 9}, {5, 0}, {-2, 4}, {0, -7}, {60, 50}, {-61, -40}, {300, 0}};
    for (int i = 0; i < 120; ++i) {
      window->MoveScrollPos(i < 90 ? steps[i % 10 < 7 ? i % 3 : i % 9] : CSize(i % 4 - 3, -11));
      if (i % 11 == 5) CClientDC(window.get()).PatBlt(20, i % 60, 9, 4, BLACKNESS);
      if (i % 13 == 7) window->InvalidateRect(CRect(10, 10, 40, 50), TRUE);
      window->UpdateWindow();
      const std::vector<std::uint32_t> scrolled = pixels();
      CClientDC(window.get()).PatBlt(0, 0, 100, 80, WHITENESS);
      window->Invalidate(FALSE);
      window->UpdateWindow();
      ASSERT_EQ(scrolled, pixels()) << "step " << i << " at scale " << factor;
    }
  }
}

TEST_F(Painting, AFailedPaintIsGreyAndReportedEachTime) {
  ShowAt({400, 300, 1, 0, 0, Diagonals}, 1);
  const struct_LEAD_Bitmap kept = window->m_Bitmap;
  window->m_Bitmap.pStorage = nullptr;  // a record that says it has pixels and has none
  for (int times = 1; times <= 2; ++times) {
    window->Invalidate();
    window->UpdateWindow();
    EXPECT_EQ(static_cast<int>(Reports().size()), times);
    EXPECT_EQ(Pixel(50, 40), kEmptyGray);
  }
  window->m_Bitmap = kept;
  window->Invalidate();
  window->UpdateWindow();
  EXPECT_EQ(Pixel(0, 0), Gray(Diagonals(0, 0)));
}

}  // namespace
