// The application's windows, worked as a user does.

#include <gtest/gtest.h>
#include <unistd.h>

#include <algorithm>
#include <array>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <memory>
#include <string>
#include <vector>

#include "apps/viewer/recent_files.h"
#include "apps/viewer/viewer_app.h"
#include "apps/viewer/viewer_page.h"
#include "apps/viewer/viewer_window.h"
#include "tessarel12_testing.h"

namespace {

namespace fs = std::filesystem;
namespace ui = platform::testing;

class ViewerWindow : public ::testing::Test {
 protected:
  void SetUp() override {
    fs::create_directories(folder / "faxes");
    setenv("XDG_CONFIG_HOME", folder.c_str(), 1);
    ui::SetMessageBoxAnswer([](const CString& text, UINT) {
      told.push_back(static_cast<const char*>(text));
      return answer;
    });
    told.clear();
    answer = IDOK;
  }
  void TearDown() override {
    Quit();
    ui::SetMessageBoxAnswer(nullptr);
    fs::remove_all(folder);
  }

  std::string Fax(const std::string& name) {
    const fs::path path = folder / "faxes" / name;
    fs::copy_file(SAMPLE_FAX, path, fs::copy_options::overwrite_existing);
    return path.string();
  }
  /// A program of its own, with a window for each file.
  void Start(std::vector<std::string> files) {
    Options options;
    options.files = std::move(files);
    app = std::make_unique<CViewerApp>(std::move(options));
    ASSERT_TRUE(app->InitInstance());
    window = app->Windows().front();
    Settle();
  }
  void Quit() {
    if (app == nullptr) return;
    for (CViewerWindow* open : std::vector(app->Windows())) open->DestroyWindow();
    app->ExitInstance();
    app.reset();
  }
  void Settle() {
    ui::PumpUntilIdle();
    for (CViewerWindow* open : app->Windows()) {
      open->OnIdleUpdateCmdUI();
      open->SendMessageToDescendants(WM_IDLEUPDATECMDUI, TRUE, 0);
    }
  }
  void Choose(UINT command) {
    EXPECT_TRUE(ui::ChooseMenuItem(window->m_hWnd, command)) << command;
    Settle();
  }
  void Key(int key, bool shift = false, bool control = false) {
    const HWND focus = ::GetFocus();
    if (shift) ui::PressKey(focus, VK_SHIFT, true);
    if (control) ui::PressKey(focus, VK_CONTROL, false, true);
    ui::PressKey(focus, key, shift, control);
    Settle();
    if (shift) ui::ReleaseKey(focus, VK_SHIFT);
    if (control) ui::ReleaseKey(focus, VK_CONTROL);
    Settle();
  }
  CViewerPage& Page() const { return static_cast<CViewerPage&>(*window->m_pImageWnd); }
  std::string Pane(UINT id) const {
    const CStatusBar& bar = window->m_wndStatusBar;
    return static_cast<const char*>(bar.GetPaneText(bar.CommandToIndex(id)));
  }
  std::string Message() const {
    return static_cast<const char*>(::GetWindowText(window->m_wndStatusBar.m_hWnd));
  }
  std::array<LONG, 4> Place() const {
    RECT place{};
    window->GetWindowRect(&place);
    return {place.left, place.top, place.right, place.bottom};
  }
  static std::string Title(const CWnd& of) { return static_cast<const char*>(::GetWindowText(of.m_hWnd)); }

  static inline std::vector<std::string> told;
  static inline int answer;
  fs::path folder = fs::temp_directory_path() / ("tessarel-viewer-" + std::to_string(getpid()));
  std::unique_ptr<CViewerApp> app;
  CViewerWindow* window = nullptr;
};

TEST_F(ViewerWindow, FilesAndPlaceAreRememberedForTheNextStart) {
  Start({Fax("a.tif"), Fax("b.tif")});
  window->SetWindowPos(nullptr, 60, 50, 640, 480, SWP_NOZORDER);
  Settle();
  const auto before = Place();
  app->Windows().back()->DestroyWindow();
  Quit();
  Start({Fax("c&d.tif")});
  EXPECT_EQ(Place(), before);
  const std::string inFaxes = (folder / "faxes/").string();
  EXPECT_EQ(RecentFiles(), (std::vector{inFaxes + "c&d.tif", inFaxes + "b.tif", inFaxes + "a.tif"}));
  window->SendMessage(WM_COMMAND, kFirstRecent + 2);
  EXPECT_EQ(Title(*window), "a.tif - Tessarel");
  fs::remove(inFaxes + "b.tif");
  window->SendMessage(WM_COMMAND, kFirstRecent + 2);
  EXPECT_EQ(told.size(), 1U) << "a file that is gone is told";
  EXPECT_EQ(RecentFiles(), (std::vector{inFaxes + "a.tif", inFaxes + "c&d.tif"})) << "and forgotten";
}

TEST_F(ViewerWindow, OfSeveralDroppedFilesEachGetsAWindow) {
  Start({Fax("a.tif")});
  const std::string b = Fax("b.tif");
  const std::string c = Fax("c.tif");
  const char* const two[] = {b.c_str(), c.c_str()};
  EXPECT_TRUE(ui::DropFiles(Page().m_hWnd, {20, 20}, two));
  Settle();
  ASSERT_EQ(app->Windows().size(), 3U);
  EXPECT_EQ(Title(*window), "a.tif - Tessarel");
  EXPECT_EQ(Title(*app->Windows()[1]), "b.tif - Tessarel");
  EXPECT_EQ(Title(*app->Windows()[2]), "c.tif - Tessarel");
  EXPECT_TRUE(ui::DropFiles(Page().m_hWnd, {20, 20}, std::span(two).first(1)));
  Settle();
  EXPECT_EQ(Title(*window), "b.tif - Tessarel") << "one alone comes in the place of what is shown";
  EXPECT_TRUE(told.empty());
}

TEST_F(ViewerWindow, KeysTurnThePageAtItsEnd) {
  Start({Fax("a.tif")});
  window->SetWindowPos(nullptr, 0, 0, 700, 600, SWP_NOZORDER);
  Page().BestFit();
  Settle();
  const struct {
    int key;
    int page;
    bool atFoot;
  } whole[] = {{VK_NEXT, 2, false}, {VK_NEXT, 3, false},  {VK_NEXT, 3, false}, {VK_PRIOR, 2, false},
               {VK_HOME, 1, false}, {VK_PRIOR, 1, false}, {VK_END, 3, false}},
    large[] = {{VK_NEXT, 3, false}, {VK_HOME, 1, false}, {VK_NEXT, 1, false}, {VK_NEXT, 1, false},
               {VK_NEXT, 1, true},  {VK_NEXT, 2, false}, {VK_PRIOR, 1, true}};
  const auto press = [this](const auto& rows, const char* how) {
    for (const auto& row : rows) {
      Key(row.key);
      EXPECT_EQ(Page().GetCurrPage(), row.page) << how << ", row " << &row - rows;
      EXPECT_EQ(Page().m_ptScroll.y > 0 && Page().m_ptScroll.y == Page().m_ptScrollMax.y, row.atFoot)
          << how << ", row " << &row - rows;
    }
  };
  press(whole, "the whole page in view");
  Page().ZoomToScaleFactor(0.7);
  Settle();
  press(large, "three screens a page");
  Choose(kTurnAtEnd);
  Key(VK_NEXT);
  Key(VK_HOME);
  for (int i = 0; i < 6; ++i) Key(VK_NEXT);
  EXPECT_EQ(Page().GetCurrPage(), 1) << "switched off";
  Quit();
  Start({Fax("a.tif")});
  EXPECT_FALSE(Page().TurnsAtEnd());
}

TEST_F(ViewerWindow, AFitStaysOverPagesSizesAndStarts) {
  Start({Fax("a.tif")});
  window->SetWindowPos(nullptr, 0, 0, 600, 600, SWP_NOZORDER);
  Choose(kKeepWidth);
  const int narrow = Page().GetScalePercent();
  EXPECT_LE(Page().m_szScaled.cx, Page().m_szClient.cx);
  EXPECT_GT(Page().m_szScaled.cx, Page().m_szClient.cx - 30);
  window->SetWindowPos(nullptr, 0, 0, 790, 600, SWP_NOZORDER);
  Settle();
  const int wide = Page().GetScalePercent();
  EXPECT_GT(wide, narrow + 10);
  Key('1', false, false);
  Page().ZoomIn();
  Choose(ID_ZP_NEXT_PAGE);
  EXPECT_EQ(Page().GetScalePercent(), wide) << "the next page is fitted again";
  EXPECT_EQ(static_cast<const char*>(::GetWindowText(window->m_wndComboScale.m_hWnd)),
            std::to_string(wide) + "%");
  Quit();
  Start({Fax("b.tif")});
  EXPECT_EQ(Page().GetScalePercent(), wide);
  Choose(kKeepNoFit);
  Page().ZoomToScaleFactor(1);
  Choose(ID_ZP_NEXT_PAGE);
  EXPECT_EQ(Page().GetScalePercent(), 100);
}

/// What is on the clipboard as a bitmap; freed by the caller.
struct_LEAD_Bitmap Clipboard() {
  struct_LEAD_Bitmap bitmap{};
  LEADTOOLS::InitBitmap(&bitmap, 0, 0, 1);
  EXPECT_TRUE(OpenClipboard(nullptr));
  const HGLOBAL block = GetClipboardData(CF_DIB);
  if (block != nullptr) {
    const HGLOBAL copy = GlobalAlloc(GMEM_MOVEABLE, GlobalSize(block));
    std::copy_n(static_cast<const char*>(GlobalLock(block)), GlobalSize(block),
                static_cast<char*>(GlobalLock(copy)));
    GlobalUnlock(block);
    GlobalUnlock(copy);
    LEADTOOLS::ChangeFromDIB(&bitmap, copy);
  }
  CloseClipboard();
  return bitmap;
}

TEST_F(ViewerWindow, ThePageOrTheSelectionIsCopiedWithItsResolution) {
  Start({Fax("a.tif")});
  Page().ZoomToScaleFactor(0.5);
  Settle();
  const auto drag = [this](POINT from, POINT to, bool shift) {
    ui::PressMouse(Page().m_hWnd, from, ui::Button::Left, shift);
    ui::MoveMouse(Page().m_hWnd, to, true);
    ui::ReleaseMouse(Page().m_hWnd, to);
    Settle();
  };
  const auto expect = [this](int width, int height, const char* when) {
    Key('C', false, true);
    struct_LEAD_Bitmap copied = Clipboard();
    EXPECT_EQ(std::pair(copied.Width, copied.Height), std::pair(width, height)) << when;
    EXPECT_EQ(std::pair(copied.XResolution, copied.YResolution), std::pair(204, 196)) << when;
    LEADTOOLS::FreeBitmap(&copied);
  };
  expect(1728, 2156, "the whole page, its rows doubled");
  drag({10, 20}, {110, 70}, true);
  EXPECT_EQ(Page().SelectedPart(), CRect(20, 40, 220, 140));
  expect(200, 100, "a selection");
  Choose(ID_ZP_NEXT_PAGE);
  expect(1728, 2156, "of another page nothing is selected");
  Choose(kSelectArea);
  drag({10, 20}, {60, 45}, false);
  expect(100, 50, "by the menu");
  Key(VK_ESCAPE);
  expect(1728, 2156, "taken back");
  EXPECT_TRUE(told.empty());
}

TEST_F(ViewerWindow, TheKeyboardGoesRoundPageStripAndCombos) {
  Start({Fax("a.tif")});
  constexpr int kF6 = VK_F1 + 5;
  Choose(ID_ZP_VIEW_THUMBNAILS);
  Page().SetFocus();
  const HWND stops[] = {Page().m_hWnd, window->m_pThumbsWnd->m_hWnd, window->m_wndComboPage.m_hWnd,
                        window->m_wndComboScale.m_hWnd};
  const auto at = [&] {
    const HWND focus = ::GetFocus();
    for (int i = 0; i < 4; ++i)
      if (stops[i] == focus || ::IsChild(stops[i], focus)) return i;
    return -1;
  };
  for (const int key : {kF6, int{VK_TAB}})
    for (const bool back : {false, true})
      for (int step = 1; step <= 4; ++step) {
        Key(key, back);
        EXPECT_EQ(at(), back ? 4 - step : step % 4) << key << ' ' << back;
      }
}

TEST_F(ViewerWindow, TheStatusBarTellsNameResolutionAndDamage) {
  const std::string damaged = Fax("damaged.tif");
  std::fstream file(damaged, std::ios::in | std::ios::out | std::ios::binary);
  file.seekp(9000);
  file << "This is no fax coding at all, but it stands amid some.";
  file.close();
  Start({Fax("a.tif")});
  EXPECT_EQ(Pane(kNamePane), "a.tif");
  EXPECT_EQ(Pane(kDpiPane), "204 x 98 dpi");
  EXPECT_EQ(Pane(kDamagePane), "");
  ASSERT_TRUE(window->OpenPath(damaged));
  Settle();
  const int rows = Page().GetPageInfo().DamagedRows;
  EXPECT_GT(rows, 0);
  EXPECT_EQ(Pane(kDamagePane),
            rows == 1 ? "1 riga non leggibile" : std::to_string(rows) + " righe non leggibili");
  EXPECT_EQ(Pane(kNamePane), "damaged.tif");
}

}  // namespace
