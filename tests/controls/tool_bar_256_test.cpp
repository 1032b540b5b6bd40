// The look of disabled buttons, pixel by pixel, and the two lists of pictures.

#include "controls/tool_bar_256.h"

#include <gtest/gtest.h>

#include <QApplication>
#include <QPalette>

#include "library/resource_ids.h"
#include "platform/framework/frame_wnd.h"
#include "tessarel12_testing.h"

namespace {

class ToolBar : public CToolBar256 {
 public:
  using CToolBar256::DitherBlt;
  using CToolBar256::m_ilDisabled;
  using CToolBar256::m_ilEnabled;
};

class ToolBar256 : public testing::Test {
 protected:
  void SetUp() override {
    frame = new CFrameWnd;  // deletes itself with its window
    ASSERT_TRUE(frame->Create(nullptr, "host", WS_OVERLAPPEDWINDOW, CRect(0, 0, 500, 300)));
    screen = ::GetDC(frame->m_hWnd);
    target = CreateCompatibleDC(screen);
    canvas = CreateCompatibleBitmap(screen, 40, 20);
    SelectObject(target, canvas);
    source = CreateCompatibleDC(screen);
    strip = CreateCompatibleBitmap(screen, 12, 4);
    former = SelectObject(source, strip);
    const RECT all = {0, 0, 12, 4};
    FillRect(source, &all, GetSysColorBrush(COLOR_BTNFACE));
  }
  void TearDown() override {
    DeleteDC(target);
    DeleteObject(canvas);
    DeleteDC(source);
    DeleteObject(strip);
    ::ReleaseDC(frame->m_hWnd, screen);
    frame->DestroyWindow();
  }
  /// f face, h highlight, s shadow, ? anything else.
  char At(int x, int y) const {
    const COLORREF color = GetPixel(target, x, y);
    if (color == GetSysColor(COLOR_BTNFACE)) return 'f';
    if (color == GetSysColor(COLOR_3DHILIGHT)) return 'h';
    return color == GetSysColor(COLOR_3DSHADOW) ? 's' : '?';
  }
  std::vector<std::string> Drawn(int x, int y, int width, int height) {
    SelectObject(source, former);  // the strip is selected once at a time
    bar.DitherBlt(target, x, y, width, height, strip, 0, 0, 4);
    std::vector<std::string> rows;
    for (int row = 0; row < height; ++row) {
      rows.emplace_back();
      for (int column = 0; column < width; ++column) rows.back() += At(x + column, y + row);
    }
    return rows;
  }

  ToolBar bar;
  CFrameWnd* frame = nullptr;
  HDC screen = nullptr;
  HDC target = nullptr;
  HBITMAP canvas = nullptr;
  HDC source = nullptr;
  HBITMAP strip = nullptr;
  HGDIOBJ former = nullptr;
};

TEST_F(ToolBar256, HighlightsBelowAndRightOfWhatIsDark) {
  // Pictures of 4 pixels: one dot inside; one at the right edge, whose highlight would leave its cell; one
  // dark all over.
  SetPixel(source, 1, 1, RGB(0, 0, 0));
  SetPixel(source, 7, 0, RGB(0, 0, 0));
  const RECT third = {8, 0, 12, 2};
  FillRect(source, &third, static_cast<HBRUSH>(GetStockObject(BLACK_BRUSH)));
  EXPECT_EQ(Drawn(0, 0, 12, 4),
            (std::vector<std::string>{"fffffffsssss", "fsffffffssss", "ffhffffffhhh", "ffffffffffff"}));
}

TEST_F(ToolBar256, DrawsAtAnyPlace) {
  SetPixel(source, 0, 0, RGB(0, 0, 128));
  EXPECT_EQ(Drawn(10, 5, 12, 4),
            (std::vector<std::string>{"sfffffffffff", "fhffffffffff", "ffffffffffff", "ffffffffffff"}));
}

TEST_F(ToolBar256, ItsBrushesGo) {
  const HGDIOBJ before = GetCurrentObject(target, OBJ_BRUSH);
  Drawn(0, 0, 12, 4);
  EXPECT_EQ(GetCurrentObject(target, OBJ_BRUSH), before);
}

TEST_F(ToolBar256, HasBothListsFromOneStrip) {
  ASSERT_TRUE(bar.CreateEx(frame, TBSTYLE_FLAT, WS_CHILD | WS_VISIBLE | CBRS_ALIGN_TOP));
  bar.SetSizes({23, 23}, {16, 16});
  const UINT ids[] = {1, 0, 2, 3};
  bar.SetButtons(ids, 4);
  bar.SetBitmap(IDB_ZP_VIEWER_TOOLBAR, RGB(255, 0, 255));
  EXPECT_EQ(bar.m_ilEnabled.GetImageCount(), 16);
  EXPECT_EQ(bar.m_ilDisabled.GetImageCount(), 16);
}

TEST_F(ToolBar256, OnADarkFaceADisabledPictureIsADrawingAndNoSquare) {
  const QPalette light = QApplication::palette();
  for (const bool dark : {false, true}) {
    if (dark) QApplication::setPalette(QPalette(QColor(40, 40, 44)));
    ToolBar shown;
    ASSERT_TRUE(shown.CreateEx(frame, TBSTYLE_FLAT, WS_CHILD | WS_VISIBLE | CBRS_ALIGN_TOP));
    shown.SetSizes({23, 23}, {16, 16});
    const UINT ids[] = {1, 0, 2, 3};
    shown.SetButtons(ids, 4);
    shown.SetBitmap(IDB_ZP_VIEWER_TOOLBAR, RGB(255, 0, 255));
    for (int picture = 0; picture < 16; ++picture) {
      constexpr COLORREF kGround = RGB(1, 2, 3);
      const HBRUSH ground = CreateSolidBrush(kGround);
      const RECT all = {0, 0, 40, 20};
      FillRect(target, &all, ground);
      DeleteObject(ground);
      ImageList_Draw(shown.m_ilDisabled.m_hImageList, picture, target, 0, 0, ILD_TRANSPARENT);
      int through = 0;
      for (int at = 0; at < 256; ++at) through += GetPixel(target, at % 16, at / 16) == kGround ? 1 : 0;
      EXPECT_EQ(through > 40 && through < 250, dark) << picture << ": " << through;
      if (!dark) {
        EXPECT_EQ(through, 0) << picture;
      }
    }
  }
  QApplication::setPalette(light);
}

}  // namespace
