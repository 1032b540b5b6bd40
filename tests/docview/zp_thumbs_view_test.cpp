// The strip of a document: pictures, hints, failures.

#include "docview/zp_thumbs_view.h"

#include "docview/zp_doc.h"
#include "imaging/pixels/storage.h"
#include "platform/framework/frame_wnd.h"
#include "platform/graphics/gdi.h"
#include "tests/frames/viewer_fixture.h"

namespace {

/// A host's page: it can do without its pixels, and tells what becomes of it.
class HostPage : public CZPPage {
 public:
  int Activate(int bActivate) override {
    if (bActivate == 0) ++released;
    return CZPPage::Activate(bActivate);
  }
  struct_LEAD_Bitmap* GetHBitmap() override { return empty != nullptr ? empty : CZPPage::GetHBitmap(); }

  int released = 0;
  struct_LEAD_Bitmap* empty = nullptr;  ///< shown in the place of the page
};

class TestDocument : public CZPDoc {
 public:
  TestDocument() { m_bAutoDelete = FALSE; }
  HostPage& Page(int index) { return *static_cast<HostPage*>(m_arrPages[index]); }
  using CZPDoc::m_nActivePage;

 protected:
  CZPPage* CreatePage() override { return new HostPage; }
};

class TestStrip : public CZPThumbsView {
 public:
  using CZPThumbsView::OnUpdate;
};

class DocumentThumbs : public ViewerFolder {
 protected:
  void SetUp() override {
    ViewerFolder::SetUp();
    frame = new CFrameWnd;  // deletes itself with its window, as the strip does
    ASSERT_TRUE(frame->Create(nullptr, "host", WS_OVERLAPPEDWINDOW, CRect(0, 0, 400, 500)));
    frame->ShowWindow(SW_SHOW);
    CCreateContext context;
    context.m_pCurrentDoc = &document;
    strip = MakeStrip(&context);
  }
  void TearDown() override {
    frame->DestroyWindow();
    ViewerFolder::TearDown();
  }
  TestStrip* MakeStrip(CCreateContext* context) const {
    auto* made = new TestStrip;
    EXPECT_TRUE(made->Create(nullptr, "", WS_CHILD | WS_VISIBLE, CRect(0, 0, 160, 380), frame, 5, context));
    made->SendMessage(WM_INITIALUPDATE);
    return made;
  }

  BOOL Open(const std::vector<Page>& pages, int broken = 0) {
    const std::string path = (m_folder / "document.tif").string();
    test_pages::Write(path, pages);
    if (broken > 0) test_pages::BreakPage(path, broken);
    return document.OnOpenDocument(path.c_str());
  }
  void Hint(int hint, int number = 0) {
    document.UpdateAllViews(nullptr, hint, reinterpret_cast<CObject*>(static_cast<std::intptr_t>(number)));
  }
  int Items() const { return LEADTOOLS::ImgListGetItemCount(strip->m_hWnd); }
  _LILITEM Item(int index) const {
    _LILITEM item{};
    LEADTOOLS::ImgListGetItem(strip->m_hWnd, static_cast<unsigned>(index), &item);
    return item;
  }
  /// "108x80, 24 bits"
  std::string Form(int index) const {
    const struct_LEAD_Bitmap& picture = *Item(index).pBitmap;
    return std::to_string(picture.Width) + "x" + std::to_string(picture.Height) + ", " +
           std::to_string(picture.BitsPerPixel) + " bits";
  }
  /// Stays the same as long as the item gets no other picture.
  std::uint64_t Picture(int index) const { return Item(index).pBitmap->pStorage->Serial(); }
  /// "1" for each selected picture, "0" for each other.
  std::string Selection() const {
    std::string all;
    for (int i = 0; i < Items(); ++i) all += Item(i).bSelected != 0 ? "1" : "0";
    return all;
  }

  TestDocument document;
  CFrameWnd* frame = nullptr;
  TestStrip* strip = nullptr;
};

struct Case {
  test_pages::Page page;
  const char* form;
};
const std::vector<Case>& Cases() {
  static const std::vector<Case> cases = {
      {{1000, 800, 8}, "108x86, 8 bits"},   {{800, 1000, 8}, "64x80, 8 bits"},
      {{1000, 1000, 24}, "80x80, 24 bits"}, {{5000, 20, 8}, "108x1, 8 bits"},
      {{20, 5000, 8}, "1x80, 8 bits"},      {{100, 90, 24}, "108x97, 24 bits"},
      {{1000, 800, 1}, "108x86, 8 bits"},  // shades
      {{60, 50, 1}, "108x90, 1 bits"},      {{108, 80, 1}, "108x80, 1 bits"},
      {{5000, 20, 1}, "108x1, 8 bits"}};
  return cases;
}

// Both roads to a picture: the list's, by a copy of the page, and that of a single change.
TEST_F(DocumentThumbs, FitTheLongerSideAtTheOwnDepth) {
  std::vector<Page> pages;
  for (const Case& c : Cases()) pages.push_back(c.page);
  ASSERT_TRUE(Open(pages));
  const int count = static_cast<int>(pages.size());
  ASSERT_EQ(Items(), count);
  for (int i = 0; i < count; ++i) {
    EXPECT_EQ(Form(i), Cases()[static_cast<std::size_t>(i)].form) << i;
    EXPECT_EQ(std::string(Item(i).pszText), "Pagina " + std::to_string(i + 1));
    const std::uint64_t first = Picture(i);
    Hint(1, i);
    EXPECT_NE(Picture(i), first) << i;
    EXPECT_EQ(Form(i), Cases()[static_cast<std::size_t>(i)].form) << i << ", anew";
    EXPECT_EQ(std::string(Item(i).pszText), "Pagina " + std::to_string(i + 1));
  }
  EXPECT_EQ(Selection(), "1000000000");
  EXPECT_TRUE(Boxes::shown.empty());
  _LILITEMOPTION cells{};
  LEADTOOLS::ImgListGetItemOptions(strip->m_hWnd, &cells);
  EXPECT_EQ(cells.ItemWidth, 115);
  EXPECT_EQ(cells.ItemHeight, 115);
}

TEST_F(DocumentThumbs, AnUndecodablePageIsACrossedBox) {
  ASSERT_TRUE(Open({{200, 100, 1}, {200, 100, 8}, {200, 100, 24}}, 2));
  ASSERT_EQ(Items(), 3);
  EXPECT_EQ(Form(1), "108x80, 24 bits");
  EXPECT_STREQ(Item(1).pszText, "Pagina 2");
  const struct {
    int x, y, level;
  } cases[] = {{0, 0, 0},    {107, 0, 0},   {107, 79, 0}, {1, 79, 0},    {0, 79, 158},
               {54, 0, 158}, {54, 79, 158}, {0, 40, 158}, {107, 40, 158}};
  const imaging::PixelStorage& pixels = *Item(1).pBitmap->pStorage;
  for (const auto& c : cases)
    for (int i = 0; i < 3; ++i) EXPECT_EQ(pixels.HeldRow(c.y)[3 * c.x + i], c.level) << c.x << ", " << c.y;
  const std::uint64_t before = Picture(1);
  Hint(1, 1);
  EXPECT_EQ(Picture(1), before);
  EXPECT_NE(document.SetActivePage(1), 0);
  EXPECT_EQ(document.Rotate(9000), 0);
  EXPECT_EQ(Selection(), "010");
  EXPECT_EQ(Form(0), "108x54, 8 bits");
  EXPECT_EQ(Form(2), "108x54, 24 bits");
  EXPECT_TRUE(Boxes::shown.empty());
}

TEST_F(DocumentThumbs, APageThatWasTurnedGetsANewPicture) {
  const auto leftIsDark = [](int x, int) { return x < 500 ? 0 : 255; };
  for (const int bits : {1, 8, 24}) {
    ASSERT_TRUE(Open({{300, 200, 8}, {1000, 800, bits, 0, 0, leftIsDark}}));
    document.SetActivePage(1);
    const std::uint64_t other = Picture(0);
    ASSERT_EQ(document.Rotate(9000), 1);
    EXPECT_EQ(Form(1), bits == 24 ? "64x80, 24 bits" : "64x80, 8 bits");
    EXPECT_EQ(Picture(0), other) << "the other page's is made anew";
    EXPECT_EQ(Selection(), "01");
    const struct_LEAD_Bitmap& picture = *Item(1).pBitmap;
    const imaging::PixelStorage& pixels = *picture.pStorage;
    const int red = picture.Order == 0 ? 0 : 2;
    const auto level = [&](int y) {
      if (bits == 24) return int{pixels.HeldRow(y)[32 * 3 + red]};
      return int{pixels.Palette()[pixels.HeldRow(y)[32]].rgbRed};
    };
    EXPECT_EQ(level(10), 0) << bits << ": what was left is above";
    EXPECT_EQ(level(70), 255) << bits;
  }
  EXPECT_TRUE(Boxes::shown.empty());
}

TEST_F(DocumentThumbs, FollowTheActivePage) {
  ASSERT_TRUE(Open(std::vector<Page>(9, Page{100, 80, 8})));
  EXPECT_EQ(LEADTOOLS::ImgListGetPage(strip->m_hWnd), 1);
  for (const int page : {8, 0, 4}) {
    const std::uint64_t picture = Picture(page);
    ASSERT_NE(document.SetActivePage(page), 0);
    std::string wanted(9, '0');
    wanted[static_cast<std::size_t>(page)] = '1';
    EXPECT_EQ(Selection(), wanted);
    EXPECT_EQ(Picture(page), picture);
    const bool atTop = LEADTOOLS::ImgListGetPage(strip->m_hWnd) == 1;
    EXPECT_TRUE(page == 4 || atTop == (page == 0)) << page << " was brought into view";
  }
  for (const int hint : {3, -1, 1000}) {
    document.m_nActivePage = 2;
    Hint(hint);
    EXPECT_EQ(Selection(), "000010000") << hint << ": no hint of ours";
  }
  document.m_nActivePage = -1;
  Hint(2);
  EXPECT_EQ(Selection(), "000000000") << "no active page";
  strip->EnsureVisible(-1);
  strip->EnsureVisible(9);
  EXPECT_TRUE(Boxes::shown.empty());
}

TEST_F(DocumentThumbs, APickSelectsThatPictureAlone) {
  ASSERT_TRUE(Open({{100, 80, 8}, {100, 80, 8}}));
  platform::testing::PressMouse(strip->m_hWnd, {60, 160});
  platform::testing::ReleaseMouse(strip->m_hWnd, {60, 160});
  platform::testing::PumpUntilIdle();
  EXPECT_EQ(Selection(), "01");
}

TEST_F(DocumentThumbs, AFailedOpenLeavesNothing) {
  ASSERT_TRUE(Open({{100, 80, 8}, {100, 80, 8}}));
  EXPECT_FALSE(document.OnOpenDocument(WriteText("broken.tif").c_str()));
  EXPECT_EQ(Items(), 0);
  EXPECT_EQ(Boxes::shown.size(), 1U) << "by the document alone";
  Hint(1, -1);
  Hint(1, 0);
  Hint(2);
  EXPECT_EQ(Boxes::shown.size(), 1U);
  ASSERT_TRUE(Open({{100, 80, 8}}));
  EXPECT_EQ(Selection(), "1");
}

TEST_F(DocumentThumbs, AFailureIsReportedAndKeepsWhatWasMade) {
  ASSERT_TRUE(Open(std::vector<Page>(4, Page{100, 80, 8})));
  struct_LEAD_Bitmap nothing{};
  document.Page(2).empty = &nothing;
  Hint(0);
  ASSERT_EQ(Boxes::shown.size(), 1U);
  EXPECT_EQ(Boxes::shown[0].first, "Error ZP-002: Non c'è alcuna immagine su cui operare");
  EXPECT_EQ(Selection(), "00");
  document.SetActivePage(1);
  EXPECT_EQ(Selection(), "01");
  document.SetActivePage(3);
  EXPECT_EQ(Selection(), "00") << "a page without an item";
  EXPECT_EQ(Boxes::shown.size(), 1U);

  document.Page(1).empty = &nothing;
  const std::uint64_t before = Picture(1);
  Hint(1, 1);
  EXPECT_EQ(Boxes::shown.size(), 2U);
  EXPECT_EQ(Picture(1), before);
}

TEST_F(DocumentThumbs, PagesAreReleasedAfterUse) {
  ASSERT_TRUE(Open(std::vector<Page>(3, Page{100, 80, 8}), 3));
  for (const int page : {0, 1, 2})
    EXPECT_EQ(document.Page(page).released, page == 0 ? 0 : 1) << page << " of a list; not the active one";
  Hint(1, 1);
  EXPECT_EQ(document.Page(1).released, 2);
  struct_LEAD_Bitmap nothing{};
  document.Page(1).empty = &nothing;
  Hint(1, 1);
  EXPECT_EQ(document.Page(1).released, 3) << "after a failure";
}

// The page's palette is the page's, whichever way its picture is made.
TEST_F(DocumentThumbs, LeaveThePagesPalettesAlone) {
  ASSERT_TRUE(Open({{1000, 800, 8}, {1000, 800, 1}}));
  for (const int page : {0, 1}) {
    struct_LEAD_Bitmap* const bitmap = document.GetHBitmap(page);
    bitmap->hPalette = LEADTOOLS::CreatePaintPalette(nullptr, bitmap);
    Hint(0);
    Hint(1, page);
    EXPECT_EQ(GetObjectType(bitmap->hPalette), DWORD{OBJ_PAL}) << page;
    DeleteObject(bitmap->hPalette);
  }
}

TEST_F(DocumentThumbs, AThousandPagesAreMadeAnew) {
  const std::vector<Page> pages(1000, Page{64, 48, 1});
  for (int i = 0; i < 2; ++i) {
    ASSERT_TRUE(Open(pages));
    ASSERT_EQ(Items(), 1000);
    document.SetActivePage(999);
    EXPECT_EQ(Item(999).bSelected, 1);
    EXPECT_NE(LEADTOOLS::ImgListGetPage(strip->m_hWnd), 1) << "brought into view";
  }
  Hint(0);
  EXPECT_EQ(Items(), 1000);
  EXPECT_EQ(Item(0).bSelected, 0);
  EXPECT_EQ(Item(999).bSelected, 1) << "the active page, not the first";
  EXPECT_STREQ(Item(999).pszText, "Pagina 1000");
}

TEST_F(DocumentThumbs, WithoutADocumentThereIsNothing) {
  TestStrip* const lone = MakeStrip(nullptr);
  for (const int hint : {0, 1, 2}) lone->OnUpdate(nullptr, hint, nullptr);
  EXPECT_EQ(LEADTOOLS::ImgListGetItemCount(lone->m_hWnd), 0);
}

}  // namespace
