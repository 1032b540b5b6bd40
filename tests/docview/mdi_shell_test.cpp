// The multiple-document shell: bars that its windows share.

#include <chrono>
#include <cstdlib>
#include <fstream>
#include <functional>
#include <map>
#include <string>
#include <thread>

#include "platform/resources/resource_tables.h"
#include "tests/docview/shell_fixture.h"

namespace {

class MdiShell : public ShellTest {
 protected:
  void SetUp() override {
    ShellTest::SetUp();
    main = MakeMdi();
    Settle();
  }
  std::string Bars() { return ShellTest::Bars(main); }
  static CZPmdiChild* ChildOf(CZPDoc* document) {
    POSITION position = document->GetFirstViewPosition();
    return static_cast<CZPmdiChild*>(document->GetNextView(position)->GetParentFrame());
  }
  static std::string LoadedPictureReaders() {
    std::ifstream maps("/proc/self/maps");
    std::string readers;
    for (std::string line; std::getline(maps, line);)
      if (line.find("/imageformats/") != std::string::npos) readers += line + "\n";
    return readers;
  }
  std::string readersBefore = LoadedPictureReaders();
  CZPmdiFrame* main = nullptr;
};

TEST_F(MdiShell, ItsIconIsThatOfItsNumberAndNoOtherPictureIsRead) {
  const LPCTSTR name = MAKEINTRESOURCE(IDR_ZP_HOST);
  const HICON icon = LoadIconA(AfxFindResourceHandle(name, RT_GROUP_ICON), name);
  ASSERT_NE(icon, nullptr);
  EXPECT_EQ(::GetClassLong(main->m_hWnd, GCL_HICON), reinterpret_cast<std::intptr_t>(icon));
  EXPECT_EQ(::GetClassLong(ChildOf(OpenPages(1))->m_hWnd, GCL_HICON), reinterpret_cast<std::intptr_t>(icon));
  // A file with a picture would make the toolkit load all that it can read pictures with.
  EXPECT_EQ(LoadedPictureReaders(), readersBefore);
}

TEST_F(MdiShell, TheBarsShowTheWindowInFront) {
  EXPECT_EQ(Bars(), "()|()||");
  CZPDoc* const three = OpenPages(3);
  Command(ID_ZP_LAST_PAGE);
  Command(ID_ZP_ZOOM_IN);
  CZPDoc* const one = OpenPages(1);
  EXPECT_EQ(Bars(), "()|100%|Zoom 1:100|Pagina 1 of 1");
  ChildOf(three)->MDIActivate();
  Settle();
  EXPECT_EQ(Bars(), "3|200%|Zoom 1:200|Pagina 3 of 3");
  Type(main->m_wndComboPage, "2", VK_RETURN);
  EXPECT_EQ(three->GetActivePageNum(), 1);
  // What goes on behind the window in front isn't shown.
  one->Rotate(9000);
  EXPECT_EQ(Bars(), "2|200%|Zoom 1:200|Pagina 2 of 3");
  ChildOf(one)->m_pView->SetFitMode(1);
  main->MDITile();
  Settle();
  EXPECT_EQ(Bars(), "2|200%|Zoom 1:200|Pagina 2 of 3");
}

/// A document of a slow source, which tells before each page is decoded.
class SlowDoc : public CZPDoc {
  DECLARE_DYNCREATE(SlowDoc)
 public:
  static inline std::function<void(int page)> onLoad;

 private:
  struct Page : CZPPage {
    using CZPPage::LoadPage;
    int LoadPage(const char* file, int page, leadtools12::LoadRowCallback callback, void* data) override {
      onLoad(page);
      return CZPPage::LoadPage(file, page, callback, data);
    }
  };
  CZPPage* CreatePage() override { return new Page; }
};
IMPLEMENT_DYNCREATE(SlowDoc, CZPDoc)

TEST_F(MdiShell, AnOpenThatTakesAWhileShowsItsTextAndThePagesThatItHas) {
  static CMultiDocTemplate slow(IDR_ZP_HOST, RUNTIME_CLASS(SlowDoc), RUNTIME_CLASS(CZPmdiChild),
                                RUNTIME_CLASS(CZPView));
  for (const bool visible : {true, false}) {
    std::string seen;
    SlowDoc::onLoad = [&](int page) {
      EXPECT_EQ(Text(main->m_wndStatusBar), "Apertura file ...");
      RECT invalid{};
      EXPECT_FALSE(main->m_wndStatusBar.GetUpdateRect(&invalid)) << "it is on the screen";
      auto* const child = static_cast<CZPmdiChild*>(main->MDIGetActive());
      const bool painted =
          child != nullptr && child->IsWindowVisible() && !child->m_pView->GetUpdateRect(&invalid);
      if (painted) {
        EXPECT_EQ(Bars(), "1|100%|Zoom 1:100|Pagina 1 of 4");
        EXPECT_NE(Text(*child).find(".tif"), std::string::npos);
      }
      seen += painted ? "+" : "-";
      if (page < 3) std::this_thread::sleep_for(std::chrono::milliseconds(250));
    };
    auto* const document =
        static_cast<CZPDoc*>(slow.OpenDocumentFile(PagesFile(4).c_str(), visible ? TRUE : FALSE));
    ASSERT_NE(document, nullptr);
    EXPECT_EQ(seen, visible ? "-+++" : "----");
    EXPECT_EQ(ChildOf(document)->IsWindowVisible() != FALSE, visible);
    EXPECT_EQ(Text(main->m_wndStatusBar), "Pronto");
    document->OnCloseDocument();
    Settle();
  }
}

TEST_F(MdiShell, AnOpenThatFailsLeavesTheWindowInFrontAlone) {
  OpenPages(3);
  EXPECT_EQ(Open(TextFile()), nullptr);
  EXPECT_EQ(Boxes().size(), 1U);
  EXPECT_EQ(Bars(), "1|100%|Zoom 1:100|Pagina 1 of 3");
  EXPECT_EQ(Text(main->m_wndStatusBar), "Pronto");
  EXPECT_EQ(State(ID_ZP_NEXT_PAGE), "+");
}

TEST_F(MdiShell, TheBarsAreEmptyOnceTheLastWindowHasGone) {
  OpenPages(3);
  OpenPages(2);
  while (CMDIChildWnd* child = main->MDIGetActive()) {
    child->SendMessage(WM_CLOSE);
    Settle();
  }
  EXPECT_EQ(Bars(), "()|()||");
  const CToolBarCtrl& bar = main->m_wndToolBar.GetToolBarCtrl();
  for (const UINT id : {ID_FILE_PRINT, ID_ZP_DRAG_MODE, ID_ZP_ZOOM_IN, ID_ZP_VIEW_THUMBNAILS})
    EXPECT_FALSE(bar.IsButtonEnabled(static_cast<int>(id))) << id;
  OpenPages(2);
  EXPECT_EQ(Bars(), "1|100%|Zoom 1:100|Pagina 1 of 2");
  EXPECT_TRUE(bar.IsButtonEnabled(ID_ZP_VIEW_THUMBNAILS));
}

TEST_F(MdiShell, AFileThatIsOpenComesToTheFront) {
  const std::string path = PagesFile(2);
  CZPDoc* const first = static_cast<CZPDoc*>(m_app.OpenDocumentFile(path.c_str()));
  OpenPages(1);
  EXPECT_EQ(m_app.OpenDocumentFile(path.c_str()), first);
  Settle();
  EXPECT_EQ(main->MDIGetActive(), ChildOf(first));
}

TEST_F(MdiShell, UnderAnotherMainWindowAChildCantBeMade) {
  auto* const other = MakeMain<CMDIFrameWnd>();
  auto* const child = static_cast<CZPmdiChild*>(
      RUNTIME_CLASS(CZPmdiChild)->CreateObject());  // deletes itself when its window can't be made
  EXPECT_FALSE(child->LoadFrame(IDR_ZP_HOST, WS_OVERLAPPEDWINDOW, other, nullptr));
}

TEST_F(MdiShell, FilesFromElsewhereOpenWithAllTheirPages) {
  const char* corpus = std::getenv("TESSAREL_CORPUS");
  std::ifstream truth(std::string(corpus == nullptr ? "" : corpus) + "/TRUTH-PAGES.tsv");
  if (!truth) GTEST_SKIP() << "no corpus";
  OpenPages(1);
  Command(ID_ZP_VIEW_THUMBNAILS);
  std::string line;
  std::map<std::string, int> pages;  // of each file
  for (std::getline(truth, line); std::getline(truth, line);) ++pages[line.substr(0, line.find('\t'))];
  int opened = 0;
  for (const auto& [name, count] : pages) {
    Boxes().clear();
    CZPDoc* const document = Open(std::string(corpus) + "/" + name);
    if (document == nullptr) {
      EXPECT_LE(Boxes().size(), 1U) << name;
      continue;
    }
    ++opened;
    EXPECT_TRUE(Boxes().empty()) << name << ": " << Boxes()[0];
    EXPECT_EQ(document->GetPagesNum(), count) << name;
    Command(ID_ZP_VIEW_THUMBNAILS);
    Command(ID_ZP_ZOOM_BEST_FIT);
    Command(ID_ZP_LAST_PAGE);
    document->OnCloseDocument();
    Settle();
  }
  EXPECT_GT(opened, 0);
}

}  // namespace
