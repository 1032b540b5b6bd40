// Menus as lists, as bars of windows and as pop-ups.

#include <gtest/gtest.h>

#include <QApplication>
#include <QKeyEvent>
#include <QMenu>
#include <QMenuBar>
#include <string>

#include "platform/qt_bridge.h"
#include "platform/window/menu_handles.h"
#include "platform/window/pump.h"
#include "platform/window/window.h"
#include "tessarel12_testing.h"
#include "tests/window/resource_module.h"

namespace {

using namespace platform::testing;
using Kind = platform::MenuLine::Kind;

enum : UINT { kOpen = 101, kExit = 102, kIn = 111, kOut = 112, kFit = 113 };

constexpr platform::MenuLine kBar[] = {
    {Kind::Popup, "&File"},
    {Kind::Item, "&Apri...\tCtrl+A", kOpen},
    {Kind::Separator},
    {Kind::Item, "&Uscita", kExit},
    {Kind::End},
    {Kind::Popup, "&Visualizza"},
    {Kind::Popup, "&Zoom"},
    {Kind::Item, "Zoom &In", kIn},
    {Kind::Item, "Zoom &Out", kOut},
    {Kind::End},
    {Kind::Item, "&Adatta", kFit},
    {Kind::End},
};
constexpr platform::MenuResource kMenus[] = {{91, kBar}};

HMENU LoadBar() {
  platform::ResourceTables tables;
  tables.menus = kMenus;
  return LoadMenuA(LinkResourceModule(tables), MAKEINTRESOURCE(91));
}

std::string TextOf(HMENU menu, UINT item, UINT flags) {
  char text[64] = "";
  GetMenuStringA(menu, item, text, sizeof text, flags);
  return text;
}

TEST(MenuLists, LoadAsTheyAreWritten) {
  const HMENU bar = LoadBar();
  ASSERT_NE(bar, nullptr);
  EXPECT_EQ(GetMenuItemCount(bar), 2);
  EXPECT_EQ(GetMenuItemID(bar, 0), static_cast<UINT>(-1));
  const HMENU file = GetSubMenu(bar, 0);
  EXPECT_EQ(GetMenuItemCount(file), 3);
  EXPECT_EQ(GetMenuItemID(file, 0), kOpen);
  EXPECT_EQ(GetMenuItemID(file, 1), 0U);
  EXPECT_EQ(GetMenuState(file, 1, MF_BYPOSITION), UINT{MF_SEPARATOR});
  EXPECT_EQ(GetMenuItemID(file, 3), static_cast<UINT>(-1));
  EXPECT_EQ(TextOf(file, 0, MF_BYPOSITION), "&Apri...\tCtrl+A");
  EXPECT_EQ(TextOf(bar, kOut, MF_BYCOMMAND), "Zoom &Out") << "in a sub-menu of a sub-menu";
  EXPECT_EQ(GetMenuState(bar, 1, MF_BYPOSITION), MF_POPUP | 2U << 8);
  const HMENU zoom = GetSubMenu(GetSubMenu(bar, 1), 0);
  EXPECT_EQ(GetMenuItemCount(zoom), 2);
  EXPECT_EQ(GetSubMenu(zoom, 0), nullptr);
  char cut[4];
  EXPECT_EQ(GetMenuStringA(bar, 0, cut, sizeof cut, MF_BYPOSITION), 3);
  EXPECT_STREQ(cut, "&Fi");
  EXPECT_TRUE(DestroyMenu(bar));
  EXPECT_FALSE(IsMenu(zoom)) << "sub-menus end with it";
  EXPECT_FALSE(DestroyMenu(bar));
  EXPECT_EQ(LoadMenuA(nullptr, MAKEINTRESOURCE(92)), nullptr);
}

TEST(MenuLists, KeepTheStateOfItems) {
  const HMENU bar = LoadBar();
  EXPECT_EQ(EnableMenuItem(bar, kIn, MF_BYCOMMAND | MF_GRAYED), MF_ENABLED);
  EXPECT_EQ(EnableMenuItem(bar, kIn, MF_BYCOMMAND | MF_ENABLED), MF_GRAYED);
  EXPECT_EQ(EnableMenuItem(bar, 7, MF_BYPOSITION), -1);
  EXPECT_EQ(EnableMenuItem(nullptr, 0, MF_BYPOSITION), -1);
  EXPECT_EQ(CheckMenuItem(bar, kFit, MF_CHECKED), DWORD{MF_UNCHECKED});
  EXPECT_EQ(GetMenuState(bar, kFit, MF_BYCOMMAND), UINT{MF_CHECKED});
  EXPECT_EQ(CheckMenuItem(bar, kFit, MF_UNCHECKED), DWORD{MF_CHECKED});
  const HMENU zoom = GetSubMenu(GetSubMenu(bar, 1), 0);
  EXPECT_TRUE(CheckMenuRadioItem(zoom, kIn, kOut, kIn, MF_BYCOMMAND));
  EXPECT_TRUE(CheckMenuRadioItem(zoom, 0, 1, 1, MF_BYPOSITION));
  EXPECT_EQ(GetMenuState(zoom, kIn, MF_BYCOMMAND), 0U);
  EXPECT_EQ(GetMenuState(zoom, kOut, MF_BYCOMMAND), MF_CHECKED | MFT_RADIOCHECK);
  EXPECT_TRUE(ModifyMenuA(zoom, 0, MF_BYPOSITION | MF_GRAYED, kIn, "altro"));
  EXPECT_EQ(TextOf(bar, kIn, MF_BYCOMMAND), "altro");
  EXPECT_TRUE(DeleteMenu(bar, kOut, MF_BYCOMMAND));
  EXPECT_EQ(GetMenuItemCount(zoom), 1);
  EXPECT_TRUE(InsertMenuA(bar, kIn, MF_BYCOMMAND, 120, "neu"));
  EXPECT_EQ(GetMenuItemID(zoom, 0), 120U) << "before the item, in its menu";
  EXPECT_TRUE(RemoveMenu(GetSubMenu(bar, 1), 0, MF_BYPOSITION));
  EXPECT_TRUE(IsMenu(zoom)) << "taken out, not destroyed";
  EXPECT_TRUE(AppendMenuA(zoom, MF_POPUP, reinterpret_cast<std::uintptr_t>(bar), "x"));
  EXPECT_FALSE(AppendMenuA(bar, MF_POPUP, reinterpret_cast<std::uintptr_t>(zoom), "x")) << "a ring";
  DestroyMenu(zoom);
}

// Menus on the screen. The trace: I<first id of the menu> WM_INITMENUPOPUP with its place, S WM_MENUSELECT,
// C WM_COMMAND, c WM_CAPTURECHANGED, T a timer.
std::string g_trace;
bool g_greyOut = false;

LRESULT Trace(HWND window, UINT message, WPARAM wParam, LPARAM lParam) {
  switch (message) {
    case WM_INITMENUPOPUP:
      g_trace += "I" + std::to_string(GetMenuItemID(reinterpret_cast<HMENU>(wParam), 0)) + "@" +
                 std::to_string(lParam) + " ";
      if (g_greyOut) EnableMenuItem(reinterpret_cast<HMENU>(wParam), kOut, MF_GRAYED);
      break;
    case WM_MENUSELECT:
      g_trace += HIWORD(wParam) == 0xffff ? "S- " : "S" + std::to_string(LOWORD(wParam)) + " ";
      break;
    case WM_COMMAND:
      g_trace += "C" + std::to_string(wParam) + " ";
      break;
    case WM_CAPTURECHANGED:
      g_trace += "c ";
      break;
    case WM_TIMER:
      g_trace += "T ";
      KillTimer(window, 1);
      break;
    case WM_SIZE:
      g_trace += "s" + std::to_string(HIWORD(static_cast<WPARAM>(lParam))) + " ";
      break;
    default:
      break;
  }
  return DefWindowProc(window, message, wParam, lParam);
}

class Menus : public ::testing::Test {
 protected:
  void SetUp() override {
    const WNDCLASS windowClass = {0, &Trace, 0, 0, nullptr, nullptr, nullptr, nullptr, nullptr, "menus"};
    RegisterClassA(&windowClass);
    bar = LoadBar();
    window = CreateWindowEx(0, "menus", "", WS_OVERLAPPEDWINDOW | WS_VISIBLE, 0, 0, 300, 200, nullptr, bar,
                            nullptr, nullptr);
    ASSERT_NE(window, nullptr);
    PumpUntilIdle();
    g_trace.clear();
    g_greyOut = false;
  }
  void TearDown() override {
    SetMenuAnswer(nullptr);
    DestroyWindow(window);
    EXPECT_FALSE(IsMenu(bar)) << "a window destroys its menu";
  }
  static QMenu* Popup() { return qobject_cast<QMenu*>(QApplication::activePopupWidget()); }
  QMenuBar* Bar() const { return AfxGetQWidget(window)->findChild<QMenuBar*>(); }
  int ClientHeight() const {
    RECT client;
    GetClientRect(window, &client);
    return client.bottom;
  }

  HMENU bar = nullptr;
  HWND window = nullptr;
};

TEST_F(Menus, TheBarLiesAboveTheClientArea) {
  const int height = Bar()->height();
  EXPECT_GT(height, 10);
  EXPECT_EQ(ClientHeight(), 200 - height);
  POINT origin = {0, 0};
  ClientToScreen(window, &origin);
  RECT frame;
  GetWindowRect(window, &frame);
  EXPECT_EQ(origin.y - frame.top, height);
  EXPECT_TRUE(SetMenu(window, nullptr));
  EXPECT_EQ(g_trace, "s200 ");
  EXPECT_EQ(GetMenu(window), nullptr);
  EXPECT_TRUE(SetMenu(window, bar));
  EXPECT_EQ(g_trace, "s200 s" + std::to_string(200 - height) + " ");
  EXPECT_FALSE(SetMenu(window, reinterpret_cast<HMENU>(0x7777777)));
  EXPECT_EQ(GetMenu(window), bar);
}

TEST_F(Menus, ThePathToACommandIsOpened) {
  EXPECT_TRUE(ChooseMenuItem(window, kOut));
  PumpUntilIdle();
  EXPECT_EQ(g_trace, "I4294967295@1 I111@0 C112 ");
  g_trace.clear();
  g_greyOut = true;
  EXPECT_FALSE(ChooseMenuItem(window, kOut)) << "grey by the handler";
  EXPECT_FALSE(ChooseMenuItem(window, 999));
  g_trace.clear();
  EnableMenuItem(GetSubMenu(bar, 1), 0, MF_BYPOSITION | MF_GRAYED);
  EXPECT_FALSE(ChooseMenuItem(window, kIn)) << "its sub-menu is grey";
  EXPECT_EQ(g_trace, "I4294967295@1 ") << "and not opened";
}

TEST_F(Menus, TheKeyboardOpensWalksAndChooses) {
  SetCapture(window);
  g_greyOut = true;
  PressKey(window, 'V', false, false, true);
  PumpUntilIdle();
  ASSERT_NE(Popup(), nullptr);
  EXPECT_EQ(Popup()->title(), "&Visualizza");
  EXPECT_EQ(g_trace, "c I4294967295@1 S0 ");
  g_trace.clear();
  PressKey(window, VK_RIGHT);
  PumpUntilIdle();
  ASSERT_EQ(Popup()->title(), "&Zoom");
  EXPECT_FALSE(Popup()->actions().at(1)->isEnabled()) << "set while it was about to show";
  EXPECT_TRUE(Popup()->actions().at(0)->isEnabled());
  EXPECT_EQ(g_trace, "I111@0 S111 ");
  g_trace.clear();
  PressKey(window, VK_RETURN);
  PumpUntilIdle();
  EXPECT_EQ(Popup(), nullptr);
  EXPECT_EQ(g_trace, "S- C111 ");
}

TEST_F(Menus, F10OpensAndEscapeCloses) {
  PressKey(window, VK_F10);
  PumpUntilIdle();
  ASSERT_NE(Popup(), nullptr);
  EXPECT_EQ(Popup()->actions().at(0)->text(), "&Apri...\tCtrl+A");
  EXPECT_TRUE(Popup()->actions().at(0)->shortcut().isEmpty());
  EXPECT_TRUE(Popup()->actions().at(1)->isSeparator());
  g_trace.clear();
  PressKey(window, VK_ESCAPE);
  PumpUntilIdle();
  EXPECT_EQ(Popup(), nullptr);
  EXPECT_TRUE(Bar()->hasFocus()) << "one step back";
  PressKey(window, VK_ESCAPE);
  PumpUntilIdle();
  EXPECT_FALSE(Bar()->hasFocus());
  EXPECT_EQ(GetFocus(), window) << "the program's focus has stayed";
  EXPECT_EQ(g_trace, "S- ");
}

TEST_F(Menus, TheProgramSeesAltKeysBeforeTheBar) {
  QWidget* client = QApplication::focusWidget();
  ASSERT_NE(client, nullptr);
  struct Case {
    const char* name;
    int key;
    Qt::KeyboardModifiers modifiers;
    const char* text;
    bool ours;
  };
  const Case cases[] = {{"access key", Qt::Key_F, Qt::AltModifier, "f", true},
                        {"Alt alone, which the bar waits for", Qt::Key_Alt, Qt::AltModifier, "", false},
                        {"a shortcut of the host", Qt::Key_F, Qt::ControlModifier, "f", false}};
  const auto isOurs = [client](const Case& c) {
    QKeyEvent event(QEvent::ShortcutOverride, c.key, c.modifiers, c.text);
    event.ignore();
    QApplication::sendEvent(client, &event);
    return event.isAccepted();
  };
  for (const Case& c : cases) EXPECT_EQ(isOurs(c), c.ours) << c.name;
  SetMenu(window, nullptr);
  EXPECT_FALSE(isOurs(cases[0])) << "without a bar the host's own menus may want it";
  SetMenu(window, bar);
}

TEST_F(Menus, ADisabledWindowOpensNone) {
  EnableWindow(window, FALSE);
  g_trace.clear();
  PressKey(window, 'F', false, false, true);
  PumpUntilIdle();
  EXPECT_EQ(Popup(), nullptr);
  EXPECT_EQ(g_trace, "");
  EXPECT_FALSE(ChooseMenuItem(window, kFit));
}

TEST_F(Menus, AnAnswerTakesThePlaceOfATrackedPopUp) {
  struct Case {
    const char* name;
    int answer;
    UINT flags;
    BOOL result;
    const char* trace;
  };
  static const Case cases[] = {{"posts", kFit, TPM_RIGHTBUTTON, TRUE, "c I4294967295@0 I111@0 C113 "},
                               {"returns", kFit, TPM_RETURNCMD, kFit, "c I4294967295@0 I111@0 "},
                               {"given up", 0, 0, TRUE, "c I4294967295@0 I111@0 "},
                               {"grey", kOut, TPM_RETURNCMD, 0, "c I4294967295@0 I111@0 "},
                               {"elsewhere", kOpen, TPM_RETURNCMD, 0, "c I4294967295@0 I111@0 "}};
  static int answer = 0;
  SetMenuAnswer([](HMENU, HWND) { return answer; });
  g_greyOut = true;
  for (const Case& c : cases) {
    SetCapture(window);
    g_trace.clear();
    answer = c.answer;
    EXPECT_EQ(TrackPopupMenu(GetSubMenu(bar, 1), c.flags, 5, 5, 0, window, nullptr), c.result) << c.name;
    PumpUntilIdle();
    EXPECT_EQ(g_trace, c.trace) << c.name;
  }
  EXPECT_FALSE(TrackPopupMenu(nullptr, 0, 0, 0, 0, window, nullptr));
  EXPECT_FALSE(TrackPopupMenu(GetSubMenu(bar, 1), 0, 0, 0, 0, nullptr, nullptr));
}

/// Called while a tracked menu is open, by a timer of the queue.
HWND g_pressIn = nullptr;
int g_keys = 0;
void PressDownAndReturn(HWND, UINT, std::uintptr_t id, DWORD) {
  g_trace += "t ";
  if (++g_keys == 1) {
    PressKey(g_pressIn, VK_DOWN);
    PressKey(g_pressIn, VK_DOWN);
  } else {
    KillTimer(g_pressIn, id);
    PressKey(g_pressIn, VK_RETURN);
  }
}

TEST_F(Menus, TheQueueGoesOnWhileAPopUpIsTracked) {
  g_pressIn = window;
  g_keys = 0;
  SetTimer(window, 7, 10, &PressDownAndReturn);
  EXPECT_EQ(TrackPopupMenu(GetSubMenu(bar, 1), TPM_RETURNCMD, 50, 50, 0, window, nullptr),
            static_cast<BOOL>(kFit));
  EXPECT_EQ(g_trace, "I4294967295@0 t S0 S113 t S- ");
  PumpUntilIdle();
  EXPECT_EQ(g_trace, "I4294967295@0 t S0 S113 t S- ") << "no WM_COMMAND beside the result";
}

void DestroyOwner(HWND window, UINT, std::uintptr_t, DWORD) {
  DestroyWindow(window);
}

TEST_F(Menus, ATrackedPopUpEndsWithItsOwner) {
  const HWND owner =
      CreateWindowEx(0, "menus", "", WS_POPUP | WS_VISIBLE, 0, 0, 50, 50, nullptr, nullptr, nullptr, nullptr);
  SetTimer(owner, 7, 10, &DestroyOwner);
  EXPECT_EQ(TrackPopupMenu(GetSubMenu(bar, 1), TPM_RETURNCMD, 5, 5, 0, owner, nullptr), 0);
  EXPECT_FALSE(IsWindow(owner));
  PumpUntilIdle();
}

}  // namespace
