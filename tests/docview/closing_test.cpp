// Whatever a shell of documents has open may lose its document window, the main window or the program while
// the user looks at it. The boxes and dialogs are the real ones.

#include "tests/frames/closing.h"
#include "tests/docview/shell_fixture.h"

namespace {

class ShellClosing : public ShellTest {
 protected:
  void SetUp() override {
    ShellTest::SetUp();
    platform::testing::SetMessageBoxAnswer(nullptr);
    platform::testing::SetTestPrinters({});
  }
  void Send(UINT id) { m_mains.back()->SendMessage(WM_COMMAND, id); }
};

TEST_F(ShellClosing, AnythingMayGoWhileSomethingIsOpen) {
  const std::string good = PagesFile(3);
  const std::string broken = PagesFile(3, 2);
  const std::string text = TextFile();
  const struct {
    const char* what;
    std::function<void()> open;
  } calls[] = {
      {"custom zoom", [this] { Send(ID_ZP_ZOOM_CUSTOM); }},
      {"go to", [this] { Send(ID_ZP_GOTO_PAGE); }},
      {"properties", [this] { Send(ID_ZP_PAGE_PROPERTIES); }},
      {"open", [this] { Send(ID_FILE_OPEN); }},
      {"a bad file", [&] { m_template->OpenDocumentFile(text.c_str()); }},
      {"a bad file in its place",
       [&] {
         POSITION first = m_template->GetFirstDocPosition();
         m_template->GetNextDoc(first)->OnOpenDocument(text.c_str());
       }},
      {"no such page",
       [this] {
         CComboBox& combo = *m_combo;
         combo.SetFocus();
         combo.SetEditSel(0, -1);
         platform::testing::TypeText(combo.m_hWnd, "9");
         platform::testing::PressKey(combo.m_hWnd, VK_RETURN);
         platform::testing::PumpUntilIdle();
       }},
      {"print", [this] { Send(ID_FILE_PRINT); }},
      {"no printer", [this] { Send(ID_ZP_PAGE_PRINT); }},
  };
  enum How { Closed, MainDestroyed, ProgramEnded };
  for (const bool multi : {false, true})
    for (const auto& call : calls)
      for (const How how : {Closed, MainDestroyed, ProgramEnded}) {
        SCOPED_TRACE(std::string(call.what) + ", " + std::to_string(how) + (multi ? ", mdi" : ", sdi"));
        if (multi)
          m_combo = &MakeMdi()->m_wndComboPage;
        else
          m_combo = &MakeSdi()->m_wndComboPage;
        Open(good);
        const HWND main = m_mains.back()->m_hWnd;
        const HWND child = m_mains.back()->GetActiveFrame()->m_hWnd;
        const MeanwhileDo meanwhile([&] {
          if (how == ProgramEnded)
            PostQuitMessage(3);
          else if (how == Closed)
            ::SendMessage(child, WM_CLOSE, 0, 0);
          else
            ::DestroyWindow(main);
          // What is open belongs to the main window, which the end of a document window leaves alone.
          if (how == Closed && multi) PostQuitMessage(3);
        });
        bool inTime = false;
        const bool quit = RunInLoop([&] {
          call.open();
          inTime = MeanwhileDo::IsDone();
        });
        EXPECT_TRUE(inTime) << "nothing was open";
        EXPECT_TRUE(quit) << "also by the end of the main window";
        EXPECT_EQ(IsWindow(child) != FALSE, how == ProgramEnded);
        m_app.m_pMainWnd = nullptr;  // its end isn't the program's any more
        m_template->CloseAllDocuments(FALSE);
        if (IsWindow(main) != FALSE) ::DestroyWindow(main);
        m_mains.clear();
        platform::testing::PumpUntilIdle();
      }
}

}  // namespace
