// The queue, its order, nested loops, windows' life and input as messages.

#include <gtest/gtest.h>

#include <chrono>
#include <ctime>
#include <string>
#include <thread>
#include <vector>

#include "platform/window/pump.h"
#include "platform/window/window.h"
#include "tessarel12_testing.h"

namespace {

using namespace platform::testing;

std::string g_trace;
UINT g_endsAt = 0;  // the message at which a window ends itself

LRESULT Trace(HWND window, UINT message, WPARAM wParam, LPARAM lParam) {
  if (g_endsAt != 0 && message == g_endsAt) return DestroyWindow(window);
  switch (message) {
    case WM_KEYDOWN:
      g_trace += "K" + std::string(1, static_cast<char>(wParam));
      break;
    case WM_CHAR:
      g_trace += "C" + std::string(1, static_cast<char>(wParam));
      break;
    case WM_APP:
      g_trace += "U" + std::to_string(wParam);
      break;
    case WM_TIMER:
      g_trace += "T";
      break;
    case WM_LBUTTONDOWN:
      g_trace += "L" + std::to_string(GET_X_LPARAM(lParam));
      break;
    case WM_MOUSEMOVE:
      g_trace += "M" + std::to_string(GET_X_LPARAM(lParam));
      break;
    case WM_MOUSEWHEEL:
      g_trace += "W" + std::to_string(static_cast<short>(HIWORD(wParam)));
      break;
    case WM_MOUSEHWHEEL:
      g_trace += "H" + std::to_string(static_cast<short>(HIWORD(wParam)));
      break;
    case WM_CONTEXTMENU: {
      RECT place;
      GetWindowRect(window, &place);
      const POINT point = {GET_X_LPARAM(lParam), GET_Y_LPARAM(lParam)};
      g_trace += PtInRect(&place, point) != 0 ? "C" : "C outside";
      break;
    }
    case WM_SETFOCUS:
      g_trace += "F";
      break;
    case WM_KILLFOCUS:
      g_trace += "f";
      break;
    case WM_CAPTURECHANGED:
      g_trace += "c";
      break;
    case WM_DESTROY:
      g_trace += "d";
      break;
    case WM_NCDESTROY:
      g_trace += "n";
      break;
    default:
      break;
  }
  return DefWindowProc(window, message, wParam, lParam);
}

class Messages : public ::testing::Test {
 protected:
  void SetUp() override {
    const WNDCLASS windowClass = {0, &Trace, 0, 0, nullptr, nullptr, nullptr, nullptr, nullptr, "tracer"};
    RegisterClassA(&windowClass);
    window = Make(WS_OVERLAPPEDWINDOW, nullptr);
    ASSERT_NE(window, nullptr);
    ShowWindow(window, SW_SHOW);
    PumpUntilIdle();
    HoldQueue(true);
    g_trace.clear();
  }
  void TearDown() override {
    HoldQueue(false);
    DestroyWindow(window);
  }
  static HWND Make(DWORD style, HWND parent) {
    return CreateWindowEx(0, "tracer", "", style, 0, 0, 200, 100, parent, nullptr, nullptr, nullptr);
  }

  HWND window = nullptr;
};

TEST_F(Messages, PostedComeBeforeInputAndCharactersFollowTheirKey) {
  PressKey(window, 'A');
  PostMessage(window, WM_APP, 1);
  PressKey(window, 'B');
  PostMessage(window, WM_APP, 2);
  PumpUntilIdle();
  EXPECT_EQ(g_trace, "U1U2KACaKBCb");
}

TEST_F(Messages, PeekFindsInputWithoutDispatchingIt) {
  PressKey(window, 'A');
  MSG message;
  ASSERT_TRUE(PeekMessage(&message, nullptr, 0, 0, PM_NOREMOVE));
  EXPECT_EQ(message.message, static_cast<UINT>(WM_KEYDOWN));
  EXPECT_EQ(g_trace, "");
  EXPECT_FALSE(PeekMessage(&message, nullptr, WM_MOUSEFIRST, WM_MOUSELAST, PM_REMOVE)) << "filter by number";
  EXPECT_TRUE(PeekMessage(&message, window, WM_KEYDOWN, WM_KEYDOWN, PM_REMOVE));
}

TEST_F(Messages, MovesCoalesceAndWheelAndClicksKeepTheirPlace) {
  for (int x = 0; x < 20; ++x) MoveMouse(window, {x, 5});
  PressMouse(window, {7, 5});
  TurnWheel(window, {7, 5}, -120);
  PumpUntilIdle();
  EXPECT_EQ(g_trace, "M19L7W-120");
}

TEST_F(Messages, ASidewaysTurnIsAMessageOfItsOwn) {
  const struct {
    int delta;
    int right;
    bool alt;
    const char* trace;
  } rows[] = {
      {0, 30, false, "H30"}, {15, -8, false, "W15H-8"}, {0, -120, true, "W120"}, {40, 0, true, "W40"}};
  for (const auto& row : rows) {
    g_trace.clear();
    TurnWheel(window, {7, 5}, row.delta, false, false, row.alt, row.right);
    PumpUntilIdle();
    EXPECT_EQ(g_trace, row.trace);
  }
}

TEST_F(Messages, TheKeyboardsContextMenuHasAPlaceInTheWindow) {
  SetFocus(window);
  SetWindowPos(window, nullptr, 200, 150, 300, 200, SWP_NOZORDER);
  PumpUntilIdle();
  PressKey(window, VK_SHIFT);
  PumpUntilIdle();
  g_trace.clear();
  PressKey(window, VK_F10, true);
  ReleaseKey(window, VK_F10, true);
  ReleaseKey(window, VK_SHIFT);
  PumpUntilIdle();
  EXPECT_EQ(g_trace, "C");
}

TEST_F(Messages, ADisabledWindowGetsNoInput) {
  const HWND child = Make(WS_CHILD | WS_VISIBLE, window);
  EnableWindow(window, FALSE);
  PressMouse(child, {1, 1});
  PressKey(child, 'A');
  TurnWheel(child, {1, 1}, 120);
  PumpUntilIdle();
  EXPECT_EQ(g_trace, "");
  EnableWindow(window, TRUE);
  PressMouse(child, {1, 1});
  PumpUntilIdle();
  EXPECT_EQ(g_trace, "L1");
}

TEST_F(Messages, TheOldFocusHearsBeforeTheNew) {
  const HWND child = Make(WS_CHILD | WS_VISIBLE, window);
  SetFocus(window);
  g_trace.clear();
  SetFocus(child);
  EXPECT_EQ(g_trace, "fF");
  EXPECT_EQ(GetFocus(), child);
  PressKey(window, 'A');
  PumpUntilIdle();
  EXPECT_EQ(g_trace, "fFKACa");
}

TEST_F(Messages, CaptureTakesTheMouseAndItsLossIsTold) {
  const HWND child = Make(WS_CHILD | WS_VISIBLE, window);
  SetWindowPos(child, nullptr, 50, 10, 20, 20, 0);
  SetCapture(child);
  MoveMouse(window, {100, 50});
  PumpUntilIdle();
  EXPECT_EQ(g_trace, "M50") << "in the coordinates of the window with the capture";
  ReleaseCapture();
  EXPECT_EQ(g_trace, "M50c");
}

TEST_F(Messages, DestroyingEndsChildrenAndDropsWhatIsQueued) {
  const HWND child = Make(WS_CHILD | WS_VISIBLE, window);
  PostMessage(child, WM_APP, 1);
  SetTimer(child, 1, 10, nullptr);
  AdvanceTimers(100);
  DestroyWindow(window);
  PumpUntilIdle();
  EXPECT_EQ(g_trace.find('U'), std::string::npos);
  EXPECT_EQ(g_trace.find('T'), std::string::npos);
  EXPECT_EQ(g_trace.substr(g_trace.find('d')), "ddnn") << "parent, child; child gone, parent gone";
  EXPECT_FALSE(IsWindow(child));
  EXPECT_EQ(SendMessage(child, WM_APP, 1, 0), 0);
  EXPECT_FALSE(PostMessage(child, WM_APP, 1, 0));
  EXPECT_FALSE(SetWindowPos(child, nullptr, 0, 0, 1, 1, 0));
}

TEST_F(Messages, AWindowMayEndAsItIsPlaced) {
  for (const UINT message : {UINT{WM_SIZE}, UINT{WM_MOVE}})
    for (const HWND parent : {HWND{}, window})
      for (const bool shown : {false, true})
        for (const UINT flags : {0U, UINT{SWP_SHOWWINDOW}, UINT{SWP_HIDEWINDOW}}) {
          const HWND placed = Make(parent == nullptr ? DWORD{WS_OVERLAPPEDWINDOW} : DWORD{WS_CHILD}, parent);
          if (shown) ShowWindow(placed, SW_SHOW);
          PumpUntilIdle();
          g_endsAt = message;
          SetWindowPos(placed, nullptr, 30, 40, 222, 111, flags);
          g_endsAt = 0;
          EXPECT_FALSE(IsWindow(placed)) << message << shown << flags << (parent != nullptr);
          PumpUntilIdle();
        }
}

TEST_F(Messages, TimersCoalesceAndComeLast) {
  SetTimer(window, 1011, 1000, nullptr);
  AdvanceTimers(999);
  PumpUntilIdle();
  EXPECT_EQ(g_trace, "");
  AdvanceTimers(1);
  AdvanceTimers(1000);
  PostMessage(window, WM_APP, 1);
  PumpUntilIdle();
  EXPECT_EQ(g_trace, "U1T");
  KillTimer(window, 1011);
  AdvanceTimers(5000);
  PumpUntilIdle();
  EXPECT_EQ(g_trace, "U1T");
}

TEST_F(Messages, AnotherThreadCanPost) {
  std::thread([this] { PostMessage(window, WM_APP, 7); }).join();
  PumpUntilIdle();
  EXPECT_EQ(g_trace, "U7");
}

TEST_F(Messages, APollingLoopLeavesTheProcessorAlone) {
  const std::clock_t before = std::clock();
  MSG message;
  for (int polls = 0; polls < 25; ++polls)  // the waits are 20 times 10 ms, then 20, 40, 80, 160, 320
    PeekMessage(&message, nullptr, 0, 0, PM_NOREMOVE);
  const double seconds = static_cast<double>(std::clock() - before) / CLOCKS_PER_SEC;
  EXPECT_LT(seconds, 0.1);
  // What comes ends a wait, however long it has become.
  PeekMessage(&message, nullptr, 0, 0, PM_NOREMOVE);
  std::thread poster([this] {
    std::this_thread::sleep_for(std::chrono::milliseconds(20));
    PostMessage(window, WM_APP, 7);
  });
  const auto begin = std::chrono::steady_clock::now();
  EXPECT_TRUE(PeekMessage(&message, nullptr, 0, 0, PM_NOREMOVE));
  EXPECT_LT(std::chrono::steady_clock::now() - begin, std::chrono::seconds(1)) << "the wait is 1.3 seconds";
  poster.join();
}

TEST_F(Messages, WmQuitEndsALoopAfterWhatWasPosted) {
  PostQuitMessage(3);
  PostMessage(window, WM_APP, 1);
  MSG message;
  ASSERT_TRUE(GetMessage(&message, nullptr, 0, 0));
  EXPECT_EQ(message.message, static_cast<UINT>(WM_APP));
  EXPECT_FALSE(GetMessage(&message, nullptr, 0, 0));
  EXPECT_EQ(message.wParam, 3U);
}

}  // namespace
