// The viewer as a document window: its menu in the main window's bar, commands between two of them, the ways
// it ends.

#include "platform/framework/app.h"
#include "tests/frames/viewer_fixture.h"

namespace {

using Child = OpenedUp<CImageMDIChild>;

class MdiChild : public ViewerTestOf<CImageMDIChild> {
 protected:
  /// A second one, in front.
  Child* Another(int pages, const std::string& name) {
    Child* child = NewFrame();
    EXPECT_TRUE(child->OpenImageFile(WriteFile(pages, 0, name).c_str()));
    Settle();
    return child;
  }
  /// By the menu bar that the user sees. False if the item is grey or missing.
  bool Choose(UINT id) {
    const bool chosen = platform::testing::ChooseMenuItem(host->m_hWnd, id);
    Settle();
    return chosen;
  }
  void Close(Child* child) {
    child->SendMessage(WM_CLOSE);
    if (child == frame) frame = nullptr;
    platform::testing::PumpUntilIdle();
  }
  /// Page, pages and percent, as image and bars show them, which must agree.
  static std::string Shows(Child* child) {
    const CImageWindow& image = *child->m_pImageWnd;
    const std::string page = std::to_string(image.GetCurrPage());
    const std::string percent = std::to_string(image.GetScalePercent());
    EXPECT_EQ(std::string(child->Pane(ID_ZP_INDICATOR_PAGE)),
              "Pagina " + page + " of " + std::to_string(image.m_nMaxPage));
    EXPECT_EQ(std::string(child->Pane(ID_ZP_INDICATOR_ZOOM)), "Zoom 1:" + percent);
    EXPECT_EQ(TextOf(child->m_wndComboScale), percent + "%");
    EXPECT_EQ(TextOf(child->m_wndComboPage), image.m_nMaxPage > 1 ? page : "");
    return page + "/" + std::to_string(image.m_nMaxPage) + " " + percent + "%";
  }
};

TEST_F(MdiChild, ItsMenuStandsInTheBarWhileItIsActive) {
  const HMENU own = host->m_hMenuDefault;
  ASSERT_NE(own, nullptr);
  Child* second = Another(1, "second.tif");
  EXPECT_EQ(host->MDIGetActive(), second);
  EXPECT_EQ(::GetMenu(host->m_hWnd), second->m_hMenuShared);
  EXPECT_NE(second->m_hMenuShared, frame->m_hMenuShared) << "the states of one aren't those of the other";
  frame->MDIActivate();
  Settle();
  EXPECT_EQ(::GetMenu(host->m_hWnd), frame->m_hMenuShared);
  EXPECT_EQ(::GetFocus(), frame->m_pImageWnd->m_hWnd);
  Close(frame);
  EXPECT_EQ(::GetMenu(host->m_hWnd), second->m_hMenuShared) << "the next one's";
  EXPECT_EQ(::GetFocus(), second->m_pImageWnd->m_hWnd);
  Close(second);
  EXPECT_EQ(host->MDIGetActive(), nullptr);
  EXPECT_EQ(::GetMenu(host->m_hWnd), own);
}

TEST_F(MdiChild, CommandsGoToTheActiveOne) {
  Open(3);
  Child* second = Another(1, "second.tif");
  EXPECT_FALSE(Choose(ID_ZP_NEXT_PAGE)) << "one page";
  EXPECT_TRUE(Choose(ID_ZP_ZOOM_IN));
  EXPECT_EQ(Shows(second), "1/1 200%");
  EXPECT_EQ(Shows(frame), "1/3 100%");
  frame->MDIActivate();
  EXPECT_TRUE(Choose(ID_ZP_NEXT_PAGE));
  EXPECT_TRUE(Choose(ID_ZP_ZOOM_OUT));
  EXPECT_TRUE(Choose(ID_ZP_VIEW_THUMBNAILS));
  EXPECT_EQ(Shows(frame), "2/3 50%");
  EXPECT_EQ(Shows(second), "1/1 200%");
  EXPECT_TRUE(frame->m_bThumbsVisible);
  EXPECT_FALSE(second->m_bThumbsVisible);
  Close(second);
  EXPECT_TRUE(Choose(ID_ZP_LAST_PAGE));
  EXPECT_EQ(Shows(frame), "3/3 50%");
}

TEST_F(MdiChild, AFailedOpenEmptiesThisOneOnly) {
  Open(3);
  Child* second = Another(4, "second.tif");
  EXPECT_FALSE(frame->OpenImageFile(WriteText("broken.tif").c_str()));
  Settle();
  ExpectNothingOpen("broken");
  EXPECT_EQ(Boxes::shown.size(), 1U);
  EXPECT_EQ(Shows(second), "1/4 100%");
  Open(2);
  EXPECT_EQ(Shows(frame), "1/2 100%");
}

TEST_F(MdiChild, FileCloseAndExitEndOneWithoutAnApplication) {
  Open(2);
  for (const UINT command : {UINT{ID_FILE_CLOSE}, UINT{ID_APP_EXIT}}) {
    const HWND window = Another(2, "second.tif")->m_hWnd;
    ::SendMessage(window, WM_COMMAND, command, 0);
    Settle();
    EXPECT_FALSE(::IsWindow(window)) << command;
    EXPECT_EQ(host->MDIGetActive(), frame) << command;
  }
  EXPECT_EQ(Shows(frame), "1/2 100%");
}

/// A host without an application object, which ends its own way.
class ExitingHost : public CMDIFrameWnd {
 public:
  int exits = 0;

 private:
  void OnAppExit() { ++exits; }
  DECLARE_MESSAGE_MAP()
};
BEGIN_MESSAGE_MAP(ExitingHost, CMDIFrameWnd)
ON_COMMAND(ID_APP_EXIT, OnAppExit)
END_MESSAGE_MAP()

TEST_F(MdiChild, ExitReachesTheMainWindowsOwnHandler) {
  frame->DestroyWindow();
  host->DestroyWindow();
  auto* exiting = new ExitingHost;
  host = exiting;
  ASSERT_TRUE(host->LoadFrame(IDR_ZP_HOST));
  host->ShowWindow(SW_SHOW);
  frame = NewFrame();
  Open(2);
  EXPECT_TRUE(Choose(ID_APP_EXIT));
  EXPECT_EQ(exiting->exits, 1);
  EXPECT_TRUE(::IsWindow(frame->m_hWnd)) << "what the command does is the handler's affair";
}

TEST_F(MdiChild, ExitEndsTheApplicationThatHasThem) {
  Open(2);
  Another(2, "second.tif");
  CWinApp app;
  app.m_pMainWnd = host;
  const HWND main = host->m_hWnd;
  EXPECT_TRUE(platform::testing::ChooseMenuItem(main, ID_APP_EXIT));
  platform::testing::PumpUntilIdle();
  EXPECT_FALSE(::IsWindow(main));
  frame = nullptr;
  host = nullptr;
}

TEST_F(MdiChild, EndsWithItsMainWindow) {
  Open(3);
  Command(ID_ZP_VIEW_THUMBNAILS);
  Command(ID_ZP_ZOOM_IN);  // the timer that keeps the scale is running
  Another(2, "second.tif");
  const HWND window = frame->m_hWnd;
  host->SendMessage(WM_CLOSE);
  EXPECT_FALSE(::IsWindow(window));
  frame = nullptr;
  host = nullptr;
  platform::testing::AdvanceTimers(1000);
  platform::testing::PumpUntilIdle();
}

TEST_F(MdiChild, NeedsAMainWindowForDocuments) {
  auto* plain = new CFrameWnd;  // deletes itself with its window
  ASSERT_TRUE(plain->Create(nullptr, "plain", WS_OVERLAPPEDWINDOW, CRect(0, 0, 300, 200)));
  auto* child = new Child;  // so does this, also when there is none
  EXPECT_FALSE(child->LoadFrame(IDR_ZP_VIEWER, DWORD{WS_OVERLAPPEDWINDOW} | FWS_ADDTOTITLE, plain, nullptr));
  EXPECT_FALSE(CImageMDIChild::DoModalViewer(plain, WriteFile(1).c_str(), "title"));
  EXPECT_TRUE(plain->IsWindowEnabled());
  plain->DestroyWindow();
}

template <typename Frame>
class ScaleEntryAndField : public ViewerTestOf<Frame> {};
TYPED_TEST_SUITE(ScaleEntryAndField, BothFrames);

// Where entry and field differ, as a program may leave them, each frame has its own that counts.
TYPED_TEST(ScaleEntryAndField, OneOfThemCounts) {
  this->Open(1);
  CComboScale& combo = this->frame->m_wndComboScale;
  combo.SetCurSel(4);
  combo.SetWindowText("60%");
  ASSERT_EQ(combo.GetCurSel(), 4);
  this->frame->SendMessage(WM_COMMAND, MAKEWPARAM(ID_ZP_COMBO_SCALE, CBN_SELENDOK),
                           reinterpret_cast<LPARAM>(combo.m_hWnd));
  EXPECT_EQ(this->Percent(), TestFixture::kInHost ? 60 : 200);
  EXPECT_EQ(this->ScaleText(), TestFixture::kInHost ? "60%" : "200%");
}

TEST_F(MdiChild, OneOfMemoryIsModalBesideTheOthers) {
  static CMDIFrameWnd* main;
  static CMDIChildWnd* shown;
  main = host;
  std::vector<char> block = ReadAll(WriteFile(2));
  host->SetTimer(77, 10, [](HWND window, UINT, std::uintptr_t timer, DWORD) {
    ::KillTimer(window, timer);
    shown = main->MDIGetActive();
    EXPECT_TRUE(main->IsWindowEnabled());
    EXPECT_EQ(static_cast<CImageMDIChild*>(shown)->m_pImageWnd->GetMaxPage(), 2);
    EXPECT_EQ(GetWindowText(shown->m_hWnd), CString("Il visore"));
    ::PostMessage(shown->m_hWnd, WM_CLOSE, 0, 0);
  });
  EXPECT_TRUE(CImageMDIChild::DoModalViewer(host, block.data(), block.size(), "Il visore"));
  EXPECT_NE(shown, nullptr);
  EXPECT_EQ(host->MDIGetActive(), frame);
  EXPECT_FALSE(CImageMDIChild::DoModalViewer(host, WriteText("text.tif").c_str(), "Il visore"));
  EXPECT_EQ(Boxes::shown.size(), 1U);
  EXPECT_TRUE(host->IsWindowEnabled());
  EXPECT_EQ(host->MDIGetActive(), frame);
}

}  // namespace
