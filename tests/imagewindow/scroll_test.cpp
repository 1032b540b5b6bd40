// Scroll bars, scroll messages and resizing, as they come from the desktop or the program.

#include "tests/imagewindow/window_fixture.h"

namespace {

class Scrolling : public ImageWindowTest {
 protected:
  /// A page with both bars up; the client area is 400 by 302.
  void ShowLarge() {
    Show({{2000, 1500}});
    SetClient(400, 302);
    Settle();
    ASSERT_EQ(window->m_ptScrollMax, CPoint(1600, 1198));
  }
};

TEST_F(Scrolling, BarsTellScaledSizeAndClient) {
  ShowLarge();
  const SCROLLINFO horizontal = Bar(SB_HORZ);
  EXPECT_EQ(horizontal.nMin, 0);
  EXPECT_EQ(horizontal.nMax, 2000);
  EXPECT_EQ(horizontal.nPage, 400U);
  EXPECT_EQ(Bar(SB_VERT).nMax, 1500);
  window->SetScrollPos(CPoint(-7, 5000), 0);
  EXPECT_EQ(window->m_ptScroll, CPoint(0, 1198));
  EXPECT_EQ(Bar(SB_VERT).nPos, 1198);
}

TEST_F(Scrolling, ASmallPageHasNoBarsAndDoesntMove) {
  Show({{100, 100}});
  EXPECT_EQ(window->m_szClient, CSize(400, 300));
  EXPECT_EQ(window->m_ptScrollMax, CPoint(0, 0));
  for (UINT message : {WM_HSCROLL, WM_VSCROLL})
    for (int code : {SB_LINEUP, SB_LINEDOWN, SB_PAGEUP, SB_PAGEDOWN, SB_TOP, SB_BOTTOM, SB_ENDSCROLL}) {
      window->SendMessage(message, static_cast<WPARAM>(code));
      EXPECT_FALSE(IsInvalid()) << code;
    }
}

TEST_F(Scrolling, APageOfTheClientsWidthKeepsItsBar) {
  Show({{400, 100}});
  EXPECT_EQ(window->m_szClient, CSize(400, 300 - GetSystemMetrics(SM_CYHSCROLL)));
  Show({{399, 100}});
  EXPECT_EQ(window->m_szClient, CSize(400, 300));
}

TEST_F(Scrolling, CodesMoveTheirAxisAndNoOther) {
  ShowLarge();
  const struct {
    UINT message;
    int code;
    CPoint from, to;
    bool repaints;
  } cases[] = {{WM_VSCROLL, SB_LINEDOWN, {5, 0}, {5, 15}, true},
               {WM_VSCROLL, SB_LINEUP, {5, 10}, {5, 0}, true},
               {WM_VSCROLL, SB_LINEUP, {5, 0}, {5, 0}, false},
               {WM_VSCROLL, SB_LINEDOWN, {5, 1190}, {5, 1198}, true},
               {WM_VSCROLL, SB_LINEDOWN, {5, 1198}, {5, 1198}, false},
               {WM_VSCROLL, SB_PAGEDOWN, {5, 100}, {5, 100 + 302 - 75}, true},
               {WM_VSCROLL, SB_PAGEUP, {5, 100}, {5, 0}, true},
               {WM_HSCROLL, SB_PAGEDOWN, {0, 9}, {300, 9}, true},
               {WM_HSCROLL, SB_PAGEUP, {1600, 9}, {1300, 9}, true},
               {WM_HSCROLL, SB_LINEUP, {100, 9}, {85, 9}, true},
               {WM_HSCROLL, SB_LINEDOWN, {100, 9}, {115, 9}, true},
               {WM_HSCROLL, SB_TOP, {100, 9}, {100, 9}, false},
               {WM_HSCROLL, SB_BOTTOM, {100, 9}, {100, 9}, false},
               {WM_HSCROLL, SB_ENDSCROLL, {100, 9}, {100, 9}, false},
               // Outside a drag the thumb stands at the position, whatever the message's own position says.
               {WM_HSCROLL, SB_THUMBPOSITION, {100, 9}, {100, 9}, true},
               {WM_VSCROLL, SB_THUMBTRACK, {100, 9}, {100, 9}, true}};
  for (const auto& c : cases) {
    window->SetScrollPos(c.from, 0);
    Settle();
    window->SendMessage(c.message, MAKEWPARAM(c.code, 777));
    EXPECT_EQ(window->m_ptScroll, c.to) << "code " << c.code;
    EXPECT_EQ(CPoint(Bar(SB_HORZ).nPos, Bar(SB_VERT).nPos), c.to) << "code " << c.code;
    EXPECT_EQ(IsInvalid(), c.repaints) << "code " << c.code;
    if (c.repaints) {
      EXPECT_FALSE(PaintErased()) << "code " << c.code;
    }
  }
}

TEST_F(Scrolling, TheThumbIsFollowedBeyondSixteenBits) {
  Show({{20000, 60}});
  window->ZoomToScaleFactor(9);
  SetClient(400, 300);
  Settle();
  platform::testing::DragThumb(*window, SB_HORZ, 150000, false);
  EXPECT_EQ(window->m_ptScroll.x, 150000);
  platform::testing::DragThumb(*window, SB_HORZ, 120001, true);
  EXPECT_EQ(window->m_ptScroll.x, 120001);
  // The bar's range is one longer than the way.
  platform::testing::DragThumb(*window, SB_HORZ, 180000, true);
  EXPECT_EQ(window->m_ptScroll.x, window->m_ptScrollMax.x);
}

TEST_F(Scrolling, ArrowsAndTroughOfTheRealBars) {
  ShowLarge();
  platform::testing::ClickScrollBar(*window, SB_VERT, true, false);
  EXPECT_EQ(window->m_ptScroll, CPoint(0, 15));
  platform::testing::ClickScrollBar(*window, SB_HORZ, true, true);
  EXPECT_EQ(window->m_ptScroll, CPoint(300, 15));
  platform::testing::ClickScrollBar(*window, SB_VERT, false, false);
  EXPECT_EQ(window->m_ptScroll, CPoint(300, 0));
}

TEST_F(Scrolling, MovesByHandStopAtTheEdges) {
  ShowLarge();
  window->MoveScrollPos(CSize(50, 70));
  EXPECT_EQ(window->m_ptScroll, CPoint(50, 70));
  EXPECT_EQ(Bar(SB_VERT).nPos, 70);
  EXPECT_FALSE(PaintErased());
  window->MoveScrollPos(CSize(-999, 99999));
  EXPECT_EQ(window->m_ptScroll, CPoint(0, 1198));
}

TEST_F(Scrolling, ResizingPullsThePositionBackAndRepaintsOnlyThen) {
  ShowLarge();
  window->SetScrollPos(CPoint(1600, 1198), 0);
  SetClient(500, 402);
  EXPECT_EQ(window->m_szClient, CSize(500, 402));
  EXPECT_EQ(window->m_ptScroll, CPoint(1500, 1098));
  EXPECT_EQ(window->m_ptScrollMax, CPoint(1500, 1098));
  EXPECT_EQ(CPoint(Bar(SB_HORZ).nPos, Bar(SB_VERT).nPos), CPoint(1500, 1098));
  EXPECT_EQ(Bar(SB_HORZ).nPage, 500U);
  CRect invalid;
  window->GetUpdateRect(invalid);
  EXPECT_EQ(invalid, CRect(0, 0, 500, 402));

  Settle();
  SetClient(400, 302);
  EXPECT_EQ(window->m_ptScroll, CPoint(1500, 1098)) << "shrinking keeps the corner";
  EXPECT_TRUE(IsInvalid());

  window->SetScrollPos(CPoint(0, 0), 0);
  Settle();
  SetClient(300, 202);
  EXPECT_FALSE(IsInvalid()) << "at the page's corner nothing has moved";
}

TEST_F(Scrolling, ThumbsStandAtThePositionWhateverBarsComeAndGo) {
  Show({{600, 420}});
  const CSize sizes[] = {{300, 200}, {598, 300}, {610, 430}, {400, 418}, {604, 412}, {590, 421}};
  for (const CSize from : sizes)
    for (const CSize to : sizes) {
      window->MoveWindow(0, 0, from.cx, from.cy);
      window->SetScrollPos(CPoint(600, 420), 0);
      Settle();
      const CPoint before = window->m_ptScroll;
      window->MoveWindow(0, 0, to.cx, to.cy, FALSE);
      EXPECT_EQ(CPoint(Bar(SB_HORZ).nPos, Bar(SB_VERT).nPos), window->m_ptScroll) << from.cx << " " << to.cx;
      CRect invalid;
      window->GetUpdateRect(invalid);
      EXPECT_TRUE(window->m_ptScroll == before || invalid.Size() == window->m_szClient)
          << "what was seen has moved: " << from.cx << " by " << from.cy << " to " << to.cx << " by "
          << to.cy;
    }
}

TEST_F(Scrolling, GrowingOverThePageTakesTheBarsAway) {
  Show({{700, 500}});
  SetClient(400, 300);
  window->SetScrollPos(CPoint(300, 200), 0);
  window->MoveWindow(0, 0, 900, 700);
  EXPECT_EQ(window->m_ptScroll, CPoint(0, 0));
  EXPECT_EQ(window->m_ptScrollMax, CPoint(0, 0));
  CRect client;
  CRect outer;
  window->GetClientRect(client);
  window->GetWindowRect(outer);
  EXPECT_EQ(window->m_szClient, client.Size());
  EXPECT_LE(outer.Width() - client.Width(), 2 * GetSystemMetrics(SM_CXEDGE)) << "no bar";
}

TEST_F(Scrolling, ScrollMessagesQueueLikeAnyOther) {
  ShowLarge();
  for (int i = 0; i < 3; ++i) window->PostMessage(WM_VSCROLL, SB_LINEDOWN);
  EXPECT_EQ(window->m_ptScroll.y, 0);
  platform::testing::PumpUntilIdle();
  EXPECT_EQ(window->m_ptScroll.y, 45);
}

}  // namespace
