// A host that is a Qt program with an event loop of its own.

#include <gtest/gtest.h>

#include <QApplication>
#include <QMessageBox>
#include <QTimer>
#include <QVBoxLayout>
#include <QWidget>
#include <string>

#include "platform/framework/frame_wnd.h"
#include "platform/framework/message_box.h"
#include "platform/framework/thread.h"
#include "platform/qt_bridge.h"
#include "platform/window/pump.h"
#include "platform/window/window.h"
#include "tessarel12_testing.h"

namespace {

std::string g_trace;

LRESULT Trace(HWND window, UINT message, WPARAM wParam, LPARAM lParam) {
  if (message == WM_APP) {
    g_trace += "U" + std::to_string(wParam);
    if (wParam == 9) throw 9;
  }
  if (message == WM_TIMER) g_trace += "T";
  if (message == WM_LBUTTONDOWN) g_trace += "L";
  if (message == WM_SIZE)
    g_trace += "s" + std::to_string(LOWORD(lParam)) + "x" + std::to_string(HIWORD(lParam));
  if (message == WM_DESTROY) g_trace += "d";
  return DefWindowProc(window, message, wParam, lParam);
}

class QtHost : public ::testing::Test {
 protected:
  void SetUp() override {
    static int argc = 1;
    static char name[] = "host";
    static char* argv[] = {name, nullptr};
    if (QCoreApplication::instance() == nullptr)
      new QApplication(argc, argv);  // lives as long as the process
    const WNDCLASS windowClass = {0, &Trace, 0, 0, nullptr, nullptr, nullptr, nullptr, nullptr, "traced"};
    RegisterClassA(&windowClass);
    g_trace.clear();
  }
  static void Exec(int milliseconds) {
    QTimer::singleShot(milliseconds, [] { QCoreApplication::quit(); });
    QCoreApplication::exec();
  }
};

TEST_F(QtHost, MessagesAndTimersRunUnderTheHostsLoop) {
  QWidget host;
  host.resize(300, 200);
  const HWND parent = AfxWindowInWidget(&host);
  const HWND window =
      CreateWindowEx(0, "traced", "", WS_CHILD | WS_VISIBLE, 0, 0, 1, 1, parent, nullptr, nullptr, nullptr);
  host.show();
  host.resize(320, 240);
  g_trace.clear();
  host.resize(330, 250);
  EXPECT_EQ(g_trace, "s330x250") << "the window follows the host's widget";
  g_trace.clear();
  PostMessage(window, WM_APP, 1);
  platform::testing::PressMouse(window, {5, 5});
  SetTimer(window, 1, 10, nullptr);
  Exec(100);
  EXPECT_EQ(g_trace.substr(0, 4), "U1LT");
  EXPECT_GT(g_trace.size(), 6U) << "the timer goes on";
}

TEST_F(QtHost, ABoxBelongsToTheWindowInUse) {
  const HWND window = CreateWindowEx(0, "traced", "", WS_OVERLAPPEDWINDOW | WS_VISIBLE, 0, 0, 300, 200,
                                     nullptr, nullptr, nullptr, nullptr);
  SetFocus(window);
  for (const bool active : {true, false}) {
    QTimer::singleShot(0, [] {
      auto* box = qobject_cast<QMessageBox*>(QApplication::activeModalWidget());
      g_trace += box != nullptr && box->parentWidget() != nullptr ? "p" : "-";
      if (box != nullptr) box->reject();
    });
    if (!active)  // the user is in another program
      for (QWidget* widget : QApplication::topLevelWidgets()) {
        QEvent gone(QEvent::WindowDeactivate);
        QApplication::setActiveWindow(nullptr);
        QCoreApplication::sendEvent(widget, &gone);
      }
    AfxMessageBox("?");
  }
  EXPECT_EQ(g_trace.find('-'), std::string::npos) << g_trace;
  DestroyWindow(window);
}

TEST_F(QtHost, TheEndOfTheHostsWidgetEndsTheWindow) {
  auto* host = new QWidget;
  const HWND parent = AfxWindowInWidget(host);
  const HWND window =
      CreateWindowEx(0, "traced", "", WS_CHILD, 0, 0, 9, 9, parent, nullptr, nullptr, nullptr);
  PostMessage(window, WM_APP, 1);
  delete host;
  EXPECT_FALSE(IsWindow(window));
  EXPECT_FALSE(IsWindow(parent));
  Exec(20);
  EXPECT_EQ(g_trace.substr(g_trace.find('d')), "d") << "told once, and nothing queued comes after";
}

TEST_F(QtHost, AWindowFitsIntoALayout) {
  QWidget host;
  auto* layout = new QVBoxLayout(&host);
  layout->setContentsMargins(0, 0, 0, 0);
  const HWND window =
      CreateWindowEx(0, "traced", "", WS_POPUP, 0, 0, 10, 10, nullptr, nullptr, nullptr, nullptr);
  layout->addWidget(AfxGetQWidget(window));
  host.resize(200, 150);
  host.show();
  Exec(20);
  RECT client;
  GetClientRect(window, &client);
  EXPECT_EQ(client.right, 200);
  EXPECT_EQ(client.bottom, 150);
}

TEST_F(QtHost, AnExceptionUnderTheHostsLoopReachesTheNextPump) {
  const HWND window =
      CreateWindowEx(0, "traced", "", WS_POPUP, 0, 0, 10, 10, nullptr, nullptr, nullptr, nullptr);
  PostMessage(window, WM_APP, 9);
  Exec(20);
  MSG message;
  EXPECT_THROW(PeekMessage(&message, nullptr, 0, 0, PM_REMOVE), int);
  DestroyWindow(window);
}

TEST_F(QtHost, TheHostsQuitEndsALoopOfOursAndTheHosts) {
  bool ended = false;
  QTimer::singleShot(0, [&ended] {
    QTimer::singleShot(20, [] { QCoreApplication::quit(); });
    MSG message;
    ended = GetMessage(&message, nullptr, 0, 0) == 0;  // a modal loop inside the host's loop
  });
  QCoreApplication::exec();
  EXPECT_TRUE(ended);
  QTimer::singleShot(10, [] { g_trace += "late"; });
  Exec(50);
  EXPECT_EQ(g_trace, "late") << "no quit is left over for the host's next loop";
}

/// Counts the idle updates of its state.
class IdleFrame : public CFrameWnd {
 protected:
  LRESULT OnIdleMessage(WPARAM, LPARAM) {
    g_trace += "i";
    return 0;
  }
  DECLARE_MESSAGE_MAP()
};
BEGIN_MESSAGE_MAP(IdleFrame, CFrameWnd)
ON_MESSAGE(WM_IDLEUPDATECMDUI, OnIdleMessage)
END_MESSAGE_MAP()

TEST_F(QtHost, FramesAreBroughtUpToDateUnderTheHostsLoop) {
  const CWinThread* thread = AfxGetThread();
  ASSERT_NE(thread, nullptr);
  auto* frame = new IdleFrame;  // ends with its window
  frame->Create(nullptr, "", WS_OVERLAPPEDWINDOW, CRect(0, 0, 100, 100));
  frame->ShowWindow(SW_SHOW);
  platform::testing::PumpUntilIdle();
  g_trace.clear();
  PostMessage(frame->m_hWnd, WM_NULL, 0);
  // Not quit: Qt would ask the frame, which lets the program decide about closing.
  QTimer::singleShot(20, [] { QCoreApplication::exit(); });
  QCoreApplication::exec();
  EXPECT_EQ(g_trace.substr(0, 1), "i");
  frame->DestroyWindow();
}

}  // namespace
