// Zoom and fit on a window with a page: factor, divisor, the reduced copy, the position.

#include <cmath>

#include "platform/base/bitmapinfo.h"
#include "platform/base/global_memory.h"
#include "tests/imagewindow/window_fixture.h"

namespace {

class Scale : public ImageWindowTest {
 protected:
  int CopyWidth() const { return window->HasCopy() ? window->m_SmartBitmap.Width : 0; }
};

TEST_F(Scale, StepsInAndOutSetFactorDivisorAndCopy) {
  Show({{1001, 800}});
  const struct {
    bool in;
    double factor;
    int divisor, copyWidth;  // -1: one may be left, but isn't shown
  } steps[] = {{false, 0.5, 2, 500}, {false, 0.25, 4, 250}, {false, 0.125, 8, 125}, {true, 0.25, 4, 250},
               {true, 0.5, 2, 500},  {true, 1, 1, -1},      {true, 2, -2, -1},      {true, 3, -3, -1},
               {false, 2, -2, -1},   {false, 1, -1, -1},    {false, 0.5, 2, 500}};
  for (const auto& step : steps) {
    step.in ? window->ZoomIn() : window->ZoomOut();
    EXPECT_EQ(window->GetScaleFactor(), step.factor);
    EXPECT_EQ(window->m_nZoomDivisor, step.divisor);
    if (step.copyWidth >= 0) {
      EXPECT_EQ(CopyWidth(), step.copyWidth) << step.factor;
    }
    EXPECT_EQ(window->m_szScaled.cx, static_cast<int>(1001 * step.factor));
  }
  EXPECT_TRUE(window->asked.empty()) << "steps set the factor themselves";
  EXPECT_TRUE(Reports().empty());
}

TEST_F(Scale, StepsEndAtTheLimits) {
  Show({{2000, 2000}});
  for (int i = 0; i < 20; ++i) window->ZoomIn();
  EXPECT_EQ(window->m_nZoomDivisor, -10);
  EXPECT_FALSE(window->ZoomInPossible());
  EXPECT_TRUE(window->ZoomOutPossible());
  for (int i = 0; i < 30; ++i) window->ZoomOut();
  EXPECT_EQ(window->m_nZoomDivisor, 64);
  EXPECT_EQ(window->GetScaleFactor(), 1.0 / 64);
  EXPECT_FALSE(window->ZoomOutPossible());
  EXPECT_TRUE(window->ZoomInPossible());
}

TEST_F(Scale, StepsScaleThePositionByTwo) {
  Show({{3000, 3000}});
  window->SetScrollPos(CPoint(101, 51), 1);
  window->ZoomIn();
  EXPECT_EQ(window->m_ptScroll, CPoint(202, 102));
  window->ZoomIn();  // to 3 : 1, but doubled all the same
  EXPECT_EQ(window->m_ptScroll, CPoint(404, 204));
  window->ZoomOut();
  window->ZoomOut();
  EXPECT_EQ(window->m_ptScroll, CPoint(101, 51));
  window->ZoomOut();
  EXPECT_EQ(window->m_ptScroll, CPoint(50, 25));
  window->ZoomToScaleFactor(1);
  window->SetScrollPos(CPoint(9999, 9999), 1);
  window->ZoomOut();
  EXPECT_EQ(window->m_ptScroll, CPoint(window->m_ptScrollMax.x, window->m_ptScrollMax.y)) << "limited";
}

TEST_F(Scale, WithoutAPageAZoomWaitsAndStepsDoNothing) {
  EXPECT_TRUE(window->ZoomToScaleFactor(0.5));
  EXPECT_EQ(window->GetScaleFactor(), 0.5);
  EXPECT_EQ(window->m_nZoomDivisor, 2);
  EXPECT_FALSE(window->ZoomInPossible() || window->ZoomOutPossible());
  window->ZoomIn();
  window->ZoomOut();
  window->FitToWidth();
  window->FitToHeight();
  window->BestFit();
  EXPECT_EQ(window->GetScaleFactor(), 0.5);
  Show({{1000, 800}});
  EXPECT_EQ(window->m_szScaled, CSize(500, 400));
  EXPECT_EQ(CopyWidth(), 500);
}

TEST_F(Scale, RefusedFactorsChangeNothing) {
  Show({{2000, 2000}});
  window->ZoomToScaleFactor(0.37);
  window->SetScrollPos(CPoint(20, 30), 1);
  Settle();
  for (double factor : {0.0099, 10.01, 0.0, -1.0, std::nan(""), HUGE_VAL, -HUGE_VAL}) {
    EXPECT_FALSE(window->ZoomToScaleFactor(factor)) << factor;
    EXPECT_EQ(window->GetScaleFactor(), 0.37);
    EXPECT_EQ(window->m_nZoomDivisor, 3);
    EXPECT_EQ(window->m_ptScroll, CPoint(20, 30));
    EXPECT_FALSE(IsInvalid());
  }
}

TEST_F(Scale, AFactorKeepsItsValueBesideANearDivisor) {
  Show({{2000, 1000}});
  const struct {
    double factor;
    int divisor, percent, copyWidth;
  } cases[] = {{0.37, 3, 37, 666}, {0.33, 3, 33, 666}, {0.4, 2, 40, 1000},   {0.125, 8, 12, 250},
               {0.75, 1, 75, -1},  {1.6, -2, 160, -1}, {1.0 / 3, 3, 33, 666}};
  for (const auto& c : cases) {
    ASSERT_TRUE(window->ZoomToScaleFactor(c.factor));
    EXPECT_EQ(window->GetScaleFactor(), c.factor);
    EXPECT_EQ(window->m_nZoomDivisor, c.divisor);
    EXPECT_EQ(window->GetScalePercent(), c.percent);
    EXPECT_EQ(window->m_szScaled.cx, static_cast<int>(2000 * c.factor));
    if (c.copyWidth > 0) {
      EXPECT_EQ(CopyWidth(), c.copyWidth);
    }
  }
}

TEST_F(Scale, AnUnchangedDivisorKeepsTheCopy) {
  Show({{2000, 1000}});
  window->ZoomToScaleFactor(0.37);
  const auto* pixels = window->m_SmartBitmap.pStorage;
  window->m_SmartBitmap.XResolution = 4711;
  window->ZoomToScaleFactor(0.33);
  EXPECT_EQ(window->m_SmartBitmap.pStorage, pixels);
  EXPECT_EQ(window->m_SmartBitmap.XResolution, 4711);
  window->ZoomToScaleFactor(0.25);
  EXPECT_NE(window->m_SmartBitmap.XResolution, 4711);
}

TEST_F(Scale, NoCopyForOtherDepthsAndForPagesSmallerThanTheDivisor) {
  Show({{400, 400, 8}});
  window->ZoomToScaleFactor(0.25);
  EXPECT_FALSE(window->HasCopy());
  Show({{400, 400, 24}});
  EXPECT_FALSE(window->HasCopy());
  Show({{10, 1000}});
  window->m_nZoomDivisor = 16;
  window->DoSmartResizing();
  EXPECT_FALSE(window->HasCopy());
  EXPECT_TRUE(Reports().empty());
}

TEST_F(Scale, SmallPagesKeepFivePixels) {
  Show({{100, 3000}, {3000, 100}});
  for (int page : {1, 2}) {
    ASSERT_TRUE(window->LoadPage(page));
    EXPECT_TRUE(window->ZoomToScaleFactor(0.01));
    EXPECT_DOUBLE_EQ(window->GetScaleFactor(), 0.05);
    EXPECT_EQ(window->m_nZoomDivisor, 20);
  }
}

TEST_F(Scale, AStoredFactorMeetsDivisorOne) {
  window->m_dScaleFactor = 0.5;  // as after a start with 50 percent
  Show({{1000, 1000}});
  window->ZoomOut();
  EXPECT_EQ(window->GetScaleFactor(), 0.5);
  EXPECT_EQ(window->m_nZoomDivisor, 2);
  window->m_nZoomDivisor = 1;
  window->ZoomIn();
  EXPECT_EQ(window->GetScaleFactor(), 2.0);
}

TEST_F(Scale, MultiplyingStopsAtTheHighestScale) {
  Show({{1000, 1000}});
  const struct {
    double scale, multiplier, used, factor;
  } cases[] = {{1, 2, 2, 2},
               {1, 10, 10, 10},
               {4, 3, 2.5, 10},
               {1, 1e308, 10, 10},
               {0.5, 0.001, 0.001, 0.5},
               {2, std::nan(""), 1, 2},
               {2, HUGE_VAL, 1, 2},
               {2, -1, -1, 2}};
  for (const auto& c : cases) {
    window->ZoomToScaleFactor(c.scale);
    EXPECT_EQ(window->MultiplyScaleFactor(c.multiplier), c.used);
    EXPECT_EQ(window->GetScaleFactor(), c.factor) << c.scale << " times " << c.multiplier;
  }
}

TEST_F(Scale, FitsCountTheBarsOfTheTheme) {
  const int bar = GetSystemMetrics(SM_CXVSCROLL);
  const int flat = GetSystemMetrics(SM_CYHSCROLL);
  Show({{1700, 2200}});
  SetClient(400, 300);  // both bars are up
  window->FitToWidth();
  EXPECT_DOUBLE_EQ(window->GetScaleFactor(), 399.0 / 1700) << "the vertical bar was up and stays";
  EXPECT_EQ(window->m_szClient, CSize(400, 300 + flat)) << "the horizontal bar has gone";
  const double first = window->GetScaleFactor();
  window->FitToWidth();
  EXPECT_DOUBLE_EQ(window->GetScaleFactor(), first) << "a second fit finds the same";
  window->FitToHeight();
  EXPECT_DOUBLE_EQ(window->GetScaleFactor(), (300.0 + flat - 1) / 2200);
  EXPECT_EQ(window->m_szClient, CSize(400 + bar, 300 + flat)) << "no bar is needed";
  window->FitToWidth();
  EXPECT_DOUBLE_EQ(window->GetScaleFactor(), first) << "the bar that comes is allowed for";
  EXPECT_EQ(window->m_szClient, CSize(400, 300 + flat));
}

TEST_F(Scale, BestFitShowsTheWholePageWithoutBars) {
  Show({{1700, 2200}, {2200, 700}});
  for (int page : {1, 2}) {
    ASSERT_TRUE(window->LoadPage(page));
    window->BestFit();
    EXPECT_LT(window->m_szScaled.cx, window->m_szClient.cx);
    EXPECT_LT(window->m_szScaled.cy, window->m_szClient.cy);
    const bool oneLess = window->m_szClient.cx - window->m_szScaled.cx <= 2 ||
                         window->m_szClient.cy - window->m_szScaled.cy <= 2;
    EXPECT_TRUE(oneLess) << "and as large as possible";
  }
}

TEST_F(Scale, AFitModeFitsOnceWhenItChanges) {
  Show({{1700, 2200}});
  window->SetFitMode(FitModeWidth);
  EXPECT_EQ(window->asked.size(), 1U);
  const double fitted = window->GetScaleFactor();
  window->ZoomToScaleFactor(1);
  window->SetFitMode(FitModeWidth);
  EXPECT_EQ(window->GetScaleFactor(), 1.0);
  window->MoveWindow(0, 0, 600, 500);
  EXPECT_EQ(window->GetScaleFactor(), 1.0) << "a new size fits nothing";
  window->SetFitMode(77);
  EXPECT_EQ(window->GetFitMode(), 77);
  EXPECT_EQ(window->GetScaleFactor(), 1.0);
  window->SetFitMode(FitModeHeight);
  EXPECT_LT(window->GetScaleFactor(), fitted);
  window->FitToWidth();
  EXPECT_EQ(window->GetFitMode(), FitModeHeight) << "a fit by itself leaves the mode";
}

TEST_F(Scale, ReducedBlocksCarryHeaderAndPalette) {
  Show({{1001, 30, 1, 0, 0, [](int x, int y) { return x % 4 == 0 && y % 4 == 0 ? 0 : 255; }}});
  window->m_nZoomDivisor = 4;
  void* source = LEADTOOLS::ConvertToDIB(&window->m_Bitmap);
  void* reduced = window->SmartResize(source);
  ASSERT_NE(reduced, nullptr);
  EXPECT_EQ(GlobalUnlock(source), FALSE) << "left unlocked";
  const auto* bytes = static_cast<const std::uint8_t*>(GlobalLock(reduced));
  const auto* head = reinterpret_cast<const BITMAPINFOHEADER*>(bytes);
  EXPECT_EQ(head->biWidth, 250);
  EXPECT_EQ(head->biHeight, 7);
  EXPECT_EQ(head->biSizeImage, GlobalSize(reduced));
  EXPECT_EQ(bytes[40 + 4 * 100], 100);
  // Rows stand bottom-up and blocks are counted from the block's first row: the lowest of the page.
  EXPECT_EQ(bytes[1064], 15 * 255 / 16);
  EXPECT_EQ(bytes[1064 + 250], 0) << "padding";
  GlobalFree(reduced);
  GlobalFree(source);
  EXPECT_EQ(window->SmartResize(nullptr), nullptr);
  const int widths[][2] = {{0, 0}, {1, 4}, {32, 4}, {33, 8}, {8000, 1000}};
  for (const auto& [bits, wide] : widths) EXPECT_EQ(TestWindow::GetWidthBytes(bits), wide);
}

}  // namespace
