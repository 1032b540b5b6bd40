#pragma once

// The application with windows of its own, in a folder that ends with the test.

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
#include "apps/viewer/windowless.h"
#include "tessarel12_testing.h"

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
    MSG last;
    while (PeekMessage(&last, nullptr, 0, 0, PM_REMOVE) != FALSE)
      DispatchMessage(&last);  // WM_QUIT among them
    app.reset();
  }
  /// Another file with some pages of one.
  std::string Export(const std::string& path, const std::string& name, const PageRanges& pages) const {
    Options options;
    options.target = (folder / name).string();
    options.pages = pages;
    ExportPages(InputFile(path), options, [](int, int) { return true; });
    return options.target;
  }
  static int PagesOf(const fs::path& path) {
    return fs::exists(path) ? Describe(InputFile(path.string())).TotalPages : 0;
  }
  static std::vector<char> ReadAll(const std::string& path) {
    std::ifstream file(path, std::ios::binary);
    return {std::istreambuf_iterator<char>(file), {}};
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
