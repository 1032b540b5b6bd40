// What can be chosen when: menu items, pop-ups and toolbar buttons.

#include "tests/frames/viewer_fixture.h"

namespace {

class ViewerStates : public ViewerTest {
 protected:
  /// As the menu bar does before it shows them.
  void OpenMenus(HMENU menu) {
    for (int i = 0; i < GetMenuItemCount(menu); ++i) {
      const HMENU popup = GetSubMenu(menu, i);
      if (popup == nullptr) continue;
      frame->SendMessage(WM_INITMENUPOPUP, reinterpret_cast<WPARAM>(popup), i);
      OpenMenus(popup);
    }
  }
  /// "+" enabled, "-" grey, then "x" if checked; "?" if it isn't there.
  std::string Item(UINT id) const {
    const UINT state = GetMenuState(::GetMenu(frame->m_hWnd), id, MF_BYCOMMAND);
    if (state == static_cast<UINT>(-1)) return "?";
    return std::string((state & MF_GRAYED) != 0 ? "-" : "+") + ((state & MF_CHECKED) != 0 ? "x" : "");
  }
  std::string Popup(const std::vector<int>& way) const {
    HMENU menu = ::GetMenu(frame->m_hWnd);
    for (std::size_t i = 0; i + 1 < way.size(); ++i) menu = GetSubMenu(menu, way[i]);
    return (GetMenuState(menu, static_cast<UINT>(way.back()), MF_BYPOSITION) & MF_GRAYED) != 0 ? "-" : "+";
  }
  std::string Button(UINT id) const {
    const auto& bar = frame->m_wndToolBar.GetToolBarCtrl();
    return std::string(bar.IsButtonEnabled(static_cast<int>(id)) ? "+" : "-") +
           (bar.IsButtonChecked(static_cast<int>(id)) ? "x" : "");
  }
};

struct State {
  UINT id;
  const char* none;
  const char* one;
  const char* first;
  const char* middle;
  const char* last;
  bool button;
};
const State kStates[] = {
    {ID_ZP_FILE_EXPORT, "-", "+", "+", "+", "+", false},
    {ID_ZP_VIEW_THUMBNAILS, "+", "+", "+", "+", "+", true},
    {ID_ZP_DRAG_MODE, "-", "+x", "+x", "+x", "+x", true},
    {ID_ZP_ZOOM_IN_MODE, "-", "+", "+", "+", "+", true},
    {ID_ZP_ZOOM_OUT_MODE, "-", "+", "+", "+", "+", true},
    {ID_ZP_NEXT_PAGE, "-", "-", "+", "+", "-", true},
    {ID_ZP_PREV_PAGE, "-", "-", "-", "+", "+", true},
    {ID_ZP_FIRST_PAGE, "-", "-", "-", "+", "+", false},
    {ID_ZP_LAST_PAGE, "-", "-", "+", "+", "-", false},
    {ID_ZP_GOTO_PAGE, "-", "-", "+", "+", "+", false},
    {ID_ZP_PAGE_PROPERTIES, "-", "+", "+", "+", "+", false},
    {ID_ZP_ROTATE_LEFT, "-", "+", "+", "+", "+", true},
    {ID_ZP_ROTATE_RIGHT, "-", "+", "+", "+", "+", true},
    {ID_ZP_ROTATE_180, "-", "+", "+", "+", "+", true},
    {ID_ZP_ZOOM_IN, "-", "+", "+", "+", "+", true},
    {ID_ZP_ZOOM_OUT, "-", "+", "+", "+", "+", true},
    {ID_ZP_ZOOM_SELECTED, "-", "+", "+", "+", "+", true},
    {ID_ZP_ZOOM_FIT_TO_HEIGHT, "-", "+", "+", "+", "+", true},
    {ID_ZP_ZOOM_FIT_TO_WIDTH, "-", "+", "+", "+", "+", true},
    {ID_ZP_ZOOM_BEST_FIT, "-", "+", "+", "+", "+", true},
    {ID_ZP_ZOOM_CUSTOM, "-", "+", "+", "+", "+", false},
    {ID_VIEW_TOOLBAR, "+x", "+x", "+x", "+x", "+x", false},
    {ID_VIEW_STATUS_BAR, "+x", "+x", "+x", "+x", "+x", false},
    {ID_APP_EXIT, "+", "+", "+", "+", "+", false},
    {ID_HELP_FINDER, "-", "-", "-", "-", "-", false},
};

TEST_F(ViewerStates, AreRightBeforeTheFirstEvent) {
  frame->DestroyWindow();
  frame = NewFrame();
  for (const State& state : kStates)
    if (state.button) {
      EXPECT_EQ(Button(state.id), state.none) << state.id;
    }
}

TEST_F(ViewerStates, FollowWhatIsOpen) {
  const auto check = [this](const char* State::*column, const char* what) {
    Settle();
    OpenMenus(::GetMenu(frame->m_hWnd));
    for (const State& state : kStates) {
      EXPECT_EQ(Item(state.id), state.*column) << what << " " << state.id;
      if (state.button) {
        EXPECT_EQ(Button(state.id), state.*column) << what << " button " << state.id;
      }
    }
    const char* popup = column == &State::none ? "-" : "+";
    EXPECT_EQ(Popup({3}), popup) << what << ": Zoom";
    EXPECT_EQ(Popup({1, 4}), popup) << what << ": Mouse Mode";
    EXPECT_EQ(Popup({2}), "+") << what << ": Pagina, whose first item has no say in it";
  };
  check(&State::none, "nothing");
  Open(1);
  check(&State::one, "one page");
  Open(3);
  check(&State::first, "first of three");
  Command(ID_ZP_NEXT_PAGE);
  check(&State::middle, "middle");
  Command(ID_ZP_LAST_PAGE);
  check(&State::last, "last");
  frame->OpenImageFile(WriteText("broken.tif").c_str());
  check(&State::none, "after a failed open");
}

TEST_F(ViewerStates, ChecksFollowTheModes) {
  Open(1);
  for (const UINT mode : {ID_ZP_ZOOM_IN_MODE, ID_ZP_ZOOM_OUT_MODE, ID_ZP_DRAG_MODE}) {
    Command(mode);
    OpenMenus(::GetMenu(frame->m_hWnd));
    for (const UINT other : {ID_ZP_ZOOM_IN_MODE, ID_ZP_ZOOM_OUT_MODE, ID_ZP_DRAG_MODE}) {
      EXPECT_EQ(Item(other), other == mode ? "+x" : "+") << mode << " " << other;
      EXPECT_EQ(Button(other), other == mode ? "+x" : "+") << mode << " " << other;
    }
  }
  for (const UINT toggle : {UINT{ID_ZP_ZOOM_SELECTED}, UINT{ID_ZP_VIEW_THUMBNAILS}})
    for (const char* state : {"+x", "+"}) {
      Command(toggle);
      OpenMenus(::GetMenu(frame->m_hWnd));
      EXPECT_EQ(Item(toggle), state) << toggle;
      EXPECT_EQ(Button(toggle), state) << toggle;
    }
}

TEST_F(ViewerStates, AtTheHighestScaleOnlyTheItemIsGrey) {
  Open(1);
  frame->m_pImageWnd->ZoomToScaleFactor(10.0);
  Settle();
  OpenMenus(::GetMenu(frame->m_hWnd));
  EXPECT_EQ(Item(ID_ZP_ZOOM_IN), "-");
  EXPECT_EQ(Button(ID_ZP_ZOOM_IN), "-");
  EXPECT_EQ(Item(ID_ZP_ZOOM_OUT), "+");
  EXPECT_EQ(Popup({3}), "+");
}

TEST_F(ViewerStates, TheBarsHideFromTheMenu) {
  for (const UINT bar : {UINT{ID_VIEW_TOOLBAR}, UINT{ID_VIEW_STATUS_BAR}}) {
    ASSERT_TRUE(platform::testing::ChooseMenuItem(frame->m_hWnd, bar));
    Settle();
    EXPECT_FALSE(frame->GetControlBar(bar)->IsWindowVisible()) << bar;
    OpenMenus(::GetMenu(frame->m_hWnd));
    EXPECT_EQ(Item(bar), "+") << bar;
  }
}

}  // namespace
