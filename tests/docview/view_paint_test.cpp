// What the document's view puts on the screen.

#include "tests/docview/view_fixture.h"
#include "viewing/crossed_box.h"

namespace {

constexpr unsigned kEmptyGray = 0x808080;

unsigned Gray(int level) {
  return static_cast<unsigned>(level) * 0x010101U;
}

int Diagonals(int x, int y) {
  return (x * 7 + y * 3) % 5 < 2 ? 0 : 255;
}

class ViewPaint : public ViewTest {
 protected:
  /// Share of light among the n by n page pixels that a reduced pixel stands for.
  static int Share(int x, int y, int n) {
    int light = 0;
    for (int dy = 0; dy < n; ++dy)
      for (int dx = 0; dx < n; ++dx) light += Diagonals(x * n + dx, y * n + dy) != 0 ? 1 : 0;
    return light * 255 / (n * n);
  }
  void ExpectPixels(const std::function<unsigned(int, int)>& expected, const char* what) {
    const CClientDC dc(view);
    for (int y = 0; y < 200; y += 7)
      for (int x = 0; x < 300; x += 5)
        ASSERT_EQ(Pixel(x, y), expected(x, y)) << what << ": pixel " << x << ", " << y;
  }
  void ExpectCrossedBox() {
    const CSize client = view->m_szClient;
    const unsigned ground = Gray(crossed_box::kColour & 0xff);
    EXPECT_EQ(Pixel(0, 0), 0U);
    EXPECT_EQ(Pixel(client.cx - 1, 0), 0U);
    EXPECT_EQ(Pixel(0, client.cy - 1), ground) << "the second line ends a row earlier, at a pixel not drawn";
    EXPECT_EQ(Pixel(client.cx / 2, 3), ground);
    EXPECT_EQ(Pixel(3, client.cy / 2), ground);
    EXPECT_EQ(Pixel(client.cx - 4, client.cy / 2), ground);
    // The text: much ink near the middle, where the two lines alone leave a few pixels in each row.
    int ink = 0;
    for (int x = client.cx / 4; x < client.cx * 3 / 4; ++x)
      for (int y = client.cy / 2 - 8; y < client.cy / 2 + 8; ++y) ink += Pixel(x, y) != ground ? 1 : 0;
    EXPECT_GT(ink, 200);
  }
};

TEST_F(ViewPaint, WithoutPagesItIsGrey) {
  Settle();
  ExpectPixels([](int, int) { return kEmptyGray; }, "new");
  Show({{2000, 1600}});
  EXPECT_EQ(document->OnOpenDocument("/nowhere/at/all.tif"), 0);
  Settle();
  EXPECT_EQ(view->m_pBitmap, nullptr);
  ExpectPixels([](int, int) { return kEmptyGray; }, "failed open");
  EXPECT_EQ(BarRange(SB_VERT), 0);
  EXPECT_EQ(BarRange(SB_HORZ), 0);
  EXPECT_EQ(Boxes().size(), 1U);
}

TEST_F(ViewPaint, APageThatFailedIsACrossedBox) {
  TestDoc::failing = {1};
  Show({{2000, 1600}, {100, 100}});
  document->SetActivePage(1);
  Settle();
  ExpectCrossedBox();
  EXPECT_EQ(BarRange(SB_VERT), 0);
  SetClient(640, 420);
  platform::testing::PumpUntilIdle();
  ExpectCrossedBox();
  SetClient(120, 90);
  platform::testing::PumpUntilIdle();
  EXPECT_EQ(Pixel(119, 0), 0U);
  view->SetFitMode(FitModeWidth);
  SetClient(500, 300);
  platform::testing::PumpUntilIdle();
  ExpectCrossedBox();
  document->SetActivePage(0);
  EXPECT_NE(view->m_pBitmap, nullptr);
}

TEST_F(ViewPaint, PagesPixelByPixel) {
  Show({{1200, 900, 1, 0, 0, Diagonals}, {1200, 900, 24, 0, 0, Diagonals}});
  const auto expected = [this](int x, int y) {
    const int divisor = view->m_nZoomDivisor;
    const int px = x + static_cast<int>(view->m_ptScroll.x);
    const int py = y + static_cast<int>(view->m_ptScroll.y);
    return Gray(divisor > 1 ? Share(px, py, divisor) : Diagonals(px / -divisor, py / -divisor));
  };
  for (const double factor : {2.0, 0.5, 3.0, 0.25}) {
    view->ZoomToScaleFactor(factor);
    view->SetScrollPos(CPoint(13, 21), TRUE);
    Settle();
    EXPECT_TRUE(view->HasCopy() || factor >= 1.0);
    ExpectPixels(expected, "bilevel");
  }
  document->SetActivePage(1);
  view->ZoomToScaleFactor(0.5);
  Settle();
  EXPECT_FALSE(view->HasCopy()) << "a colour page has no copy";
  EXPECT_NE(Pixel(0, 0), kEmptyGray);
}

TEST_F(ViewPaint, AFailedPaintIsACrossedBoxAndReported) {
  Show({{600, 500, 1, 0, 0, Diagonals}});
  void* const pixels = std::exchange(view->m_pBitmap->pStorage, nullptr);  // says it has pixels, has none
  view->Invalidate();
  view->UpdateWindow();
  EXPECT_EQ(Boxes().size(), 1U);
  ExpectCrossedBox();
  view->ZoomToScaleFactor(0.5);
  EXPECT_FALSE(view->HasCopy());
  EXPECT_EQ(Boxes().size(), 2U);
  view->m_pBitmap->pStorage = static_cast<decltype(view->m_pBitmap->pStorage)>(pixels);
  // Without its copy the page is painted all the same.
  view->Invalidate();
  view->UpdateWindow();
  EXPECT_EQ(Boxes().size(), 2U);
  EXPECT_NE(Pixel(200, 3), Gray(crossed_box::kColour & 0xff));
}

TEST_F(ViewPaint, APaintWhileADocumentOpensShowsNoPage) {
  Show({{600, 500, 1, 0, 0, [](int, int) { return 0; }}});
  ASSERT_EQ(Pixel(10, 10), 0U);
  int paints = 0;
  TestDoc::onLoad = [&] {
    view->Invalidate();
    view->UpdateWindow();
    EXPECT_NE(Pixel(200, 5), 0U) << "the page that has gone";
    ++paints;
  };
  Show({{600, 500}, {600, 500}});
  EXPECT_EQ(paints, 2);
  EXPECT_EQ(Pixel(10, 10), 0xffffffU);
}

TEST_F(ViewPaint, AnyDeviceContextWillDo) {
  Show({{600, 500, 1, 0, 0, Diagonals}});
  view->SetScrollPos(CPoint(5, 6), FALSE);
  CClientDC screen(view);
  CDC memory;
  ASSERT_TRUE(memory.CreateCompatibleDC(&screen));
  CBitmap bitmap;
  ASSERT_TRUE(bitmap.CreateCompatibleBitmap(&screen, 50, 40));
  CGdiObject* former = memory.SelectObject(&bitmap);
  view->OnDraw(&memory);
  for (int x = 0; x < 50; ++x) EXPECT_EQ(memory.GetPixel(x, 30), RGB(1, 1, 1) * Diagonals(x + 5, 36)) << x;
  memory.SelectObject(former);
}

TEST_F(ViewPaint, AHostTakesPaintingOver) {
  view->takesPainting = true;
  view->Invalidate();
  view->UpdateWindow();
  EXPECT_EQ(view->CountOf("display"), 1);
  EXPECT_NE(Pixel(10, 10), kEmptyGray) << "neither page nor grey nor box";
}

}  // namespace
