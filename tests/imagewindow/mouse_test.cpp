// Real mouse input and what it does to scale, position and picture.

#include <functional>

#include "library/resource_ids.h"
#include "platform/framework/menu.h"
#include "tests/imagewindow/window_fixture.h"

namespace {

using platform::testing::Button;

class Mouse : public ImageWindowTest {
 protected:
  void Press(CPoint point) {
    platform::testing::PressMouse(*window, point);
    platform::testing::PumpUntilIdle();
  }
  void Move(CPoint point) {
    platform::testing::MoveMouse(*window, point, true);
    platform::testing::PumpUntilIdle();
  }
  void Release(CPoint point) {
    platform::testing::ReleaseMouse(*window, point);
    platform::testing::PumpUntilIdle();
  }
  void Click(CPoint point) {
    Press(point);
    Release(point);
  }
  /// All pixels of the client area, as it was painted.
  std::vector<unsigned> Picture() {
    std::vector<unsigned> pixels;
    for (int y = 0; y < 300; ++y)
      for (int x = 0; x < 400; ++x) pixels.push_back(Pixel(x, y));
    return pixels;
  }
};

TEST_F(Mouse, ClicksGoByModeAndShift) {
  Show({{2000, 1600}});
  const struct {
    int mode;
    bool shift;
    int divisor;
  } rows[] = {
      {MouseModeNone, false, 1},    {MouseModeDrag, true, 1},   {4, false, 1},
      {MouseModeZoomIn, false, -2}, {MouseModeZoomIn, true, 2}, {MouseModeZoomOut, false, 2},
      {MouseModeZoomOut, true, -2},
  };
  for (const auto& row : rows) {
    window->ZoomToScaleFactor(1.0);
    window->SetMouseMode(row.mode);
    EXPECT_EQ(window->GetMouseMode(), row.mode);
    window->SendMessage(row.shift ? WM_KEYDOWN : WM_KEYUP, VK_SHIFT, 1);
    frame->SetFocus();
    Click({200, 150});
    EXPECT_EQ(window->m_nZoomDivisor, row.divisor) << row.mode << row.shift;
    EXPECT_EQ(::GetFocus(), window->m_hWnd);
    EXPECT_EQ(::GetCapture(), nullptr);
  }
}

TEST_F(Mouse, TheClickedPixelComesToTheMiddle) {
  Show({{2000, 1600}});
  window->SetMouseMode(MouseModeZoomIn);
  window->SetScrollPos(CPoint(500, 400), 0);
  const CSize client = window->m_szClient;
  Click({30, 40});
  EXPECT_EQ(window->m_ptScroll, CPoint(530 * 2 - client.cx / 2, 440 * 2 - client.cy / 2));
  window->ZoomToScaleFactor(1.0);
  Click({10, 10});
  EXPECT_EQ(window->m_ptScroll, CPoint(0, 0)) << "as far as the page goes";
}

TEST_F(Mouse, AtTheLimits) {
  Show({{2000, 1600}});
  window->SetMouseMode(MouseModeZoomIn);
  window->ZoomToScaleFactor(9.0);
  Click({100, 100});
  EXPECT_EQ(window->m_nZoomDivisor, -10);
  const CPoint place = window->m_ptScroll;
  Click({5, 5});
  EXPECT_EQ(window->m_ptScroll, place) << "no zoom, no move";

  window->SetMouseMode(MouseModeZoomOut);
  window->ZoomToScaleFactor(1.0);
  window->m_nZoomDivisor = 64;  // as if the page were huge
  Click({300, 200});
  EXPECT_EQ(window->m_dScaleFactor, 1.0);
  EXPECT_EQ(window->m_ptScroll, CPoint(300 - window->m_szClient.cx / 2, 200 - window->m_szClient.cy / 2));
}

TEST_F(Mouse, ThePageFollowsTheHand) {
  Show({{2000, 1600}});
  window->SetScrollPos(CPoint(500, 400), 0);
  Settle();
  Press({200, 150});
  EXPECT_EQ(::GetCapture(), window->m_hWnd);
  Move({180, 170});
  EXPECT_EQ(window->m_ptScroll, CPoint(520, 380));
  // Moves that have come meanwhile are one, with one repaint.
  Settle();
  platform::testing::HoldQueue(true);
  for (int i = 0; i < 10; ++i) platform::testing::MoveMouse(*window, {180 - i, 170}, true);
  platform::testing::HoldQueue(false);
  platform::testing::PumpUntilIdle();
  EXPECT_EQ(window->m_ptScroll, CPoint(529, 380));
  EXPECT_EQ(window->Count(WM_MOUSEMOVE), 1);
  EXPECT_EQ(window->Count(WM_PAINT), 1);
  Release({171, 170});
  EXPECT_EQ(::GetCapture(), nullptr);
  Move({10, 10});
  EXPECT_EQ(window->m_ptScroll, CPoint(529, 380));
}

TEST_F(Mouse, ASelectionFillsTheWindow) {
  Show({{2000, 1600}});
  const struct {
    CPoint from;
    CPoint to;
    double multiplier;
  } rows[] = {
      {{100, 60}, {200, 160}, 0},  // the shorter side of the window decides, whatever it is
      {{200, 160}, {100, 60}, 0},
      {{100, 60}, {101, 61}, 10},  // as far as the scale goes
  };
  for (const auto& row : rows) {
    window->ZoomToScaleFactor(1.0);
    const CSize client = window->m_szClient;
    window->SetScrollPos(CPoint(300, 200), 0);
    window->ToggleZoomSelect();
    ASSERT_TRUE(window->IsZoomSelected());
    Press(row.from);
    Move(row.to);
    Release(row.to);
    const double expected = row.multiplier != 0 ? row.multiplier : std::min(client.cx, client.cy) / 100.0;
    EXPECT_DOUBLE_EQ(window->m_dScaleFactor, expected);
    EXPECT_EQ(window->m_ptScroll, CPoint(static_cast<int>(400 * expected), static_cast<int>(260 * expected)));
    EXPECT_FALSE(window->IsZoomSelected());
    EXPECT_EQ(::GetCapture(), nullptr);
  }
}

TEST_F(Mouse, AnEmptySelectionChangesNothing) {
  Show({{2000, 1600}});
  window->SetScrollPos(CPoint(300, 200), 0);
  window->asked.clear();
  window->ToggleZoomSelect();
  Press({50, 50});
  Release({90, 50});
  EXPECT_FALSE(window->IsZoomSelected());
  EXPECT_EQ(window->m_ptScroll, CPoint(300, 200));
  EXPECT_TRUE(window->asked.empty());
}

TEST_F(Mouse, TheBandIsDrawnAndTakenOffExactly) {
  Show({{2000, 1600}});
  window->ShowScrollBar(SB_BOTH, FALSE);
  Settle();
  const auto before = Picture();
  window->ToggleZoomSelect();
  Press({60, 50});
  Move({160, 120});
  Move({140, 30});
  EXPECT_EQ(Pixel(60, 40), before[40 * 400 + 60] ^ 0xffffff);
  EXPECT_EQ(Pixel(139, 49), before[49 * 400 + 139] ^ 0xffffff);
  EXPECT_EQ(Pixel(100, 40), before[40 * 400 + 100]);
  // What is painted meanwhile keeps it.
  window->InvalidateRect(CRect(0, 0, 100, 45), FALSE);
  window->UpdateWindow();
  EXPECT_EQ(Pixel(60, 40), before[40 * 400 + 60] ^ 0xffffff);
  const CPoint place = window->m_ptScroll;
  ::SetCapture(*frame);  // lost in the middle
  EXPECT_FALSE(window->IsZoomSelected());
  EXPECT_EQ(Picture(), before);
  ::ReleaseCapture();
  Release({140, 30});
  EXPECT_EQ(window->m_ptScroll, place);
  EXPECT_EQ(window->m_dScaleFactor, 1.0);
}

TEST_F(Mouse, WhatEndsADragOrASelectionFreesTheMouse) {
  Show({{2000, 1600}});
  window->ShowScrollBar(SB_BOTH, FALSE);
  Settle();
  const auto before = Picture();
  const std::string other = WriteFile({{2000, 1600}}, "other.tif");
  const struct {
    const char* what;
    bool selecting;
    bool frees;
    std::function<void()> act;
  } rows[] = {
      {"mode", false, true, [this] { window->SetMouseMode(MouseModeZoomIn); }},
      {"the same mode", false, false, [this] { window->SetMouseMode(MouseModeDrag); }},
      {"arming", false, true, [this] { window->ToggleZoomSelect(); }},
      {"open", false, true, [&] { window->OpenImageFile(other.c_str()); }},
      {"disarming", true, true, [this] { window->ToggleZoomSelect(); }},
      {"mode in a selection", true, false, [this] { window->SetMouseMode(MouseModeZoomIn); }},
      {"open in a selection", true, true, [&] { window->OpenImageFile(other.c_str()); }},
  };
  for (const auto& row : rows) {
    window->SetMouseMode(MouseModeDrag);
    if (window->IsZoomSelected() != row.selecting) window->ToggleZoomSelect();
    Press({60, 50});
    if (row.selecting) Move({160, 120});
    ASSERT_EQ(::GetCapture(), window->m_hWnd) << row.what;
    row.act();
    EXPECT_EQ(::GetCapture() == nullptr, row.frees) << row.what;
    if (row.frees) {
      EXPECT_EQ(Picture(), before) << row.what << ": no band is left";
      Release({160, 120});
      EXPECT_EQ(window->m_dScaleFactor, 1.0) << row.what;
    }
    ::ReleaseCapture();
    window->OpenImageFile(other.c_str());
    window->LoadPage(1);
    window->ShowScrollBar(SB_BOTH, FALSE);
    Settle();
  }
}

// Cursors

constexpr UINT kArrow = 32512;
constexpr UINT kCross = 32515;

TEST_F(Mouse, TheCursorTellsWhatAClickDoes) {
  Show({{2000, 1600}});
  const struct {
    int mode;
    bool shift;
    double factor;
    bool armed;
    UINT cursor;
  } rows[] = {
      {MouseModeNone, false, 1.0, false, kArrow},
      {MouseModeNone, true, 1.0, false, kArrow},
      {MouseModeDrag, false, 1.0, false, IDC_ZP_CURSOR_HAND},
      {MouseModeZoomIn, false, 1.0, false, IDC_ZP_CURSOR_ZOOM_IN},
      {MouseModeZoomIn, true, 1.0, false, IDC_ZP_CURSOR_ZOOM_OUT},
      {MouseModeZoomIn, false, 10.0, false, IDC_ZP_CURSOR_ZOOM_LIMIT},
      {MouseModeZoomIn, true, 10.0, false, IDC_ZP_CURSOR_ZOOM_OUT},
      {MouseModeZoomOut, false, 1.0, false, IDC_ZP_CURSOR_ZOOM_OUT},
      {MouseModeZoomOut, true, 1.0, false, IDC_ZP_CURSOR_ZOOM_IN},
      {MouseModeZoomOut, false, 0.01, false, IDC_ZP_CURSOR_ZOOM_LIMIT},
      {MouseModeDrag, false, 1.0, true, IDC_ZP_CURSOR_SELECT},
      {MouseModeZoomOut, true, 0.01, true, IDC_ZP_CURSOR_SELECT},
  };
  for (const auto& row : rows) {
    window->SendMessage(row.shift ? WM_KEYDOWN : WM_KEYUP, VK_SHIFT, 1);
    window->SetMouseMode(row.mode);
    window->ZoomToScaleFactor(row.factor);
    if (row.armed) window->ToggleZoomSelect();
    ::SetCursor(nullptr);
    window->SendMessage(WM_SETCURSOR, reinterpret_cast<WPARAM>(window->m_hWnd),
                        MAKELPARAM(HTCLIENT, WM_MOUSEMOVE));
    EXPECT_EQ(platform::testing::CursorId(::GetCursor()), row.cursor) << row.mode << row.shift << row.factor;
    if (row.armed) window->ToggleZoomSelect();
  }
}

TEST_F(Mouse, TheCursorFollowsButtonsModesAndTheSelection) {
  Show({{2000, 1600}});
  const auto shown = [] { return platform::testing::CursorId(::GetCursor()); };
  Press({50, 50});
  EXPECT_EQ(shown(), UINT{IDC_ZP_CURSOR_GRABBING});
  Move({40, 40});
  EXPECT_EQ(shown(), UINT{IDC_ZP_CURSOR_GRABBING});
  Release({40, 40});
  EXPECT_EQ(shown(), UINT{IDC_ZP_CURSOR_HAND});
  window->SetMouseMode(MouseModeZoomIn);
  EXPECT_EQ(shown(), UINT{IDC_ZP_CURSOR_ZOOM_IN});
  window->SetMouseMode(77);
  EXPECT_EQ(shown(), UINT{IDC_ZP_CURSOR_ZOOM_IN}) << "an unknown mode leaves it";
  window->SetMouseMode(MouseModeZoomOut);
  window->ToggleZoomSelect();
  EXPECT_EQ(shown(), kCross);
  window->ToggleZoomSelect();
  EXPECT_EQ(shown(), UINT{IDC_ZP_CURSOR_ZOOM_OUT});
  window->SetMouseMode(MouseModeZoomIn);
  window->ZoomToScaleFactor(9.0);
  Click({100, 100});
  EXPECT_EQ(shown(), UINT{IDC_ZP_CURSOR_ZOOM_LIMIT}) << "the click has reached the limit";
}

// Context menu

TEST_F(Mouse, TheContextMenuCommandsTheFrame) {
  struct Asked {
    HWND owner = nullptr;
    int items = 0;
  };
  static Asked asked;
  platform::testing::SetMenuAnswer([](HMENU menu, HWND owner) {
    asked = {owner, ::GetMenuItemCount(menu)};
    return 0;
  });
  Show({{300, 200}});
  platform::testing::PressMouse(*window, {50, 50}, Button::Right);
  platform::testing::ReleaseMouse(*window, {50, 50}, Button::Right);
  platform::testing::PumpUntilIdle();
  platform::testing::SetMenuAnswer(nullptr);
  EXPECT_EQ(asked.owner, frame->m_hWnd);
  EXPECT_EQ(asked.items, 15);
}

class Drop : public ImageWindowTest {
 protected:
  bool DropFiles(const std::vector<const char*>& paths) {
    const bool taken = platform::testing::DropFiles(*window, {20, 20}, paths);
    platform::testing::PumpUntilIdle();
    return taken;
  }
};

TEST_F(Drop, ADroppedFileIsShown) {
  Show({{300, 200}});
  const std::string dropped = WriteFile({{640, 480}, {200, 100}}, "dropped.tif");
  EXPECT_TRUE(DropFiles({dropped.c_str()}));
  EXPECT_EQ(std::string(window->GetFilePath()), dropped);
  EXPECT_EQ(window->GetCurrPage(), 1);
  EXPECT_EQ(window->GetMaxPage(), 2);
  EXPECT_EQ(window->m_szScaled, CSize(640, 480));
  Settle();
  // One that can't be opened is reported once and leaves nothing of the former page on the screen.
  const std::string broken = (m_folder / "broken.tif").string();
  EXPECT_TRUE(DropFiles({broken.c_str()}));
  EXPECT_EQ(Reports().size(), 1U);
  EXPECT_EQ(window->GetCurrPage(), 0);
  Settle();
  EXPECT_EQ(Pixel(50, 50), 0x808080U);
}

TEST_F(Drop, OneFileAtATime) {
  static CString said;
  platform::testing::SetMessageBoxAnswer([](const CString& text, UINT) {
    said = text;
    return 1;
  });
  Show({{300, 200}});
  const std::string first = WriteFile({{640, 480}}, "a.tif");
  EXPECT_TRUE(DropFiles({first.c_str(), first.c_str()}));
  platform::testing::SetMessageBoxAnswer(nullptr);
  EXPECT_EQ(said, CString("Applicazioni puâ aprire solo un file alla volta"));
  EXPECT_EQ(window->m_szScaled, CSize(300, 200));
}

}  // namespace
