// The image window's print commands, and how failures reach the user.

#include <functional>
#include <memory>

#include "imagewindow/image_window.h"
#include "platform/framework/app.h"
#include "platform/framework/frame_wnd.h"
#include "tests/print/job_fixture.h"

namespace {

class WindowCommand : public PrintJobTest {
 protected:
  void SetUp() override {
    PrintJobTest::SetUp();
    setenv("XDG_CONFIG_HOME", m_folder.c_str(), 1);
    frame = new CFrameWnd;  // deletes itself with its window
    ASSERT_TRUE(frame->Create(nullptr, "host", WS_OVERLAPPEDWINDOW, CRect(0, 0, 500, 400)));
    ASSERT_TRUE(window.Create(nullptr, "", WS_CHILD | WS_VISIBLE, CRect(0, 0, 300, 200), frame, 1));
    window.SetReportErrorCallBack(&Report);
  }
  void TearDown() override {
    platform::testing::SetPrintDialogAnswer(nullptr);
    window.DestroyWindow();
    frame->DestroyWindow();
    PrintJobTest::TearDown();
  }
  void Open(const std::vector<Page>& pages) {
    ASSERT_TRUE(window.OpenImageFile(WriteFile(pages).c_str()));
    ASSERT_TRUE(window.LoadPage(1));
  }

  CFrameWnd* frame = nullptr;
  CImageWindow window;
};

TEST_F(WindowCommand, ThePageIsPrintedAsShownAndTheFileAsItIs) {
  if (!HasPoppler()) GTEST_SKIP() << "no poppler-utils";
  Open({Black(200, 100, 8, 0, 0), Black(400, 100, 8, 0, 0)});
  window.Rotate(90, true);
  window.m_nPrintFormat = PrintFormatPixelToPixel;
  window.PrintCurrentPage();
  window.PrintCurFile(frame, true);
  std::string image = Read((m_folder / "pages.tif").string());
  ASSERT_TRUE(window.OpenImageMemory(image.data(), image.size()));
  window.PrintCurFile(nullptr, true);
  EXPECT_EQ(Widths(QueuedJob(1)), (std::vector<int>{100}));
  EXPECT_EQ(Widths(QueuedJob(2)), (std::vector<int>{200, 400}));
  EXPECT_EQ(Widths(QueuedJob(3)), (std::vector<int>{200, 400}));
  EXPECT_TRUE(Reports().empty());
}

TEST_F(WindowCommand, TheFormatChosenStaysWithTheWindowUnlessTheJobFails) {
  Open({Black(200, 100, 8, 0, 0)});
  platform::testing::SetPrintDialogAnswer([](platform::PrintDialogRequest&) {
    CPrintFile::SetPrintFormat(PrintFormatActualSize);
    return false;  // given up: that isn't a failure
  });
  window.PrintCurFile(frame, false);
  EXPECT_EQ(window.m_nPrintFormat, PrintFormatActualSize);
  window.m_nPrintFormat = 7;
  platform::testing::SetTestPrinters({});
  window.PrintCurFile(frame, true);
  EXPECT_EQ(window.m_nPrintFormat, 7);
  window.PrintCurrentPage();
  ASSERT_EQ(Reports().size(), 2U);
  for (const auto& [code, text] : Reports()) {
    EXPECT_EQ(code, 0);
    EXPECT_NE(text.find("stampante predefinita"), std::string::npos) << text;
  }
}

TEST_F(WindowCommand, ABlockThatGoesInThePrintDialogIsNotPrinted) {
  static std::function<void()> meanwhile;
  platform::testing::SetPrintDialogAnswer([](platform::PrintDialogRequest&) {
    meanwhile();
    return true;
  });
  const std::string path = WriteFile({Black(200, 100, 8, 0, 0)});
  CImageWindow* owner = nullptr;
  const struct {
    const char* what;
    std::function<void()> happens;
  } cases[] = {{"another file", [&] { owner->OpenImageFile(path.c_str()); }}, {"the window", [&] {
                                                                                 delete owner;
                                                                                 owner = nullptr;
                                                                               }}};
  for (const auto& c : cases) {
    auto image = std::make_unique<std::string>(Read(path));
    owner = new CImageWindow;
    ASSERT_TRUE(owner->OpenImageMemory(image->data(), image->size()));
    Boxes().clear();
    meanwhile = [&] {
      c.happens();
      image.reset();
    };
    owner->PrintCurFile(frame, false);
    ASSERT_EQ(Boxes().size(), 1U) << c.what;
    EXPECT_NE(Boxes()[0].find("annullata"), std::string::npos) << c.what << ": " << Boxes()[0];
    EXPECT_FALSE(std::filesystem::exists(QueuedJob(1))) << c.what;
    delete owner;
  }
}

TEST_F(WindowCommand, AFileThatIsGoneIsTheServicesFailure) {
  Open({Black(200, 100, 8, 0, 0)});
  std::filesystem::remove(m_folder / "pages.tif");
  window.PrintCurFile(frame, true);
  ASSERT_EQ(Reports().size(), 1U);
  EXPECT_LT(Reports()[0].first, 0);
  EXPECT_NE(Reports()[0].second, "");
}

TEST_F(WindowCommand, EachFailureHasItsText) {
  const struct {
    int code;
    bool box;
    const char* part;
  } cases[] = {{0, false, "predefinita"},   {1, false, "device context"},    {2, true, "annullata"},
               {3, false, "bitmap non pu"}, {4, false, "Errore imprevisto"}, {-1, false, "Errore generale."},
               {-2, true, "annullata"},     {-3, true, "annullata"},         {-4, false, "Spazio disco"},
               {-5, false, "Memoria"},      {99, false, "Errore imprevisto"}};
  for (const auto& c : cases) {
    Boxes().clear();
    Reports().clear();
    ReportPrintFailure(c.code, &Report);
    ASSERT_EQ(Boxes().size(), c.box ? 1U : 0U) << c.code;
    ASSERT_EQ(Reports().size(), c.box ? 0U : 1U) << c.code;
    for (const auto& report : Reports()) EXPECT_EQ(report.first, 0) << c.code;
    const std::string text = c.box ? Boxes()[0] : Reports()[0].second;
    EXPECT_NE(text.find(c.part), std::string::npos) << c.code << ": " << text;
  }
}

}  // namespace
