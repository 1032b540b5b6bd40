// The strip by itself: sizes, captions, selection, failures.

#include "platform/framework/frame_wnd.h"
#include "tests/frames/viewer_fixture.h"
#include "thumbs/thumb_size.h"

namespace {

class Thumbs : public ViewerFolder {
 protected:
  void SetUp() override {
    ViewerFolder::SetUp();
    frame = new CFrameWnd;  // deletes itself with its window
    ASSERT_TRUE(frame->Create(nullptr, "host", WS_OVERLAPPEDWINDOW, CRect(0, 0, 400, 300)));
    frame->ShowWindow(SW_SHOW);
    strip = std::make_unique<CThumbsWindow>();
    ASSERT_TRUE(strip->Create("of no account", "", WS_CHILD | WS_VISIBLE, CRect(0, 0, 140, 250), frame, 5));
  }
  void TearDown() override {
    strip.reset();
    frame->DestroyWindow();
    ViewerFolder::TearDown();
  }
  std::string Write(const std::vector<Page>& pages) {
    const std::string path = (m_folder / "thumbs.tif").string();
    test_pages::Write(path, pages);
    return path;
  }
  int Items() const { return LEADTOOLS::ImgListGetItemCount(strip->m_hWnd); }
  leadtools12::_LILITEM Item(int index) const {
    leadtools12::_LILITEM item{};
    item.uStructSize = sizeof item;
    LEADTOOLS::ImgListGetItem(strip->m_hWnd, static_cast<unsigned>(index), &item);
    return item;
  }
  /// "1" for each selected picture, "0" for each other.
  std::string Selection() const {
    std::string all;
    for (int i = 0; i < Items(); ++i) all += Item(i).bSelected != 0 ? "1" : "0";
    return all;
  }

  CFrameWnd* frame = nullptr;
  std::unique_ptr<CThumbsWindow> strip;
};

TEST_F(Thumbs, HaveTheSizesAndDepthsOfTheirPages) {
  const std::string path =
      Write({{1000, 800, 8}, {800, 1000, 8}, {800, 800, 8}, {1000, 800}, {300, 100, 24}});
  struct Case {
    int width;
    int height;
    int bits;
  };
  const Case cases[] = {{107, 85, 8}, {63, 79, 8}, {79, 79, 8}, {107, 85, 8}, {107, 35, 24}};
  std::vector<char> block = ReadAll(path);
  for (const bool memory : {false, true}) {
    if (memory)
      strip->CreateThumbsMemory(block.data(), static_cast<int>(block.size()));
    else
      strip->CreateThumbsFile(path.c_str());
    ASSERT_EQ(Items(), 5);
    for (int i = 0; i < 5; ++i) {
      leadtools12::struct_LEAD_Bitmap picture{};
      LEADTOOLS::GetBitmapListItem(strip->m_pBitmapList, static_cast<unsigned>(i), &picture);
      EXPECT_EQ(picture.Width, cases[i].width) << i;
      EXPECT_EQ(picture.Height, cases[i].height) << i;
      EXPECT_EQ(picture.BitsPerPixel, cases[i].bits) << i;
      EXPECT_EQ(std::string(Item(i).pszText), (memory ? "Page " : "Pagina ") + std::to_string(i + 1));
    }
    EXPECT_EQ(Selection(), "10000");
  }
}

TEST_F(Thumbs, SelectionIsOfOneItemAlone) {
  strip->SetSel(1);  // nothing there yet
  EXPECT_EQ(Items(), 0);
  strip->CreateThumbsFile(Write(std::vector<Page>(9, Page{100, 80, 8})).c_str());
  for (const int page : {5, 9, 1}) {
    strip->SetSel(page);
    std::string wanted(9, '0');
    wanted[static_cast<std::size_t>(page - 1)] = '1';
    EXPECT_EQ(Selection(), wanted);
  }
  EXPECT_EQ(LEADTOOLS::ImgListGetPage(strip->m_hWnd), 1) << "the first screenful";
  strip->SetSel(9);
  EXPECT_NE(LEADTOOLS::ImgListGetPage(strip->m_hWnd), 1) << "brought into view";
  for (const int page : {0, -1, 10}) {
    strip->SetSel(page);
    EXPECT_EQ(Selection(), "000000001") << page << ": no such page";
  }
}

TEST_F(Thumbs, ANewFileTakesThePlaceOfTheOld) {
  strip->CreateThumbsFile(Write(std::vector<Page>(3, Page{100, 80, 8})).c_str());
  strip->SetSel(3);
  strip->CreateThumbsFile(Write(std::vector<Page>(2, Page{100, 80, 8})).c_str());
  EXPECT_EQ(Selection(), "10");
}

TEST_F(Thumbs, AFailureIsToldAndLeavesTheStripEmpty) {
  const std::string good = Write({{100, 80, 8}});
  const std::string damaged = WriteFile(3, 2);
  const std::string needle = (m_folder / "needle.tif").string();
  test_pages::Write(needle, {{4000, 3, 8}});
  for (const bool memory : {false, true})
    for (const auto& path : {damaged, needle, WriteText("broken.tif")}) {
      strip->CreateThumbsFile(good.c_str());
      ASSERT_EQ(Items(), 1);
      Boxes::shown.clear();
      std::vector<char> block = ReadAll(path);
      if (memory)
        strip->CreateThumbsMemory(block.data(), static_cast<int>(block.size()));
      else
        strip->CreateThumbsFile(path.c_str());
      EXPECT_EQ(Items(), 0) << path << memory;
      ASSERT_EQ(Boxes::shown.size(), 1U) << path << memory;
      EXPECT_FALSE(Boxes::shown[0].first.empty()) << path;
      EXPECT_EQ(Boxes::shown[0].second, UINT{MB_OK}) << path;
      EXPECT_STREQ(platform::testing::LastMessageBoxTitle(), "Error");
      strip->SetSel(1);
    }
}

// The pictures of a long file are made as they come into view: it is there at once, and a damaged page costs
// its picture alone.
TEST_F(Thumbs, ALongFileIsShownAsItIsLookedAt) {
  constexpr int kPages = 1400;  // more pictures than are held at once
  const std::string path = WriteFile(kPages, 1300);
  strip->CreateThumbsFile(path.c_str());
  ASSERT_EQ(Items(), kPages);
  EXPECT_TRUE(Boxes::shown.empty());
  UpdateWindow(strip->m_hWnd);
  const auto sizeInList = [this](unsigned index) {
    leadtools12::struct_LEAD_Bitmap picture{};
    LEADTOOLS::GetBitmapListItem(strip->m_pBitmapList, index, &picture);
    return std::pair(picture.Width, picture.Height);
  };
  const auto first = sizeInList(0);
  for (unsigned i = 0; i < kPages; ++i)
    EXPECT_EQ(sizeInList(i), i == 1299 ? std::pair(thumbs::kLandscapeWidth, thumbs::kPortraitHeight) : first);
  EXPECT_EQ(sizeInList(0), first) << "made again after it was given up";
  for (const int page : {1400, 700}) {
    strip->SetSel(page);
    UpdateWindow(strip->m_hWnd);
    EXPECT_EQ(Item(page - 1).bSelected, 1);
    EXPECT_EQ(Item(page - 2).bSelected, 0);
    EXPECT_EQ(std::string(Item(page - 1).pszText), "Pagina " + std::to_string(page));
    ASSERT_NE(Item(page - 1).pBitmap, nullptr);
    EXPECT_EQ(Item(page - 1).pBitmap->Width, first.first);
  }
  LEADTOOLS::DestroyBitmapList(strip->m_pBitmapList);
  strip->m_pBitmapList = nullptr;
  strip->Invalidate();
  UpdateWindow(strip->m_hWnd);  // without its list there is nothing to draw
  EXPECT_EQ(Item(3).pBitmap, nullptr);
}

}  // namespace
