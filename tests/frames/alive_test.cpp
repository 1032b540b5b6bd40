// Long commands in a window whose loop runs: timers come, the message pane tells how far they are, Escape and
// a close stop them, and nothing is left half done.

#include <algorithm>
#include <chrono>
#include <functional>

#include "platform/window/pump.h"
#include "tests/frames/viewer_fixture.h"

namespace {

using Clock = std::chrono::steady_clock;

class AliveTest : public ViewerTest {
 protected:
  void SetUp() override {
    ViewerTest::SetUp();
    s_largestGap = {};
    s_action = nullptr;
    s_target = In("old.tif");
    platform::testing::SetFileDialogAnswer([](platform::FileDialogRequest& asked) {
      asked.path = s_target;
      asked.filterIndex = 1;
      s_last = Clock::now();
      return true;
    });
  }
  void TearDown() override {
    platform::testing::SetFileDialogAnswer(nullptr);
    ViewerTest::TearDown();
  }
  std::string In(const char* name) { return (m_folder / name).string(); }

  /// Pages that take some tens of milliseconds each. The name's ending makes an export to tif decode them.
  std::string WriteLongFile(int pages, int side = 1500) {
    const std::string path = In("long.tiff");
    Page page{side, side, 24};
    page.level = [](int x, int y) { return (x * 7919 + y * 104729 + x * y) >> 3 & 255; };
    test_pages::Write(path, std::vector<Page>(static_cast<std::size_t>(pages), page));
    return path;
  }
  /// Runs the command as within a loop, with a timer of 5 ms. act is called at its third tick.
  void RunInLoop(const std::function<void()>& command, std::function<void()> act) {
    s_action = std::move(act);
    s_ticks = 0;
    const std::uintptr_t timer = SetTimer(nullptr, 0, 5, [](HWND, UINT, std::uintptr_t, DWORD) { Tick(); });
    s_last = Clock::now();
    {
      const platform::LoopScope loop;
      command();
    }
    KillTimer(nullptr, timer);
    platform::testing::PumpUntilIdle();
  }
  void ExportInLoop(std::function<void()> act) {
    RunInLoop([this] { frame->SendMessage(WM_COMMAND, ID_ZP_FILE_EXPORT); }, std::move(act));
  }
  static void Tick() {
    s_largestGap = std::max(s_largestGap, Clock::now() - s_last);
    s_last = Clock::now();
    if (++s_ticks == 3 && s_action) s_action();
  }
  std::size_t FilesInFolder() {
    return static_cast<std::size_t>(
        std::distance(std::filesystem::directory_iterator(m_folder), std::filesystem::directory_iterator()));
  }

  static inline int s_ticks = 0;
  static inline Clock::time_point s_last;
  static inline Clock::duration s_largestGap{};
  static inline std::function<void()> s_action;
  static inline std::string s_target;
};

TEST_F(AliveTest, TimersComeAndThePaneTellsThePageWhileAFileIsExported) {
  ASSERT_TRUE(frame->OpenImageFile(WriteLongFile(30).c_str()));
  Settle();
  std::string told;
  ExportInLoop([&] {
    const std::string now = MessagePane();
    if (now.find(" di 30") == std::string::npos)
      s_ticks = 2;  // not yet
    else
      told = now;
  });
  EXPECT_EQ(told.rfind("Esportazione file ... pagina ", 0), 0U) << told;
  // Four times what is reached on a machine of its own.
  EXPECT_LT(s_largestGap, std::chrono::milliseconds(200));
  EXPECT_EQ(MessagePane(), "Pronto");
  ASSERT_EQ(Boxes::shown.size(), 1U);
  EXPECT_EQ(Boxes::shown[0].first, "File convertito con successo");
  ASSERT_TRUE(frame->OpenImageFile(s_target.c_str()));
  EXPECT_EQ(frame->m_pImageWnd->GetMaxPage(), 30);
}

TEST_F(AliveTest, WhatTheUserDoesDuringAnExportEndsItWholeOrNotAtAll) {
  struct Case {
    const char* what;
    void (*act)(HWND frame, HWND page);
    bool exported;
    bool closed;
  };
  const Case cases[] = {
      {"Escape",
       [](HWND, HWND page) {
         platform::testing::PressKey(page, VK_ESCAPE);
         platform::testing::ReleaseKey(page, VK_ESCAPE);
       },
       false, false},
      {"other keys and a click",
       [](HWND, HWND page) {
         platform::testing::PressKey(page, VK_NEXT, false, true);
         platform::testing::PressMouse(page, {40, 40});
       },
       true, false},
      {"another command",
       [](HWND frame, HWND) {
         for (const UINT command : {ID_ZP_NEXT_PAGE, ID_ZP_FILE_EXPORT, ID_ZP_VIEW_THUMBNAILS})
           SendMessage(frame, WM_COMMAND, command, 0);
       },
       true, false},
      {"a close that is sent", [](HWND frame, HWND) { SendMessage(frame, WM_CLOSE, 0, 0); }, false, true},
      {"a close that is posted", [](HWND frame, HWND) { PostMessage(frame, WM_CLOSE, 0, 0); }, false, true},
      {"the end of the window", [](HWND frame, HWND) { DestroyWindow(frame); }, true, true},
  };
  const std::string source = WriteLongFile(12);
  const std::string old = WriteText("old.tif");
  const std::vector<char> before = ReadAll(old);
  const std::size_t files = FilesInFolder();
  for (const Case& c : cases) {
    WriteText("old.tif");
    Boxes::shown.clear();
    Boxes::answer = IDYES;
    if (frame == nullptr) MakeFrame();
    ASSERT_TRUE(frame->OpenImageFile(source.c_str())) << c.what;
    Settle();
    const HWND window = frame->m_hWnd;
    ExportInLoop([&] { c.act(window, frame->m_pImageWnd->m_hWnd); });
    EXPECT_GE(s_ticks, 3) << c.what;
    EXPECT_EQ(ReadAll(old) != before, c.exported) << c.what;
    EXPECT_EQ(FilesInFolder(), files) << c.what;
    EXPECT_EQ(IsWindow(window) == FALSE, c.closed) << c.what;
    EXPECT_EQ(Boxes::shown.size(), c.exported ? 2U : 1U) << c.what << ": the first asks before it replaces";
    if (c.closed) {
      frame = nullptr;
      continue;
    }
    EXPECT_EQ(MessagePane(), "Pronto") << c.what;
    EXPECT_EQ(Shown(), 1) << c.what;
    EXPECT_FALSE(frame->m_bThumbsVisible) << c.what;
    EXPECT_EQ(GetKeyState(VK_ESCAPE), 0) << c.what;
  }
}

/// While it decodes, the host shows something else in the window, or ends it.
TEST_F(AliveTest, AnOpenThatIsOvertakenLeavesWhatCameAfterIt) {
  const std::string source = WriteLongFile(3, 4000);
  const std::string other = WriteFile(2);
  const auto openInLoop = [&](std::function<void()> act) {
    RunInLoop([&] { frame->OpenImageFile(source.c_str()); }, std::move(act));
  };
  bool sawNoPicture = false;
  openInLoop([&] {
    if (frame->m_pImageWnd->m_nMaxPage != 3 || frame->m_pImageWnd->GetPageInfo().Width == 0) {
      s_ticks = 2;
      return;
    }
    sawNoPicture = (frame->m_pImageWnd->m_Bitmap.Flags & leadtools12::kAllocated) == 0;
    frame->m_pImageWnd->OpenImageFile(other.c_str());
    frame->m_pImageWnd->LoadPage(2);
  });
  EXPECT_TRUE(sawNoPicture) << "the action came too late to test anything";
  EXPECT_EQ(frame->m_pImageWnd->m_Bitmap.Width, 120);
  EXPECT_EQ(frame->m_pImageWnd->GetMaxPage(), 2);
  EXPECT_TRUE(Boxes::shown.empty());

  openInLoop([&] { platform::testing::PressKey(frame->m_pImageWnd->m_hWnd, VK_ESCAPE); });
  ExpectNothingOpen("an open that Escape has ended");
  EXPECT_TRUE(Boxes::shown.empty());
}

}  // namespace
