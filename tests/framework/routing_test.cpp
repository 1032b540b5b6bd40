// Message maps, command routing, objects and their windows, message boxes, the application's loop.

#include <gtest/gtest.h>

#include <string>

#include "platform/framework/app.h"
#include "platform/framework/frame_wnd.h"
#include "platform/framework/message_box.h"
#include "platform/resources/extension.h"
#include "tessarel12_testing.h"

namespace {

std::string g_trace;

enum : UINT {
  kCommand = 40001,
  kFrameCommand = 40002,
  kAppCommand = 40003,
  kRangeFirst = 40010,
  kRangeLast = 40012
};

class TestApp : public CWinApp {
 public:
  TestApp() : CWinApp("test") {}

 protected:
  void OnAppCommand() { g_trace += "A"; }
  DECLARE_MESSAGE_MAP()
};
BEGIN_MESSAGE_MAP(TestApp, CWinApp)
ON_COMMAND(kAppCommand, OnAppCommand)
END_MESSAGE_MAP()
TestApp g_app;

class Pane : public CWnd {
  DECLARE_DYNCREATE(Pane)
 protected:
  int OnCreate(LPCREATESTRUCT cs) {
    g_trace += "c" + std::to_string(cs->cx);
    return CWnd::OnCreate(cs);
  }
  void OnSize(UINT type, int cx, int cy) {
    g_trace += "s" + std::to_string(cx) + "x" + std::to_string(cy);
    CWnd::OnSize(type, cx, cy);
  }
  void OnKeyDown(UINT key, UINT repeat, UINT flags) {
    g_trace += "k" + std::to_string(key) + "*" + std::to_string(repeat);
    CWnd::OnKeyDown(key, repeat, flags);
  }
  BOOL OnMouseWheel(UINT flags, short delta, CPoint point) {
    g_trace += "w" + std::to_string(flags) + "," + std::to_string(delta) + "," + std::to_string(point.x);
    return TRUE;
  }
  void OnCommandHere() { g_trace += "P"; }
  void OnRange(UINT id) { g_trace += "R" + std::to_string(id - kRangeFirst); }
  LRESULT OnOwn(WPARAM wParam, LPARAM lParam) { return static_cast<LRESULT>(wParam) * 10 + lParam; }
  DECLARE_MESSAGE_MAP()
};
IMPLEMENT_DYNCREATE(Pane, CWnd)
BEGIN_MESSAGE_MAP(Pane, CWnd)
ON_WM_CREATE()
ON_WM_SIZE()
ON_WM_KEYDOWN()
ON_WM_MOUSEWHEEL()
ON_COMMAND(kCommand, OnCommandHere)
ON_COMMAND_RANGE(kRangeFirst, kRangeLast, OnRange)
ON_MESSAGE(WM_APP + 1, OnOwn)
END_MESSAGE_MAP()

class Frame : public CFrameWnd {
 public:
  explicit Frame(bool* gone) : m_gone(gone) {}
  ~Frame() override { *m_gone = true; }
  Pane m_pane;

 protected:
  BOOL OnCreateClient(LPCREATESTRUCT, CCreateContext*) override {
    return m_pane.Create(nullptr, "", WS_CHILD | WS_VISIBLE, CRect(0, 0, 10, 10), this, AFX_IDW_PANE_FIRST);
  }
  void OnFrameCommand() { g_trace += "F"; }
  DECLARE_MESSAGE_MAP()

 private:
  bool* m_gone;
};
BEGIN_MESSAGE_MAP(Frame, CFrameWnd)
ON_COMMAND(kFrameCommand, OnFrameCommand)
END_MESSAGE_MAP()

class Routing : public ::testing::Test {
 protected:
  void SetUp() override {
    frame = new Frame(&gone);
    ASSERT_TRUE(frame->Create(nullptr, "title", WS_OVERLAPPEDWINDOW, CRect(0, 0, 300, 200)));
  }
  void TearDown() override {
    if (!gone) frame->DestroyWindow();
  }
  Frame* frame = nullptr;
  bool gone = false;
};

TEST_F(Routing, AFrameMakesItsPaneAndSizesIt) {
  EXPECT_EQ(g_trace.substr(0, 8), "c10s10x1") << g_trace;
  CRect client;
  frame->m_pane.GetClientRect(client);
  EXPECT_EQ(client.Size(), CSize(300, 200));
  frame->SetWindowPos(nullptr, 0, 0, 400, 250, SWP_NOMOVE | SWP_NOZORDER);
  EXPECT_EQ(g_trace.substr(g_trace.rfind('s')), "s400x250") << "also while hidden";
  EXPECT_EQ(frame->m_pane.GetParentFrame(), frame);
}

TEST_F(Routing, WordsBecomeArguments) {
  g_trace.clear();
  frame->m_pane.SendMessage(WM_KEYDOWN, VK_NEXT, 3);
  frame->m_pane.SendMessage(WM_MOUSEWHEEL, MAKEWPARAM(MK_SHIFT, -240), MAKELPARAM(-7, 9));
  EXPECT_EQ(g_trace, "k34*3w4,-240,-7");
  EXPECT_EQ(frame->m_pane.SendMessage(WM_APP + 1, 4, 2), 42);
}

TEST_F(Routing, CommandsGoUpToWhoHandlesThem) {
  const struct {
    CWnd* to;
    UINT id;
    const char* trace;
    LRESULT handled;
  } cases[] = {{&frame->m_pane, kCommand, "P", 1},     {&frame->m_pane, kRangeLast, "R2", 1},
               {&frame->m_pane, kFrameCommand, "", 0}, {frame, kFrameCommand, "F", 1},
               {frame, kAppCommand, "A", 1},           {frame, kCommand, "", 0}};
  for (const auto& c : cases) {
    g_trace.clear();
    EXPECT_EQ(c.to->SendMessage(WM_COMMAND, c.id, 0), c.handled) << c.id;
    EXPECT_EQ(g_trace, c.trace) << c.id;
  }
}

TEST_F(Routing, AFrameEndsWithItsWindowAndTheMainWindowEndsTheLoop) {
  AfxGetApp()->m_pMainWnd = frame;
  frame->PostMessage(WM_CLOSE);
  EXPECT_EQ(AfxGetApp()->Run(), 0);
  EXPECT_TRUE(gone);
  EXPECT_EQ(AfxGetMainWnd(), nullptr);
}

TEST(Objects, DynamicCreationAndKinship) {
  CObject* object = RUNTIME_CLASS(Pane)->CreateObject();
  EXPECT_STREQ(object->GetRuntimeClass()->m_lpszClassName, "Pane");
  EXPECT_TRUE(object->IsKindOf(RUNTIME_CLASS(CWnd)));
  EXPECT_FALSE(object->IsKindOf(RUNTIME_CLASS(CFrameWnd)));
  delete object;
}

TEST(Objects, TheEndOfAnObjectEndsItsWindow) {
  HWND window = nullptr;
  {
    CFrameWnd* frame = new CFrameWnd;
    frame->Create(nullptr, "");
    Pane pane;
    ASSERT_TRUE(pane.Create(nullptr, "", WS_CHILD, CRect(0, 0, 5, 5), frame, 7));
    window = pane.m_hWnd;
    EXPECT_EQ(CWnd::FromHandle(window), &pane);
    frame->SetWindowText("héllo");
    CString text;
    frame->GetWindowText(text);
    EXPECT_EQ(text, "héllo");
  }
  EXPECT_FALSE(IsWindow(window));
}

TEST(MessageBoxes, AreAnsweredByTheSeam) {
  platform::testing::SetMessageBoxAnswer([](const CString& text, UINT type) -> int {
    g_trace = text;
    return type == MB_YESNO ? IDNO : IDOK;
  });
  EXPECT_EQ(AfxMessageBox("Procedere?", MB_YESNO), IDNO);
  EXPECT_EQ(g_trace, "Procedere?");
  platform::testing::SetMessageBoxAnswer(nullptr);
}

TEST(Extensions, ALibraryIsFoundWhileItStandsInTheList) {
  AFX_EXTENSION_MODULE module{};
  EXPECT_FALSE(AfxInitExtensionModule(module, nullptr));
  const auto handle = reinterpret_cast<HMODULE>(&module);
  EXPECT_TRUE(AfxInitExtensionModule(module, handle));
  new CDynLinkLibrary(module);
  EXPECT_TRUE(AfxIsLibraryLinked(handle));
  AfxTermExtensionModule(module);
  EXPECT_FALSE(AfxIsLibraryLinked(handle));
}

}  // namespace
