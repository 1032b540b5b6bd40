// Both combos under real keys: what is let through, Enter, Escape, picks from the list.

#include "tests/frames/viewer_fixture.h"

namespace {

TEST_F(ViewerTest, TypedPages) {
  struct Case {
    const char* typed;
    int key;
    int page;
    const char* text;  ///< afterwards
    bool focusStays;
    const char* box;
  };
  const char* refusal = "Numero di pagina non valido. Deve essere compreso tra 1 e 12";
  const Case cases[] = {
      {"7", VK_RETURN, 7, "7", true, nullptr},   {"a1%2-", VK_RETURN, 12, "12", true, nullptr},
      {"0", VK_RETURN, 3, "0", true, refusal},   {"13", VK_RETURN, 3, "13", true, refusal},
      {"xyz", VK_RETURN, 3, "3", true, nullptr},  // nothing arrives: the text that stood there counts
      {"3", VK_RETURN, 3, "3", true, nullptr},   {"1234", VK_RETURN, 3, "123", true, refusal},
      {"5", VK_ESCAPE, 3, "3", false, nullptr},  {"99", VK_ESCAPE, 3, "3", false, nullptr},
  };
  for (const Case& c : cases) {
    Open(12);
    Command(ID_ZP_NEXT_PAGE);
    Command(ID_ZP_NEXT_PAGE);
    Boxes::shown.clear();
    Type(frame->m_wndComboPage, c.typed, c.key);
    EXPECT_EQ(Shown(), c.page) << c.typed;
    EXPECT_EQ(PagePane(), "Pagina " + std::to_string(c.page) + " of 12") << c.typed;
    EXPECT_EQ(PageText(), c.text) << c.typed;
    EXPECT_EQ(::GetFocus(), c.focusStays ? frame->m_wndComboPage.m_hWnd : frame->m_pImageWnd->m_hWnd)
        << c.typed;
    ASSERT_EQ(Boxes::shown.size(), c.box == nullptr ? 0U : 1U) << c.typed;
    if (c.box != nullptr) {
      EXPECT_EQ(Boxes::shown[0].first, c.box);
      EXPECT_EQ(Boxes::shown[0].second, UINT{MB_ICONEXCLAMATION});
    }
    frame->m_pImageWnd->SetFocus();
    EXPECT_EQ(PageText(), std::to_string(c.page)) << c.typed << ": what was left typed goes with the focus";
  }
}

TEST_F(ViewerTest, AnEmptyPageFieldIsNoPage) {
  Open(3);
  frame->m_wndComboPage.SetFocus();
  frame->m_wndComboPage.SetEditSel(0, -1);
  platform::testing::PressKey(frame->m_wndComboPage.m_hWnd, VK_BACK);
  Settle();
  EXPECT_EQ(PageText(), "");
  platform::testing::PressKey(frame->m_wndComboPage.m_hWnd, VK_RETURN);
  Settle();
  ASSERT_EQ(Boxes::shown.size(), 1U);
  EXPECT_EQ(Boxes::shown[0].first, "Numero di pagina non valido. Deve essere compreso tra 1 e 3");
}

TEST_F(ViewerTest, TypedScales) {
  struct Case {
    const char* typed;
    int key;
    int percent;
  };
  const Case cases[] = {
      {"50", VK_RETURN, 50},    {"50%", VK_RETURN, 50}, {"a3b3%", VK_RETURN, 33},   {"1000", VK_RETURN, 1000},
      {"1001", VK_RETURN, 75},  {"0", VK_RETURN, 75},   {"%", VK_RETURN, 75},       {"20%%", VK_RETURN, 20},
      {"9999%", VK_RETURN, 75}, {"40", VK_ESCAPE, 75},  {"1000%", VK_RETURN, 1000},
  };
  for (const Case& c : cases) {
    Open(1);
    frame->m_pImageWnd->ZoomToScaleFactor(0.75);
    Settle();
    Type(frame->m_wndComboScale, c.typed, c.key);
    EXPECT_EQ(Percent(), c.percent) << c.typed;
    EXPECT_EQ(ScaleText(), std::to_string(c.percent) + "%") << c.typed;
    EXPECT_EQ(::GetFocus(), frame->m_pImageWnd->m_hWnd) << c.typed;
    EXPECT_TRUE(Boxes::shown.empty()) << c.typed;
  }
}

TEST_F(ViewerTest, AnEmptyScaleFieldTakesTheFirstEntry) {
  Open(1);
  HWND combo = frame->m_wndComboScale.m_hWnd;
  frame->m_wndComboScale.SetFocus();
  frame->m_wndComboScale.SetEditSel(0, -1);
  platform::testing::PressKey(combo, VK_DELETE);
  Settle();
  EXPECT_EQ(ScaleText(), "") << "Delete reaches the field";
  platform::testing::PressKey(combo, VK_RETURN);
  Settle();
  EXPECT_EQ(Percent(), 25);
  EXPECT_EQ(ScaleText(), "25%");
}

TEST_F(ViewerTest, BackspaceTakesOneCharacter) {
  Open(1);
  HWND combo = frame->m_wndComboScale.m_hWnd;
  frame->m_wndComboScale.SetFocus();
  frame->m_wndComboScale.SetEditSel(4, 4);
  platform::testing::PressKey(combo, VK_BACK);
  Settle();
  EXPECT_EQ(ScaleText(), "100");
}

TEST_F(ViewerTest, PicksFromTheLists) {
  Open(5);
  const auto pick = [this](CComboBox& combo, int downs, int key) {
    combo.SetFocus();
    combo.ShowDropDown();
    Settle();
    for (int i = 0; i < downs; ++i) platform::testing::PressKey(combo.m_hWnd, VK_DOWN);
    platform::testing::PressKey(combo.m_hWnd, key);
    Settle();
  };
  pick(frame->m_wndComboPage, 3, VK_RETURN);
  EXPECT_EQ(Shown(), 4);
  EXPECT_EQ(PagePane(), "Pagina 4 of 5");
  pick(frame->m_wndComboScale, 2, VK_RETURN);
  EXPECT_EQ(Percent(), 50);
  EXPECT_EQ(ZoomPane(), "Zoom 1:50");
  EXPECT_EQ(ScaleText(), "50%");
  Type(frame->m_wndComboScale, "300", VK_RETURN);
  EXPECT_EQ(Percent(), 300) << "what is typed counts, not the entry picked before";
}

}  // namespace
