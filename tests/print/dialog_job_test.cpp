// Jobs that begin with the print dialog or the default printer, and the stage in which they can be stopped.

#include <functional>
#include <utility>

#include "platform/framework/frame_wnd.h"
#include "platform/window/dialog_keys.h"
#include "platform/window/pump.h"
#include "tests/print/job_fixture.h"

namespace {

using platform::PrintDialogRequest;
using Range = PrintDialogRequest::Range;

constexpr PrintFormat kFit = PrintFormatFitToPage;
constexpr PrintFormat kActual = PrintFormatActualSize;
constexpr PrintFormat kPixels = PrintFormatPixelToPixel;
constexpr int kAbortButton = 1007;
constexpr int kFormatButton = 1000;

std::function<bool(PrintDialogRequest&)> g_answer;
int g_dialogs = 0;

/// A frame that presses the abort dialog's button after a moment.
class AbortingFrame : public CFrameWnd {
 public:
  bool sawDialog = false;
  bool wasDisabled = false;
  UINT quits = 0;        ///< ends the program instead
  bool escapes = false;  ///< presses Escape instead

 protected:
  LRESULT WindowProc(UINT message, WPARAM wParam, LPARAM lParam) override {
    if (message != WM_TIMER) return CFrameWnd::WindowProc(message, wParam, lParam);
    ::KillTimer(m_hWnd, 1);
    wasDisabled = IsWindowEnabled() == 0;
    HWND dialog = nullptr;
    for (HWND window = ::GetWindow(m_hWnd, GW_HWNDFIRST); window != nullptr;
         window = ::GetWindow(window, GW_HWNDNEXT))
      if (::GetDlgItem(window, kAbortButton) != nullptr) dialog = window;
    sawDialog = dialog != nullptr && ::IsWindowVisible(dialog) != 0;
    if (quits != 0) {
      PostQuitMessage(static_cast<int>(quits));
    } else if (escapes) {
      platform::testing::PressKey(::GetFocus(), VK_ESCAPE);
    } else if (dialog != nullptr) {
      const HWND button = ::GetDlgItem(dialog, kAbortButton);
      platform::testing::PressMouse(button, {5, 5});
      platform::testing::ReleaseMouse(button, {5, 5});
    }
    return 0;
  }
};

class DialogJob : public PrintJobTest {
 protected:
  void SetUp() override {
    PrintJobTest::SetUp();
    frame = new AbortingFrame;  // deletes itself with its window
    ASSERT_TRUE(frame->Create(nullptr, "host", WS_OVERLAPPEDWINDOW, CRect(0, 0, 500, 400)));
    frame->ShowWindow(SW_SHOW);
    platform::testing::PumpUntilIdle();
    g_dialogs = 0;
    Answer([](PrintDialogRequest&) { return true; });
  }
  void TearDown() override {
    platform::testing::SetPrintDialogAnswer(nullptr);
    frame->DestroyWindow();
    PrintJobTest::TearDown();
  }
  static void Answer(std::function<bool(PrintDialogRequest&)> answer) {
    g_answer = std::move(answer);
    platform::testing::SetPrintDialogAnswer([](PrintDialogRequest& request) {
      ++g_dialogs;
      return g_answer(request);
    });
  }
  std::string ThreePages() {
    return WriteFile({Black(100, 50, 1, 0, 0), Black(200, 50, 1, 0, 0), Black(300, 50, 1, 0, 0)});
  }
  void ExpectStageClosed() {
    EXPECT_TRUE(frame->IsWindowEnabled());
    EXPECT_EQ(CWnd::GetFocus(), frame);
    EXPECT_EQ(SpooledFiles(), 0);
  }

  AbortingFrame* frame = nullptr;
};

/// Bitmaps decoded elsewhere, as a document holds them.
class Decoded {
 public:
  Decoded(const std::string& path, int pages) : m_bitmaps(static_cast<std::size_t>(pages)) {
    for (int page = 1; page <= pages; ++page) {
      _LOADFILEOPTION options{};
      LEADTOOLS::GetDefaultLoadFileOption(&options);
      options.PageNumber = page;
      LEADTOOLS::LoadBitmapA(path.c_str(), At(page), 0, 1, &options, nullptr);
    }
  }
  Decoded(const Decoded&) = delete;
  Decoded& operator=(const Decoded&) = delete;
  ~Decoded() {
    for (auto& bitmap : m_bitmaps) LEADTOOLS::FreeBitmap(&bitmap);
  }
  struct_LEAD_Bitmap* At(int page) { return &m_bitmaps[static_cast<std::size_t>(page - 1)]; }

 private:
  std::vector<struct_LEAD_Bitmap> m_bitmaps;
};

TEST_F(DialogJob, TheDialogIsAskedForWhatTheJobIs) {
  Decoded pages(WriteFile({Black(100, 50, 1, 99, 99), Black(50, 100, 1, 99, 99), Black(300, 50, 1, 99, 99)}),
                3);
  struct_LEAD_Bitmap* array[] = {pages.At(1), pages.At(2), pages.At(3)};
  const HGLOBAL mode = GlobalAlloc(GHND, sizeof(DEVMODE));
  static_cast<DEVMODE*>(GlobalLock(mode))->dmFields = DM_ORIENTATION;
  GlobalUnlock(mode);
  PRINTDLGA defaults{};
  defaults.hDevMode = mode;
  const struct {
    const char* name;
    int first, last;
    bool selection;
    Range range;
    int from, to;
    bool landscape;
  } cases[] = {{"all", 0, -1, false, Range::All, 1, 3, true},
               {"all, told", 0, 2, false, Range::All, 1, 3, true},
               {"from the second", 1, -1, false, Range::Pages, 2, 3, false},
               {"up to the second", 0, 1, false, Range::Pages, 1, 2, true},
               {"with a selection", 0, -1, true, Range::All, 1, 3, true}};
  for (const auto& c : cases) {
    CPrintFile job("prova");
    job.SetPrintOptions(&defaults);
    PrintDialogRequest asked;
    Answer([&](PrintDialogRequest& request) {
      asked = request;
      request.range = Range::Selection;
      return true;
    });
    const int before = static_cast<int>(CountFiles());
    job.PrintBitmaps(array, 3, c.selection ? pages.At(3) : nullptr, 2, frame, false, kPixels, c.first, c.last,
                     "documento");
    EXPECT_EQ(asked.range, c.range) << c.name;
    EXPECT_EQ(asked.fromPage, c.from) << c.name;
    EXPECT_EQ(asked.toPage, c.to) << c.name;
    EXPECT_EQ(asked.landscape, c.landscape) << c.name;
    EXPECT_EQ(asked.copies, 2) << c.name;
    EXPECT_EQ(CountFiles() - before, c.selection ? 1 : 0)
        << c.name << ": a choice that isn't there is refused";
  }
  if (HasPoppler()) {
    EXPECT_EQ(Widths(QueuedJob(1)), (std::vector<int>{300, 300}));
  }
  EXPECT_EQ(static_cast<DEVMODE*>(GlobalLock(mode))->dmOrientation, 0) << "the application's own record";
  GlobalFree(mode);
}

TEST_F(DialogJob, CancelEndsTheJobSilently) {
  Answer([](PrintDialogRequest&) { return false; });
  CPrintFile job("prova");
  EXPECT_EQ(Thrown([&] { job.Print(ThreePages().c_str(), 1, frame, false, kPixels); }), kNothing);
  EXPECT_EQ(g_dialogs, 1);
  EXPECT_EQ(CPrintFile::GetPrintFormat(), kPixels);
  EXPECT_FALSE(std::filesystem::exists(QueuedJob(1)));
  ExpectStageClosed();
}

TEST_F(DialogJob, AParentThatWasDisabledStaysSo) {
  Decoded page(ThreePages(), 1);
  for (const bool cancel : {false, true}) {
    Answer([cancel](PrintDialogRequest&) { return !cancel; });
    frame->EnableWindow(FALSE);  // under a modal window of the host
    CPrintFile("prova").Print(ThreePages().c_str(), 1, frame, false, kPixels);
    EXPECT_FALSE(frame->IsWindowEnabled()) << cancel;
    CPrintBitmap("prova").Print(page.At(1), frame, false, kPixels);
    EXPECT_FALSE(frame->IsWindowEnabled()) << cancel;
  }
}

TEST_F(DialogJob, NoCopiesAreNoJob) {
  CPrintFile job("prova");
  job.Print("x.tif", 0, frame, false, kPixels);
  job.PrintMem(nullptr, 0, 0, frame, false, kPixels);
  job.PrintBitmaps(nullptr, 0, nullptr, -1, frame, false, kPixels, 0, -1, "x");
  EXPECT_EQ(g_dialogs, 0);
  EXPECT_EQ(CPrintFile::GetPrintFormat(), kFit);
}

TEST_F(DialogJob, FileAndMemoryGiveTheSamePages) {
  if (!HasPoppler()) GTEST_SKIP() << "no poppler-utils";
  Answer([](PrintDialogRequest& request) {
    request.range = Range::Pages;
    request.fromPage = 2;
    request.copies = 2;
    return true;
  });
  const std::string path = ThreePages();
  std::string image = Read(path);
  CPrintFile job("prova");
  job.Print(path.c_str(), 1, frame, false, kPixels);
  job.PrintMem(image.data(), image.size(), 1, nullptr, false, kPixels);
  for (const int number : {1, 2})
    EXPECT_EQ(Widths(QueuedJob(number)), (std::vector<int>{200, 300, 200, 300})) << number;
  ExpectStageClosed();
}

TEST_F(DialogJob, UnknownFormats) {
  const std::string path = ThreePages();
  std::string image = Read(path);
  CPrintFile job("prova");
  EXPECT_EQ(Thrown([&] { job.Print(path.c_str(), 1, frame, true, static_cast<PrintFormat>(7)); }), kNothing);
  EXPECT_EQ(CPrintFile::GetPrintFormat(), kFit);
  const auto strange = static_cast<PrintFormat>(7);
  EXPECT_EQ(Thrown([&] { job.PrintMem(image.data(), image.size(), 1, frame, true, strange); }), SP_ERROR);
  EXPECT_EQ(CPrintFile::GetPrintFormat(), 7);
  EXPECT_EQ(g_dialogs, 0) << "the default printer isn't asked for";
  ExpectStageClosed();
}

TEST_F(DialogJob, BorrowedBitmaps) {
  if (!HasPoppler()) GTEST_SKIP() << "no poppler-utils";
  // The second is a fax whose rows the viewer has doubled for the screen.
  Decoded pages(WriteFile({Black(100, 50, 1, 0, 0), Black(1728, 2156, 1, 204, 98)}), 2);
  struct_LEAD_Bitmap* array[] = {pages.At(1), nullptr, pages.At(2)};
  CPrintFile job("prova");
  job.PrintBitmaps(array, 3, nullptr, 1, frame, true, kActual, 0, -1, "documento");
  ASSERT_EQ(PageCount(QueuedJob(1)), 2);
  const RECT fax = Look(QueuedJob(1), 2).dark;
  EXPECT_NEAR(fax.right - fax.left, 2541, 1);
  EXPECT_NEAR(fax.bottom - fax.top, 3168, 1);
  job.PrintBitmaps(array, 1, nullptr, 1, nullptr, true, kPixels, 0, 9, "documento");
  EXPECT_EQ(PageCount(QueuedJob(2)), 1) << "pages that the array hasn't are passed over";
  EXPECT_EQ(pages.At(2)->Flags & 1, 1U);
}

TEST_F(DialogJob, ButtonAndEscapeStopTheJobAndNothingIsLeft) {
  Decoded pages(WriteFile({Black(1000, 1000, 24, 0, 0)}), 1);
  struct_LEAD_Bitmap* array[] = {pages.At(1)};
  for (const auto& [quits, escapes] : {std::pair{0U, false}, {0U, true}, {3U, false}}) {
    frame->quits = quits;
    frame->escapes = escapes;
    ::SetTimer(*frame, 1, 1, nullptr);
    CPrintFile job("prova");
    const int code =
        Thrown([&] { job.PrintBitmaps(array, 1, nullptr, 30000, frame, true, kPixels, 0, -1, "documento"); });
    EXPECT_TRUE(code == PrintFailureAborted || code == SP_APPABORT) << code;
    EXPECT_TRUE(frame->sawDialog);
    EXPECT_TRUE(frame->wasDisabled);
    EXPECT_FALSE(std::filesystem::exists(QueuedJob(1)));
    ExpectStageClosed();
    for (HWND window = ::GetWindow(*frame, GW_HWNDFIRST); window != nullptr;
         window = ::GetWindow(window, GW_HWNDNEXT))
      EXPECT_EQ(::GetDlgItem(window, kAbortButton), nullptr) << "the dialog is gone";
  }
  MSG message{};
  EXPECT_EQ(::GetMessage(&message, nullptr, 0, 0), 0) << "the program's end isn't swallowed";
}

TEST_F(DialogJob, FailuresOpenTheParentAgain) {
  const std::string path = ThreePages();
  platform::TestPrinter refusing;
  refusing.accepting = false;
  CPrintFile job("prova");
  EXPECT_EQ(Thrown([&] { job.Print((path + "x").c_str(), 1, frame, true, kFit); }), kServiceFailed);
  SetQueue(refusing);
  EXPECT_EQ(Thrown([&] { job.Print(path.c_str(), 1, frame, false, kFit); }), SP_ERROR);
  ExpectStageClosed();
  platform::testing::SetTestPrinters({});
  EXPECT_EQ(Thrown([&] { job.Print(path.c_str(), 1, frame, true, kFit); }), PrintFailureNoDefaultPrinter);
  ExpectStageClosed();
}

// The button of the template opens the print format dialog; OK there counts at once.
TEST_F(DialogJob, TheFormatIsChosenInThePrintDialog) {
  platform::testing::SetPrintDialogAnswer(nullptr);
  bool shownFormat = false;
  platform::testing::OnNextDialog([&](HWND print) {
    platform::testing::OnNextDialog([&shownFormat, print](HWND dialog) {
      shownFormat = ::SendMessage(::GetDlgItem(dialog, 1001), BM_GETCHECK, 0, 0) == BST_CHECKED;
      ::SendMessage(::GetDlgItem(dialog, 1002), BM_CLICK, 0, 0);
      ::PostMessage(dialog, WM_COMMAND, IDOK, 0);
      ::PostMessage(print, WM_COMMAND, IDCANCEL, 0);
    });
    ::PostMessage(print, WM_COMMAND, MAKEWPARAM(kFormatButton, 0), 0);
  });
  CPrintFile job("prova");
  job.Print(ThreePages().c_str(), 1, frame, false, kActual);
  EXPECT_TRUE(shownFormat) << "it shows the job's format";
  EXPECT_EQ(CPrintFile::GetPrintFormat(), kPixels) << "and the cancelled job doesn't undo it";
}

TEST_F(DialogJob, OneBitmap) {
  if (!HasPoppler()) GTEST_SKIP() << "no poppler-utils";
  const struct {
    const char* name;
    Page page;
    int format;
    SIZE size;
  } cases[] = {
      {"fax, actual", Black(1728, 1078, 1, 204, 98), kActual, {2541, 3300}},
      {"fax, fit: the pixels as they are", Black(1728, 1078, 1, 204, 98), kFit, {2549, 1590}},
      {"fax, pixels", Black(1728, 1078, 1, 204, 98), kPixels, {1728, 1078}},
      {"unknown, actual as fit", Black(400, 200, 8, 0, 100), kActual, {2549, 1274}},
      {"lying, on upright paper", Black(600, 400, 24, 100, 100), kFit, {2549, 1699}},
      {"no format: an empty sheet", Black(600, 400, 24, 100, 100), 7, {0, 0}},
  };
  Answer([](PrintDialogRequest& request) {
    request.copies = 3;  // one sheet all the same
    return true;
  });
  int number = 0;
  for (const auto& c : cases) {
    Decoded page(WriteFile({c.page}), 1);
    CPrintBitmap job("prova");
    job.Print(page.At(1), frame, false, static_cast<PrintFormat>(c.format));
    const std::string pdf = QueuedJob(++number);
    ASSERT_EQ(PageCount(pdf), 1) << c.name;
    const Printed printed = Look(pdf);
    EXPECT_EQ(printed.sheet.cx, 2550) << c.name << ": the paper is never turned";
    if (c.size.cx == 0) {
      EXPECT_EQ(printed.dark.right, 0) << c.name;
      continue;
    }
    const int corner = c.format == kActual && c.page.xDpi > 0 ? 0 : 1;
    EXPECT_NEAR(printed.dark.left, corner, 1) << c.name;
    EXPECT_NEAR(printed.dark.right, corner + c.size.cx, 1) << c.name;
    EXPECT_NEAR(printed.dark.bottom, std::min(corner + c.size.cy, 3300), 1) << c.name;
  }
  ExpectStageClosed();
}

}  // namespace
