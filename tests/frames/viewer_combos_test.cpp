// Both combos under real keys: what is let through, Enter, Escape, picks from the list.

#include "tests/frames/viewer_fixture.h"

namespace {

template <typename Frame>
class ViewerCombos : public ViewerTestOf<Frame> {};
TYPED_TEST_SUITE(ViewerCombos, BothFrames);

TYPED_TEST(ViewerCombos, TypedPages) {
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
    this->Open(12);
    this->Command(ID_ZP_NEXT_PAGE);
    this->Command(ID_ZP_NEXT_PAGE);
    Boxes::shown.clear();
    this->Type(this->frame->m_wndComboPage, c.typed, c.key);
    EXPECT_EQ(this->Shown(), c.page) << c.typed;
    EXPECT_EQ(this->PagePane(), "Pagina " + std::to_string(c.page) + " of 12") << c.typed;
    EXPECT_EQ(this->PageText(), c.text) << c.typed;
    EXPECT_EQ(::GetFocus(),
              c.focusStays ? this->frame->m_wndComboPage.m_hWnd : this->frame->m_pImageWnd->m_hWnd)
        << c.typed;
    ASSERT_EQ(Boxes::shown.size(), c.box == nullptr ? 0U : 1U) << c.typed;
    if (c.box != nullptr) {
      EXPECT_EQ(Boxes::shown[0].first, c.box);
      EXPECT_EQ(Boxes::shown[0].second, UINT{MB_ICONEXCLAMATION});
    }
    this->frame->m_pImageWnd->SetFocus();
    EXPECT_EQ(this->PageText(), std::to_string(c.page))
        << c.typed << ": what was left typed goes with the focus";
  }
}

TYPED_TEST(ViewerCombos, AnEmptyPageFieldIsNoPage) {
  this->Open(3);
  this->frame->m_wndComboPage.SetFocus();
  this->frame->m_wndComboPage.SetEditSel(0, -1);
  platform::testing::PressKey(this->frame->m_wndComboPage.m_hWnd, VK_BACK);
  this->Settle();
  EXPECT_EQ(this->PageText(), "");
  platform::testing::PressKey(this->frame->m_wndComboPage.m_hWnd, VK_RETURN);
  this->Settle();
  ASSERT_EQ(Boxes::shown.size(), 1U);
  EXPECT_EQ(Boxes::shown[0].first, "Numero di pagina non valido. Deve essere compreso tra 1 e 3");
}

TYPED_TEST(ViewerCombos, TypedScales) {
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
    this->Open(1);
    this->frame->m_pImageWnd->ZoomToScaleFactor(0.75);
    this->Settle();
    this->Type(this->frame->m_wndComboScale, c.typed, c.key);
    EXPECT_EQ(this->Percent(), c.percent) << c.typed;
    EXPECT_EQ(this->ScaleText(), std::to_string(c.percent) + "%") << c.typed;
    EXPECT_EQ(::GetFocus(), this->frame->m_pImageWnd->m_hWnd) << c.typed;
    EXPECT_TRUE(Boxes::shown.empty()) << c.typed;
  }
}

TYPED_TEST(ViewerCombos, AnEmptyScaleFieldTakesTheFirstEntry) {
  this->Open(1);
  HWND combo = this->frame->m_wndComboScale.m_hWnd;
  this->frame->m_wndComboScale.SetFocus();
  this->frame->m_wndComboScale.SetEditSel(0, -1);
  platform::testing::PressKey(combo, VK_DELETE);
  this->Settle();
  EXPECT_EQ(this->ScaleText(), "") << "Delete reaches the field";
  platform::testing::PressKey(combo, VK_RETURN);
  this->Settle();
  EXPECT_EQ(this->Percent(), 25);
  EXPECT_EQ(this->ScaleText(), "25%");
}

TYPED_TEST(ViewerCombos, BackspaceTakesOneCharacter) {
  this->Open(1);
  HWND combo = this->frame->m_wndComboScale.m_hWnd;
  this->frame->m_wndComboScale.SetFocus();
  this->frame->m_wndComboScale.SetEditSel(4, 4);
  platform::testing::PressKey(combo, VK_BACK);
  this->Settle();
  EXPECT_EQ(this->ScaleText(), "100");
}

TYPED_TEST(ViewerCombos, WhatIsTypedReplacesWhatIsChosen) {
  this->Open(12);
  struct Case {
    CComboBox& combo;
    int key;
    bool control;
    const char* text;
  };
  const Case cases[] = {{this->frame->m_wndComboPage, 'A', true, "7"},
                        {this->frame->m_wndComboScale, 'A', true, "7"},
                        {this->frame->m_wndComboPage, VK_DOWN, false, "7"}};
  for (const Case& c : cases) {
    c.combo.SetFocus();
    c.combo.SetEditSel(0, 0);
    if (c.control) platform::testing::PressKey(c.combo.m_hWnd, VK_CONTROL, false, true);
    platform::testing::PressKey(c.combo.m_hWnd, c.key, false, c.control);
    platform::testing::ReleaseKey(c.combo.m_hWnd, VK_CONTROL);
    this->Settle();
    platform::testing::TypeText(c.combo.m_hWnd, "7");
    this->Settle();
    EXPECT_EQ(this->TextOf(c.combo), c.text) << c.key;
  }
}

TYPED_TEST(ViewerCombos, ABoxThatTakesTheKeyboardLeavesWhatIsTyped) {
  this->Open(12);
  platform::testing::SetMessageBoxAnswer([](const CString&, UINT) -> int {
    ::SetFocus(nullptr);  // as the desktop does
    return IDOK;
  });
  this->Type(this->frame->m_wndComboPage, "99", VK_RETURN);
  EXPECT_EQ(this->PageText(), "99");
  this->frame->m_pImageWnd->SetFocus();
  EXPECT_EQ(this->PageText(), "1") << "another control takes it with it";
}

TYPED_TEST(ViewerCombos, PicksFromTheLists) {
  this->Open(5);
  const auto pick = [this](CComboBox& combo, int downs, int key) {
    combo.SetFocus();
    combo.ShowDropDown();
    this->Settle();
    for (int i = 0; i < downs; ++i) platform::testing::PressKey(combo.m_hWnd, VK_DOWN);
    platform::testing::PressKey(combo.m_hWnd, key);
    this->Settle();
  };
  pick(this->frame->m_wndComboPage, 3, VK_RETURN);
  EXPECT_EQ(this->Shown(), 4);
  EXPECT_EQ(this->PagePane(), "Pagina 4 of 5");
  const auto moveUp = [this](CComboBox& combo, int ups, int key) {
    combo.SetFocus();
    combo.ShowDropDown();
    this->Settle();
    for (int i = 0; i < ups; ++i) platform::testing::PressKey(combo.m_hWnd, VK_UP);
    platform::testing::PressKey(combo.m_hWnd, key);
    this->Settle();
  };
  moveUp(this->frame->m_wndComboScale, 1, VK_ESCAPE);  // it opens at 100%
  EXPECT_EQ(this->ScaleText(), "100%") << "only looked at";
  EXPECT_EQ(this->Percent(), 100);
  moveUp(this->frame->m_wndComboScale, 2, VK_RETURN);
  EXPECT_EQ(this->Percent(), 50);
  EXPECT_EQ(this->ZoomPane(), "Zoom 1:50");
  EXPECT_EQ(this->ScaleText(), "50%");
  this->Type(this->frame->m_wndComboScale, "300", VK_RETURN);
  EXPECT_EQ(this->Percent(), 300) << "what is typed counts, not the entry picked before";
}

}  // namespace
