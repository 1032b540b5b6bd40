#pragma once

#include <gtest/gtest.h>
#include <unistd.h>

#include <algorithm>
#include <cstdlib>
#include <filesystem>
#include <memory>
#include <string>
#include <vector>

#include "imagewindow/image_window.h"
#include "platform/framework/frame_wnd.h"
#include "platform/registry/registry.h"
#include "tessarel12_testing.h"
#include "tests/imagewindow/client_size.h"
#include "tests/imagewindow/tiff_writer.h"

/// The window with its protected side open, and a record of what reaches it.
class TestWindow : public CImageWindow {
 public:
  using CImageWindow::CalcScaleFactor;
  using CImageWindow::DoSmartResizing;
  using CImageWindow::GetWidthBytes;
  using CImageWindow::MoveScrollPos;
  using CImageWindow::ReportErrorDefault;
  using CImageWindow::SetScrollPos;
  using CImageWindow::SmartResize;
  using CImageWindow::UpdateScroll;

  bool ZoomToScaleFactor(double factor) override {
    asked.push_back(factor);
    return CImageWindow::ZoomToScaleFactor(factor);
  }
  LRESULT WindowProc(UINT message, WPARAM wParam, LPARAM lParam) override {
    messages.push_back(message);
    return CImageWindow::WindowProc(message, wParam, lParam);
  }
  int Count(UINT message) const {
    return static_cast<int>(std::count(messages.begin(), messages.end(), message));
  }
  bool HasPage() const { return (m_Bitmap.Flags & 1) != 0; }
  bool HasCopy() const { return (m_SmartBitmap.Flags & 1) != 0; }

  std::vector<double> asked;  ///< factors that went through the virtual table
  std::vector<UINT> messages;
};

/// A shown frame with an image window in it, a fresh user, and every report written down.
class ImageWindowTest : public testing::Test {
 protected:
  using Page = test_pages::Page;

  void SetUp() override {
    m_folder = std::filesystem::temp_directory_path() / ("tessarel-image-" + std::to_string(::getpid()));
    std::filesystem::create_directories(m_folder);
    ::setenv("XDG_CONFIG_HOME", m_folder.c_str(), 1);
    Reports().clear();
    frame = new CFrameWnd;  // deletes itself with its window
    ASSERT_TRUE(frame->Create(nullptr, "host", WS_OVERLAPPEDWINDOW, CRect(0, 0, 1000, 800)));
    frame->ShowWindow(SW_SHOW);
    MakeWindow();
  }
  void TearDown() override {
    window.reset();
    frame->DestroyWindow();
    std::filesystem::remove_all(m_folder);
  }

  /// Anew, so that the settings are read again.
  void MakeWindow() {
    window = std::make_unique<TestWindow>();
    window->SetReportErrorCallBack(&Record);
    ASSERT_TRUE(
        window->Create(nullptr, "", WS_CHILD | WS_VISIBLE | WS_BORDER, CRect(0, 0, 300, 200), frame, 1));
    SetClient(400, 300);
  }

  /// Gives the window a client area of this size, whatever borders and bars take.
  void SetClient(int width, int height) { GiveClientSize(*window, *window, width, height); }

  std::string WriteFile(const std::vector<Page>& pages, const std::string& name = "pages.tif") {
    const std::string path = (m_folder / name).string();
    test_pages::Write(path, pages);
    return path;
  }
  void Show(const std::vector<Page>& pages) {
    ASSERT_TRUE(window->OpenImageFile(WriteFile(pages).c_str()));
    ASSERT_TRUE(window->LoadPage(1));
    Settle();
  }

  /// Lets everything be painted.
  void Settle() {
    platform::testing::PumpUntilIdle();
    window->UpdateWindow();
    window->messages.clear();
  }
  bool IsInvalid() {
    CRect rect;
    return window->GetUpdateRect(rect) != FALSE;
  }
  /// Paints what is invalid; whether the background was erased first.
  bool PaintErased() {
    window->messages.clear();
    window->UpdateWindow();
    EXPECT_EQ(window->Count(WM_PAINT), 1);
    return window->Count(WM_ERASEBKGND) > 0;
  }
  /// 0xRRGGBB at a point of the client area, as it was painted.
  unsigned Pixel(int x, int y) {
    const CClientDC dc(window.get());
    const COLORREF color = dc.GetPixel(x, y);
    return static_cast<unsigned>(GetRValue(color) << 16 | GetGValue(color) << 8 | GetBValue(color));
  }
  /// The same, as the desktop shows it.
  unsigned ScreenPixel(int x, int y) {
    CPoint corner(0, 0);
    window->ClientToScreen(&corner);
    CRect outer;
    window->GetWindowRect(outer);
    return platform::testing::WindowPixel(*window, corner.x - outer.left + x, corner.y - outer.top + y) &
           0xffffff;
  }
  SCROLLINFO Bar(int bar) {
    SCROLLINFO info{};
    info.cbSize = sizeof info;
    window->GetScrollInfo(bar, &info);
    return info;
  }

  static std::vector<std::pair<int, std::string>>& Reports() {
    static std::vector<std::pair<int, std::string>> reports;
    return reports;
  }
  static void Record(int code, CString text) { Reports().emplace_back(code, static_cast<const char*>(text)); }

  std::filesystem::path m_folder;
  CFrameWnd* frame = nullptr;
  std::unique_ptr<TestWindow> window;
};
