// Jobs of the image window on a real print service of the test's own, and without any.

#include "imagewindow/image_window.h"
#include "platform/framework/frame_wnd.h"
#include "platform/framework/message_box.h"
#include "tests/imagewindow/tiff_writer.h"
#include "tests/spooler/cups_fixture.h"

namespace {

std::vector<std::string> g_boxes;
std::vector<std::string> g_reports;

/// An image window on a fax of many pages. Its frame does something a moment after a job has begun.
class Viewer : public CFrameWnd {
 public:
  CImageWindow image;
  std::string command;

  void Start(const std::filesystem::path& folder) {
    setenv("XDG_CONFIG_HOME", folder.c_str(), 1);
    g_boxes.clear();
    g_reports.clear();
    platform::testing::SetMessageBoxAnswer([](const CString& text, UINT) {
      g_boxes.emplace_back(text);
      return static_cast<int>(IDOK);
    });
    ASSERT_TRUE(Create(nullptr, "host", WS_OVERLAPPEDWINDOW, CRect(0, 0, 500, 400)));
    ASSERT_TRUE(image.Create(nullptr, "", WS_CHILD | WS_VISIBLE, CRect(0, 0, 300, 200), this, 1));
    image.SetReportErrorCallBack([](int, CString text) { g_reports.emplace_back(text); });
    const std::string path = (folder / "fax.tif").string();
    test_pages::Write(path, std::vector<test_pages::Page>(300, {400, 300, 8}));
    ASSERT_TRUE(image.OpenImageFile(path.c_str()));
    ASSERT_TRUE(image.LoadPage(1));
  }

 protected:
  LRESULT WindowProc(UINT message, WPARAM wParam, LPARAM lParam) override {
    if (message != WM_TIMER || command.empty()) return CFrameWnd::WindowProc(message, wParam, lParam);
    ::KillTimer(m_hWnd, 1);
    (void)std::system((command + " >/dev/null 2>&1").c_str());
    command.clear();
    return 0;
  }
};

class ServiceJob : public Cups {
 protected:
  void SetUp() override {
    Cups::SetUp();
    if (IsSkipped()) return;
    viewer = new Viewer;  // deletes itself with its window
    viewer->Start(m_folder);
  }
  void TearDown() override {
    if (viewer != nullptr) viewer->DestroyWindow();
    Cups::TearDown();
  }
  Viewer* viewer = nullptr;
};

TEST_F(ServiceJob, APausedQueueTakesTheJob) {
  Output("cupsdisable Prova");
  viewer->image.PrintCurFile(viewer, true);
  EXPECT_TRUE(g_boxes.empty());
  EXPECT_TRUE(g_reports.empty()) << g_reports[0];
  EXPECT_NE(Output("lpstat -o Prova"), "") << "it waits there";
  EXPECT_FALSE(std::filesystem::exists(Printed()));
  Output("cupsenable Prova");
  EXPECT_TRUE(WaitFor([] { return Read(Printed()).ends_with("%%EOF\n"); })) << "and prints in the end";
}

TEST_F(ServiceJob, TheQueueVanishesMeanwhile) {
  viewer->command = "lpadmin -x Prova";
  ::SetTimer(*viewer, 1, 1, nullptr);
  viewer->image.PrintCurFile(viewer, true);
  ASSERT_TRUE(viewer->command.empty()) << "the job was over too soon";
  EXPECT_TRUE(g_boxes.empty());
  ASSERT_EQ(g_reports.size(), 1U);
  EXPECT_EQ(g_reports[0], "Errore generale.");
  EXPECT_TRUE(viewer->IsWindowEnabled());
  EXPECT_FALSE(std::filesystem::exists(Printed()));
}

}  // namespace

// Its own process, as each test: the client library keeps to the service that it has found.
TEST(NoService, ThereIsNoDefaultPrinterButAFileCanBePrinted) {
  std::string folder = (std::filesystem::temp_directory_path() / "noservice-XXXXXX").string();
  ASSERT_NE(mkdtemp(folder.data()), nullptr);
  setenv("CUPS_SERVER", (folder + "/none").c_str(), 1);
  auto* viewer = new Viewer;  // deletes itself with its window
  viewer->Start(folder);
  viewer->image.PrintCurFile(viewer, true);
  ASSERT_EQ(g_reports.size(), 1U);
  EXPECT_NE(g_reports[0].find("stampante predefinita"), std::string::npos) << g_reports[0];
  static std::string target;
  target = folder + "/out.pdf";
  platform::testing::SetPrintDialogAnswer([](platform::PrintDialogRequest& request) {
    request.file = target;
    return request.printers.empty();
  });
  viewer->image.PrintCurFile(viewer, false);
  EXPECT_EQ(g_reports.size(), 1U);
  EXPECT_TRUE(g_boxes.empty());
  EXPECT_TRUE(std::filesystem::exists(target));
  viewer->DestroyWindow();
  std::filesystem::remove_all(folder);
}
