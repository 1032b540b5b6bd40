// What goes wrong while a job of the image window runs: the user reads the right text, nothing is left
// behind, and the program lives.

#include <sys/resource.h>

#include <csignal>
#include <functional>

#include "imagewindow/image_window.h"
#include "platform/framework/app.h"
#include "platform/framework/frame_wnd.h"
#include "tests/print/job_fixture.h"
#include "tests/print/refused_memory.h"

namespace {

CWinApp g_app;

/// Does something a moment after a job has begun, and holds an image window that may be deleted then.
class TroubledFrame : public CFrameWnd {
 public:
  std::function<void()> onTimer;
  CImageWindow* image = nullptr;
  bool* gone = nullptr;  ///< told when this object is deleted
  ~TroubledFrame() override {
    delete image;
    if (gone != nullptr) *gone = true;
  }

 protected:
  LRESULT WindowProc(UINT message, WPARAM wParam, LPARAM lParam) override {
    if (message == WM_APP) image->PrintCurFile(this, true);
    if (message == WM_APP) return 0;
    if (message != WM_TIMER) return CFrameWnd::WindowProc(message, wParam, lParam);
    ::KillTimer(m_hWnd, 1);
    onTimer();
    return 0;
  }
};

class Trouble : public PrintJobTest {
 protected:
  void SetUp() override {
    PrintJobTest::SetUp();
    setenv("XDG_CONFIG_HOME", m_folder.c_str(), 1);
    frame = new TroubledFrame;  // deletes itself with its window
    frame->gone = &frameGone;
    ASSERT_TRUE(frame->Create(nullptr, "host", WS_OVERLAPPEDWINDOW, CRect(0, 0, 500, 400)));
    frame->image = new CImageWindow;
    ASSERT_TRUE(frame->image->Create(nullptr, "", WS_CHILD | WS_VISIBLE, CRect(0, 0, 300, 200), frame, 1));
    frame->image->SetReportErrorCallBack(&Report);
    frame->image->m_nPrintFormat = PrintFormatPixelToPixel;
  }
  void TearDown() override {
    g_refusedFrom = SIZE_MAX;
    if (!frameGone) frame->DestroyWindow();
    PrintJobTest::TearDown();
  }
  void Open(int pages, int bits) {
    std::uint32_t seed = 1;
    const Page noise{400, 300, bits, 0, 0, [&seed](int, int) {
                       seed = seed * 1664525 + 1013904223;
                       return static_cast<int>(seed >> 24 & 0xfe);
                     }};
    ASSERT_TRUE(frame->image->OpenImageFile(
        WriteFile(std::vector<Page>(static_cast<std::size_t>(pages), noise)).c_str()));
    ASSERT_TRUE(frame->image->LoadPage(1));
  }
  void SoonDo(std::function<void()> action) {
    frame->onTimer = std::move(action);
    ::SetTimer(*frame, 1, 1, nullptr);
  }
  void ExpectReport(const std::string& part) {
    EXPECT_TRUE(Boxes().empty());
    ASSERT_EQ(Reports().size(), 1U);
    EXPECT_EQ(Reports()[0].first, 0);
    EXPECT_NE(Reports()[0].second.find(part), std::string::npos) << Reports()[0].second;
    EXPECT_EQ(SpooledFiles(), 0);
    EXPECT_FALSE(std::filesystem::exists(QueuedJob(1)));
    EXPECT_TRUE(frame->IsWindowEnabled());
  }
  void ExpectToPrint() {
    frame->image->PrintCurFile(frame, true);
    EXPECT_EQ(Reports().size(), 1U) << "no further one";
    EXPECT_TRUE(Boxes().empty());
    EXPECT_TRUE(Read(QueuedJob(1)).starts_with("%PDF-"));
  }

  TroubledFrame* frame = nullptr;
  bool frameGone = false;
};

TEST_F(Trouble, TheDiskIsFull) {
  Open(3, 24);
  std::signal(SIGXFSZ, SIG_IGN);
  rlimit limit{};
  getrlimit(RLIMIT_FSIZE, &limit);
  limit.rlim_cur = 100000;
  setrlimit(RLIMIT_FSIZE, &limit);
  frame->image->PrintCurFile(frame, true);
  limit.rlim_cur = RLIM_INFINITY;
  setrlimit(RLIMIT_FSIZE, &limit);
  ExpectReport("Spazio disco");
  ExpectToPrint();
}

TEST_F(Trouble, MemoryRunsOut) {
  Open(3, 1);
  g_refusedFrom = 60000;
  frame->image->PrintCurFile(frame, true);
  g_refusedFrom = SIZE_MAX;
  ExpectReport("Memoria");
  ExpectToPrint();
}

TEST_F(Trouble, TheQueueVanishesMeanwhile) {
  Open(300, 8);
  bool done = false;
  SoonDo([&] {
    done = true;
    platform::TestPrinter lost;
    lost.gone = true;
    SetQueue(lost);
  });
  frame->image->PrintCurFile(frame, true);
  ASSERT_TRUE(done) << "the job was over too soon";
  ExpectReport("Errore generale.");
  SetQueue({});
  ExpectToPrint();
}

TEST_F(Trouble, TheWindowOfTheJobGoes) {
  Open(300, 8);
  bool done = false;
  SoonDo([&] {
    done = true;
    delete frame->image;
    frame->image = nullptr;
  });
  frame->image->PrintCurFile(frame, true);
  ASSERT_TRUE(done) << "the job was over too soon";
  EXPECT_EQ(Boxes().size(), 1U) << "the user reads that the job has ended";
  EXPECT_TRUE(Reports().empty());
  EXPECT_TRUE(frame->IsWindowEnabled());
  EXPECT_FALSE(std::filesystem::exists(QueuedJob(1)));
  EXPECT_EQ(SpooledFiles(), 0);
}

TEST_F(Trouble, TheFrameOfTheJobGoes) {
  Open(300, 8);
  SoonDo([this] { frame->DestroyWindow(); });
  // From a message, so that what the frame returns to is looked at as well.
  ::SendMessage(*frame, WM_APP, 0, 0);
  ASSERT_TRUE(frameGone);
  EXPECT_EQ(Boxes().size(), 1U);
  EXPECT_TRUE(Reports().empty());
  EXPECT_FALSE(std::filesystem::exists(QueuedJob(1)));
  EXPECT_EQ(SpooledFiles(), 0);
}

// The page that is printed lies in the window itself.
TEST_F(Trouble, ThePageGoes) {
  const struct {
    const char* what;
    std::function<void()> happens;
  } cases[] = {{"another page", [this] { frame->image->LoadPage(2); }},
               {"turned", [this] { frame->image->Rotate(90, false); }},
               {"with the window", [this] {
                  delete frame->image;
                  frame->image = nullptr;
                }}};
  g_app.m_pMainWnd = frame;
  for (const auto& c : cases) {
    Open(2, 8);
    Boxes().clear();
    bool done = false;
    frame->onTimer = [&] {
      done = true;
      c.happens();
    };
    ::PostMessage(*frame, WM_TIMER, 1, 0);  // the first thing that the job dispatches
    frame->image->PrintCurrentPage();
    EXPECT_TRUE(done) << c.what;
    EXPECT_EQ(Boxes().size(), 1U) << c.what;
    EXPECT_TRUE(Reports().empty()) << c.what;
    EXPECT_TRUE(frame->IsWindowEnabled()) << c.what;
    EXPECT_FALSE(std::filesystem::exists(QueuedJob(1))) << c.what;
    EXPECT_EQ(SpooledFiles(), 0) << c.what;
  }
  g_app.m_pMainWnd = nullptr;
}

}  // namespace
