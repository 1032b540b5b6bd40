// A test of a host outside the source tree: a box is answered and a key reaches its window.

#include <tessarel12.h>
#include <tessarel12_testing.h>

#include <cstdio>

namespace {

namespace ui = platform::testing;

int g_key = 0;

LRESULT Note(HWND window, UINT message, WPARAM wParam, LPARAM lParam) {
  if (message == WM_KEYDOWN) g_key = static_cast<int>(wParam);
  return DefWindowProc(window, message, wParam, lParam);
}

class CHostApp : public CWinApp {};
CHostApp g_app;

}  // namespace

int main() {
  ui::SetMessageBoxAnswer(
      [](const CString& text, UINT) { return text == CString("save?") ? int{IDYES} : int{IDNO}; });
  const bool answered = AfxMessageBox("save?", MB_YESNO) == IDYES;
  WNDCLASS kind{};
  kind.lpfnWndProc = &Note;
  kind.lpszClassName = "host";
  platform::EnsureApplication();
  RegisterClassA(&kind);
  const HWND window =
      CreateWindowEx(0, "host", "", WS_OVERLAPPEDWINDOW, 0, 0, 200, 100, nullptr, nullptr, nullptr, nullptr);
  ShowWindow(window, SW_SHOW);
  ui::PumpUntilIdle();
  ui::PressKey(window, VK_NEXT);
  ui::PumpUntilIdle();
  std::printf("%s, key %d\n", answered ? "answered" : "not answered", g_key);
  return answered && g_key == VK_NEXT && ui::WindowPixel(window, 5, 5) != 0 ? 0 : 1;
}
