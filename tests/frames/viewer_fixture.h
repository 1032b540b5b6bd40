#pragma once

#include <gtest/gtest.h>
#include <unistd.h>

#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <string>
#include <type_traits>
#include <utility>
#include <vector>

#include "frames/image_frame.h"
#include "frames/image_mdi_child.h"
#include "imaging/ltwrap.h"
#include "library/resource_ids.h"
#include "platform/framework/dialog.h"
#include "platform/framework/menu.h"
#include "platform/framework/message_box.h"
#include "tessarel12_testing.h"
#include "tests/frames/broken_pages.h"

/// A viewer frame with its protected side open.
template <typename Frame>
class OpenedUp : public Frame {
 public:
  using Frame::Clear;
  using Frame::OnClose;
  using Frame::OnCommand;
  using Frame::OnTimer;

  CString Pane(UINT id) { return this->m_wndStatusBar.GetPaneText(this->m_wndStatusBar.CommandToIndex(id)); }
  UINT PaneStyle(UINT id) {
    return this->m_wndStatusBar.GetPaneStyle(this->m_wndStatusBar.CommandToIndex(id));
  }
};

/// What a test sees of the message boxes: text and type of each, and the button that is pressed.
struct Boxes {
  static inline std::vector<std::pair<std::string, UINT>> shown;
  static inline int answer = IDOK;
  static int Answer(const CString& text, UINT type) {
    shown.emplace_back(static_cast<const char*>(text), type);
    return answer;
  }
};

inline void EndDialog(HWND dialog, int result) {
  static_cast<CDialog*>(CWnd::FromHandlePermanent(dialog))->EndDialog(result);
}

/// A fresh user and a folder of its own; message boxes are written down.
class ViewerFolder : public testing::Test {
 protected:
  using Page = test_pages::Page;

  void SetUp() override {
    m_folder = std::filesystem::temp_directory_path() / ("tessarel-frames-" + std::to_string(::getpid()));
    std::filesystem::create_directories(m_folder);
    ::setenv("XDG_CONFIG_HOME", m_folder.c_str(), 1);
    Boxes::shown.clear();
    Boxes::answer = IDOK;
    platform::testing::SetMessageBoxAnswer(&Boxes::Answer);
  }
  void TearDown() override {
    platform::testing::SetMessageBoxAnswer(nullptr);
    std::filesystem::remove_all(m_folder);
  }

  /// As many pages of 120 by 80 grey pixels; the one numbered broken, from 1, can't be decoded.
  std::string WriteFile(int pages, int broken = 0, const std::string& name = "pages.tif") {
    const std::string path = (m_folder / name).string();
    test_pages::Write(path, std::vector<Page>(static_cast<std::size_t>(pages), Page{120, 80, 8}));
    if (broken > 0) test_pages::BreakPage(path, broken);
    return path;
  }
  std::string WriteText(const std::string& name) {
    const std::string path = (m_folder / name).string();
    std::ofstream(path) << "no picture at all";
    return path;
  }
  static std::vector<char> ReadAll(const std::string& path) {
    std::ifstream file(path, std::ios::binary);
    return {std::istreambuf_iterator<char>(file), {}};
  }

  std::filesystem::path m_folder;
};

/// A viewer in the host's own loop, shown, with nothing open. A document window stands in a main window.
template <typename Frame>
class ViewerTestOf : public ViewerFolder {
 protected:
  void SetUp() override {
    ViewerFolder::SetUp();
    if constexpr (kInHost) {
      host = new CMDIFrameWnd;  // deletes itself with its window
      ASSERT_TRUE(host->LoadFrame(IDR_ZP_HOST));
      host->SetWindowPos(nullptr, 0, 0, 1000, 800, SWP_NOZORDER);
      host->ShowWindow(SW_SHOW);
    }
    MakeFrame();
  }
  void TearDown() override {
    if (frame != nullptr) frame->DestroyWindow();
    if (host != nullptr) host->DestroyWindow();
    ViewerFolder::TearDown();
  }

  void MakeFrame() {
    if (frame != nullptr) frame->DestroyWindow();
    frame = NewFrame();
    ASSERT_NE(frame, nullptr);
    Settle();
  }
  /// Null if it could not be made.
  OpenedUp<Frame>* NewFrame() {
    auto* made = new OpenedUp<Frame>;  // deletes itself with its window
    if (made->LoadFrame(IDR_ZP_VIEWER, DWORD{WS_OVERLAPPEDWINDOW} | FWS_ADDTOTITLE, host, nullptr) == FALSE)
      return nullptr;
    made->SetWindowPos(nullptr, 0, 0, 900, 700, SWP_NOZORDER);
    if constexpr (kInHost)
      made->ActivateFrame();
    else
      made->ShowWindow(SW_SHOW);
    return made;
  }
  void Open(int pages) {
    ASSERT_TRUE(frame->OpenImageFile(WriteFile(pages).c_str()));
    Settle();
  }
  /// Lets the queue run empty, and the idle work be done.
  void Settle() {
    platform::testing::PumpUntilIdle();
    frame->OnIdleUpdateCmdUI();
    frame->m_wndToolBar.OnUpdateCmdUI(frame, TRUE);
  }
  void Command(UINT id) {
    frame->SendMessage(WM_COMMAND, id);
    Settle();
  }

  // What the user sees

  std::string PagePane() { return Pane(ID_ZP_INDICATOR_PAGE); }
  std::string ZoomPane() { return Pane(ID_ZP_INDICATOR_ZOOM); }
  std::string MessagePane() { return TextOf(frame->m_wndStatusBar); }
  std::string PageText() { return TextOf(frame->m_wndComboPage); }
  std::string ScaleText() { return TextOf(frame->m_wndComboScale); }
  int Shown() const { return frame->m_pImageWnd->GetCurrPage(); }
  int Percent() const { return frame->m_pImageWnd->GetScalePercent(); }
  /// "" for a blank one.
  std::string Pane(UINT id) {
    if ((frame->PaneStyle(id) & SBPS_DISABLED) != 0) return "";
    return static_cast<const char*>(frame->Pane(id));
  }
  static std::string TextOf(const CWnd& window) {
    return static_cast<const char*>(::GetWindowText(window.m_hWnd));
  }
  void ExpectNothingOpen(const char* what) {
    EXPECT_EQ(PagePane(), "") << what;
    EXPECT_EQ(ZoomPane(), "") << what;
    EXPECT_EQ(MessagePane(), "Pronto") << what;
    EXPECT_EQ(PageText(), "") << what;
    EXPECT_EQ(frame->m_wndComboPage.GetCount(), 0) << what;
    EXPECT_FALSE(frame->m_wndComboPage.IsWindowEnabled()) << what;
    EXPECT_EQ(ScaleText(), "") << what;
    EXPECT_FALSE(frame->m_wndComboScale.IsWindowEnabled()) << what;
    EXPECT_EQ(frame->m_pImageWnd->GetMouseMode(), MouseModeNone) << what;
    SCROLLINFO range{};
    range.cbSize = sizeof range;
    frame->m_pImageWnd->GetScrollInfo(SB_VERT, &range);
    EXPECT_EQ(range.nMax, 0) << what << ": a bar would come back with the next size";
  }

  // Input

  void Type(CComboBox& combo, const char* text, int lastKey) {
    combo.SetFocus();
    combo.SetEditSel(0, -1);
    platform::testing::TypeText(combo.m_hWnd, text);
    Settle();
    if (lastKey != 0) platform::testing::PressKey(combo.m_hWnd, lastKey);
    Settle();
  }
  void Click(const CWnd& window, POINT point) {
    platform::testing::PressMouse(window.m_hWnd, point);
    platform::testing::ReleaseMouse(window.m_hWnd, point);
    Settle();
  }

  static constexpr bool kInHost = std::is_base_of_v<CMDIChildWnd, Frame>;

  CMDIFrameWnd* host = nullptr;  ///< null for a frame that is a main window itself
  OpenedUp<Frame>* frame = nullptr;
};

using ViewerTest = ViewerTestOf<CImageFrame>;
/// What holds for both frames word for word.
using BothFrames = testing::Types<CImageFrame, CImageMDIChild>;
