// Opening, loading, the states of the window and its reports.

#include <climits>
#include <fstream>
#include <functional>
#include <iterator>

#include "tests/frames/broken_pages.h"
#include "tests/imagewindow/window_fixture.h"

namespace {

class Loading : public ImageWindowTest {
 protected:
  /// Two bilevel pages and a grey one.
  std::vector<Page> Mixed() const { return {{100, 80}, {60, 50, 8}, {70, 40}}; }

  void ExpectEmpty() const {
    EXPECT_EQ(window->GetCurrPage(), 0);
    EXPECT_EQ(window->GetMaxPage(), 0);
    EXPECT_TRUE(window->GetFilePath().IsEmpty());
    EXPECT_EQ(window->m_pFileBuf, nullptr);
    EXPECT_EQ(window->m_nFileBufSize, 0);
    EXPECT_FALSE(window->HasPage());
    EXPECT_FALSE(window->HasCopy());
  }
  static void StoreScale(UINT percent) {
    HKEY key = nullptr;
    ASSERT_EQ(
        RegCreateKeyExA(HKEY_CURRENT_USER, "software\\Morvane Software Works\\Tessarel12\\1.0\\Settings", 0,
                        nullptr, 0, KEY_ALL_ACCESS, nullptr, &key, nullptr),
        ERROR_SUCCESS);
    RegSetValueExA(key, "Scale", 0, REG_DWORD, reinterpret_cast<const BYTE*>(&percent), sizeof percent);
    RegCloseKey(key);
  }
  static std::vector<char> ReadAll(const std::string& path) {
    std::ifstream file(path, std::ios::binary);
    return {std::istreambuf_iterator<char>(file), {}};
  }
};

TEST_F(Loading, ANewWindowIsEmpty) {
  const std::unique_ptr<CObject> made(RUNTIME_CLASS(CImageWindow)->CreateObject());
  ASSERT_NE(made, nullptr);
  EXPECT_STREQ(made->GetRuntimeClass()->m_lpszClassName, "CImageWindow");
  EXPECT_TRUE(made->IsKindOf(RUNTIME_CLASS(CWnd)));

  ExpectEmpty();
  EXPECT_EQ(window->GetScaleFactor(), 1.0);
  EXPECT_EQ(window->m_nZoomDivisor, 1);
  EXPECT_EQ(window->GetFitMode(), FitModeNone);
  EXPECT_EQ(window->GetMouseMode(), MouseModeNone);
  EXPECT_EQ(window->m_GrayPalette[200].rgbGreen, 200);
  EXPECT_EQ(window->m_GrayPalette[200].rgbReserved, 0);
  EXPECT_NE(window->GetExStyle() & WS_EX_CLIENTEDGE, 0U);
  EXPECT_EQ(window->GetStyle() & WS_BORDER, 0U);
  EXPECT_EQ(window->m_szClient, CSize(400, 300)) << "no bar is up";
  EXPECT_FALSE(window->LoadPage(1));
  EXPECT_TRUE(Reports().empty());
}

TEST_F(Loading, FieldsKeepTheirOrder) {
  const TestWindow& w = *window;
  const void* fields[] = {
      &w.m_ptScroll,     &w.m_ptScrollMax, &w.m_szClient,    &w.m_szScaled,       &w.m_pFileBuf,
      &w.m_nFileBufSize, &w.m_nFitMode,    &w.m_strFilePath, &w.m_dScaleFactor,   &w.m_bMultiLevel,
      &w.m_GrayPalette,  &w.m_nCurrPage,   &w.m_nMaxPage,    &w.m_nRotation,      &w.m_nZoomDivisor,
      &w.m_ptSelStart,   &w.m_ptSelEnd,    &w.m_nMouseMode,  &w.m_bZoomSelect,    &w.m_bShiftDown,
      &w.m_ptDragLast,   &w.m_Bitmap,      &w.m_SmartBitmap, &w.m_pfnReportError, &w.m_nPrintFormat};
  EXPECT_TRUE(std::is_sorted(std::begin(fields), std::end(fields)));
}

TEST_F(Loading, OpeningCountsPagesAndDecodesNothing) {
  Settle();
  const std::string path = WriteFile(Mixed());
  window->SetMouseMode(MouseModeZoomIn);
  ASSERT_TRUE(window->OpenImageFile(path.c_str()));
  EXPECT_EQ(window->GetMaxPage(), 3);
  EXPECT_EQ(window->GetCurrPage(), 1);
  EXPECT_EQ(window->GetFilePath(), path.c_str());
  EXPECT_EQ(window->GetFileName(), "pages.tif");
  EXPECT_EQ(window->GetMouseMode(), MouseModeNone);
  EXPECT_FALSE(window->HasPage());
  EXPECT_FALSE(IsInvalid());
  window->m_strFilePath = "C:\\faxes\\in.tif";
  EXPECT_EQ(window->GetFileName(), "in.tif");
}

TEST_F(Loading, AReportMayOpenAnotherFile) {
  const std::string broken = WriteFile({{60, 50, 8}, {60, 50, 8}}, "broken.tif");
  test_pages::BreakPage(broken, 2);
  static std::string other;
  static TestWindow* reporting;
  other = WriteFile(Mixed(), "other.tif");
  reporting = window.get();
  ASSERT_TRUE(window->OpenImageFile(broken.c_str()));
  window->SetReportErrorCallBack([](int, CString) {
    reporting->OpenImageFile(other.c_str());
    reporting->LoadPage(1);
  });
  EXPECT_FALSE(window->LoadPage(2));
  EXPECT_EQ(window->GetCurrPage(), 1) << "of what is shown now";
  EXPECT_EQ(window->m_Bitmap.Width, 100);
}

TEST_F(Loading, AnAbsurdResolutionLeavesThePageAsItIs) {
  Show({{1000, 1400, 8, 1, 300}});  // 300,000 pixels wide once its pixels are square
  EXPECT_TRUE(Reports().empty());
  EXPECT_EQ(window->m_szScaled, CSize(1000, 1400));
}

TEST_F(Loading, ASideAbove65535IsToldWhole) {
  window->SetWindowPos(nullptr, 0, 0, 70000, 40, SWP_NOZORDER);
  EXPECT_GT(window->m_szClient.cx, 65535);
  EXPECT_LT(window->m_szClient.cy, 41);
  window->SendMessage(WM_SIZE, SIZE_RESTORED, MAKELPARAM(65000, 40000));
  EXPECT_EQ(window->m_szClient, CSize(65000, 40000)) << "a message that a host has made";
}

TEST_F(Loading, AFileMayBeOpenedAgainByTheWindowsOwnPath) {
  Show(Mixed());
  EXPECT_TRUE(window->OpenImageFile(window->m_strFilePath));
  EXPECT_EQ(window->GetFileName(), "pages.tif");
}

TEST_F(Loading, AFailedOpenLeavesNothingOpenAndReportsOnce) {
  const std::string text = (m_folder / "text.txt").string();
  std::ofstream(text) << "no image";
  std::vector<char> rubbish(100, 'x');
  const std::function<bool()> opens[] = {
      [&] { return window->OpenImageFile((m_folder / "missing.tif").c_str()); },
      [&] { return window->OpenImageFile(text.c_str()); },
      [&] { return window->OpenImageFile(""); },
      [&] { return window->OpenImageFile(nullptr); },
      [&] { return window->OpenImageMemory(rubbish.data(), rubbish.size()); },
      [&] { return window->OpenImageMemory(nullptr, 0); },
      [&] { return window->OpenImageMemory(rubbish.data(), 0x80000000UL); },
  };
  for (const auto& open : opens) {
    Show(Mixed());
    window->ZoomToScaleFactor(0.5);
    Settle();
    Reports().clear();
    const auto which = &open - opens;
    EXPECT_FALSE(open()) << which;
    ASSERT_EQ(Reports().size(), 1U) << which;
    EXPECT_LT(Reports()[0].first, 0) << which;
    EXPECT_FALSE(Reports()[0].second.empty()) << which;
    ExpectEmpty();
    EXPECT_EQ(window->GetScaleFactor(), 0.5);
    EXPECT_FALSE(IsInvalid()) << "the old picture stays until the next paint";
    window->Invalidate();
    window->UpdateWindow();
    EXPECT_EQ(Pixel(5, 5), 0x808080U);
    EXPECT_EQ(Reports().size(), 1U) << "painting reports nothing more";
  }
}

TEST_F(Loading, AMemoryImageIsShownLikeItsFile) {
  std::vector<char> block = ReadAll(WriteFile(Mixed()));
  ASSERT_TRUE(window->OpenImageMemory(block.data(), block.size()));
  EXPECT_EQ(window->GetMaxPage(), 3);
  EXPECT_TRUE(window->GetFilePath().IsEmpty());
  EXPECT_TRUE(window->GetFileName().IsEmpty());
  char* gotBlock = nullptr;
  int gotSize = 0;
  window->GetFileBuf(&gotBlock, &gotSize);
  EXPECT_EQ(gotBlock, block.data());
  EXPECT_EQ(gotSize, static_cast<int>(block.size()));
  ASSERT_TRUE(window->LoadPage(3));
  EXPECT_EQ(window->m_Bitmap.Width, 70);
  ASSERT_TRUE(window->OpenImageFile(WriteFile(Mixed()).c_str()));
  EXPECT_EQ(window->m_pFileBuf, nullptr) << "never both sources";
}

TEST_F(Loading, DepthAndModeFollowThePage) {
  Show(Mixed());
  const struct {
    int page, width, height;
    bool multiLevel;
  } cases[] = {{1, 100, 80, false}, {2, 60, 50, true}, {3, 70, 40, false}, {1, 100, 80, false}};
  for (const auto& c : cases) {
    ASSERT_TRUE(window->LoadPage(c.page));
    EXPECT_EQ(window->GetCurrPage(), c.page);
    EXPECT_EQ(window->m_bMultiLevel, c.multiLevel);
    EXPECT_EQ(window->m_Bitmap.BitsPerPixel, 8) << "a bilevel page is held in 8 bits";
    EXPECT_EQ(CSize(window->m_Bitmap.Width, window->m_Bitmap.Height), CSize(c.width, c.height));
    EXPECT_EQ(window->GetMouseMode(), MouseModeDrag);
  }
  window->SetMouseMode(MouseModeZoomOut);
  ASSERT_TRUE(window->LoadPage(2));
  EXPECT_EQ(window->GetMouseMode(), MouseModeZoomOut) << "a chosen mode stays";
}

TEST_F(Loading, PagesOutsideTheFileChangeNothing) {
  Show(Mixed());
  window->ZoomToScaleFactor(0.5);
  ASSERT_TRUE(window->HasCopy());
  Settle();
  for (int page : {0, 4, -1, INT_MAX, INT_MIN}) {
    EXPECT_FALSE(window->LoadPage(page));
    EXPECT_EQ(window->GetCurrPage(), 1);
    EXPECT_TRUE(window->HasPage() && window->HasCopy());
    EXPECT_FALSE(IsInvalid());
  }
  EXPECT_TRUE(Reports().empty());
}

TEST_F(Loading, PixelsBecomeSquare) {
  const struct {
    const char* name;
    float x, y;
    CSize size;
  } cases[] = {{"fine fax", 204, 196, {50, 40}}, {"standard fax", 204, 98, {50, 80}},
               {"wide", 98, 204, {100, 40}},     {"below 2", 300, 200, {50, 40}},
               {"equal", 200, 200, {50, 40}},    {"unknown", 0, 0, {50, 40}}};
  for (const auto& c : cases) {
    Show({{50, 40, 1, c.x, c.y}});
    EXPECT_EQ(CSize(window->m_Bitmap.Width, window->m_Bitmap.Height), c.size) << c.name;
    EXPECT_EQ(window->m_szScaled, c.size) << c.name;
  }
}

TEST_F(Loading, TurnedPagesStandUpright) {
  Show({{50, 40, 1, 204, 98, [](int x, int) { return x < 10 ? 0 : 255; }, ORIENTATION_RIGHTTOP}});
  EXPECT_EQ(window->m_Bitmap.ViewPerspective, 0);
  // Turned by a quarter, the resolutions are exchanged with the sides, and the width is doubled.
  EXPECT_EQ(CSize(window->m_Bitmap.Width, window->m_Bitmap.Height), CSize(80, 50));
  EXPECT_EQ(Pixel(5, 5), 0U) << "the left edge has come to the top";
  EXPECT_EQ(Pixel(75, 5), 0U);
  EXPECT_EQ(Pixel(5, 15), 0xffffffU);
}

TEST_F(Loading, StoredScaleIsCorrectedByTheFirstLoad) {
  const struct {
    UINT percent;
    double before, after;
  } cases[] = {{0, 0, 1},      {1, 0.01, 0.01},  {50, 0.5, 0.5},
               {1000, 10, 10}, {1001, 10.01, 1}, {0xFFFFFFFF, 0xFFFFFFFF * 0.01, 1}};
  for (const auto& c : cases) {
    StoreScale(c.percent);
    MakeWindow();
    EXPECT_DOUBLE_EQ(window->GetScaleFactor(), c.before);
    EXPECT_EQ(window->m_nZoomDivisor, 1) << "whatever the scale";
    Show({{1000, 1000}});
    EXPECT_DOUBLE_EQ(window->GetScaleFactor(), c.after) << c.percent;
    EXPECT_EQ(window->asked.size(), c.before == c.after ? 0U : 1U);
  }
}

TEST_F(Loading, ALoadedPageStartsAtItsCornerAndIsPainted) {
  Show({{2000, 2000}, {2000, 2000}});
  window->SetScrollPos(CPoint(300, 200), 1);
  ASSERT_EQ(window->m_ptScroll, CPoint(300, 200));
  for (int page : {2, 2}) {
    Settle();
    ASSERT_TRUE(window->LoadPage(page));
    EXPECT_EQ(window->m_ptScroll, CPoint(0, 0));
    EXPECT_TRUE(PaintErased());
    window->SetScrollPos(CPoint(9, 9), 1);
  }
}

TEST_F(Loading, AFailedLoadReportsOnceAndKeepsTheView) {
  Show({{2000, 1500}, {2000, 1500}});
  window->ZoomToScaleFactor(0.5);
  window->SetScrollPos(CPoint(100, 50), 1);
  Settle();
  const std::string path(window->GetFilePath());
  std::filesystem::rename(path, path + ".away");
  const CSize scaled = window->m_szScaled;
  EXPECT_FALSE(window->LoadPage(2));
  ASSERT_EQ(Reports().size(), 1U);
  EXPECT_EQ(window->GetCurrPage(), 2) << "the page asked for";
  EXPECT_EQ(window->GetMaxPage(), 2);
  EXPECT_FALSE(window->HasPage() || window->HasCopy());
  EXPECT_EQ(window->GetScaleFactor(), 0.5);
  EXPECT_EQ(window->m_ptScroll, CPoint(100, 50));
  EXPECT_EQ(window->m_szScaled, scaled);
  EXPECT_EQ(window->GetMouseMode(), MouseModeDrag);
  EXPECT_FALSE(IsInvalid());

  // Whatever is done now shows grey and reports nothing.
  window->FitToWidth();
  window->BestFit();
  EXPECT_EQ(window->GetScaleFactor(), 0.5) << "no page to fit";
  window->ZoomOut();
  window->ZoomIn();
  EXPECT_TRUE(window->ZoomToScaleFactor(0.25));
  Settle();
  EXPECT_EQ(Pixel(20, 20), 0x808080U);
  EXPECT_EQ(Reports().size(), 1U);

  std::filesystem::rename(path + ".away", path);
  ASSERT_TRUE(window->LoadPage(2));
  EXPECT_EQ(window->m_szScaled, CSize(500, 375));
  EXPECT_EQ(window->m_SmartBitmap.Width, 500);
}

TEST_F(Loading, AnOpenedWindowTakesALegalScaleForThePageToCome) {
  ASSERT_TRUE(window->OpenImageFile(WriteFile({{100, 3000}}).c_str()));
  EXPECT_TRUE(window->ZoomToScaleFactor(0.01)) << "no page whose sides could be too small";
  EXPECT_EQ(window->GetScaleFactor(), 0.01);
  window->ZoomIn();
  Settle();
  EXPECT_EQ(Pixel(20, 20), 0x808080U);
  EXPECT_TRUE(Reports().empty());
  EXPECT_TRUE(window->LoadPage(1));
}

TEST_F(Loading, TheDefaultReportIsABoxExceptForWhatTheUserEnded) {
  static std::vector<std::string> shown;
  platform::testing::SetMessageBoxAnswer([](const CString& text, UINT type) {
    EXPECT_EQ(type, 16U);
    shown.emplace_back(text);
    return 1;
  });
  window->SetReportErrorCallBack(nullptr);
  EXPECT_FALSE(window->OpenImageFile((m_folder / "missing.tif").c_str()));
  ASSERT_EQ(shown.size(), 1U);
  EXPECT_EQ(shown[0].substr(0, 10), "Error ZP-0");
  EXPECT_NE(shown[0].find("missing.tif"), std::string::npos) << shown[0];
  TestWindow::ReportErrorDefault(-84, "ended");
  EXPECT_EQ(shown.size(), 1U);
  platform::testing::SetMessageBoxAnswer(nullptr);
}

TEST_F(Loading, EveryCorpusFileIsShownOrReportedOnce) {
  const char* corpus = std::getenv("TESSAREL_CORPUS");
  std::ifstream truth(corpus == nullptr ? "" : std::string(corpus) + "/TRUTH.tsv");
  if (!truth) GTEST_SKIP() << "no corpus";
  std::string line;
  std::getline(truth, line);
  int shownFiles = 0;
  while (std::getline(truth, line)) {
    const std::string path = std::string(corpus) + "/" + line.substr(0, line.find('\t'));
    Reports().clear();
    const bool opened = window->OpenImageFile(path.c_str());
    const bool shown = opened && window->LoadPage(1);
    Settle();
    EXPECT_EQ(Reports().size(), shown ? 0U : 1U) << path;
    EXPECT_EQ(window->HasPage(), shown) << path;
    shownFiles += shown ? 1 : 0;
  }
  EXPECT_GT(shownFiles, 50);
}

}  // namespace
