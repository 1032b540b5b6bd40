#include "library/wheel_lines.h"

#include "platform/base/kernel.h"
#include "platform/registry/registry.h"
#include "platform/window/window.h"
#include "tests/library/config_folder.h"

namespace {

constexpr DWORD kModern = 5;
constexpr DWORD kOtherFamily = 0x80000004;
constexpr DWORD kOld = 3;

UINT g_answer = 0;
int g_questions = 0;

LRESULT Driver(HWND window, UINT message, WPARAM wParam, LPARAM lParam) {
  if (message != RegisterWindowMessageA("MSH_SCROLL_LINES_MSG"))
    return DefWindowProc(window, message, wParam, lParam);
  ++g_questions;
  return wParam == 0 && lParam == 0 ? static_cast<LRESULT>(g_answer) : -1;
}

HWND MakeDriver(const char* title) {
  const WNDCLASS driver = {0, &Driver, 0, 0, nullptr, nullptr, nullptr, nullptr, nullptr, "MouseZ"};
  RegisterClassA(&driver);
  return CreateWindowEx(0, "MouseZ", title, WS_OVERLAPPEDWINDOW, 0, 0, 10, 10, nullptr, nullptr, nullptr,
                        nullptr);
}

UINT SystemLines() {
  UINT lines = 0;
  SystemParametersInfoA(SPI_GETWHEELSCROLLLINES, 0, &lines, 0);
  return lines;
}

void SetDesktopValue(const char* text, DWORD size) {
  HKEY key = nullptr;
  ASSERT_EQ(RegCreateKeyExA(HKEY_CURRENT_USER, "Control Panel\\Desktop", 0, nullptr, 0, KEY_ALL_ACCESS,
                            nullptr, &key, nullptr),
            ERROR_SUCCESS);
  RegSetValueExA(key, "WheelScrollLines", 0, REG_SZ, reinterpret_cast<const BYTE*>(text), size);
  RegCloseKey(key);
}

using WheelLines = FreshUser;

TEST_F(WheelLines, ADriversAnswerCountsAlsoZeroAndForEver) {
  const HWND driver = MakeDriver("Magellan MSWHEEL");
  for (UINT answer : {7U, 0U}) {
    MouseScrollLines lines;
    g_answer = answer;
    g_questions = 0;
    EXPECT_EQ(lines.Get(kModern), answer);
    g_answer = 99;
    EXPECT_EQ(lines.Get(kModern), answer);
    EXPECT_EQ(g_questions, 1);
  }
  DestroyWindow(driver);
}

TEST_F(WheelLines, AnotherTitleIsNoDriver) {
  const HWND other = MakeDriver("something else");
  g_answer = 42;
  EXPECT_EQ(MouseScrollLines().Get(kOtherFamily), 3U);
  DestroyWindow(other);
}

TEST_F(WheelLines, WithoutADriverTheSystemIsAsked) {
  const UINT system = SystemLines();
  EXPECT_GT(system, 0U);
  EXPECT_EQ(MouseScrollLines().Get(kModern), system);
  EXPECT_EQ(MouseScrollLines().Get(kOtherFamily), 3U);
  EXPECT_EQ(GetMouseScrollLines(), (GetVersion() & 0xff) >= 4 ? system : 3);
}

TEST_F(WheelLines, AnOldSystemKeepsThemInTheRegistry) {
  EXPECT_EQ(MouseScrollLines().Get(kOld), 3U) << "no such key";
  const struct {
    const char* text;
    DWORD size;
    UINT lines;
  } cases[] = {{"5", 2, 5}, {"12", 2, 12}, {"no number", 10, 0}};
  for (const auto& c : cases) {
    SetDesktopValue(c.text, c.size);
    EXPECT_EQ(MouseScrollLines().Get(kOld), c.lines) << c.text;
  }
  const std::string tooLong(200, '4');
  SetDesktopValue(tooLong.c_str(), 200);
  EXPECT_EQ(MouseScrollLines().Get(kOld), 3U);
}

}  // namespace
