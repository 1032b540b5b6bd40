// Whatever a viewer has open may lose its window, the window above it or the program while the user looks at
// it. The boxes and dialogs are the real ones.

#include "tests/frames/closing.h"
#include "tests/frames/viewer_fixture.h"

namespace {

/// Ends at a notification of a combo, or when it is told of a scale.
class Viewer : public OpenedUp<CImageFrame> {
 public:
  enum : int { kStatus = -1 };
  void EndAt(int what) { m_endsAt = what; }
  void UpdateZoomStatus() override {
    if (!EndIfAt(kStatus)) OpenedUp::UpdateZoomStatus();
  }
  BOOL OnCommand(WPARAM wParam, LPARAM lParam) override {
    return lParam != 0 && EndIfAt(HIWORD(wParam)) ? TRUE : OpenedUp::OnCommand(wParam, lParam);
  }

 private:
  bool EndIfAt(int what) {
    if (m_endsAt != what) return false;
    m_endsAt = 0;
    DestroyWindow();
    return true;
  }

  int m_endsAt = 0;
};

std::string g_path;  // what file dialogs answer with
Viewer* g_viewer = nullptr;

bool AnswerPath(platform::FileDialogRequest& request) {
  request.path = g_path;
  return true;
}

class Closing : public ViewerFolder {
 protected:
  void SetUp() override {
    ViewerFolder::SetUp();
    platform::testing::SetMessageBoxAnswer(nullptr);
    platform::testing::SetTestPrinters({});
  }
  void TearDown() override {
    platform::testing::SetFileDialogAnswer(nullptr);
    ViewerFolder::TearDown();
  }
  void MakeViewer(const std::string& file) {
    parent = new CFrameWnd;  // deletes itself with its window
    ASSERT_TRUE(parent->Create(nullptr, "host", WS_OVERLAPPEDWINDOW, CRect(0, 0, 500, 400)));
    parent->ShowWindow(SW_SHOW);
    g_viewer = new Viewer;
    ASSERT_TRUE(
        g_viewer->LoadFrame(IDR_ZP_VIEWER, DWORD{WS_OVERLAPPEDWINDOW} | FWS_ADDTOTITLE, parent, nullptr));
    window = g_viewer->m_hWnd;
    g_viewer->SetWindowPos(nullptr, 0, 0, 900, 700, SWP_NOZORDER);
    g_viewer->ShowWindow(SW_SHOW);
    ASSERT_TRUE(g_viewer->OpenImageFile(file.c_str()));
    platform::testing::PumpUntilIdle();
  }
  static void Command(UINT id) { g_viewer->SendMessage(WM_COMMAND, id); }
  static void Drop(std::vector<const char*> paths) {
    platform::testing::DropFiles(g_viewer->m_pImageWnd->m_hWnd, {5, 5}, paths);
    platform::testing::PumpUntilIdle();
  }

  CFrameWnd* parent = nullptr;
  HWND window = nullptr;
};

TEST_F(Closing, AnythingMayGoWhileSomethingIsOpen) {
  const std::string good = WriteFile(3, 0, "good.tif");
  const std::string broken = WriteFile(3, 2, "broken.tif");
  const std::string text = WriteText("text.tif");
  const auto exports = [](const std::string& path) {
    g_path = path;
    platform::testing::SetFileDialogAnswer(&AnswerPath);
    Command(ID_ZP_FILE_EXPORT);
    platform::testing::SetFileDialogAnswer(nullptr);
  };
  const struct {
    const char* what;
    std::string file;
    std::function<void()> open;
  } calls[] = {
      {"custom zoom", good, [] { Command(ID_ZP_ZOOM_CUSTOM); }},
      {"go to", good, [] { Command(ID_ZP_GOTO_PAGE); }},
      {"properties", good, [] { Command(ID_ZP_PAGE_PROPERTIES); }},
      {"export", good, [] { Command(ID_ZP_FILE_EXPORT); }},
      {"one page only", good, [&] { exports((m_folder / "one.bmp").string()); }},
      {"exported", good, [&] { exports((m_folder / "copy.tif").string()); }},
      {"can't be exported", broken, [&] { exports((m_folder / "three.tiff.tif").string()); }},
      {"open", good, [] { g_viewer->OpenImageFile(nullptr); }},
      {"a bad file", good, [&] { g_viewer->OpenImageFile(text.c_str()); }},
      {"a bad page", broken, [] { Command(ID_ZP_NEXT_PAGE); }},
      {"thumbnails", broken, [] { Command(ID_ZP_VIEW_THUMBNAILS); }},
      {"two files dropped", good,
       [&] {
         Drop({good.c_str(), text.c_str()});
       }},
      {"a bad file dropped", good, [&] { Drop({text.c_str()}); }},
      {"no such page", good,
       [] {
         CComboBox& combo = g_viewer->m_wndComboPage;
         combo.SetFocus();
         combo.SetEditSel(0, -1);
         platform::testing::TypeText(combo.m_hWnd, "9");
         platform::testing::PressKey(combo.m_hWnd, VK_RETURN);
         platform::testing::PumpUntilIdle();
       }},
      {"print", good, [] { Command(ID_FILE_PRINT); }},
      {"no printer", good, [] { Command(ID_ZP_PAGE_PRINT); }},
  };
  enum How { Destroyed, Closed, ParentDestroyed, ProgramEnded };
  for (const auto& call : calls)
    for (const How how : {Destroyed, Closed, ParentDestroyed, ProgramEnded}) {
      const std::string what = std::string(call.what) + ", " + std::to_string(how);
      SCOPED_TRACE(what);
      MakeViewer(call.file);
      const HWND parentWindow = parent->m_hWnd;
      const MeanwhileDo meanwhile([&] {
        if (how == Destroyed)
          g_viewer->DestroyWindow();
        else if (how == Closed)
          g_viewer->SendMessage(WM_CLOSE);
        else if (how == ParentDestroyed)
          parent->DestroyWindow();
        else
          PostQuitMessage(3);
      });
      bool inTime = false;
      const bool quit = RunInLoop([&] {
        call.open();
        inTime = MeanwhileDo::IsDone();
      });
      EXPECT_TRUE(inTime) << "nothing was open";
      EXPECT_EQ(quit, how == ProgramEnded);
      EXPECT_EQ(IsWindow(window) != FALSE, how == ProgramEnded);
      EXPECT_EQ(IsWindow(parentWindow) != FALSE, how != ParentDestroyed);
      if (how != ParentDestroyed) parent->DestroyWindow();
      platform::testing::PumpUntilIdle();
    }
}

TEST_F(Closing, AHandlerMayEndTheViewer) {
  const std::string good = WriteFile(3);
  struct Call {
    const char* what;
    int endsAt;
    std::function<void()> happens;
  };
  std::vector<Call> calls;
  for (const UINT id : {ID_ZP_ZOOM_IN, ID_ZP_ZOOM_OUT, ID_ZP_ZOOM_FIT_TO_WIDTH, ID_ZP_ZOOM_BEST_FIT})
    calls.push_back({"a command", Viewer::kStatus, [id] { Command(id); }});
  calls.push_back({"the wheel", Viewer::kStatus, [] {
                     platform::testing::TurnWheel(g_viewer->m_pImageWnd->m_hWnd, {5, 5}, 120, false, true);
                   }});
  calls.push_back({"a click", Viewer::kStatus, [] {
                     g_viewer->m_pImageWnd->SetMouseMode(MouseModeZoomIn);
                     platform::testing::PressMouse(g_viewer->m_pImageWnd->m_hWnd, {5, 5});
                   }});
  for (const bool page : {true, false}) {
    const auto handle = [page] {
      return page ? g_viewer->m_wndComboPage.m_hWnd : g_viewer->m_wndComboScale.m_hWnd;
    };
    const auto use = [handle](bool drop, std::initializer_list<int> keys) {
      const HWND field = handle();  // before the viewer goes
      ::SetFocus(field);
      if (drop) ::SendMessage(field, CB_SHOWDROPDOWN, TRUE, 0);
      platform::testing::PumpUntilIdle();
      for (const int key : keys) {
        platform::testing::PressKey(field, key);
        platform::testing::PumpUntilIdle();
      }
    };
    const auto press = [use](std::initializer_list<int> keys) { use(false, keys); };
    const auto drop = [use](std::initializer_list<int> keys) { use(true, keys); };
    calls.push_back({"the focus comes", CBN_SETFOCUS, [press] { press({}); }});
    calls.push_back({"the focus goes", CBN_KILLFOCUS, [press] {
                       press({});
                       g_viewer->m_pImageWnd->SetFocus();
                     }});
    calls.push_back({"typed", CBN_EDITCHANGE, [handle] {
                       ::SetFocus(handle());
                       platform::testing::TypeText(handle(), "2");
                     }});
    calls.push_back({"entered", CBN_SELENDOK, [handle, press] {
                       ::SetFocus(handle());
                       platform::testing::TypeText(handle(), "2");
                       press({VK_RETURN});
                     }});
    calls.push_back({"the list opens", CBN_DROPDOWN, [drop] { drop({}); }});
    calls.push_back({"moved in the list", CBN_SELCHANGE, [drop] { drop({VK_DOWN}); }});
    calls.push_back({"picked", CBN_SELENDOK, [drop] { drop({VK_DOWN, VK_RETURN}); }});
    calls.push_back({"the list goes", CBN_CLOSEUP, [drop] { drop({VK_ESCAPE}); }});
    calls.push_back({"moved without it", CBN_SELENDOK, [press] { press({VK_DOWN}); }});
  }
  for (const Call& call : calls) {
    SCOPED_TRACE(std::string(call.what) + ", " + std::to_string(call.endsAt));
    MakeViewer(good);
    g_viewer->EndAt(call.endsAt);
    call.happens();
    platform::testing::PumpUntilIdle();
    EXPECT_FALSE(IsWindow(window)) << "it wasn't told";
    parent->DestroyWindow();
    platform::testing::PumpUntilIdle();
  }
}

}  // namespace
