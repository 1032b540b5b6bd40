// The standard controls: notifications, limits and what the program keeps from them.

#include <gtest/gtest.h>

#include <chrono>
#include <functional>
#include <string>
#include <vector>

#include "platform/window/control_messages.h"
#include "platform/window/pump.h"
#include "platform/window/window.h"
#include "tessarel12_testing.h"

namespace {

using platform::testing::PressKey;
using platform::testing::PumpUntilIdle;
using platform::testing::TypeText;

std::string g_trace;
bool g_swallowLetters = false;

LRESULT ParentProc(HWND window, UINT message, WPARAM wParam, LPARAM lParam) {
  if (message == WM_COMMAND) {
    const int code = HIWORD(wParam);
    const CString text = GetWindowText(reinterpret_cast<HWND>(lParam));
    if (code != EN_UPDATE) g_trace += std::to_string(code) + ":" + static_cast<const char*>(text) + " ";
  }
  return DefWindowProc(window, message, wParam, lParam);
}

bool PreTranslate(MSG* message) {
  return g_swallowLetters && message->message == WM_CHAR && message->wParam >= 'a';
}

class Controls : public ::testing::Test {
 protected:
  void SetUp() override {
    platform::EnsureApplication();
    platform::SetPreTranslateHook(&PreTranslate);
    const WNDCLASS windowClass = {0,       &ParentProc, 0,       0,       nullptr,
                                  nullptr, nullptr,     nullptr, nullptr, "parent"};
    RegisterClassA(&windowClass);
    m_parent = CreateWindowEx(0, "parent", "", WS_OVERLAPPEDWINDOW | WS_VISIBLE, 0, 0, 400, 300, nullptr,
                              nullptr, nullptr, nullptr);
    PumpUntilIdle();
    g_swallowLetters = false;
    g_trace.clear();
  }
  void TearDown() override { DestroyWindow(m_parent); }

  HWND Make(const char* className, DWORD style, int height = 22, const char* text = "") {
    static std::intptr_t id = 100;
    m_y += 30;
    return CreateWindowEx(0, className, text, WS_CHILD | WS_VISIBLE | style, 10, m_y, 100, height, m_parent,
                          reinterpret_cast<HMENU>(++id), nullptr, nullptr);
  }
  HWND MakeCombo(int items) {
    const HWND combo = Make("COMBOBOX", WS_BORDER | WS_VSCROLL | CBS_DROPDOWN, 100);
    for (int i = 1; i <= items; ++i)
      SendMessage(combo, CB_ADDSTRING, 0, reinterpret_cast<LPARAM>(std::to_string(i).c_str()));
    return combo;
  }
  static std::string Text(HWND window) { return static_cast<const char*>(GetWindowText(window)); }

  HWND m_parent = nullptr;
  int m_y = 0;
};

TEST_F(Controls, ALimitBindsTypingAlone) {
  struct Case {
    const char* first;
    const char* typed;
    const char* result;
  };
  const Case cases[] = {{"", "12345", "1234"},
                        {"123", "45", "1234"},
                        {"1234567", "8", "1234567"},
                        {"1000%", "", "1000%"},
                        {"12", "3", "123"}};
  for (const Case& c : cases) {
    for (const bool combo : {false, true}) {
      const HWND field = combo ? MakeCombo(0) : Make("EDIT", WS_BORDER);
      SendMessage(field, combo ? UINT{CB_LIMITTEXT} : UINT{EM_LIMITTEXT}, 4);
      SetWindowText(field, c.first);
      SetFocus(field);
      SendMessage(field, WM_KEYDOWN, VK_END);
      TypeText(field, c.typed);
      PumpUntilIdle();
      EXPECT_EQ(Text(field), c.result) << c.first << "+" << c.typed << (combo ? " combo" : " edit");
    }
  }
}

TEST_F(Controls, APasteIsCutAtTheLimit) {
  const HWND source = Make("EDIT", WS_BORDER, 22, "abcdefgh");
  const HWND field = Make("EDIT", WS_BORDER, 22, "xy");
  SendMessage(field, EM_LIMITTEXT, 5);
  SendMessage(source, EM_SETSEL, 0, -1);
  SendMessage(source, WM_CHAR, 3);
  SendMessage(field, EM_SETSEL, 1, 1);
  SendMessage(field, WM_CHAR, 22);
  EXPECT_EQ(Text(field), "xabcy");
}

TEST_F(Controls, CharactersTheProgramUsesUpNeverArrive) {
  for (const HWND field : {MakeCombo(3), Make("EDIT", WS_BORDER)}) {
    g_swallowLetters = true;
    SetFocus(field);
    TypeText(field, "a1b2");
    platform::testing::ComposeText(field, "c3");
    PumpUntilIdle();
    EXPECT_EQ(Text(field), "123");
    g_swallowLetters = false;
    SendMessage(field, WM_KEYDOWN, VK_HOME);
    SendMessage(field, WM_KEYDOWN, VK_DELETE);
    PostMessage(field, WM_CHAR, 8);
    PumpUntilIdle();
    EXPECT_EQ(Text(field), "23") << "nothing before the cursor to rub out";
  }
}

TEST_F(Controls, ComboTellsWhatTheUserDoes) {
  const HWND other = Make("EDIT", WS_BORDER);
  const HWND combo = MakeCombo(5);
  struct Case {
    const char* what;
    std::function<void()> act;
    const char* trace;
    int selection;
  };
  const auto key = [combo](int virtualKey) {
    PressKey(combo, virtualKey);
    PumpUntilIdle();
  };
  const Case cases[] = {
      {"filling selects nothing", [] {}, "", -1},
      {"focus", [&] { SetFocus(combo); }, "3: ", -1},
      {"selecting is the program's own doing", [&] { SendMessage(combo, CB_SETCURSEL, 1); }, "", 1},
      {"typing takes the selection away",
       [&] {
         TypeText(combo, "4");
         PumpUntilIdle();
       },
       "5:4 ", -1},
      {"so does its text, silently", [&] { SetWindowText(combo, "75%"); }, "", -1},
      {"down in the closed field",
       [&] {
         SendMessage(combo, CB_SETCURSEL, 1);
         key(VK_DOWN);
       },
       "9:3 1:3 ", 2},
      {"open",
       [&] {
         SendMessage(combo, CB_SHOWDROPDOWN, TRUE);
         PumpUntilIdle();
       },
       "7:3 ", 2},
      {"move in the list", [&] { key(VK_DOWN); }, "1:4 ", 3},
      {"pick", [&] { key(VK_RETURN); }, "9:4 1:4 8:4 ", 3},
      {"open and give up",
       [&] {
         SendMessage(combo, CB_SHOWDROPDOWN, TRUE);
         PumpUntilIdle();
         key(VK_ESCAPE);
       },
       "7:4 10:4 8:4 ", 3},
      {"leave", [&] { SetFocus(other); }, "4:4 256: ", 3},
      {"a text of the list is no pick on leaving",
       [&] {
         SetFocus(combo);
         TypeText(combo, "2");
         PumpUntilIdle();
         SetFocus(other);
         PumpUntilIdle();
       },
       "512: 3:4 5:2 4:2 256: ", -1},
      {"empty", [&] { SendMessage(combo, CB_RESETCONTENT); }, "", -1},
  };
  for (const Case& c : cases) {
    g_trace.clear();
    c.act();
    EXPECT_EQ(g_trace, c.trace) << c.what;
    EXPECT_EQ(SendMessage(combo, CB_GETCURSEL), c.selection) << c.what;
  }
  EXPECT_EQ(Text(combo), "");
}

TEST_F(Controls, ComboIsAsHighAsItsField) {
  const HWND combo = MakeCombo(1500);
  RECT rect;
  GetWindowRect(combo, &rect);
  EXPECT_LT(rect.bottom - rect.top, 30) << "the drop height isn't the control's";
  EXPECT_GT(rect.bottom - rect.top, 15);
  const auto start = std::chrono::steady_clock::now();
  SendMessage(combo, CB_SHOWDROPDOWN, TRUE);
  PumpUntilIdle();
  const auto passed = std::chrono::steady_clock::now() - start;
  EXPECT_TRUE(SendMessage(combo, CB_GETDROPPEDSTATE));
  EXPECT_LT(passed, std::chrono::milliseconds(1000)) << "a long list opens at once";
  SendMessage(combo, CB_SHOWDROPDOWN, FALSE);
}

TEST_F(Controls, AStyleBitDisables) {
  const HWND combo = MakeCombo(3);
  SetWindowLong(combo, GWL_STYLE, GetWindowLong(combo, GWL_STYLE) | WS_DISABLED);
  platform::testing::PressMouse(combo, {90, 8});
  platform::testing::ReleaseMouse(combo, {90, 8});
  PumpUntilIdle();
  EXPECT_FALSE(SendMessage(combo, CB_GETDROPPEDSTATE));
  EXPECT_NE(GetFocus(), combo);
  EnableWindow(combo, TRUE);
  platform::testing::PressMouse(combo, {90, 8});
  PumpUntilIdle();
  EXPECT_TRUE(SendMessage(combo, CB_GETDROPPEDSTATE));
  EXPECT_EQ(GetFocus(), combo);
  SendMessage(combo, CB_SHOWDROPDOWN, FALSE);
}

TEST_F(Controls, ButtonsKeepTheirGroup) {
  std::vector<HWND> radios;
  for (int i = 0; i < 4; ++i)
    radios.push_back(Make("BUTTON", BS_AUTORADIOBUTTON | (i % 2 == 0 ? DWORD{WS_GROUP} : 0U)));
  const HWND box = Make("BUTTON", BS_AUTOCHECKBOX);
  struct Case {
    HWND clicked;
    const char* checks;
  };
  const Case cases[] = {{radios[0], "10000"}, {radios[3], "10010"}, {radios[1], "01010"},
                        {radios[1], "01010"}, {box, "01011"},       {box, "01010"}};
  for (const Case& c : cases) {
    g_trace.clear();
    platform::testing::PressMouse(c.clicked, {5, 10});
    platform::testing::ReleaseMouse(c.clicked, {5, 10});
    PumpUntilIdle();
    std::string checks;
    for (const HWND button : {radios[0], radios[1], radios[2], radios[3], box})
      checks += std::to_string(SendMessage(button, BM_GETCHECK));
    EXPECT_EQ(checks, c.checks);
    EXPECT_EQ(g_trace, "0: ") << "one click, one notification";
  }
}

TEST_F(Controls, TheSpinReadsItsField) {
  const HWND field = Make("EDIT", WS_BORDER | ES_NUMBER);
  const HWND spin = Make("msctls_updown32", UDS_SETBUDDYINT | UDS_ALIGNRIGHT | UDS_AUTOBUDDY | UDS_ARROWKEYS);
  SendMessage(spin, UDM_SETRANGE, 0, MAKELONG(2000, 1));
  SendMessage(spin, UDM_SETPOS, 0, 1999);
  EXPECT_EQ(Text(field), "1999") << "no separator of thousands";
  RECT a;
  RECT b;
  GetWindowRect(field, &a);
  GetWindowRect(spin, &b);
  EXPECT_EQ(a.right, b.left);
  EXPECT_EQ(b.right - a.left, 100) << "the arrows take their room from the field";
  struct Case {
    const char* text;
    LRESULT answer;
  };
  const Case cases[] = {{"7", 7},
                        {"2000", 2000},
                        {"2001", 0x10000 | 2000},
                        {"", 0x10000 | 2000},
                        {"0", 0x10000 | 2000},
                        {"3x", 0x10000 | 2000},
                        {"12", 12}};
  for (const Case& c : cases) {
    SetWindowText(field, c.text);
    EXPECT_EQ(SendMessage(spin, UDM_GETPOS), c.answer) << c.text;
  }
  SetFocus(field);
  PressKey(field, VK_DOWN);
  PumpUntilIdle();
  EXPECT_EQ(Text(field), "11");
  platform::testing::PressMouse(spin, {5, 4});
  platform::testing::ReleaseMouse(spin, {5, 4});
  PumpUntilIdle();
  EXPECT_EQ(Text(field), "12") << "the upper arrow";
}

TEST_F(Controls, AHandlerMayEndTheControl) {
  struct Ending {
    static LRESULT Proc(HWND window, UINT message, WPARAM wParam, LPARAM lParam) {
      if (message == WM_COMMAND) DestroyWindow(reinterpret_cast<HWND>(lParam));
      return DefWindowProc(window, message, wParam, lParam);
    }
  };
  SetWindowLong(m_parent, GWL_WNDPROC, reinterpret_cast<std::intptr_t>(&Ending::Proc));
  const HWND button = Make("BUTTON", BS_AUTOCHECKBOX);
  platform::testing::PressMouse(button, {5, 10});
  platform::testing::ReleaseMouse(button, {5, 10});
  const HWND edit = Make("EDIT", 0);
  SetWindowText(edit, "x");
  const HWND combo = MakeCombo(2);
  SendMessage(combo, WM_CHAR, '1');
  PumpUntilIdle();
  EXPECT_FALSE(IsWindow(button));
  EXPECT_FALSE(IsWindow(edit));
  EXPECT_FALSE(IsWindow(combo));
}

}  // namespace
