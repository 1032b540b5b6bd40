// A window's own scroll bars: when they show, what that does to the client area, what they send.

#include <gtest/gtest.h>

#include <QApplication>
#include <QProxyStyle>
#include <QScrollBar>
#include <vector>

#include "platform/window/pump.h"
#include "platform/window/window.h"
#include "tessarel12_testing.h"

namespace {

struct Sent {
  UINT message;
  int code;
  int track;
};
std::vector<Sent> g_scrolls;
std::vector<SIZE> g_sizes;

LRESULT Record(HWND window, UINT message, WPARAM wParam, LPARAM lParam) {
  if (message == WM_SIZE) g_sizes.push_back({LOWORD(lParam), HIWORD(lParam)});
  if (message == WM_HSCROLL || message == WM_VSCROLL) {
    SCROLLINFO info = {sizeof info, SIF_ALL, 0, 0, 0, 0, 0};
    GetScrollInfo(window, message == WM_HSCROLL ? SB_HORZ : SB_VERT, &info);
    g_scrolls.push_back({message, LOWORD(wParam), info.nTrackPos});
  }
  return DefWindowProc(window, message, wParam, lParam);
}

class ScrollBars : public ::testing::Test {
 protected:
  void SetUp() override {
    const WNDCLASS windowClass = {0, &Record, 0, 0, nullptr, nullptr, nullptr, nullptr, nullptr, "recorder"};
    RegisterClassA(&windowClass);
    window = CreateWindowEx(0, "recorder", "", WS_OVERLAPPEDWINDOW, 0, 0, 500, 400, nullptr, nullptr, nullptr,
                            nullptr);
    ASSERT_NE(window, nullptr);
    g_scrolls.clear();
    g_sizes.clear();
  }
  void TearDown() override { DestroyWindow(window); }

  void Set(int bar, int maximum, UINT page, int position, BOOL redraw) const {
    const SCROLLINFO info = {sizeof info, SIF_RANGE | SIF_PAGE | SIF_POS, 0, maximum, page, position, 0};
    SetScrollInfo(window, bar, &info, redraw);
  }
  CSize Client() const {
    RECT client;
    GetClientRect(window, &client);
    return {client.right, client.bottom};
  }
  bool Shows(int bar) const {
    const CSize client = Client();
    return bar == SB_VERT ? client.cx < 500 : client.cy < 400;
  }

  HWND window = nullptr;
};

TEST_F(ScrollBars, ABarShowsUnlessItsPageCoversItsRange) {
  const struct {
    int maximum;
    UINT page;
    bool shows;
  } cases[] = {{0, 0, false},     {500, 500, true},  {499, 500, false},
               {1000, 500, true}, {500, 501, false}, {1, 0, true}};
  for (const auto& c : cases) {
    Set(SB_VERT, c.maximum, c.page, 0, TRUE);
    EXPECT_EQ(Shows(SB_VERT), c.shows) << "range 0.." << c.maximum << " page " << c.page;
    EXPECT_EQ((GetWindowLong(window, GWL_STYLE) & WS_VSCROLL) != 0, c.shows);
  }
}

TEST_F(ScrollBars, AppearingTakesClientRoomAndTellsTheSize) {
  Set(SB_VERT, 1000, 100, 0, TRUE);
  ASSERT_EQ(g_sizes.size(), 1U);
  EXPECT_EQ(g_sizes[0].cx, 500 - GetSystemMetrics(SM_CXVSCROLL));
  EXPECT_EQ(g_sizes[0].cy, 400);
  Set(SB_HORZ, 1000, 100, 0, TRUE);
  EXPECT_EQ(Client().cy, 400 - GetSystemMetrics(SM_CYHSCROLL));
  ShowScrollBar(window, SB_BOTH, FALSE);
  EXPECT_EQ(Client().cx, 500);
  EXPECT_EQ(Client().cy, 400);
}

TEST_F(ScrollBars, WithoutRedrawAChangeIsOnlyStored) {
  Set(SB_VERT, 1000, 100, 0, FALSE);
  EXPECT_FALSE(Shows(SB_VERT));
  EXPECT_TRUE(g_sizes.empty());
  SetScrollPos(window, SB_VERT, 0, TRUE);
  EXPECT_TRUE(Shows(SB_VERT));
}

TEST_F(ScrollBars, PositionsAreLimitedToWhatThePageLeaves) {
  const struct {
    int wanted;
    int got;
  } cases[] = {{-5, 0}, {0, 0}, {700, 700}, {901, 901}, {902, 901}, {2000000, 901}};
  Set(SB_VERT, 1000, 100, 0, TRUE);
  for (const auto& c : cases) {
    SetScrollPos(window, SB_VERT, c.wanted, TRUE);
    EXPECT_EQ(GetScrollPos(window, SB_VERT), c.got);
  }
}

// The bar is put together from pictures that are kept, its twin drawn by the desktop's style itself.
TEST_F(ScrollBars, LookAsTheStyleDrawsThem) {
  ShowWindow(window, SW_SHOW);
  auto* own = dynamic_cast<QProxyStyle*>(QApplication::style());
  ASSERT_NE(own, nullptr);
  for (const UINT page : {2U, 20U, 300U})
    for (const int position : {0, 1, 117, 118, 500, 997}) {
      Set(SB_VERT, 1000, page, position, TRUE);
      Set(SB_HORZ, 1000, page, 1000 - position, TRUE);
      platform::testing::PumpUntilIdle();
      int bars = 0;
      for (const QWidget* top : QApplication::topLevelWidgets())
        for (QScrollBar* bar : top->findChildren<QScrollBar*>()) {
          QScrollBar twin(bar->orientation(), bar->parentWidget());
          twin.setStyle(own->baseStyle());
          twin.setGeometry(bar->geometry());
          twin.setRange(bar->minimum(), bar->maximum());
          twin.setPageStep(bar->pageStep());
          twin.setValue(bar->value());
          EXPECT_EQ(bar->grab().toImage(), twin.grab().toImage()) << page << " at " << position;
          ++bars;
        }
      EXPECT_EQ(bars, 2);
    }
}

TEST_F(ScrollBars, ClicksAndTheThumbSendTheirCodes) {
  ShowWindow(window, SW_SHOW);
  Set(SB_VERT, 100000, 100, 40000, TRUE);
  platform::testing::ClickScrollBar(window, SB_VERT, true, false);
  platform::testing::ClickScrollBar(window, SB_VERT, false, true);
  platform::testing::DragThumb(window, SB_VERT, 70000, true);
  const struct {
    int code;
    int track;
  } expected[] = {{SB_LINEDOWN, 40000},   {SB_ENDSCROLL, 40000},    {SB_PAGEUP, 40000}, {SB_ENDSCROLL, 40000},
                  {SB_THUMBTRACK, 70000}, {SB_THUMBPOSITION, 70000}};  // more than 16 bits of track position
  ASSERT_GE(g_scrolls.size(), std::size(expected));
  for (std::size_t i = 0; i < std::size(expected); ++i) {
    EXPECT_EQ(g_scrolls[i].message, static_cast<UINT>(WM_VSCROLL));
    EXPECT_EQ(g_scrolls[i].code, expected[i].code) << i;
    EXPECT_EQ(g_scrolls[i].track, expected[i].track) << i;
  }
  SCROLLINFO info = {sizeof info, SIF_ALL, 0, 0, 0, 0, 0};
  GetScrollInfo(window, SB_VERT, &info);
  EXPECT_EQ(info.nTrackPos, info.nPos) << "outside tracking";
}

}  // namespace
