// The document's print commands: its pages as they are shown, in one job.

#include <functional>

#include "docview/zp_doc.h"
#include "platform/framework/frame_wnd.h"
#include "tests/frames/broken_pages.h"
#include "tests/print/job_fixture.h"

namespace {

class Document : public CZPDoc {
 public:
  using CZPDoc::m_nPrintFormat;
};

/// Opens a file in the document as soon as a job dispatches messages.
class ReopeningFrame : public CFrameWnd {
 public:
  Document* document = nullptr;
  std::string path;

 private:
  LRESULT WindowProc(UINT message, WPARAM wParam, LPARAM lParam) override {
    if (message == WM_APP) document->OnOpenDocument(path.c_str());
    return message == WM_APP ? 0 : CFrameWnd::WindowProc(message, wParam, lParam);
  }
};

class DocumentCommand : public PrintJobTest {
 protected:
  void SetUp() override {
    PrintJobTest::SetUp();
    g_pfnReportError = &Report;
    document.m_nPrintFormat = PrintFormatPixelToPixel;
  }
  void TearDown() override {
    platform::testing::SetPrintDialogAnswer(nullptr);
    g_pfnReportError = nullptr;
    PrintJobTest::TearDown();
  }
  /// Black pages as wide as told and 100 high.
  void Open(const std::vector<int>& widths) {
    std::vector<Page> pages;
    for (const int width : widths) pages.push_back(Black(width, 100, 8, 0, 0));
    path = WriteFile(pages);
    ASSERT_EQ(document.OnOpenDocument(path.c_str()), 1);
  }

  Document document;
  std::string path;
};

TEST_F(DocumentCommand, PagesArePrintedAsTheyAreShown) {
  if (!HasPoppler()) GTEST_SKIP() << "no poppler-utils";
  Open({200, 400, 600});
  document.Rotate(9000);
  test_pages::BreakPage(path, 2);  // the pages in memory are printed, not those of the file
  struct {
    int first;
    int last;
    std::vector<int> widths;
  } const cases[] = {
      {0, -1, {100, 400, 600}}, {1, 1, {400}}, {1, 99, {400, 600}}, {99, -1, {600}}, {-5, 0, {100}}};
  int job = 0;
  for (const auto& row : cases) {
    EXPECT_EQ(document.PrintDocument(nullptr, true, row.first, row.last), 1);
    EXPECT_EQ(Widths(QueuedJob(++job)), row.widths) << row.first << " to " << row.last;
  }
  EXPECT_EQ(document.PrintDocument(nullptr, true, 2, 1), 0);
  document.PrintPage(-1);
  EXPECT_EQ(Widths(QueuedJob(++job)), (std::vector<int>{100}));
  document.PrintPage(2);
  EXPECT_EQ(Widths(QueuedJob(++job)), (std::vector<int>{600}));
  EXPECT_FALSE(std::filesystem::exists(QueuedJob(job + 1)));
  EXPECT_TRUE(Reports().empty());
}

TEST_F(DocumentCommand, APageThatCantBeDecodedIsPassedOver) {
  if (!HasPoppler()) GTEST_SKIP() << "no poppler-utils";
  Open({200, 400, 600});
  test_pages::BreakPage(path, 2);
  document.OnOpenDocument(path.c_str());
  document.SetActivePage(1);
  EXPECT_EQ(document.PrintDocument(nullptr, true, 0, -1), 1);
  EXPECT_EQ(Widths(QueuedJob(1)), (std::vector<int>{200, 600}));
  document.PrintPage(-1);
  EXPECT_FALSE(std::filesystem::exists(QueuedJob(2)));
}

TEST_F(DocumentCommand, TheSelectionIsTheRegionOfTheActivePage) {
  if (!HasPoppler()) GTEST_SKIP() << "no poppler-utils";
  Open({200, 400});
  document.SetActivePage(1);
  const RECT region{50, 10, 350, 60};
  LEADTOOLS::SetBitmapRgnRect(document.GetHBitmap(-1), &region);
  platform::testing::SetPrintDialogAnswer([](platform::PrintDialogRequest& request) {
    request.range = platform::PrintDialogRequest::Range::Selection;
    return true;
  });
  EXPECT_EQ(document.PrintDocument(nullptr, false, 0, -1), 1);
  EXPECT_EQ(Widths(QueuedJob(1)), (std::vector<int>{300}));
}

TEST_F(DocumentCommand, FailuresAreReportedAndGivenUpIsNone) {
  Open({200});
  platform::testing::SetPrintDialogAnswer([](platform::PrintDialogRequest&) {
    CPrintFile::SetPrintFormat(PrintFormatActualSize);
    return false;
  });
  EXPECT_EQ(document.PrintDocument(nullptr, false, 0, -1), 1);
  EXPECT_EQ(document.GetPrintFormat(), PrintFormatActualSize);
  platform::testing::SetTestPrinters({});
  document.m_nPrintFormat = PrintFormatPixelToPixel;
  EXPECT_EQ(document.PrintDocument(nullptr, true, 0, -1), 0);
  document.PrintPage(0);
  EXPECT_EQ(document.GetPrintFormat(), PrintFormatPixelToPixel);
  ASSERT_EQ(Reports().size(), 2U);
  for (const auto& [code, text] : Reports()) {
    EXPECT_EQ(code, 0);
    EXPECT_NE(text.find("stampante predefinita"), std::string::npos) << text;
  }
  g_pfnReportError = nullptr;
  EXPECT_EQ(document.PrintDocument(nullptr, true, 0, -1), 0);
  EXPECT_EQ(Boxes().size(), 1U);
}

TEST_F(DocumentCommand, PagesThatGoDuringAJobEndIt) {
  Open(std::vector<int>(50, 200));
  auto* const frame = new ReopeningFrame;  // deletes itself with its window
  ASSERT_TRUE(frame->Create(nullptr, "host", WS_OVERLAPPEDWINDOW, CRect(0, 0, 500, 400)));
  frame->document = &document;
  frame->path = path;
  ::PostMessage(frame->m_hWnd, WM_APP, 0, 0);
  EXPECT_EQ(document.PrintDocument(frame, true, 0, -1), 0);
  EXPECT_EQ(Boxes().size(), 1U);
  EXPECT_TRUE(Reports().empty());
  EXPECT_FALSE(std::filesystem::exists(QueuedJob(1)));
  EXPECT_EQ(SpooledFiles(), 0);
  EXPECT_NE(document.GetHBitmap(49), nullptr);
  EXPECT_TRUE(frame->IsWindowEnabled());
  frame->DestroyWindow();
}

TEST_F(DocumentCommand, PagesThatGoInThePrintDialogAreNotPrinted) {
  Document other;
  static std::function<void()> meanwhile;
  platform::testing::SetPrintDialogAnswer([](platform::PrintDialogRequest&) {
    meanwhile();
    return true;
  });
  const struct {
    const char* what;
    std::function<void()> happens;
    int jobs;  ///< of others
  } cases[] = {{"another file", [this] { document.OnOpenDocument(path.c_str()); }, 0},
               {"turned", [this] { document.Rotate(9000); }, 0},
               {"and another job begins",
                [&] {
                  document.OnOpenDocument(path.c_str());
                  other.OnOpenDocument(path.c_str());
                  other.PrintDocument(nullptr, true, 0, -1);
                },
                1}};
  for (const auto& c : cases) {
    Open({200, 400});
    Boxes().clear();
    meanwhile = c.happens;
    EXPECT_EQ(document.PrintDocument(nullptr, false, 0, -1), 0) << c.what;
    EXPECT_EQ(Boxes().size(), 1U) << c.what << ": the user reads that the job has ended";
    EXPECT_EQ(std::filesystem::exists(QueuedJob(1)), c.jobs == 1) << c.what;
    EXPECT_FALSE(std::filesystem::exists(QueuedJob(2))) << c.what;
  }
}

}  // namespace
