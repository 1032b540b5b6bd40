// Document windows inside a main window.

#include <gtest/gtest.h>

#include <cstdlib>

#include "platform/framework/menu.h"
#include "platform/framework/thread.h"
#include "platform/window/accelerators.h"
#include "tessarel12_testing.h"
#include "tests/framework/mdi_fixture.h"

using namespace mdi_test;  // NOLINT: the tests' own names
namespace desktop = platform::testing;

namespace {

class Mdi : public ::testing::Test {
 protected:
  Mdi() : m_main(Main::Show()) {}
  ~Mdi() override {
    if (m_main != nullptr) m_main->DestroyWindow();
    desktop::PumpUntilIdle();
  }
  Child* Add(const std::string& name, bool bars = false, bool menu = true) {
    Child* child = Child::Show(m_main, name, bars, menu);
    desktop::PumpUntilIdle();
    g_trace.clear();
    return child;
  }
  CRect ClientArea() const {
    CRect rect;
    ::GetClientRect(m_main->m_hWndMDIClient, rect);
    return rect;
  }
  CString Title() const { return TitleOf(*m_main); }
  std::string Active() const {
    auto* child = static_cast<Child*>(m_main->MDIGetActive());
    return child == nullptr ? "-" : child->name;
  }
  Main* m_main;
};

/// TESSAREL_PICTURES names a folder for pictures to look at.
void Picture(const CWnd& window, const std::string& name) {
  const char* folder = std::getenv("TESSAREL_PICTURES");
  if (folder != nullptr) desktop::SaveWindowPicture(window, (std::string(folder) + "/" + name).c_str());
}

// Who is active

TEST_F(Mdi, OwnMenusTakeTheirTurnInTheBarAndADestroyedOneLeavesIt) {
  const auto menu = [](UINT id) {
    HMENU bar = CreateMenu();
    AppendMenuA(bar, MF_STRING, id, "x");
    return bar;
  };
  const HMENU loaded = m_main->m_hMenuDefault;
  Child* child = Child::Show(m_main, "Uno");
  const HMENU childs = child->m_hMenuShared;
  const HMENU main = menu(1);
  m_main->SetFrameMenu(main);
  EXPECT_FALSE(IsMenu(loaded)) << "nobody else destroys it";
  EXPECT_EQ(GetMenu(*m_main), childs) << "not yet its turn";
  const HMENU own = menu(2);
  child->SetFrameMenu(own);
  EXPECT_FALSE(IsMenu(childs));
  EXPECT_EQ(GetMenu(*m_main), own);
  child->SetFrameMenu(nullptr);
  EXPECT_EQ(GetMenu(*m_main), main);
  child->SetFrameMenu(menu(3));
  child->DestroyWindow();
  EXPECT_EQ(GetMenu(*m_main), main);
  DestroyMenu(main);
  EXPECT_EQ(GetMenu(*m_main), nullptr) << "a bar with a dead menu";
}

TEST_F(Mdi, ActivationTellsBothWindowsAndBringsMenuTitleAndFocus) {
  const HMENU own = m_main->m_hMenuDefault;
  EXPECT_STREQ(Title(), "Visore");
  Child* uno = Child::Show(m_main, "Uno");
  EXPECT_EQ(g_trace, "Uno+(Uno,-) ");
  EXPECT_STREQ(Title(), "Visore - Uno");
  EXPECT_EQ(GetMenu(*m_main), uno->m_hMenuShared);
  EXPECT_EQ(CWnd::GetFocus(), &uno->pane);
  Child* due = Add("Due", false, false);
  EXPECT_EQ(GetMenu(*m_main), own) << "a window without a menu must not leave the other's";
  uno->MDIActivate();
  EXPECT_EQ(g_trace, "Due-(Uno,Due) Uno+(Uno,Due) ");
  EXPECT_STREQ(Title(), "Visore - Uno");
  EXPECT_EQ(::GetWindow(m_main->m_hWndMDIClient, GW_CHILD), uno->m_hWnd) << "in front";
  EXPECT_EQ(CWnd::GetFocus(), &uno->pane);
  g_trace.clear();
  uno->DestroyWindow();
  EXPECT_EQ(g_trace, "Uno-(Due,Uno) Due+(Due,Uno) ");
  g_trace.clear();
  due->DestroyWindow();
  EXPECT_EQ(g_trace, "Due-(-,Due) ");
  EXPECT_STREQ(Title(), "Visore");
  EXPECT_EQ(GetMenu(*m_main), own);
  EXPECT_EQ(m_main->GetActiveFrame(), m_main);
  EXPECT_EQ(::GetFocus(), m_main->m_hWndMDIClient) << "keys still come to the main window";
}

TEST_F(Mdi, CommandsGoToTheActiveWindowFirst) {
  const struct {
    UINT id;
    const char* without;
    const char* with;
  } cases[] = {
      {kChildOnly, "", "Uno "}, {kMainOnly, "main ", "main "}, {kBoth, "main ", "Uno "}, {kNobody, "", ""}};
  for (const bool child : {false, true}) {
    if (child) Add("Uno");
    for (const auto& test : cases) {
      g_trace.clear();
      m_main->SendMessage(WM_COMMAND, test.id);
      EXPECT_EQ(g_trace, child ? test.with : test.without) << test.id;
    }
  }
}

TEST_F(Mdi, TheChildsMenuInTheMainBarAsksTheChild) {
  Child* uno = Add("Uno");
  uno->canNext = false;
  EXPECT_FALSE(desktop::ChooseMenuItem(*m_main, kChildOnly));
  EXPECT_FALSE(desktop::ChooseMenuItem(*m_main, kNobody)) << "nobody's command is grey";
  static_cast<CMDIChildWnd*>(Add("Due"))->m_bAutoMenuEnable = FALSE;
  EXPECT_TRUE(desktop::ChooseMenuItem(*m_main, kNobody)) << "the active window's choice";
  uno->MDIActivate();
  EXPECT_TRUE(desktop::ChooseMenuItem(*m_main, kMainOnly));
  g_trace.clear();
  uno->canNext = true;
  EXPECT_TRUE(desktop::ChooseMenuItem(*m_main, kChildOnly));
  desktop::PumpUntilIdle();
  EXPECT_EQ(g_trace, "main Uno ");
}

TEST_F(Mdi, AcceleratorsOfTheActiveWindowComeFirst) {
  Child* uno = Add("Uno");
  const ACCEL ofChild[] = {{FVIRTKEY | FCONTROL, 'N', kChildOnly}};
  const ACCEL ofMain[] = {{FVIRTKEY | FCONTROL, 'N', kMainOnly}, {FVIRTKEY | FCONTROL, 'A', kMainOnly}};
  uno->m_hAccelTable = CreateAcceleratorTable(ofChild, 1);
  m_main->m_hAccelTable = CreateAcceleratorTable(ofMain, 2);
  for (const int key : {int{VK_CONTROL}, int{'N'}, int{'A'}}) desktop::PressKey(uno->pane, key, false, true);
  desktop::PumpUntilIdle();
  EXPECT_EQ(g_trace, "Uno main ");
  desktop::ReleaseKey(uno->pane, VK_CONTROL);
  desktop::PumpUntilIdle();
  DestroyAcceleratorTable(uno->m_hAccelTable);
  DestroyAcceleratorTable(m_main->m_hAccelTable);
}

TEST_F(Mdi, KeysGoRoundAndClose) {
  const struct {
    int key;
    bool shift;
    const char* active;
  } cases[] = {{VK_F1 + 5, false, "Due"},
               {VK_TAB, false, "Uno"},
               {VK_TAB, true, "Due"},
               {VK_F1 + 5, true, "Tre"},
               {VK_F1 + 3, false, "Due"}};
  for (const char* name : {"Uno", "Due", "Tre"}) Add(name);
  for (const auto& test : cases) {
    const HWND focus = ::GetFocus();
    desktop::PressKey(focus, VK_CONTROL, false, true);
    if (test.shift) desktop::PressKey(focus, VK_SHIFT, true, true);
    desktop::PressKey(focus, test.key, test.shift, true);
    desktop::ReleaseKey(focus, VK_SHIFT, false, true);
    desktop::ReleaseKey(focus, VK_CONTROL);
    desktop::PumpUntilIdle();
    EXPECT_EQ(Active(), test.active) << test.key << test.shift;
  }
}

// Sizes and places

TEST_F(Mdi, AMaximisedWindowFillsTheClientAndItsTitleAndButtonsAreInTheMainWindow) {
  Child* uno = Add("Uno", true);
  Child* due = Add("Due", true);
  const CRect place = PlaceOf(*uno);
  CRect before;
  uno->GetClientRect(before);
  EXPECT_GT(place.Height() - before.Height(), GetSystemMetrics(SM_CYCAPTION));
  uno->MDIMaximize();
  CRect client;
  uno->GetClientRect(client);
  EXPECT_EQ(Active(), "Uno");
  EXPECT_EQ(PlaceOf(*uno), ClientArea());
  EXPECT_EQ(client, ClientArea()) << "no title bar of its own";
  EXPECT_EQ(uno->lastSize, UINT{SIZE_MAXIMIZED});
  EXPECT_STREQ(Title(), "Visore - [Uno]");
  Settle();
  Picture(*m_main, "mdi_maximized.png");
  uno->SetWindowText("Altro & nome");
  EXPECT_STREQ(Title(), "Visore - [Altro & nome]");
  m_main->SetWindowPos(nullptr, 0, 0, 640, 400, SWP_NOZORDER | SWP_NOMOVE);
  EXPECT_EQ(PlaceOf(*uno), ClientArea()) << "follows the main window";
  due->MDIActivate();
  EXPECT_EQ(PlaceOf(*due), ClientArea()) << "the next one takes its place";
  EXPECT_EQ(PlaceOf(*uno), place);
  EXPECT_EQ(uno->lastSize, UINT{SIZE_RESTORED});
  EXPECT_TRUE(desktop::ClickMaximizedButton(*m_main, SC_RESTORE));
  desktop::PumpUntilIdle();
  EXPECT_STREQ(Title(), "Visore - Due");
  EXPECT_FALSE(desktop::ClickMaximizedButton(*m_main, SC_CLOSE)) << "the buttons are gone";
  due->MDIMaximize();
  EXPECT_TRUE(desktop::ClickMaximizedButton(*m_main, SC_CLOSE));
  desktop::PumpUntilIdle();
  EXPECT_EQ(Active(), "Uno");
  EXPECT_EQ(PlaceOf(*uno), ClientArea()) << "the look goes on to the next";
}

TEST_F(Mdi, TilesCoverTheClientWithoutGaps) {
  const struct {
    int count;
    int how;
    CSize grid;  // columns, rows of the first column
  } cases[] = {{1, MDITILE_VERTICAL, {1, 1}},   {2, MDITILE_VERTICAL, {2, 1}},
               {2, MDITILE_HORIZONTAL, {1, 2}}, {3, MDITILE_HORIZONTAL, {1, 3}},
               {5, MDITILE_HORIZONTAL, {2, 2}}, {5, MDITILE_VERTICAL, {2, 2}},
               {6, MDITILE_VERTICAL, {3, 2}}};
  int count = 0;
  for (const auto& test : cases) {
    for (; count < test.count; ++count) Add("D" + std::to_string(count));
    m_main->MDITile(test.how);
    LONG area = 0;
    LONG first = 0;
    for (HWND child = ::GetWindow(m_main->m_hWndMDIClient, GW_CHILD); child != nullptr;
         child = ::GetWindow(child, GW_HWNDNEXT)) {
      const CRect place = PlaceOf(*CWnd::FromHandle(child));
      area += place.Width() * place.Height();
      if (place.left == 0) ++first;
      EXPECT_TRUE(CRect(place & ClientArea()) == place);
      if (place.TopLeft() == CPoint(0, 0)) {
        EXPECT_EQ(place.Width(), ClientArea().right / test.grid.cx) << count;
      }
    }
    EXPECT_EQ(area, ClientArea().Width() * ClientArea().Height()) << count;
    EXPECT_EQ(first, test.grid.cy) << count;
  }
}

TEST_F(Mdi, CascadePutsTheActiveOneInFrontAndLast) {
  Child* children[] = {Add("Uno", true), Add("Due", true), Add("Tre", true)};
  Settle();
  Picture(*m_main, "mdi_cascade.png");
  const int step = GetSystemMetrics(SM_CYCAPTION);
  m_main->MDITile();
  Settle();
  Picture(*m_main, "mdi_tile.png");
  children[0]->MDIActivate();
  m_main->SendMessage(WM_COMMAND, ID_WINDOW_CASCADE);
  EXPECT_EQ(PlaceOf(*children[1]).TopLeft(), CPoint(0, 0));
  EXPECT_EQ(PlaceOf(*children[2]).TopLeft(), CPoint(step, step));
  EXPECT_EQ(PlaceOf(*children[0]).TopLeft(), CPoint(2 * step, 2 * step));
}

TEST_F(Mdi, MinimisedWindowsStandAtTheBottomAndComeBackAsTheyWere) {
  Child* uno = Add("Uno");
  Child* due = Add("Due");
  const CRect place = PlaceOf(*due);
  due->SendMessage(WM_SYSCOMMAND, SC_MINIMIZE);
  uno->SendMessage(WM_SYSCOMMAND, SC_MINIMIZE);
  EXPECT_EQ(due->lastSize, UINT{SIZE_MINIMIZED});
  EXPECT_EQ(PlaceOf(*due).bottom, ClientArea().bottom);
  EXPECT_EQ(PlaceOf(*due).left, PlaceOf(*uno).right);
  Settle();
  Picture(*m_main, "mdi_minimized.png");
  due->SendMessage(WM_SYSCOMMAND, SC_RESTORE);
  EXPECT_EQ(PlaceOf(*due), place);
  due->MDIMaximize();
  due->SendMessage(WM_SYSCOMMAND, SC_MINIMIZE);
  due->SendMessage(WM_SYSCOMMAND, SC_RESTORE);
  EXPECT_EQ(PlaceOf(*due), ClientArea()) << "maximised before, maximised again";
}

TEST_F(Mdi, TheMouseActivatesMovesSizesAndChooses) {
  Child* uno = Add("Uno");
  Child* due = Add("Due");
  desktop::PressMouse(uno->pane, {5, 5});
  desktop::PumpUntilIdle();
  EXPECT_EQ(Active(), "Uno");
  const CRect place = PlaceOf(*uno);
  CRect client;
  uno->GetClientRect(client);
  const auto drag = [&](CPoint from, CPoint by) {
    const CRect start = PlaceOf(*uno);
    desktop::PressMouse(*uno, from);
    // The window goes with the pointer, whose place is told in the window.
    desktop::MoveMouse(*uno, from + by, true);
    desktop::ReleaseMouse(*uno, from + by - (PlaceOf(*uno).TopLeft() - start.TopLeft()));
    desktop::PumpUntilIdle();
  };
  drag({60, -10}, {30, 20});
  EXPECT_EQ(PlaceOf(*uno), place + CPoint(30, 20));
  drag({60, -10}, {0, -500});
  EXPECT_EQ(PlaceOf(*uno).top, 0) << "the title bar can't be lost";
  const CRect moved = PlaceOf(*uno);
  drag({client.right + 2, client.bottom + 2}, {-40, -30});
  EXPECT_EQ(PlaceOf(*uno), CRect(moved.left, moved.top, moved.right - 40, moved.bottom - 30));
  drag({-2, 100}, {15, 0});
  EXPECT_EQ(PlaceOf(*uno).left, moved.left + 15);
  EXPECT_EQ(PlaceOf(*uno).right, moved.right - 40);
  // The close button is the rightmost of the title bar.
  due->MDIActivate();
  uno->GetClientRect(client);
  desktop::PressMouse(*uno, {client.right - 8, -12});
  EXPECT_EQ(Active(), "Uno");
  EXPECT_EQ(g_trace.find('?'), std::string::npos) << "a button acts when it is let go";
  desktop::ReleaseMouse(*uno, {client.right - 8, -12});
  desktop::PumpUntilIdle();
  EXPECT_NE(g_trace.find("Uno? "), std::string::npos);
  EXPECT_EQ(Active(), "Due");
}

// The list

TEST_F(Mdi, TheWindowMenuListsNineWindowsAndTheRestBelow) {
  for (int i = 1; i <= 12; ++i) Add("D" + std::to_string(i));
  static_cast<CFrameWnd*>(m_main->MDIGetActive())->SetWindowText("A & B");
  const auto list = [&] { return m_main->GetWindowMenuPopup(GetMenu(*m_main)); };
  const HMENU menu = list();
  m_main->SendMessage(WM_INITMENUPOPUP, reinterpret_cast<WPARAM>(menu));
  ASSERT_EQ(GetMenuItemCount(menu), 3 + 1 + 9 + 1);
  CString text;
  CMenu::FromHandle(menu)->GetMenuString(4, text, MF_BYPOSITION);
  EXPECT_STREQ(text, "&1 D1");
  const HMENU more = GetSubMenu(menu, 13);
  ASSERT_EQ(GetMenuItemCount(more), 3);
  CMenu::FromHandle(more)->GetMenuString(2, text, MF_BYPOSITION);
  EXPECT_STREQ(text, "A && B");
  EXPECT_NE(GetMenuState(more, 2, MF_BYPOSITION) & MF_CHECKED, 0U);
  EXPECT_TRUE(desktop::ChooseMenuItem(*m_main, AFX_IDM_FIRST_MDICHILD + 10));
  desktop::PumpUntilIdle();
  EXPECT_EQ(Active(), "D11");
  EXPECT_TRUE(desktop::ChooseMenuItem(*m_main, AFX_IDM_FIRST_MDICHILD + 1));
  desktop::PumpUntilIdle();
  EXPECT_EQ(Active(), "D2");
  m_main->MDIGetActive()->DestroyWindow();
  EXPECT_TRUE(desktop::ChooseMenuItem(*m_main, AFX_IDM_FIRST_MDICHILD + 1)) << "the numbers close up";
  desktop::PumpUntilIdle();
  EXPECT_EQ(Active(), "D3");
  while (CMDIChildWnd* active = m_main->MDIGetActive()) active->DestroyWindow();
  EXPECT_EQ(GetMenuItemCount(m_main->GetWindowMenuPopup(m_main->m_hMenuDefault)), 1)
      << "nothing is left over";
}

// Bars

TEST_F(Mdi, BarsFollowTheirOwnWindowAlsoBehind) {
  Child* uno = Add("Uno", true);
  Child* due = Add("Due", true);
  uno->canNext = false;
  Settle();
  const auto enabled = [](Child& child) {
    return (child.toolbar.SendMessage(TB_GETSTATE, kChildOnly) & TBSTATE_ENABLED) != 0;
  };
  EXPECT_FALSE(enabled(*uno));
  EXPECT_TRUE(enabled(*due));
  EXPECT_EQ(uno->GetMessageBar(), &uno->status);
  Child* tre = Add("Tre");
  EXPECT_EQ(tre->GetMessageBar(), &m_main->status);
  EXPECT_EQ(static_cast<CWnd*>(tre)->GetParentFrame(), m_main);
}

TEST_F(Mdi, ACommandMayEndItsOwnWindow) {
  Child* uno = Add("Uno", true);
  Add("Due");
  uno->MDIActivate();
  Settle();
  g_trace.clear();
  CRect button;
  uno->toolbar.GetItemRect(1, button);
  desktop::PressMouse(uno->toolbar, button.CenterPoint());
  desktop::ReleaseMouse(uno->toolbar, button.CenterPoint());
  Settle();
  EXPECT_EQ(g_trace, "Uno! Uno-(Due,Uno) Due+(Due,Uno) ");
  g_trace.clear();
  EXPECT_TRUE(desktop::ChooseMenuItem(*m_main, kEndChild));
  Settle();
  EXPECT_EQ(g_trace, "Due! Due-(-,Due) ");
  Add("Tre");
  EXPECT_TRUE(desktop::ChooseMenuItem(*m_main, ID_FILE_CLOSE));
  Settle();
  EXPECT_EQ(Active(), "-");
}

// Making and disabling

class Choosy : public Child {
 public:
  static inline CCreateContext* given = nullptr;
  static inline bool made = true;

 protected:
  BOOL OnCreateClient(LPCREATESTRUCT, CCreateContext* context) override {
    given = context;
    return made;
  }
};

TEST_F(Mdi, AWindowIsMadeInTheMainWindowWithItsContextOrNotAtAll) {
  int anything = 0;
  auto* context = reinterpret_cast<CCreateContext*>(&anything);  // handed on, not looked into
  EXPECT_FALSE((new Choosy)->LoadFrame(kChildMenu)) << "there is no main window";
  AfxGetThread()->m_pMainWnd = m_main;
  auto* child = new Choosy;  // NOLINT: ends with its window
  EXPECT_TRUE(child->LoadFrame(kChildMenu, WS_OVERLAPPEDWINDOW, nullptr, context));
  EXPECT_EQ(Choosy::given, context);
  EXPECT_EQ(child->GetMDIFrame(), m_main);
  EXPECT_EQ(Active(), "-") << "hidden until it is activated";
  child->ActivateFrame();
  EXPECT_EQ(m_main->MDIGetActive(), child);
  child->ShowWindow(SW_HIDE);
  EXPECT_EQ(Active(), "-") << "what can't be seen takes no commands";
  Choosy::made = false;
  EXPECT_FALSE((new Choosy)->LoadFrame(kChildMenu, DWORD{WS_OVERLAPPEDWINDOW} | WS_VISIBLE));
  EXPECT_EQ(::GetWindow(child->m_hWnd, GW_HWNDNEXT), nullptr) << "the refused one is gone";
  AfxGetThread()->m_pMainWnd = nullptr;
}

TEST_F(Mdi, ADisabledMainWindowsDocumentsTakeNoInput) {
  Child* uno = Add("Uno");
  Child* due = Add("Due");
  const CRect place = PlaceOf(*uno);
  m_main->EnableWindow(FALSE);
  desktop::PressMouse(*uno, {60, -10});
  desktop::MoveMouse(*uno, {90, 10}, true);
  desktop::ReleaseMouse(*uno, {90, 10});
  desktop::PressMouse(uno->pane, {5, 5});
  desktop::PumpUntilIdle();
  EXPECT_EQ(Active(), "Due");
  EXPECT_EQ(PlaceOf(*uno), place);
  due->MDIMaximize();
  desktop::ClickMaximizedButton(*m_main, SC_CLOSE);
  desktop::PumpUntilIdle();
  EXPECT_EQ(Active(), "Due") << "as it waits for the end of a dialog";
  m_main->EnableWindow(TRUE);
}

// The end

TEST_F(Mdi, ClosingAsksTheWindowsInTheirOrderAndEachMayRefuse) {
  Add("Uno");
  Child* due = Add("Due");
  Add("Tre");
  due->refuses = true;
  const HWND window = *m_main;
  m_main->SendMessage(WM_CLOSE);
  EXPECT_EQ(g_trace, "Uno? Due? ");
  EXPECT_TRUE(::IsWindow(window));
  due->refuses = false;
  m_main->SendMessage(WM_CLOSE);
  EXPECT_FALSE(::IsWindow(window));
  m_main = nullptr;
}

TEST_F(Mdi, TheMainWindowsEndTakesEverythingWithoutTurningTheWindowsOver) {
  Add("Uno", true);
  Child* due = Add("Due");
  due->MDIMaximize();
  g_trace.clear();
  m_main->DestroyWindow();
  m_main = nullptr;
  EXPECT_EQ(g_trace, "");
}

TEST_F(Mdi, ManyWindowsCostAnActivationNoMore) {
  int counts[2] = {};
  int idle[2] = {};
  int made = 0;
  Child* first = Add("D");
  Child* second = Add("D");
  made = 2;
  for (const int wanted : {2, 200}) {
    for (; made < wanted; ++made) Child::Show(m_main, "D");
    Settle();
    second->MDIActivate();
    Settle();
    g_messages = 0;
    first->MDIActivate();
    counts[wanted == 2 ? 0 : 1] = g_messages;
    g_messages = 0;
    AfxGetThread()->OnIdle(0);
    idle[wanted == 2 ? 0 : 1] = g_messages;
  }
  EXPECT_GT(counts[0], 0);
  EXPECT_EQ(counts[0], counts[1]);
  EXPECT_EQ(idle[0], idle[1]) << "the others' turn comes when nothing else is to be done";
}

}  // namespace
