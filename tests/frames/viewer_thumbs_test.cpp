// The column of thumbnails in the frame: when it is filled, what it shows, what a click in it does.

#include "tests/frames/viewer_fixture.h"

namespace {

class ViewerThumbs : public ViewerTest {
 protected:
  int Items() const { return LEADTOOLS::ImgListGetItemCount(frame->m_pThumbsWnd->m_hWnd); }
  /// Number of the selected picture from 1; -1 if it isn't one alone.
  int Selected() const {
    int found = 0;
    for (int i = 0; i < Items(); ++i) {
      leadtools12::_LILITEM item{};
      item.uStructSize = sizeof item;
      LEADTOOLS::ImgListGetItem(frame->m_pThumbsWnd->m_hWnd, static_cast<unsigned>(i), &item);
      if (item.bSelected != 0) found = found == 0 ? i + 1 : -1;
    }
    return found;
  }
  void Toggle() { Command(ID_ZP_VIEW_THUMBNAILS); }
  BOOL Notify(UINT code, int index) {
    leadtools12::_LILPICKED picked{};
    picked.nIndex = index;
    return static_cast<BOOL>(frame->m_wndSplitter.SendMessage(
        WM_COMMAND, MAKEWPARAM(frame->m_wndSplitter.IdFromRowCol(0, 0), code),
        reinterpret_cast<LPARAM>(&picked)));
  }
};

TEST_F(ViewerThumbs, AreMadeOnFirstShowingAndNotAnew) {
  Open(3);
  EXPECT_EQ(Items(), 0);
  EXPECT_FALSE(frame->m_bThumbsCreated);
  Command(ID_ZP_NEXT_PAGE);
  Toggle();
  EXPECT_EQ(Items(), 3);
  EXPECT_EQ(Selected(), 2) << "the page that is shown";
  EXPECT_TRUE(frame->m_pThumbsWnd->IsWindowVisible());
  void* list = frame->m_pThumbsWnd->m_pBitmapList;
  Toggle();
  EXPECT_FALSE(frame->m_pThumbsWnd->IsWindowVisible());
  Command(ID_ZP_LAST_PAGE);
  EXPECT_EQ(Selected(), 2) << "hidden: left alone";
  Toggle();
  EXPECT_EQ(frame->m_pThumbsWnd->m_pBitmapList, list);
  EXPECT_EQ(Selected(), 3);
}

TEST_F(ViewerThumbs, FollowTheNextFile) {
  Toggle();
  EXPECT_TRUE(frame->m_bThumbsCreated) << "nothing open: nothing to make";
  EXPECT_EQ(Items(), 0);
  Open(2);
  EXPECT_EQ(Items(), 2) << "shown: made at once";
  EXPECT_EQ(Selected(), 1);
  Toggle();
  Open(4);
  EXPECT_FALSE(frame->m_bThumbsCreated);
  Toggle();
  EXPECT_EQ(Items(), 4) << "not those of the file before";
  EXPECT_FALSE(frame->OpenImageFile(WriteText("broken.tif").c_str()));
  EXPECT_EQ(Items(), 0);
}

TEST_F(ViewerThumbs, ClicksChangeThePage) {
  Open(3);
  Toggle();
  Command(ID_ZP_LAST_PAGE);
  CRect strip;
  frame->m_pThumbsWnd->GetClientRect(strip);
  Click(*frame->m_pThumbsWnd, {strip.Width() / 2, 40});
  EXPECT_EQ(Shown(), 1);
  EXPECT_EQ(PagePane(), "Pagina 1 of 3");
  EXPECT_EQ(PageText(), "1");
  EXPECT_EQ(Selected(), 1);
}

TEST_F(ViewerThumbs, OnlyPicksCount) {
  Open(3);
  Toggle();
  for (const UINT code : {0U, 1U, 9U, 1023U, 1025U}) {
    EXPECT_TRUE(Notify(code, 2)) << code;
    EXPECT_EQ(Shown(), 1) << code;
  }
  EXPECT_TRUE(Notify(1024, 2));
  EXPECT_EQ(Shown(), 3);
  EXPECT_TRUE(Notify(1024, 7)) << "no such page";
  EXPECT_EQ(PagePane(), "Pagina 3 of 3");
}

TEST_F(ViewerThumbs, APickOfThePageShownLoadsNothing) {
  Open(2);
  Toggle();
  frame->m_pImageWnd->Rotate(90, false);
  ASSERT_EQ(frame->m_pImageWnd->m_Bitmap.Width, 80);
  EXPECT_TRUE(Notify(1024, 0));
  EXPECT_EQ(frame->m_pImageWnd->m_Bitmap.Width, 80) << "loaded anew it would lie again";
}

TEST_F(ViewerThumbs, OneBadPageCostsTheStripNotTheView) {
  Toggle();
  ASSERT_TRUE(frame->OpenImageFile(WriteFile(3, 2).c_str()));
  Settle();
  EXPECT_EQ(Boxes::shown.size(), 1U);
  EXPECT_EQ(Items(), 0);
  EXPECT_EQ(PagePane(), "Pagina 1 of 3");
}

TEST_F(ViewerThumbs, ComeFromMemoryToo) {
  std::vector<char> block = ReadAll(WriteFile(2));
  ASSERT_TRUE(frame->OpenImageMemory(block.data(), block.size()));
  Toggle();
  EXPECT_EQ(Items(), 2);
  EXPECT_EQ(Selected(), 1);
}

TEST_F(ViewerThumbs, TheColumnComesBackAsWideAsItWas) {
  Open(2);
  Toggle();
  CRect before;
  frame->m_pThumbsWnd->GetWindowRect(before);
  EXPECT_GE(before.Width(), 120);
  Toggle();
  CRect whole;
  frame->m_pImageWnd->GetWindowRect(whole);
  Toggle();
  CRect after;
  frame->m_pThumbsWnd->GetWindowRect(after);
  EXPECT_EQ(after, before);
  CRect part;
  frame->m_pImageWnd->GetWindowRect(part);
  EXPECT_LT(part.Width(), whole.Width());
}

}  // namespace
