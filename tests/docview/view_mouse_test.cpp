// Mouse, wheel and keyboard in the document's view, where it goes other ways than the image window.

#include "library/resource_ids.h"
#include "platform/framework/menu.h"
#include "tests/docview/view_fixture.h"

namespace {

using platform::testing::Button;

constexpr UINT kArrow = 32512;
constexpr UINT kCross = 32515;

class ViewMouse : public ViewTest {
 protected:
  void SetUp() override {
    ViewTest::SetUp();
    Show({{2000, 1600}});
  }
  void SetShift(bool down) { view->SendMessage(down ? WM_KEYDOWN : WM_KEYUP, VK_SHIFT, 1); }
  /// What the pointer looks like after a move to this part of the window.
  UINT CursorAt(int hitTest) {
    ::SetCursor(LoadCursor(nullptr, IDC_CROSS));
    view->SendMessage(WM_SETCURSOR, reinterpret_cast<WPARAM>(view->m_hWnd),
                      MAKELPARAM(hitTest, WM_MOUSEMOVE));
    return platform::testing::CursorId(::GetCursor());
  }
};

TEST_F(ViewMouse, ClicksAndCursorsGoByModeAndShift) {
  constexpr UINT kIn = IDC_ZP_CURSOR_ZOOM_IN;
  constexpr UINT kOut = IDC_ZP_CURSOR_ZOOM_OUT;
  constexpr UINT kHand = IDC_ZP_CURSOR_HAND;
  const struct {
    int mode;
    bool shift;
    int divisor;
    UINT cursor;
  } rows[] = {{ViewMouseNone, false, 1, kArrow}, {ViewMouseDrag, true, 1, kHand},
              {ViewMouseDrag2, false, 1, kHand}, {ViewMouseZoomIn, false, -2, kIn},
              {ViewMouseZoomIn, true, 2, kOut},  {ViewMouseZoomOut, false, 2, kOut},
              {ViewMouseZoomOut, true, -2, kIn}};
  for (const auto& row : rows) {
    view->ZoomToScaleFactor(1.0);
    view->SetMouseMode(row.mode);
    EXPECT_EQ(view->GetMouseMode(), row.mode);
    SetShift(row.shift);
    EXPECT_EQ(CursorAt(HTCLIENT), row.cursor) << row.mode << row.shift;
    EXPECT_EQ(CursorAt(HTVSCROLL), kCross) << "a bar's cursor isn't the view's";
    frame->zooms = 0;
    Click({200, 150});
    EXPECT_EQ(view->m_nZoomDivisor, row.divisor) << row.mode << row.shift;
    EXPECT_EQ(frame->zooms, row.divisor == 1 ? 0 : 1);
    EXPECT_EQ(::GetFocus(), view->m_hWnd);
  }
}

TEST_F(ViewMouse, SetMouseModeShowsTheCursorOverThePage) {
  // Where the pointer is can't be chosen, but where the view is.
  POINT pointer;
  GetCursorPos(&pointer);
  frame->MoveWindow(pointer.x - 100, pointer.y - 100, 600, 400);
  CRect placed;
  frame->GetWindowRect(&placed);
  if (placed.left > pointer.x - 50) GTEST_SKIP() << "this desktop lets no program place its windows";
  view->ZoomToScaleFactor(10.0);
  const struct {
    int mode;
    UINT cursor;
  } rows[] = {{ViewMouseNone, kArrow},
              {ViewMouseDrag, IDC_ZP_CURSOR_HAND},
              {ViewMouseZoomIn, IDC_ZP_CURSOR_ZOOM_LIMIT},
              {ViewMouseDrag2, IDC_ZP_CURSOR_HAND},
              {ViewMouseZoomOut, IDC_ZP_CURSOR_ZOOM_OUT},
              {5, IDC_ZP_CURSOR_ZOOM_OUT}};
  SetShift(true);  // doesn't count
  for (const auto& row : rows) {
    EXPECT_EQ(view->SetMouseMode(row.mode), 1);
    EXPECT_EQ(platform::testing::CursorId(::GetCursor()), row.cursor) << row.mode;
  }
  // Elsewhere only the mode is set.
  frame->MoveWindow(pointer.x + 100, pointer.y + 100, 600, 400);
  EXPECT_EQ(view->SetMouseMode(ViewMouseDrag), 0);
  EXPECT_EQ(view->GetMouseMode(), ViewMouseDrag);
  EXPECT_EQ(platform::testing::CursorId(::GetCursor()), UINT{IDC_ZP_CURSOR_ZOOM_OUT});
}

TEST_F(ViewMouse, TheClickedPixelComesToTheMiddle) {
  view->SetMouseMode(ViewMouseZoomIn);
  view->SetScrollPos(CPoint(500, 400), FALSE);
  Click({30, 40});
  const CSize client = view->m_szClient;
  EXPECT_EQ(view->m_ptScroll, CPoint(530 * 2 - client.cx / 2, 440 * 2 - client.cy / 2));
}

TEST_F(ViewMouse, BothDragModesMoveThePage) {
  for (const int mode : {ViewMouseDrag, ViewMouseDrag2}) {
    view->SetMouseMode(mode);
    view->SetScrollPos(CPoint(500, 400), FALSE);
    Press({200, 150});
    EXPECT_EQ(platform::testing::CursorId(::GetCursor()), UINT{IDC_ZP_CURSOR_GRABBING});
    Move({180, 170});
    EXPECT_EQ(view->m_ptScroll, CPoint(520, 380)) << mode;
    Release({180, 170});
    EXPECT_EQ(::GetCapture(), nullptr);
  }
}

TEST_F(ViewMouse, ASelectionFillsTheWindowAndEndsAFit) {
  const struct {
    CPoint from, to;
    double factor;
  } rows[] = {{{100, 60}, {200, 160}, 0}, {{200, 160}, {100, 60}, 0}, {{100, 60}, {101, 61}, 10}};
  for (const auto& row : rows) {
    view->ZoomToScaleFactor(1.0);
    view->SetScrollPos(CPoint(300, 200), FALSE);
    const double factor =
        row.factor != 0 ? row.factor : std::min(view->m_szClient.cx, view->m_szClient.cy) / 100.0;
    view->ToggleZoomSelect();
    ASSERT_EQ(view->IsZoomSelected(), 1);
    EXPECT_EQ(CursorAt(HTCLIENT), UINT{IDC_ZP_CURSOR_SELECT});
    Press(row.from);
    Move(row.to);
    Release(row.to);
    EXPECT_DOUBLE_EQ(view->m_dScaleFactor, factor);
    EXPECT_EQ(view->m_ptScroll, CPoint(static_cast<int>(400 * factor), static_cast<int>(260 * factor)));
    EXPECT_EQ(view->IsZoomSelected(), 0);
  }
  view->SetFitMode(1);
  view->ToggleZoomSelect();
  Press({50, 50});
  Release({90, 50});
  EXPECT_EQ(view->GetFitMode(), 1) << "an empty selection changes nothing";
  EXPECT_EQ(view->IsZoomSelected(), 0);
}

TEST_F(ViewMouse, ASelectionThatIsBrokenOffStaysArmed) {
  const unsigned ground = Pixel(60, 90);
  view->ToggleZoomSelect();
  Press({60, 50});
  Move({160, 120});
  ASSERT_EQ(Pixel(60, 90), ground ^ 0xffffff);
  // What is painted meanwhile keeps the frame whole.
  view->InvalidateRect(CRect(0, 0, 100, 95), FALSE);
  view->UpdateWindow();
  EXPECT_EQ(Pixel(60, 90), ground ^ 0xffffff);
  EXPECT_EQ(Pixel(60, 100), ground ^ 0xffffff);
  ::SetCapture(*frame);
  EXPECT_EQ(view->IsZoomSelected(), 1);
  EXPECT_EQ(Pixel(60, 90), ground ^ 0xffffff);
  view->Invalidate();
  view->UpdateWindow();
  EXPECT_EQ(Pixel(60, 90), ground);
  ::ReleaseCapture();
  view->trace.clear();
  view->ToggleZoomSelect();
  EXPECT_EQ(view->IsZoomSelected(), 0);
  EXPECT_EQ(view->trace, "mode0 ") << "by the operation that a host can take over";
}

TEST_F(ViewMouse, WhatEndsADragOrASelectionFreesTheMouse) {
  const std::string path = File({Page{2000, 1600, 8}});
  const struct {
    const char* what;
    bool selecting;
    std::function<void()> act;
  } rows[] = {{"mode", false, [this] { view->SetMouseMode(ViewMouseZoomIn); }},
              {"arming", false, [this] { view->ToggleZoomSelect(); }},
              {"open", false, [&] { document->OnOpenDocument(path.c_str()); }},
              {"disarming", true, [this] { view->ToggleZoomSelect(); }},
              {"the page goes", true, [this] { view->ForgetBitmap(); }}};
  for (const auto& row : rows) {
    document->OnOpenDocument(path.c_str());
    view->SetMouseMode(ViewMouseDrag);
    if ((view->IsZoomSelected() != 0) != row.selecting) view->ToggleZoomSelect();
    Settle();
    const unsigned ground = Pixel(60, 90);
    Press({60, 50});
    if (row.selecting) Move({160, 120});
    ASSERT_EQ(::GetCapture(), view->m_hWnd) << row.what;
    EXPECT_EQ(Pixel(60, 90) != ground, row.selecting) << row.what;
    row.act();
    EXPECT_EQ(::GetCapture(), nullptr) << row.what;
    EXPECT_EQ(Pixel(60, 90), ground) << row.what << ": no band is left";
  }
}

TEST_F(ViewMouse, WheelAndKeys) {
  platform::testing::TurnWheel(*view, {50, 50}, 120, false, true);
  platform::testing::PumpUntilIdle();
  EXPECT_EQ(view->GetScalePercent(), 200);
  EXPECT_EQ(frame->zooms, 1);
  view->ZoomToScaleFactor(1.0);
  view->SetScrollPos(CPoint(0, 0), FALSE);
  platform::testing::TurnWheel(*view, {50, 50}, -120);
  platform::testing::PumpUntilIdle();
  EXPECT_EQ(view->m_ptScroll, CPoint(0, 75));
  platform::testing::PressKey(*view, VK_RIGHT);
  platform::testing::PumpUntilIdle();
  EXPECT_EQ(view->m_ptScroll, CPoint(15, 75));
  platform::testing::PressKey(*view, VK_NEXT);
  platform::testing::PumpUntilIdle();
  EXPECT_EQ(view->m_ptScroll, CPoint(15, 75 + view->m_szClient.cy - view->m_szClient.cy / 4));
}

TEST_F(ViewMouse, TheContextMenuCommandsTheFrame) {
  static HWND asked;
  asked = nullptr;
  platform::testing::SetMenuAnswer([](HMENU, HWND owner) {
    asked = owner;
    return 0;
  });
  platform::testing::PressMouse(*view, {50, 50}, Button::Right);
  platform::testing::ReleaseMouse(*view, {50, 50}, Button::Right);
  platform::testing::PumpUntilIdle();
  platform::testing::SetMenuAnswer(nullptr);
  EXPECT_EQ(asked, frame->m_hWnd);
}

}  // namespace
