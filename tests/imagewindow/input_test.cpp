// Wheel and keys as the desktop sends them, and what they do to scale and position.

#include "imagewindow/frame_link.h"
#include "library/resource_ids.h"
#include "tests/imagewindow/window_fixture.h"

namespace {

/// A frame that counts what it is told.
class TellingFrame : public CFrameWnd, public CImageWindowFrame {
 public:
  void UpdateZoomStatus() override { ++zooms; }
  bool OpenDroppedFile(const char* path) override {
    dropped.emplace_back(path);
    return true;
  }
  LRESULT WindowProc(UINT message, WPARAM wParam, LPARAM lParam) override {
    if (message == WM_COMMAND) commands.push_back(LOWORD(wParam));
    return CFrameWnd::WindowProc(message, wParam, lParam);
  }
  int zooms = 0;
  std::vector<std::string> dropped;
  std::vector<UINT> commands;
};

class Input : public ImageWindowTest {
 protected:
  void SetUp() override {
    ImageWindowTest::SetUp();
    Show({{2000, 1600}});
  }
  void Wheel(UINT keys, int delta) {
    window->SendMessage(WM_MOUSEWHEEL, MAKEWPARAM(static_cast<int>(keys), delta), 0);
    platform::testing::PumpUntilIdle();
  }
};

TEST_F(Input, TheWheelScrollsZoomsAndAsksForPages) {
  const int notch = static_cast<int>(3 * 25);
  Wheel(0, -120);
  EXPECT_EQ(window->m_ptScroll, CPoint(0, notch));
  Wheel(MK_SHIFT, -240);
  EXPECT_EQ(window->m_ptScroll, CPoint(2 * notch, notch));
  Wheel(0, 120);
  EXPECT_EQ(window->m_ptScroll, CPoint(2 * notch, 0));
  Wheel(MK_CONTROL, 120);
  EXPECT_EQ(window->m_nZoomDivisor, -2);
  Wheel(MK_CONTROL, 0);
  EXPECT_EQ(window->m_nZoomDivisor, -1) << "no turn counts as outwards";
  Wheel(MK_CONTROL | MK_SHIFT, 120);
  EXPECT_EQ(window->m_nZoomDivisor, -1);
}

TEST_F(Input, PartsOfANotchAreCollectedAndSidewaysTurnsScrollSideways) {
  const struct {
    UINT keys;
    int delta;
    int divisor;
    const char* what;
  } rows[] = {{MK_CONTROL, 60, 1, "half"},       {MK_CONTROL, 59, 1, "nearly"},
              {MK_CONTROL, 1, -2, "a notch"},    {MK_CONTROL, 110, -2, "nearly"},
              {MK_CONTROL, -20, -2, "back"},     {MK_CONTROL, -100, -1, "a notch"},
              {MK_CONTROL, 240, -2, "two"},      {MK_CONTROL, 100, -2, "nearly"},
              {0, -15, -2, "scrolling between"}, {MK_CONTROL, 100, -2, "begins anew"}};
  window->ZoomToScaleFactor(1);
  for (const auto& row : rows) {
    Wheel(row.keys, row.delta);
    EXPECT_EQ(window->m_nZoomDivisor, row.divisor) << row.what << " " << row.delta;
  }
  window->SetScrollPos(CPoint(100, 100), 0);
  for (const auto& [keys, delta, x] :
       {std::tuple<UINT, int, int>{0, 120, 175}, {MK_SHIFT, -40, 150}, {MK_CONTROL, 120, 150}}) {
    window->SendMessage(WM_MOUSEHWHEEL, MAKEWPARAM(static_cast<int>(keys), delta), 0);
    platform::testing::PumpUntilIdle();
    EXPECT_EQ(window->m_ptScroll, CPoint(x, 100)) << delta;
  }
}

TEST_F(Input, KeysPostScrollMessages) {
  const struct {
    int key;
    CPoint to;
  } rows[] = {{VK_RIGHT, {515, 400}}, {VK_DOWN, {515, 415}}, {VK_LEFT, {500, 415}},
              {VK_UP, {500, 400}},    {VK_HOME, {500, 400}}, {VK_END, {500, 400}}};
  window->SetScrollPos(CPoint(500, 400), 0);
  for (const auto& row : rows) {
    const CPoint before = window->m_ptScroll;
    window->SendMessage(WM_KEYDOWN, static_cast<WPARAM>(row.key), 1);
    EXPECT_EQ(window->m_ptScroll, before) << "in order with other messages, not at once";
    platform::testing::PumpUntilIdle();
    EXPECT_EQ(window->m_ptScroll, row.to) << row.key;
  }
  window->SendMessage(WM_KEYDOWN, VK_NEXT, 1);
  platform::testing::PumpUntilIdle();
  EXPECT_EQ(window->m_ptScroll.y, 400 + window->m_szClient.cy - window->m_szClient.cy / 4);
}

TEST_F(Input, TheFrameHearsOfZoomsPagesAndFiles) {
  window.reset();
  frame->DestroyWindow();
  auto* telling = new TellingFrame;
  frame = telling;
  ASSERT_TRUE(frame->Create(nullptr, "host", WS_OVERLAPPEDWINDOW, CRect(0, 0, 1000, 800)));
  frame->ShowWindow(SW_SHOW);
  MakeWindow();
  Show({{2000, 1600}});
  Wheel(MK_CONTROL, 120);
  EXPECT_EQ(telling->zooms, 1);
  Wheel(0, 120);
  window->ZoomOut();
  EXPECT_EQ(telling->zooms, 1) << "scrolling and the operations don't tell";
  platform::testing::PressKey(*window, VK_MENU, false, false, true);
  for (const int delta : {-120, 120, 0})
    platform::testing::TurnWheel(*window, {5, 5}, delta, false, false, true);
  platform::testing::PumpUntilIdle();
  const std::vector<UINT> expected = {ID_ZP_NEXT_PAGE, ID_ZP_PREV_PAGE};
  EXPECT_EQ(telling->commands, expected);
  const char* path = "/tmp/elsewhere.tif";
  ASSERT_TRUE(platform::testing::DropFiles(*window, {5, 5}, {&path, 1}));
  platform::testing::PumpUntilIdle();
  EXPECT_EQ(telling->dropped, std::vector<std::string>{path});
  EXPECT_EQ(window->GetMaxPage(), 1) << "the frame opens it, or not";
}

}  // namespace
