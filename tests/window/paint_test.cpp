// Paint cycles: what is invalid, what is erased, what reaches the screen.

#include <gtest/gtest.h>

#include <vector>

#include "platform/graphics/gdi.h"
#include "platform/window/pump.h"
#include "platform/window/window.h"
#include "tessarel12_testing.h"

namespace {

using namespace platform::testing;

constexpr std::uint32_t kWhite = 0xffffffff;
constexpr std::uint32_t kRed = 0xffff0000;
constexpr std::uint32_t kBlue = 0xff0000ff;

std::vector<RECT> g_painted;
int g_paintMessages = 0;
bool g_begin = true;

/// Paints what is invalid red, over a white background.
LRESULT PaintRed(HWND window, UINT message, WPARAM wParam, LPARAM lParam) {
  if (message != WM_PAINT) return DefWindowProc(window, message, wParam, lParam);
  ++g_paintMessages;
  if (!g_begin) return 0;
  PAINTSTRUCT paint;
  const HDC dc = BeginPaint(window, &paint);
  g_painted.push_back(paint.rcPaint);
  const RECT inner = {10, 10, 90, 90};
  const HBRUSH red = CreateSolidBrush(RGB(255, 0, 0));
  FillRect(dc, &inner, red);
  DeleteObject(red);
  EndPaint(window, &paint);
  return 0;
}

class Painting : public ::testing::Test {
 protected:
  void SetUp() override {
    const WNDCLASS windowClass = {
        0,       &PaintRed, 0, 0, nullptr, nullptr, nullptr, static_cast<HBRUSH>(GetStockObject(WHITE_BRUSH)),
        nullptr, "painter"};
    RegisterClassA(&windowClass);
    window = CreateWindowEx(0, "painter", "", WS_OVERLAPPEDWINDOW, 0, 0, 100, 100, nullptr, nullptr, nullptr,
                            nullptr);
    ShowWindow(window, SW_SHOW);
    PumpUntilIdle();
    g_painted.clear();
    g_paintMessages = 0;
  }
  void TearDown() override { DestroyWindow(window); }
  HWND window = nullptr;
};

TEST_F(Painting, ShowingPaintsAndErases) {
  EXPECT_EQ(WindowPixel(window, 50, 50), kRed);
  EXPECT_EQ(WindowPixel(window, 5, 5), kWhite);
}

TEST_F(Painting, OnlyWhatIsInvalidIsPainted) {
  const RECT a = {20, 20, 30, 30};
  const RECT b = {40, 25, 50, 60};
  InvalidateRect(window, &a, FALSE);
  InvalidateRect(window, &b, TRUE);
  RECT invalid;
  ASSERT_TRUE(GetUpdateRect(window, &invalid, FALSE));
  PumpUntilIdle();
  ASSERT_EQ(g_painted.size(), 1U) << "invalid parts collect";
  EXPECT_EQ(g_painted[0].left, 20);
  EXPECT_EQ(g_painted[0].top, 20);
  EXPECT_EQ(g_painted[0].right, 50);
  EXPECT_EQ(g_painted[0].bottom, 60);
  EXPECT_FALSE(GetUpdateRect(window, nullptr, FALSE));
  InvalidateRect(window, &a, FALSE);
  ValidateRect(window, nullptr);
  PumpUntilIdle();
  EXPECT_EQ(g_paintMessages, 1);
}

TEST_F(Painting, GrowingPaintsOnlyTheUncoveredPart) {
  SetWindowPos(window, nullptr, 0, 0, 120, 100, SWP_NOMOVE | SWP_NOZORDER);
  PumpUntilIdle();
  ASSERT_FALSE(g_painted.empty());
  EXPECT_EQ(g_painted[0].left, 100);
  EXPECT_EQ(g_painted[0].right, 120);
  EXPECT_EQ(WindowPixel(window, 50, 50), kRed) << "kept";
  EXPECT_EQ(WindowPixel(window, 110, 50), kWhite) << "erased";
}

TEST_F(Painting, DrawingOutsideACycleStays) {
  const HDC dc = GetDC(window);
  const HBRUSH blue = CreateSolidBrush(RGB(0, 0, 255));
  const RECT spot = {0, 0, 8, 8};
  FillRect(dc, &spot, blue);
  DeleteObject(blue);
  ReleaseDC(window, dc);
  PumpUntilIdle();
  EXPECT_EQ(WindowPixel(window, 4, 4), kBlue);
  EXPECT_EQ(g_paintMessages, 0);
}

TEST_F(Painting, UpdateWindowPaintsAtOnceAndOnlyWhenThereIsSomething) {
  UpdateWindow(window);
  EXPECT_EQ(g_paintMessages, 0);
  InvalidateRect(window, nullptr, FALSE);
  UpdateWindow(window);
  EXPECT_EQ(g_paintMessages, 1);
  ShowWindow(window, SW_HIDE);
  InvalidateRect(window, nullptr, FALSE);
  UpdateWindow(window);
  EXPECT_EQ(g_paintMessages, 1) << "hidden";
}

TEST_F(Painting, AProgramWithoutBeginPaintIsNotAskedForEver) {
  g_begin = false;
  InvalidateRect(window, nullptr, FALSE);
  PumpUntilIdle();
  g_begin = true;
  EXPECT_EQ(g_paintMessages, 1);
}

}  // namespace
