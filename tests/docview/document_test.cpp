// The document by itself: what an open makes of it, and what its views hear.

#include <functional>

#include "docview/hints.h"
#include "library/resource_ids.h"
#include "platform/framework/dialog.h"
#include "platform/window/pump.h"
#include "tests/docview/shell_fixture.h"

namespace {

/// Writes down what it hears.
class HearingView : public CView {
 public:
  std::string heard;

 private:
  void OnDraw(CDC*) override {}
  void OnUpdate(CView* sender, LPARAM hint, CObject* object) override {
    const auto number = static_cast<int>(reinterpret_cast<std::intptr_t>(object));
    heard += (sender == nullptr ? "" : "?") + std::to_string(hint) +
             (number != 0 ? ":" + std::to_string(number) : "") + " ";
  }
};

/// A host's pages, which tell when they are told.
class TellingPage : public CZPPage {
 public:
  static inline std::string told;
  int Activate(int bActivate) override {
    told += bActivate != 0 ? "+" : "-";
    return CZPPage::Activate(bActivate);
  }
};

class Document : public CZPDoc {
 public:
  using CZPDoc::GetFileFormat;
  using CZPDoc::m_nActivePage;

 private:
  CZPPage* CreatePage() override { return new TellingPage; }
};

class DocumentTest : public ShellTest {
 protected:
  void SetUp() override {
    ShellTest::SetUp();
    document.m_bAutoDelete = FALSE;
    document.AddView(&view);
    TellingPage::told.clear();
    Reports().clear();
    g_pfnReportError = [](int code, CString) { Reports().push_back(code); };
  }
  void TearDown() override {
    document.RemoveView(&view);
    ShellTest::TearDown();
  }
  static std::vector<int>& Reports() {
    static std::vector<int> reports;
    return reports;
  }
  /// And forgets it.
  std::string Heard() { return std::exchange(view.heard, ""); }
  int OpenMemory(const std::string& path, bool cut = false) {
    std::vector<BYTE> bytes = BytesOf(path);
    const int opened = document.OpenDocumentMemory(bytes.data(), static_cast<DWORD>(cut ? 20 : bytes.size()));
    std::fill(bytes.begin(), bytes.end(), BYTE{0});  // the block isn't needed any more
    return opened;
  }

  HearingView view;
  Document document;
};

TEST_F(DocumentTest, ANewOneIsEmpty) {
  EXPECT_EQ(document.GetPagesNum(), 0);
  EXPECT_EQ(document.GetActivePageNum(), -1);
  EXPECT_EQ(document.GetHBitmap(-1), nullptr);
  EXPECT_EQ(document.GetHBitmap(5), nullptr);
  EXPECT_EQ(document.ReleaseHBitmap(0), 0);
  EXPECT_EQ(document.Rotate(9000), 0);
  EXPECT_EQ(document.SetActivePage(0), 0);
  EXPECT_EQ(document.OnSaveDocument("x.tif"), 0);
  EXPECT_EQ(document.PrintDocument(nullptr, true, 0, -1), 0);
  EXPECT_EQ(Heard(), "");
}

/// In a loop the user and the host get their turn while the pages are decoded.
TEST_F(DocumentTest, AnOpenIsStoppedByEscapeAndOvertakenByAnother) {
  Page page{1200, 1200, 24};
  page.level = [](int x, int y) { return (x * 7919 + y * 104729 + x * y) >> 3 & 255; };
  const std::string path = File(std::vector<Page>(16, page));
  const std::string other = PagesFile(2);
  static std::function<void()> s_act;
  const auto open = [&](std::function<void()> act) {
    s_act = std::move(act);
    SetTimer(nullptr, 0, 30, [](HWND, UINT, std::uintptr_t id, DWORD) {
      KillTimer(nullptr, id);
      s_act();
    });
    const platform::LoopScope loop;
    return document.OnOpenDocument(path.c_str());
  };
  EXPECT_EQ(open([] { PostMessage(nullptr, WM_KEYDOWN, VK_ESCAPE, 0); }), 1);
  EXPECT_EQ(document.GetPagesNum(), 16);
  EXPECT_NE(document.GetHBitmap(0), nullptr);
  EXPECT_EQ(document.GetHBitmap(15), nullptr);
  EXPECT_EQ(open([&] { EXPECT_EQ(document.OnOpenDocument(other.c_str()), 1); }), 0);
  EXPECT_EQ(document.GetPagesNum(), 2);
  EXPECT_EQ(document.GetHBitmap(1)->Width, 120);
  EXPECT_STREQ(document.GetPathName(), other.c_str());
  EXPECT_TRUE(Reports().empty());
}

TEST_F(DocumentTest, APageThatCantBeDecodedStaysInItsPlace) {
  const std::string path = PagesFile(3, 2);
  for (const bool memory : {false, true}) {
    EXPECT_EQ(memory ? OpenMemory(path) : document.OnOpenDocument(path.c_str()), 1);
    EXPECT_EQ(Heard(), "0 ");
    EXPECT_EQ(document.GetPagesNum(), 3);
    EXPECT_EQ(document.GetActivePageNum(), 0);
    EXPECT_EQ(document.GetHBitmap(-1), document.GetHBitmap(0));
    EXPECT_EQ(document.GetHBitmap(2)->Width, 120);
    EXPECT_EQ(document.GetHBitmap(1), nullptr);
    EXPECT_EQ(document.SetActivePage(1), 1);
    EXPECT_EQ(document.Rotate(9000), 0);
    EXPECT_EQ(Heard(), "2 ");
    EXPECT_EQ(document.GetPageFormat(-1), document.GetPageFormat(0));
    EXPECT_NE(document.GetPageFormat(-1), -1);
    for (const int page : {-1, 3}) EXPECT_EQ(document.SetActivePage(page), 0) << page;
    EXPECT_EQ(Heard(), "");
    EXPECT_EQ(document.SetActivePage(2), 1);
    EXPECT_EQ(document.Rotate(-9000), 1);
    EXPECT_EQ(document.GetHBitmap(-1)->Width, 80);
    EXPECT_EQ(Heard(), "2 1:-1 ");
    EXPECT_STREQ(document.GetPathName(), memory ? "" : path.c_str());
    EXPECT_EQ(document.GetTitle().IsEmpty() != FALSE, memory);
  }
  EXPECT_TRUE(Reports().empty());
  EXPECT_FALSE(document.IsModified());

  EXPECT_EQ(document.OnOpenDocument(PagesFile(1, 1).c_str()), 0);
  EXPECT_EQ(Reports().size(), 1U) << "nothing can be seen of it, so the user is told why";
  EXPECT_NE(Reports()[0], 0) << "the service's own reason";
  EXPECT_EQ(document.GetPagesNum(), 1);
  EXPECT_EQ(document.GetActivePageNum(), 0);
  EXPECT_EQ(Heard(), "0 ");
}

TEST_F(DocumentTest, AFailedOpenLeavesAnEmptyDocument) {
  const std::string path = PagesFile(3);
  for (const bool memory : {false, true}) {
    document.OnOpenDocument(path.c_str());
    document.SetActivePage(2);
    Heard();
    Reports().clear();
    EXPECT_EQ(memory ? OpenMemory(path, true) : document.OnOpenDocument(TextFile().c_str()), 0);
    EXPECT_EQ(Heard(), "0 ");
    EXPECT_EQ(Reports().size(), 1U);
    EXPECT_EQ(document.GetPagesNum(), 0);
    EXPECT_EQ(document.GetActivePageNum(), -1);
    EXPECT_EQ(document.GetHBitmap(-1), nullptr);
    EXPECT_EQ(document.GetPageFormat(-1), -1);
    EXPECT_STREQ(document.GetPathName(), "") << "the same file can be opened again";
    document.PrintPage(-1);
    document.ShowPageInfo();
  }
  g_pfnReportError = nullptr;  // without a reporter the user is told in a box
  document.OnOpenDocument(TextFile().c_str());
  EXPECT_EQ(Boxes().size(), 1U);
}

TEST_F(DocumentTest, PagesAreToldWhetherTheyAreNeeded) {
  document.OnOpenDocument(PagesFile(3).c_str());
  document.SetActivePage(1);
  document.SetActivePage(1);
  EXPECT_EQ(TellingPage::told, "++");
  EXPECT_EQ(document.ReleaseHBitmap(1), 0);
  EXPECT_EQ(document.ReleaseHBitmap(-1), 0);
  EXPECT_EQ(document.ReleaseHBitmap(3), 0);
  EXPECT_EQ(TellingPage::told, "++");
  EXPECT_EQ(document.ReleaseHBitmap(2), 1);
  EXPECT_EQ(TellingPage::told, "++-");
}

TEST_F(DocumentTest, ThePropertiesAreThoseOfTheActivePage) {
  static std::vector<std::string> texts;
  const auto show = [this] {
    platform::testing::OnNextDialog([](HWND dialog) {
      texts.clear();
      for (const int id :
           {IDC_ZP_FILE_NAME, IDC_ZP_FILE_PATH, IDC_ZP_FILE_PAGES, IDC_ZP_PAGE_NUMBER, IDC_ZP_PAGE_BITS}) {
        CString text;
        static_cast<CDialog*>(CWnd::FromHandlePermanent(dialog))->GetDlgItem(id)->GetWindowText(text);
        texts.emplace_back(text);
      }
      static_cast<CDialog*>(CWnd::FromHandlePermanent(dialog))->EndDialog(IDOK);
    });
    document.ShowPageInfo();
  };
  const std::string path = File({Page{120, 80, 8}, Page{100, 50, 1}});
  document.OnOpenDocument(path.c_str());
  document.SetActivePage(1);
  show();
  const std::size_t cut = path.rfind('/') + 1;
  EXPECT_EQ(texts, (std::vector<std::string>{path.substr(cut), path.substr(0, cut), "2", "2", "1"}));
  OpenMemory(path);
  show();
  EXPECT_EQ(texts, (std::vector<std::string>{"", "", "2", "1", "8"}));
}

}  // namespace
