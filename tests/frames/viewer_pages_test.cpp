// Page commands, and what follows them.

#include "tests/frames/viewer_fixture.h"

namespace {

TEST_F(ViewerTest, PageCommandsAndWhatFollowsThem) {
  Open(4);
  Command(ID_ZP_VIEW_THUMBNAILS);
  struct Case {
    UINT command;
    int page;
  };
  const Case cases[] = {{ID_ZP_NEXT_PAGE, 2}, {ID_ZP_NEXT_PAGE, 3}, {ID_ZP_PREV_PAGE, 2},
                        {ID_ZP_LAST_PAGE, 4}, {ID_ZP_NEXT_PAGE, 4}, {ID_ZP_FIRST_PAGE, 1},
                        {ID_ZP_PREV_PAGE, 1}};
  for (const Case& c : cases) {
    Command(c.command);
    EXPECT_EQ(Shown(), c.page) << c.command;
    EXPECT_EQ(frame->m_wndComboPage.GetCurSel(), c.page - 1) << c.command;
    EXPECT_EQ(PageText(), std::to_string(c.page)) << c.command;
    EXPECT_EQ(PagePane(), "Pagina " + std::to_string(c.page) + " of 4") << c.command;
    for (int i = 0; i < 4; ++i) {
      leadtools12::_LILITEM item{};
      item.uStructSize = sizeof item;
      LEADTOOLS::ImgListGetItem(frame->m_pThumbsWnd->m_hWnd, static_cast<unsigned>(i), &item);
      EXPECT_EQ(item.bSelected != 0, i == c.page - 1) << c.command << " item " << i;
    }
  }
  EXPECT_TRUE(Boxes::shown.empty()) << "a page that isn't there is refused silently";
}

TEST_F(ViewerTest, AMiddlePageThatCannotBeDecodedLeavesTheDisplays) {
  ASSERT_TRUE(frame->OpenImageFile(WriteFile(3, 2).c_str()));
  Settle();
  Command(ID_ZP_NEXT_PAGE);
  EXPECT_EQ(Boxes::shown.size(), 1U);
  EXPECT_EQ(PagePane(), "Pagina 1 of 3");
  EXPECT_EQ(frame->m_wndComboPage.GetCurSel(), 0);
  EXPECT_TRUE(frame->m_wndComboPage.IsWindowEnabled());
  Command(ID_ZP_NEXT_PAGE);
  EXPECT_EQ(PagePane(), "Pagina 3 of 3") << "the way on isn't barred";
  EXPECT_EQ(Boxes::shown.size(), 1U);
}

TEST_F(ViewerTest, TheWheelTurnsPagesAsFarAsTheyGo) {
  Open(2);
  struct Case {
    int delta;
    int page;
  };
  for (const Case& c : {Case{-120, 2}, Case{-120, 2}, Case{120, 1}, Case{120, 1}}) {
    platform::testing::TurnWheel(frame->m_pImageWnd->m_hWnd, {20, 20}, c.delta, false, false, true);
    Settle();
    EXPECT_EQ(Shown(), c.page);
    EXPECT_EQ(PageText(), std::to_string(c.page));
    EXPECT_EQ(PagePane(), "Pagina " + std::to_string(c.page) + " of 2");
  }
  EXPECT_TRUE(Boxes::shown.empty());
}

}  // namespace
