// The viewer in one call: its loop, the host meanwhile, all ways out of it.

#include <deque>
#include <functional>

#include "platform/framework/thread.h"
#include "tests/frames/viewer_fixture.h"

namespace {

/// A host's window. Whenever a viewer's loop is idle, the next step is taken.
class Host : public CFrameWnd {
 public:
  LRESULT WindowProc(UINT message, WPARAM wParam, LPARAM lParam) override {
    if (message == WM_ENTERIDLE) {
      ++idles;
      EXPECT_EQ(wParam, WPARAM{0});  // MSGF_DIALOGBOX
      if (!steps.empty()) {
        const auto step = steps.front();
        steps.pop_front();
        step(reinterpret_cast<HWND>(lParam));
      }
      return 0;
    }
    if (message == WM_ENABLE && wParam != 0) viewerAtEnable = FindWindowA(nullptr, "Il visore");
    return CFrameWnd::WindowProc(message, wParam, lParam);
  }
  int idles = 0;
  HWND viewerAtEnable = nullptr;
  std::deque<std::function<void(HWND viewer)>> steps;
};

class ModalViewer : public ViewerFolder {
 protected:
  void SetUp() override {
    ViewerFolder::SetUp();
    host = new Host;  // deletes itself with its window
    ASSERT_TRUE(host->Create(nullptr, "host", WS_OVERLAPPEDWINDOW, CRect(0, 0, 400, 300)));
    host->ShowWindow(SW_SHOW);
    platform::testing::PumpUntilIdle();
  }
  void TearDown() override {
    if (host != nullptr) host->DestroyWindow();
    MSG quit;
    PeekMessage(&quit, nullptr, WM_QUIT, WM_QUIT, PM_REMOVE);
    ViewerFolder::TearDown();
  }
  static CImageFrame* FrameOf(HWND window) { return static_cast<CImageFrame*>(CWnd::FromHandle(window)); }
  static HWND Viewer() { return FindWindowA(nullptr, "Il visore"); }

  Host* host = nullptr;
};

const auto kClose = [](HWND viewer) { PostMessage(viewer, WM_CLOSE, 0, 0); };

TEST_F(ModalViewer, OfAFileDisablesTheParent) {
  host->steps = {[this](HWND viewer) {
                   EXPECT_FALSE(host->IsWindowEnabled());
                   EXPECT_TRUE(FrameOf(viewer)->m_bModal);
                   EXPECT_TRUE(IsWindowVisible(viewer));
                   EXPECT_EQ(GetWindowText(viewer), CString("Il visore"));
                   SendMessage(viewer, WM_COMMAND, ID_ZP_NEXT_PAGE, 0);
                 },
                 [](HWND viewer) {
                   EXPECT_EQ(FrameOf(viewer)->m_pImageWnd->GetCurrPage(), 2);
                   EXPECT_EQ(GetWindowText(viewer), CString("Il visore")) << "no other title is put over it";
                 },
                 kClose};
  EXPECT_TRUE(CImageFrame::DoModalViewer(host, WriteFile(3).c_str(), "Il visore"));
  EXPECT_TRUE(host->steps.empty());
  EXPECT_TRUE(host->IsWindowEnabled());
  EXPECT_NE(host->viewerAtEnable, nullptr) << "enabled before the viewer goes";
  EXPECT_EQ(Viewer(), nullptr);
}

TEST_F(ModalViewer, OfMemoryLeavesTheParentAlone) {
  std::vector<char> block = ReadAll(WriteFile(2));
  host->steps = {[this](HWND viewer) {
                   EXPECT_TRUE(host->IsWindowEnabled());
                   EXPECT_EQ(FrameOf(viewer)->m_pImageWnd->GetMaxPage(), 2);
                 },
                 kClose};
  EXPECT_TRUE(CImageFrame::DoModalViewer(host, block.data(), block.size(), "Il visore"));
  EXPECT_TRUE(host->IsWindowEnabled());
  EXPECT_EQ(Viewer(), nullptr);
}

TEST_F(ModalViewer, AFailedOpenLeavesNoWindow) {
  const std::string broken = WriteText("broken.tif");
  std::string noise = "no picture";
  EXPECT_FALSE(CImageFrame::DoModalViewer(host, broken.c_str(), "Il visore"));
  EXPECT_EQ(Viewer(), nullptr);
  EXPECT_FALSE(CImageFrame::DoModalViewer(host, WriteFile(2, 1).c_str(), "Il visore"));
  EXPECT_EQ(Viewer(), nullptr);
  EXPECT_FALSE(CImageFrame::DoModalViewer(host, noise.data(), noise.size(), "Il visore"));
  EXPECT_EQ(Viewer(), nullptr);
  EXPECT_TRUE(host->IsWindowEnabled());
  EXPECT_EQ(host->viewerAtEnable, nullptr) << "it was never disabled";
  EXPECT_EQ(Boxes::shown.size(), 3U);
}

TEST_F(ModalViewer, OpensEmptyWhenTheUserChoosesNothing) {
  platform::testing::SetFileDialogAnswer([](platform::FileDialogRequest&) { return false; });
  bool seen = false;
  host->steps = {[&seen](HWND viewer) { seen = FrameOf(viewer)->m_pImageWnd->GetCurrPage() == 0; }, kClose};
  EXPECT_TRUE(CImageFrame::DoModalViewer(host, nullptr, "Il visore"));
  platform::testing::SetFileDialogAnswer(nullptr);
  EXPECT_TRUE(seen);
}

TEST_F(ModalViewer, KeepsItsToolbarUpToDate) {
  bool enabled = false;
  host->steps = {
      [](HWND viewer) { PostMessage(viewer, WM_COMMAND, ID_ZP_NEXT_PAGE, 0); },
      [&enabled](HWND viewer) {
        enabled = FrameOf(viewer)->m_wndToolBar.GetToolBarCtrl().IsButtonEnabled(ID_ZP_PREV_PAGE) != FALSE;
      },
      kClose};
  EXPECT_TRUE(CImageFrame::DoModalViewer(host, WriteFile(3).c_str(), "Il visore"));
  EXPECT_TRUE(enabled);
}

TEST_F(ModalViewer, ExitClosesItAlone) {
  host->steps = {[](HWND viewer) { PostMessage(viewer, WM_COMMAND, ID_APP_EXIT, 0); }};
  EXPECT_TRUE(CImageFrame::DoModalViewer(host, WriteFile(1).c_str(), "Il visore"));
  MSG message;
  EXPECT_FALSE(PeekMessage(&message, nullptr, WM_QUIT, WM_QUIT, PM_REMOVE));
  EXPECT_TRUE(::IsWindow(host->m_hWnd));
}

TEST_F(ModalViewer, HandsTheQuitMessageOn) {
  host->steps = {[](HWND) { PostQuitMessage(0); }};
  EXPECT_TRUE(CImageFrame::DoModalViewer(host, WriteFile(1).c_str(), "Il visore"));
  EXPECT_EQ(Viewer(), nullptr);
  EXPECT_TRUE(host->IsWindowEnabled());
  MSG message{};
  EXPECT_TRUE(PeekMessage(&message, nullptr, 0, 0, PM_REMOVE));
  EXPECT_EQ(message.message, UINT{WM_QUIT});
}

TEST_F(ModalViewer, StandsInAnother) {
  const std::string path = WriteFile(2);
  HWND outer = nullptr;
  bool inner = false;
  host->steps = {[&](HWND viewer) {
    outer = viewer;
    host->steps.push_back(kClose);  // of the outer one, after the inner one's end
    // The inner one's owner is the outer frame, which has no steps: it closes itself.
    PostQuitMessage(0);
    inner = CImageFrame::DoModalViewer(FrameOf(viewer), path.c_str(), "Il visore dentro");
    MSG message;
    PeekMessage(&message, nullptr, WM_QUIT, WM_QUIT, PM_REMOVE);
    EXPECT_TRUE(IsWindowEnabled(outer));
    EXPECT_TRUE(FrameOf(outer)->m_bModal);
  }};
  EXPECT_TRUE(CImageFrame::DoModalViewer(host, path.c_str(), "Il visore"));
  EXPECT_TRUE(inner);
  EXPECT_EQ(FindWindowA(nullptr, "Il visore dentro"), nullptr);
  EXPECT_FALSE(::IsWindow(outer));
  EXPECT_TRUE(host->IsWindowEnabled());
}

TEST_F(ModalViewer, TwoOfOneParent) {
  const std::string path = WriteFile(2);
  for (const bool outerFirst : {false, true}) {
    HWND outer = nullptr;
    host->steps = {[&](HWND viewer) {
                     outer = viewer;
                     EXPECT_TRUE(CImageFrame::DoModalViewer(host, path.c_str(), "Il secondo"));
                     EXPECT_FALSE(host->IsWindowEnabled()) << "the outer one is up, or was a moment ago";
                     if (!outerFirst) host->steps.push_back(kClose);
                   },
                   [&](HWND viewer) {
                     EXPECT_NE(viewer, outer);
                     if (outerFirst) SendMessage(outer, WM_CLOSE);
                     EXPECT_EQ(IsWindowVisible(outer) != FALSE, !outerFirst) << "no hollow window stays";
                     EXPECT_FALSE(host->IsWindowEnabled());
                   },
                   kClose};
    EXPECT_TRUE(CImageFrame::DoModalViewer(host, path.c_str(), "Il visore"));
    EXPECT_TRUE(host->steps.empty());
    EXPECT_TRUE(host->IsWindowEnabled());
    EXPECT_FALSE(::IsWindow(outer));
  }
}

/// A main window of document windows that takes a step at each of its timer's ticks.
class DocumentsHost : public CMDIFrameWnd {
 public:
  LRESULT WindowProc(UINT message, WPARAM wParam, LPARAM lParam) override {
    if (message != WM_TIMER || steps.empty()) return CMDIFrameWnd::WindowProc(message, wParam, lParam);
    const auto step = steps.front();
    steps.pop_front();
    step();
    return 0;
  }
  std::deque<std::function<void()>> steps;
};

TEST_F(ModalViewer, AmongDocumentWindowsItDisablesTheOthers) {
  auto* main = new DocumentsHost;  // deletes itself with its window
  ASSERT_TRUE(main->LoadFrame(IDR_ZP_HOST));
  main->ShowWindow(SW_SHOW);
  CImageMDIChild* others[2] = {};
  for (auto& other : others) {
    other = new CImageMDIChild;
    ASSERT_TRUE(other->LoadFrame(IDR_ZP_VIEWER, DWORD{WS_OVERLAPPEDWINDOW} | FWS_ADDTOTITLE, main, nullptr));
    other->ActivateFrame();
  }
  others[0]->EnableWindow(FALSE);  // by the host, and so it stays
  main->steps = {[&] {
    EXPECT_TRUE(main->IsWindowEnabled()) << "or nobody could end the viewer";
    EXPECT_FALSE(others[1]->IsWindowEnabled());
    CMDIChildWnd* const viewer = main->MDIGetActive();
    EXPECT_NE(viewer, others[1]);
    EXPECT_TRUE(viewer->IsWindowEnabled());
    viewer->SendMessage(WM_CLOSE);
  }};
  ::SetTimer(*main, 1, 1, nullptr);
  EXPECT_TRUE(CImageMDIChild::DoModalViewer(main, WriteFile(2).c_str(), "Il visore"));
  EXPECT_TRUE(main->steps.empty());
  EXPECT_FALSE(others[0]->IsWindowEnabled());
  EXPECT_TRUE(others[1]->IsWindowEnabled());
  EXPECT_EQ(main->MDIGetActive(), others[1]);
  main->DestroyWindow();
}

TEST_F(ModalViewer, OutlivesNoOwner) {
  std::vector<char> block = ReadAll(WriteFile(2));
  for (const bool memory : {true, false}) {
    if (host == nullptr) SetUp();
    host->steps = {[this](HWND) {
      Host* ended = host;
      host = nullptr;
      ended->DestroyWindow();
    }};
    const std::string path = WriteFile(2);
    EXPECT_TRUE(memory ? CImageFrame::DoModalViewer(host, block.data(), block.size(), "Il visore")
                       : CImageFrame::DoModalViewer(host, path.c_str(), "Il visore"));
    EXPECT_EQ(Viewer(), nullptr);
  }
}

TEST_F(ModalViewer, DestroyedFromOutsideItReturns) {
  host->steps = {[](HWND viewer) { DestroyWindow(viewer); }};
  EXPECT_TRUE(CImageFrame::DoModalViewer(host, WriteFile(1).c_str(), "Il visore"));
  EXPECT_TRUE(host->IsWindowEnabled());
}

TEST_F(ModalViewer, OfMemoryNeedsNoParent) {
  std::vector<char> block = ReadAll(WriteFile(1));
  PostQuitMessage(0);
  EXPECT_TRUE(CImageFrame::DoModalViewer(nullptr, block.data(), block.size(), "Il visore"));
  EXPECT_EQ(Viewer(), nullptr);
}

}  // namespace
