// Toolbar, status bar and what a frame does for them.

#include <gtest/gtest.h>

#include <cstdlib>

#include "platform/framework/thread.h"
#include "tessarel12_testing.h"
#include "tests/framework/bars_fixture.h"

using namespace bars_test;  // NOLINT: the tests' own names
namespace desktop = platform::testing;

namespace {

class Bars : public ::testing::Test {
 protected:
  Bars() : m_frame(Frame::Show(700, 400)) {}
  ~Bars() override {
    m_frame->DestroyWindow();
    desktop::PumpUntilIdle();
  }
  static void Idle() {
    for (LONG count = 0; AfxGetThread()->OnIdle(count) != 0;) ++count;
    desktop::PumpUntilIdle();
  }
  CPoint Middle(int button) const {
    CRect place;
    m_frame->toolbar.GetItemRect(button, place);
    return place.CenterPoint();
  }
  Frame* m_frame;
};

/// A window's place in the client area of its frame.
CRect PlaceIn(const CWnd& frame, const CWnd& window) {
  CRect rect;
  window.GetWindowRect(rect);
  frame.ScreenToClient(rect);
  return rect;
}

/// TESSAREL_PICTURES names a folder for pictures to look at.
void Picture(const CWnd& window, const std::string& name) {
  const char* folder = std::getenv("TESSAREL_PICTURES");
  if (folder != nullptr) desktop::SaveWindowPicture(window, (std::string(folder) + "/" + name).c_str());
}

TEST_F(Bars, BarsTakeTheEdgesAndThePaneTheRest) {
  CRect client;
  m_frame->GetClientRect(client);
  const CRect toolbar = PlaceIn(*m_frame, m_frame->toolbar);
  const CRect status = PlaceIn(*m_frame, m_frame->status);
  const CRect pane = PlaceIn(*m_frame, m_frame->splitter);
  EXPECT_EQ(toolbar.TopLeft(), CPoint(0, 0));
  EXPECT_EQ(toolbar.right, client.right);
  EXPECT_EQ(toolbar.Height(), 23 + 2 * 2 + 1) << "buttons, room above and below, the line";
  EXPECT_EQ(status.bottom, client.bottom);
  EXPECT_EQ(pane, CRect(0, toolbar.bottom, client.right, status.top));
  Picture(*m_frame, "frame.png");
}

// Buttons

TEST_F(Bars, ButtonsLieBehindEachOtherAndGapsHaveTheirWidth) {
  const CToolBar& bar = m_frame->toolbar;
  const int widths[] = {23, 8, 23, 23, 40, 23, 50, 8, 23};
  CRect place;
  bar.GetItemRect(0, place);
  LONG x = place.left;
  EXPECT_GT(x, 8) << "behind the gripper";
  for (int i = 0; i < 9; ++i) {
    bar.GetItemRect(i, place);
    EXPECT_EQ(place, CRect(x, 2, x + widths[i], 25)) << i;
    x = place.right;
  }
  EXPECT_EQ(m_frame->toolbar.SendMessage(TB_BUTTONCOUNT), 9);
  EXPECT_EQ(bar.CommandToIndex(kNext), 5);
  EXPECT_EQ(bar.CommandToIndex(12345), -1);
  UINT id = 0;
  UINT style = 0;
  int image = 0;
  bar.GetButtonInfo(8, id, style, image);
  EXPECT_EQ(id, UINT{kThumbnails});
  EXPECT_EQ(image, 4) << "separators have no picture";
  m_frame->toolbar.SendMessage(TB_HIDEBUTTON, kDrag, MAKELPARAM(1, 0));
  CRect moved;
  bar.GetItemRect(3, moved);
  bar.GetItemRect(1, place);
  EXPECT_EQ(moved.left, place.right) << "the hidden button gives up its room";
}

TEST_F(Bars, AClickIsACommandUnlessItEndsElsewhere) {
  const struct {
    const char* name;
    int down, up;
    bool page;
    const char* trace;
  } cases[] = {{"on the button", 5, 5, true, "N"},   {"the other one", 0, 0, true, "P"},
               {"let go beside it", 5, 0, true, ""}, {"disabled", 5, 5, false, ""},
               {"separator", 1, 1, true, ""},        {"no handler", 3, 3, true, ""}};
  for (const auto& c : cases) {
    m_frame->trace.clear();
    m_frame->hasPage = c.page;
    Idle();
    desktop::MoveMouse(m_frame->toolbar, Middle(c.down));
    desktop::PressMouse(m_frame->toolbar, Middle(c.down));
    desktop::MoveMouse(m_frame->toolbar, Middle(c.up), true);
    desktop::ReleaseMouse(m_frame->toolbar, Middle(c.up));
    desktop::PumpUntilIdle();
    EXPECT_EQ(m_frame->trace, c.trace) << c.name;
    EXPECT_EQ(CWnd::GetCapture(), nullptr) << c.name;
  }
}

TEST_F(Bars, KeysGoFromButtonToButtonAndPressThem) {
  m_frame->splitter.SetFocus();
  const HWND former = ::GetFocus();
  m_frame->toolbar.SetFocus();
  const struct {
    int key;
    int at;  // the button that is marked after it
    const char* trace;
    bool page = true;
  } steps[] = {{VK_LEFT, 0, ""},         {VK_RETURN, 0, "P"},   {VK_RIGHT, 2, ""},
               {VK_DOWN, 5, ""},         {VK_SPACE, 5, "N"},    {VK_SPACE, 5, "", false},
               {VK_RIGHT, 5, "", false}, {VK_UP, 2, "", false}, {VK_END, 2, "", false},
               {VK_END, 5, ""},          {VK_HOME, 0, ""},      {VK_ESCAPE, -1, ""}};
  for (const auto& step : steps) {
    m_frame->trace.clear();
    m_frame->hasPage = step.page;
    Idle();
    desktop::PressKey(m_frame->toolbar, step.key);
    desktop::PumpUntilIdle();
    EXPECT_EQ(m_frame->trace, step.trace) << step.key;
    m_frame->toolbar.UpdateWindow();
    const std::uint32_t ground = desktop::WindowPixel(m_frame->toolbar, Middle(1).x + 2, Middle(1).y);
    int marked = -1;
    for (const int button : {0, 2, 3, 5, 8})
      if (desktop::WindowPixel(m_frame->toolbar, Middle(button).x, Middle(button).y - 11) != ground)
        marked = button;
    EXPECT_EQ(marked, step.at) << step.key;
  }
  EXPECT_EQ(::GetFocus(), former) << "back where the keyboard came from";
}

TEST_F(Bars, IdleTimeBringsTheButtonsUpToDate) {
  const CToolBar& bar = m_frame->toolbar;
  EXPECT_EQ(bar.GetButtonStyle(0), UINT{TBBS_BUTTON}) << "a handler, no update handler";
  EXPECT_EQ(bar.GetButtonStyle(3), UINT{TBBS_DISABLED}) << "no handler";
  EXPECT_EQ(bar.GetButtonStyle(2), UINT{TBBS_CHECKBOX});
  m_frame->mode = 1;
  m_frame->hasPage = false;
  m_frame->toolbar.OnUpdateCmdUI(m_frame, TRUE);
  EXPECT_EQ(bar.GetButtonStyle(2), TBBS_CHECKBOX | TBBS_CHECKED);
  EXPECT_EQ(bar.GetButtonStyle(5), UINT{TBBS_DISABLED});
  EXPECT_EQ(m_frame->toolbar.SendMessage(TB_GETSTATE, kNext), 0);
  EXPECT_EQ(m_frame->toolbar.SendMessage(TB_GETSTATE, kDrag), TBSTATE_ENABLED | TBSTATE_CHECKED);
  EXPECT_EQ(bar.GetButtonStyle(kPageGap), UINT{TBBS_SEPARATOR}) << "a gap isn't asked for";
  Picture(*m_frame, "checked.png");
}

TEST_F(Bars, AButtonUnderThePointerIsRaised) {
  const CPoint corner = Middle(0) - CSize(0, 10);
  const auto face = [&] {
    m_frame->toolbar.UpdateWindow();
    return desktop::WindowPixel(m_frame->toolbar, corner.x, corner.y);
  };
  const std::uint32_t atRest = face();
  desktop::MoveMouse(m_frame->toolbar, Middle(0));
  desktop::PumpUntilIdle();
  const std::uint32_t raised = face();
  Picture(*m_frame, "hot.png");
  EXPECT_NE(raised, atRest);
  desktop::PressMouse(m_frame->toolbar, Middle(0));
  desktop::PumpUntilIdle();
  EXPECT_NE(face(), raised);
  EXPECT_NE(face(), atRest);
  desktop::ReleaseMouse(m_frame->toolbar, Middle(0));
  desktop::LeaveWindow(m_frame->toolbar);
  desktop::PumpUntilIdle();
  EXPECT_EQ(face(), atRest);
}

TEST_F(Bars, AGapShowsItsLineOnlyWithoutAChild) {
  CRect gap;
  m_frame->toolbar.GetItemRect(kPageGap, gap);
  const auto marked = [&] {
    m_frame->toolbar.Invalidate();
    m_frame->toolbar.UpdateWindow();
    const std::uint32_t ground = desktop::WindowPixel(m_frame->toolbar, gap.left + 3, gap.top + 11);
    std::string columns;
    for (LONG x = gap.left; x < gap.right; ++x)
      if (desktop::WindowPixel(m_frame->toolbar, x, gap.top + 11) != ground)
        columns += std::to_string(x - gap.left) + " ";
    return columns;
  };
  m_frame->page.ShowWindow(SW_HIDE);
  const std::string line = marked();
  EXPECT_NE(line.find("20"), std::string::npos) << "in the middle of 40, got " << line;
  EXPECT_LE(line.size(), 6U) << line;
  m_frame->page.MoveWindow(gap.left, gap.top, 2, 2);  // touches the gap only
  m_frame->page.ShowWindow(SW_SHOW);
  EXPECT_EQ(marked(), "");
}

TEST_F(Bars, AChildsCommandReachesTheFrame) {
  m_frame->toolbar.SendMessage(WM_COMMAND, MAKEWPARAM(kPageControl, 9),
                               reinterpret_cast<LPARAM>(m_frame->page.m_hWnd));
  EXPECT_EQ(m_frame->trace, "C");
}

TEST_F(Bars, TipsAndPromptsComeFromTheString) {
  const CPoint control = PlaceIn(m_frame->toolbar, m_frame->page).CenterPoint();
  const struct {
    const char* name;
    CPoint point;
    const char* tip;
    const char* prompt;
  } cases[] = {{"button", Middle(0), "Stampa", "Stampa il documento"},
               {"button without a string", Middle(2), "", "Pronto"},
               {"control", control, "Pagina", "Sceglie la pagina"},
               {"other button", Middle(5), "Pagina seguente", "Passa alla pagina seguente"},
               {"separator", Middle(1), "", "Pronto"}};
  for (const auto& c : cases) {
    EXPECT_EQ(desktop::ToolTipAt(m_frame->toolbar, c.point), c.tip) << c.name;
    desktop::MoveMouse(m_frame->toolbar, c.point);
    desktop::PumpUntilIdle();
    EXPECT_EQ(m_frame->status.GetPaneText(0), c.prompt) << c.name;
  }
  desktop::MoveMouse(m_frame->toolbar, Middle(0));
  desktop::PumpUntilIdle();
  desktop::LeaveWindow(m_frame->toolbar);
  desktop::PumpUntilIdle();
  EXPECT_EQ(m_frame->status.GetPaneText(0), "Pronto");
}

// Docking

TEST_F(Bars, TheGripperMovesTheBarToAnotherEdge) {
  CRect client;
  m_frame->GetClientRect(client);
  const auto drag = [&](CPoint to) {
    const CPoint grip(4, 4);
    CPoint point = to;
    m_frame->ClientToScreen(&point);
    desktop::PressMouse(m_frame->toolbar, grip);
    m_frame->toolbar.ScreenToClient(&point);
    desktop::MoveMouse(m_frame->toolbar, point, true);
    desktop::PumpUntilIdle();
    desktop::ReleaseMouse(m_frame->toolbar, grip);
    desktop::PumpUntilIdle();
    return PlaceIn(*m_frame, m_frame->toolbar);
  };
  const CRect left = drag({3, 200});
  const CRect status = PlaceIn(*m_frame, m_frame->status);
  EXPECT_EQ(left, CRect(0, 0, 23 + 2 * 2 + 1, status.top)) << "the status bar keeps its whole edge";
  EXPECT_EQ(m_frame->page.IsWindowVisible(), FALSE) << "a control doesn't fit into a column";
  EXPECT_EQ(PlaceIn(*m_frame, m_frame->splitter), CRect(left.right, 0, client.right, status.top));
  Picture(*m_frame, "left.png");
  CRect last;
  m_frame->toolbar.GetItemRect(8, last);
  EXPECT_EQ(last.bottom, 12 + 5 * 23 + 2 * 8) << "the gaps of the controls have gone";
  const CRect bottom = drag({300, 390});
  EXPECT_EQ(PlaceIn(m_frame->toolbar, m_frame->page).top, 3) << "below the line, as the buttons";
  EXPECT_EQ(bottom.bottom, status.top);
  EXPECT_EQ(bottom.Width(), client.Width());
  EXPECT_NE(m_frame->page.IsWindowVisible(), FALSE);
  Picture(*m_frame, "bottom.png");
  EXPECT_EQ(drag({300, 5}).TopLeft(), CPoint(0, 0));
}

TEST_F(Bars, ABarsCommandHidesAndShowsIt) {
  const CRect before = PlaceIn(*m_frame, m_frame->splitter);
  m_frame->SendMessage(WM_COMMAND, AFX_IDW_TOOLBAR);
  EXPECT_EQ(m_frame->toolbar.IsVisible(), FALSE);
  EXPECT_EQ(PlaceIn(*m_frame, m_frame->splitter).top, 0);
  m_frame->SendMessage(WM_COMMAND, AFX_IDW_TOOLBAR);
  EXPECT_EQ(PlaceIn(*m_frame, m_frame->splitter), before);
}

// Status bar

TEST_F(Bars, PanesHangAtTheRightAndTheFirstTakesTheRest) {
  CStatusBar& status = m_frame->status;
  CRect message;
  CRect zoom;
  CRect page;
  const auto places = [&] {
    status.GetItemRect(0, message);
    status.GetItemRect(1, zoom);
    status.GetItemRect(2, page);
  };
  places();
  const int width = page.Width();
  const int messageWidth = message.Width();
  m_frame->SetWindowPos(nullptr, 0, 0, 600, 300, SWP_NOMOVE | SWP_NOZORDER);
  places();
  EXPECT_EQ(page.Width(), width);
  EXPECT_EQ(message.Width(), messageWidth - 100);
  CRect client;
  status.GetClientRect(client);
  EXPECT_LT(client.right - page.right, 24) << "the grip";
  m_frame->status.SetPaneStyle(1, SBPS_NORMAL);
  m_frame->status.SetPaneStyle(2, SBPS_NORMAL);
  m_frame->status.SetPaneText(1, "Scale: 1000%");
  m_frame->status.SetPaneText(2, "Pagina 99 di 100");
  Picture(*m_frame, "panes.png");
}

TEST_F(Bars, ADisabledPaneIsBlankAndTheWindowsTextIsTheFirstPanes) {
  CStatusBar& status = m_frame->status;
  CRect pane;
  status.GetItemRect(1, pane);
  const auto dark = [&] {
    status.UpdateWindow();
    int count = 0;
    for (LONG y = pane.top + 2; y < pane.bottom - 2; ++y)
      for (LONG x = pane.left + 2; x < pane.right - 2; ++x)
        if ((desktop::WindowPixel(status, x, y) & 0xff) < 0x60) ++count;
    return count;
  };
  EXPECT_NE(status.SetPaneText(1, "Zoom 1:2"), FALSE);
  EXPECT_EQ(dark(), 0);
  status.SetPaneStyle(1, 0);
  const int ink = dark();
  EXPECT_GT(ink, 20);
  status.SetPaneText(1, "Zoom 1:2 1:2", FALSE);
  EXPECT_GT(dark(), ink) << "seen with the next paint";
  EXPECT_EQ(status.SetPaneText(3, "x"), FALSE);
  EXPECT_EQ(status.CommandToIndex(kPagePane), 2);
  status.SetWindowText("Apertura file ...");
  EXPECT_EQ(status.GetPaneText(0), "Apertura file ...");
  CString text;
  status.GetWindowText(text);
  EXPECT_EQ(text, "Apertura file ...");
  m_frame->SetMessageText(UINT{kPrint});
  EXPECT_EQ(status.GetPaneText(0), "Stampa il documento");
  m_frame->m_nIDTracking = AFX_IDS_IDLEMESSAGE;
  m_frame->OnIdleUpdateCmdUI();
  EXPECT_EQ(status.GetPaneText(0), "Pronto");
}

TEST_F(Bars, TheRulerMeasuresWhatIsPainted) {
  // A text that was measured through GetDC must not be cut by its pane.
  CStatusBar& status = m_frame->status;
  status.SetPaneStyle(2, 0);
  status.SetPaneText(2, "Pagina 99 di 10|");
  status.UpdateWindow();
  CRect pane;
  status.GetItemRect(2, pane);
  LONG last = 0;
  for (LONG x = pane.left + 2; x < pane.right - 2; ++x)
    if ((desktop::WindowPixel(status, x, pane.CenterPoint().y) & 0xff) < 0xa0) last = x;
  EXPECT_GT(last, pane.right - 22) << "the text fills the pane";
  EXPECT_LT(last, pane.right - 4) << "and ends before its edge";
}

// Image lists

TEST(ImageLists, TheMaskColourIsTransparentInAListWithAMask) {
  const HDC screen = ::GetDC(nullptr);
  const HDC memory = CreateCompatibleDC(screen);
  const std::uint32_t strip[] = {0xffff00ff, 0xff102030, 0xff405060, 0xffff00ff, 0xff708090};
  const HBITMAP bitmap = CreateBitmap(5, 1, 1, 32, strip);
  const HBITMAP target = CreateBitmap(2, 1, 1, 32, nullptr);
  const HGDIOBJ former = SelectObject(memory, target);
  for (const bool masked : {true, false}) {
    CImageList list;
    ASSERT_NE(list.Create(2, 1, ILC_COLOR24 | (masked ? UINT{ILC_MASK} : 0), 4, 1), FALSE);
    EXPECT_EQ(ImageList_AddMasked(list, bitmap, RGB(255, 0, 255)), 0);
    EXPECT_EQ(list.GetImageCount(), 2) << "the rest of the strip is no picture";
    PatBlt(memory, 0, 0, 2, 1, WHITENESS);
    EXPECT_NE(ImageList_Draw(list, 0, memory, 0, 0, ILD_NORMAL), FALSE);
    EXPECT_EQ(GetPixel(memory, 0, 0), masked ? RGB(255, 255, 255) : RGB(255, 0, 255));
    EXPECT_EQ(GetPixel(memory, 1, 0), RGB(0x10, 0x20, 0x30));
    EXPECT_EQ(ImageList_Draw(list, 2, memory, 0, 0, ILD_NORMAL), FALSE);
  }
  SelectObject(memory, former);
  DeleteObject(bitmap);
  DeleteObject(target);
  DeleteDC(memory);
  ::ReleaseDC(nullptr, screen);
}

}  // namespace
