// Page commands, and what follows them.

#include "tests/frames/viewer_fixture.h"

namespace {

template <typename Frame>
class ViewerPages : public ViewerTestOf<Frame> {};
TYPED_TEST_SUITE(ViewerPages, BothFrames);

TYPED_TEST(ViewerPages, PageCommandsAndWhatFollowsThem) {
  this->Open(4);
  this->Command(ID_ZP_VIEW_THUMBNAILS);
  struct Case {
    UINT command;
    int page;
  };
  const Case cases[] = {{ID_ZP_NEXT_PAGE, 2}, {ID_ZP_NEXT_PAGE, 3}, {ID_ZP_PREV_PAGE, 2},
                        {ID_ZP_LAST_PAGE, 4}, {ID_ZP_NEXT_PAGE, 4}, {ID_ZP_FIRST_PAGE, 1},
                        {ID_ZP_PREV_PAGE, 1}};
  for (const Case& c : cases) {
    this->Command(c.command);
    EXPECT_EQ(this->Shown(), c.page) << c.command;
    EXPECT_EQ(this->frame->m_wndComboPage.GetCurSel(), c.page - 1) << c.command;
    EXPECT_EQ(this->PageText(), std::to_string(c.page)) << c.command;
    EXPECT_EQ(this->PagePane(), "Pagina " + std::to_string(c.page) + " of 4") << c.command;
    for (int i = 0; i < 4; ++i) {
      leadtools12::_LILITEM item{};
      item.uStructSize = sizeof item;
      LEADTOOLS::ImgListGetItem(this->frame->m_pThumbsWnd->m_hWnd, static_cast<unsigned>(i), &item);
      EXPECT_EQ(item.bSelected != 0, i == c.page - 1) << c.command << " item " << i;
    }
  }
  EXPECT_TRUE(Boxes::shown.empty()) << "a page that isn't there is refused silently";
}

TYPED_TEST(ViewerPages, AMiddlePageThatCannotBeDecodedLeavesTheDisplays) {
  ASSERT_TRUE(this->frame->OpenImageFile(this->WriteFile(3, 2).c_str()));
  this->Settle();
  this->Command(ID_ZP_NEXT_PAGE);
  EXPECT_EQ(Boxes::shown.size(), 1U);
  EXPECT_EQ(this->PagePane(), "Pagina 1 of 3");
  EXPECT_EQ(this->frame->m_wndComboPage.GetCurSel(), 0);
  EXPECT_TRUE(this->frame->m_wndComboPage.IsWindowEnabled());
  this->Command(ID_ZP_NEXT_PAGE);
  EXPECT_EQ(this->PagePane(), "Pagina 3 of 3") << "the way on isn't barred";
  EXPECT_EQ(Boxes::shown.size(), 1U);
}

TYPED_TEST(ViewerPages, TheWheelTurnsPagesAsFarAsTheyGo) {
  this->Open(2);
  struct Case {
    int delta;
    int page;
  };
  for (const Case& c : {Case{-120, 2}, Case{-120, 2}, Case{120, 1}, Case{120, 1}}) {
    platform::testing::TurnWheel(this->frame->m_pImageWnd->m_hWnd, {20, 20}, c.delta, false, false, true);
    this->Settle();
    EXPECT_EQ(this->Shown(), c.page);
    EXPECT_EQ(this->PageText(), std::to_string(c.page));
    EXPECT_EQ(this->PagePane(), "Pagina " + std::to_string(c.page) + " of 2");
  }
  EXPECT_TRUE(Boxes::shown.empty());
}

}  // namespace
