// The go-to and the custom zoom dialog, under real keys.

#include "tests/frames/viewer_fixture.h"
#include "viewing/commands/custom_zoom_dlg.h"
#include "viewing/commands/go_to_page_dlg.h"

namespace {

void ClickButton(HWND dialog, int id) {
  platform::testing::PressMouse(GetDlgItem(dialog, id), {5, 5});
  platform::testing::ReleaseMouse(GetDlgItem(dialog, id), {5, 5});
}
void TypeInto(HWND dialog, int field, const char* text) {
  const HWND edit = GetDlgItem(dialog, field);
  SetFocus(edit);
  SendMessage(edit, EM_SETSEL, 0, -1);
  platform::testing::TypeText(edit, text);
}

class ViewerDialogs : public ViewerTest {
 protected:
  /// What the go-to dialog gives after these actions.
  int GoTo(int current, int last, const std::function<void(HWND)>& act) {
    platform::testing::OnNextDialog(act);
    CGoToPageDlg dialog(current, last, frame);
    return static_cast<int>(dialog.DoModal());
  }
};

TEST_F(ViewerDialogs, GoToGivesThePage) {
  struct Case {
    const char* what;
    int current;
    int last;
    int result;
    std::function<void(HWND)> act;
  };
  const Case cases[] = {
      {"OK at once", 3, 9, 3, [](HWND d) { ClickButton(d, IDOK); }},
      {"Enter at once", 3, 9, 3,
       [](HWND d) {
         platform::testing::PressKey(GetFocus(), VK_RETURN);
         (void)d;
       }},
      {"Annulla", 3, 9, 0, [](HWND d) { ClickButton(d, IDC_ZP_CANCEL); }},
      {"Escape", 3, 9, 0, [](HWND) { platform::testing::PressKey(GetFocus(), VK_ESCAPE); }},
      {"first", 3, 9, 1,
       [](HWND d) {
         ClickButton(d, IDC_ZP_GOTO_FIRST);
         ClickButton(d, IDOK);
       }},
      {"last", 3, 9, 9,
       [](HWND d) {
         ClickButton(d, IDC_ZP_GOTO_LAST);
         ClickButton(d, IDOK);
       }},
      {"number", 3, 9, 7,
       [](HWND d) {
         TypeInto(d, IDC_ZP_GOTO_EDIT, "7");
         ClickButton(d, IDOK);
       }},
      {"number again", 3, 9, 3,
       [](HWND d) {
         ClickButton(d, IDC_ZP_GOTO_LAST);
         ClickButton(d, IDC_ZP_GOTO_NUMBER);
         ClickButton(d, IDOK);
       }},
      {"more than 16 bits", 40000, 70000, 65537,
       [](HWND d) {
         TypeInto(d, IDC_ZP_GOTO_EDIT, "65537");
         ClickButton(d, IDOK);
       }},
      {"a high page at once", 40000, 70000, 40000, [](HWND d) { ClickButton(d, IDOK); }},
      {"arrow up", 3, 9, 4,
       [](HWND d) {
         platform::testing::PressKey(GetDlgItem(d, IDC_ZP_GOTO_EDIT), VK_UP);
         ClickButton(d, IDOK);
       }},
  };
  for (const Case& c : cases) EXPECT_EQ(GoTo(c.current, c.last, c.act), c.result) << c.what;
  EXPECT_TRUE(Boxes::shown.empty());
}

TEST_F(ViewerDialogs, GoToRefusesWhatIsNoPage) {
  for (const char* typed : {"0", "10", "99999"}) {
    Boxes::shown.clear();
    std::string left;
    // After the refusal the current page stands in the field again, which OK then gives.
    EXPECT_EQ(GoTo(3, 9,
                   [typed](HWND dialog) {
                     TypeInto(dialog, IDC_ZP_GOTO_EDIT, typed);
                     ClickButton(dialog, IDOK);
                     ClickButton(dialog, IDOK);
                   }),
              3)
        << typed;
    ASSERT_EQ(Boxes::shown.size(), 1U) << typed;
    EXPECT_EQ(Boxes::shown[0].first, "Numero di pagina non valido. Deve essere compreso tra 1 e 9");
    EXPECT_EQ(Boxes::shown[0].second, UINT{MB_ICONEXCLAMATION});
  }
}

TEST_F(ViewerDialogs, GoToDisablesWhatIsShown) {
  struct Case {
    int current;
    int last;
    bool firstEnabled;
    bool lastEnabled;
  };
  for (const Case& c : {Case{1, 2, false, true}, Case{2, 2, true, false}, Case{2, 3, true, true}}) {
    GoTo(c.current, c.last, [&c](HWND dialog) {
      EXPECT_EQ(IsWindowEnabled(GetDlgItem(dialog, IDC_ZP_GOTO_FIRST)) != FALSE, c.firstEnabled);
      EXPECT_EQ(IsWindowEnabled(GetDlgItem(dialog, IDC_ZP_GOTO_LAST)) != FALSE, c.lastEnabled);
      EXPECT_EQ(SendMessage(GetDlgItem(dialog, IDC_ZP_GOTO_NUMBER), BM_GETCHECK), 1);
      EXPECT_EQ(GetWindowText(GetDlgItem(dialog, IDC_ZP_GOTO_EDIT)),
                CString(std::to_string(c.current).c_str()));
      EXPECT_FALSE(IsWindowVisible(GetDlgItem(dialog, IDC_ZP_GOTO_SPIN_PLACE)));
      for (const int radio : {IDC_ZP_GOTO_FIRST, IDC_ZP_GOTO_LAST, IDC_ZP_GOTO_NUMBER}) {
        SendMessage(dialog, WM_COMMAND, static_cast<WPARAM>(radio));
        for (const int part : {int{IDC_ZP_GOTO_EDIT}, int{ID_ZP_SPIN_PAGE}})
          EXPECT_EQ(IsWindowEnabled(GetDlgItem(dialog, part)) != FALSE, radio == IDC_ZP_GOTO_NUMBER) << radio;
      }
      EndDialog(dialog, 0);
    });
  }
}

TEST_F(ViewerDialogs, GoToMovesTheFrame) {
  Open(5);
  platform::testing::OnNextDialog([](HWND dialog) {
    TypeInto(dialog, IDC_ZP_GOTO_EDIT, "4");
    ClickButton(dialog, IDOK);
  });
  Command(ID_ZP_GOTO_PAGE);
  EXPECT_EQ(PagePane(), "Pagina 4 of 5");
  EXPECT_EQ(PageText(), "4");
}

TEST_F(ViewerDialogs, CustomZoom) {
  struct Case {
    const char* typed;
    int key;  ///< 0: the button OK, -1: Annulla
    int percent;
    bool refused;
  };
  const Case cases[] = {{"33", VK_RETURN, 33, false},
                        {"400%", 0, 400, false},
                        {"1000", VK_RETURN, 1000, false},
                        {"1001", VK_RETURN, 150, true},
                        {"0", 0, 150, true},
                        {"%", VK_RETURN, 150, true},
                        {"x12y", VK_RETURN, 12, false},
                        {"60", -1, 150, false},
                        {"60", VK_ESCAPE, 150, false},
                        {"1", 0, 6, false},
                        {"1000%", 0, 1000, false}};
  for (const Case& c : cases) {
    Open(1);
    frame->m_pImageWnd->ZoomToScaleFactor(1.5);
    frame->UpdateZoomStatus();
    Boxes::shown.clear();
    platform::testing::OnNextDialog([&c](HWND dialog) {
      const HWND edit = GetDlgItem(dialog, IDC_ZP_ZOOM_PERCENT);
      EXPECT_EQ(GetWindowText(edit), CString("150%"));
      EXPECT_EQ(GetFocus(), edit);
      TypeInto(dialog, IDC_ZP_ZOOM_PERCENT, c.typed);
      if (c.key > 0) platform::testing::PressKey(edit, c.key);
      if (c.key <= 0) ClickButton(dialog, c.key == 0 ? int{IDC_ZP_ZOOM_OK} : int{IDC_ZP_CANCEL});
      if (c.refused) platform::testing::PressKey(edit, VK_ESCAPE);  // still open
    });
    Command(ID_ZP_ZOOM_CUSTOM);
    EXPECT_EQ(Percent(), c.percent) << c.typed;
    EXPECT_EQ(ScaleText(), std::to_string(c.percent) + "%") << c.typed;
    ASSERT_EQ(Boxes::shown.size(), c.refused ? 1U : 0U) << c.typed;
    if (!c.refused) continue;
    EXPECT_NE(Boxes::shown[0].first.find("Dovrebbe essere nel range da 1% a 1000%."), std::string::npos);
    EXPECT_EQ(Boxes::shown[0].second, UINT{MB_OK});
  }
}

TEST_F(ViewerDialogs, PropertiesOpen) {
  Open(2);
  bool seen = false;
  platform::testing::OnNextDialog([&seen](HWND dialog) {
    seen = true;
    EXPECT_EQ(GetWindowText(GetDlgItem(dialog, IDC_ZP_FILE_PAGES)), CString("2"));
    EndDialog(dialog, 0);
  });
  Command(ID_ZP_PAGE_PROPERTIES);
  EXPECT_TRUE(seen);
}

}  // namespace
