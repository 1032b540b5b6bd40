// A host may delete the window in whatever the window calls: a report, a box, the status of its frame.

#include <fstream>
#include <functional>

#include "platform/framework/message_box.h"
#include "tests/frames/broken_pages.h"
#include "tests/imagewindow/window_fixture.h"

namespace {

std::function<void()> g_delete;  // of a test

void DeleteOnReport(int, CString) {
  g_delete();
}

int DeleteInBox(const CString&, UINT) {
  g_delete();
  return IDOK;
}

class DeletedOnStatus : public TestWindow {
  void UpdateZoomStatus() override { g_delete(); }
};

class Deleted : public ImageWindowTest {
 protected:
  void TearDown() override {
    platform::testing::SetMessageBoxAnswer(nullptr);
    for (struct_LEAD_Bitmap& pixels : m_pixels) LEADTOOLS::FreeBitmap(&pixels);
    ImageWindowTest::TearDown();
  }
  /// Of two large pages, whose second can't be decoded.
  void MakeAnew() {
    window = std::make_unique<DeletedOnStatus>();
    ASSERT_TRUE(window->Create(nullptr, "", WS_CHILD | WS_VISIBLE, CRect(0, 0, 400, 300), frame, 1));
    const std::string path = WriteFile({{2000, 1600, 1}, {2000, 1600, 1}});
    test_pages::BreakPage(path, 2);
    ASSERT_TRUE(window->OpenImageFile(path.c_str()));
    ASSERT_TRUE(window->LoadPage(1));
    Settle();
    window->SetReportErrorCallBack(&DeleteOnReport);
    platform::testing::SetMessageBoxAnswer(&DeleteInBox);
  }
  void Mouse(UINT message, CPoint point) { window->SendMessage(message, 0, MAKELPARAM(point.x, point.y)); }
  void Drop(std::vector<const char*> paths) {
    platform::testing::DropFiles(*window, {5, 5}, paths);
    platform::testing::PumpUntilIdle();
  }
  /// Takes the pixels away, so that nothing can be made of the page any more.
  void SpoilPage() {
    m_pixels.push_back(window->m_Bitmap);
    window->m_Bitmap.pStorage = nullptr;
  }

  std::vector<struct_LEAD_Bitmap> m_pixels;
};

TEST_F(Deleted, InWhateverItCalls) {
  const std::string text = (m_folder / "text.tif").string();
  std::ofstream(text) << "no picture at all";
  const std::string target = (m_folder / "target").string();
  const struct {
    const char* what;
    std::function<void()> happens;
  } cases[] = {
      {"a bad file", [&] { window->OpenImageFile(text.c_str()); }},
      {"a bad page", [this] { window->LoadPage(2); }},
      {"a bad file dropped", [&] { Drop({text.c_str()}); }},
      {"two files dropped",
       [&] {
         Drop({text.c_str(), text.c_str()});
       }},
      {"export, one page only", [&] { window->ExportAs((target + ".bmp").c_str()); }},
      {"export, done", [&] { window->ExportAs((target + ".tif").c_str()); }},
      {"export, unknown", [&] { window->ExportAs((target + ".xyz").c_str()); }},
      {"properties",
       [this] {
         std::filesystem::remove(m_folder / "pages.tif");
         window->ShowPropertiesDlg();
       }},
      {"a page that can't be turned",
       [this] {
         SpoilPage();
         window->Rotate(90, false);
       }},
      {"a step that can't be reduced",
       [this] {
         SpoilPage();
         window->ZoomOut();
       }},
      {"a scale that can't be reduced",
       [this] {
         SpoilPage();
         window->ZoomToScaleFactor(0.25);
       }},
      {"a paint",
       [this] {
         SpoilPage();
         window->Invalidate();
         window->UpdateWindow();
       }},
      {"the wheel",
       [this] { window->SendMessage(WM_MOUSEWHEEL, MAKEWPARAM(MK_CONTROL, 120), MAKELPARAM(5, 5)); }},
      {"a click",
       [this] {
         window->SetMouseMode(MouseModeZoomIn);
         Mouse(WM_LBUTTONDOWN, {50, 60});
       }},
      {"a selection",
       [this] {
         window->ToggleZoomSelect();
         Mouse(WM_LBUTTONDOWN, {50, 60});
         Mouse(WM_MOUSEMOVE, {150, 160});
         Mouse(WM_LBUTTONUP, {150, 160});
       }},
  };
  for (const auto& c : cases) {
    SCOPED_TRACE(c.what);
    MakeAnew();
    int deleted = 0;
    g_delete = [&] {
      ++deleted;
      window.reset();
    };
    c.happens();
    EXPECT_EQ(deleted, 1);
    EXPECT_EQ(window, nullptr);
    platform::testing::PumpUntilIdle();
  }
}

}  // namespace
