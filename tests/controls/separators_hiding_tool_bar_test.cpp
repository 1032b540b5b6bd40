// Which gaps of a toolbar lose their line, and what they are filled with.

#include "controls/separators_hiding_tool_bar.h"

#include <gtest/gtest.h>

#include "platform/framework/frame_wnd.h"
#include "platform/framework/standard_controls.h"
#include "tessarel12_testing.h"

namespace {

constexpr int kGap = 2;      // button 2, the gap that a control may stand in
constexpr int kFreeGap = 4;  // button 4
constexpr COLORREF kFill = RGB(200, 0, 100);
constexpr std::uint32_t kFillPixel = 0xffc80064;

/// Fills in a colour that nothing else draws in, unless the class's own background is asked for.
class ToolBar : public CSeparatorsHidingToolBar {
 public:
  CBrush* GetBackgroundBrush() override {
    return ofClass ? CSeparatorsHidingToolBar::GetBackgroundBrush() : brush;
  }
  using CSeparatorsHidingToolBar::m_bDelayedButtonLayout;

  CBrush fill{kFill};
  CBrush* brush = &fill;
  bool ofClass = false;
};

class SeparatorsHidingToolBar : public testing::Test {
 protected:
  void SetUp() override {
    frame = new CFrameWnd;  // deletes itself with its window
    ASSERT_TRUE(frame->Create(nullptr, "host", WS_OVERLAPPEDWINDOW, CRect(0, 0, 500, 300)));
    ASSERT_TRUE(bar.CreateEx(frame, TBSTYLE_FLAT, WS_CHILD | WS_VISIBLE | CBRS_ALIGN_TOP));
    bar.SetSizes({23, 22}, {16, 16});
    const UINT ids[] = {1, 2, 0, 3, 0, 4};
    bar.SetButtons(ids, 6);
    bar.SetButtonInfo(kGap, 100, TBBS_SEPARATOR, 50);
    bar.SetButtonInfo(kFreeGap, 0, TBBS_SEPARATOR, 16);
    frame->RecalcLayout();
    frame->ShowWindow(SW_SHOW);
    platform::testing::PumpUntilIdle();
  }
  void TearDown() override {
    CRect place;
    child.DestroyWindow();
    frame->DestroyWindow();
  }
  CRect Gap(int index) const {
    CRect place;
    bar.GetItemRect(index, place);
    return place;
  }
  /// A control on the bar, seen or not.
  void Stand(const CRect& place) {
    ASSERT_TRUE(child.CWnd::Create("STATIC", "", WS_CHILD | WS_VISIBLE, place, &bar, 100));
    platform::testing::PumpUntilIdle();
  }
  void Repaint(const RECT* part = nullptr) {
    ::InvalidateRect(bar.m_hWnd, part, TRUE);
    platform::testing::PumpUntilIdle();
  }
  /// Left and right edge, and the middle, where a line would be.
  std::vector<std::uint32_t> Pixels(const CRect& gap) const {
    const int y = gap.top + 4;
    return {Pixel(gap.left, y), Pixel((gap.left + gap.right) / 2, y), Pixel(gap.right - 1, y)};
  }
  std::uint32_t Pixel(int x, int y) const { return platform::testing::WindowPixel(bar.m_hWnd, x, y); }
  /// True if any pixel of the gap differs from its left edge.
  bool HasLine(const CRect& gap) const {
    for (int x = gap.left; x < gap.right; ++x)
      for (int y = gap.top; y < gap.bottom; ++y)
        if (Pixel(x, y) != Pixel(gap.left, gap.top)) return true;
    return false;
  }
  static std::vector<std::uint32_t> Filled() { return {kFillPixel, kFillPixel, kFillPixel}; }

  ToolBar bar;
  CFrameWnd* frame = nullptr;
  CStatic child;
};

struct Standing {
  const char* name;
  CRect fromGap;  ///< the control's edges, from those of the gap inwards
  UINT style;     ///< of the gap
  bool filled;
};

class WhereAControlStands : public SeparatorsHidingToolBar, public testing::WithParamInterface<Standing> {};

TEST_P(WhereAControlStands, TheGapIsFilledAsAWhole) {
  const Standing& standing = GetParam();
  bar.SetButtonInfo(kGap, 100, standing.style, 50);
  CRect place = Gap(kGap);
  place.DeflateRect(standing.fromGap.left, standing.fromGap.top, standing.fromGap.right,
                    standing.fromGap.bottom);
  Stand(place);
  Repaint();
  EXPECT_EQ(Pixels(Gap(kGap)) == Filled(), standing.filled);
  for (const std::uint32_t pixel : Pixels(Gap(kFreeGap))) EXPECT_NE(pixel, kFillPixel);
  EXPECT_TRUE(HasLine(Gap(kFreeGap)));
  CRect button = Gap(kGap - 1);
  EXPECT_NE(Pixel(button.right - 1, button.top), kFillPixel);
}

INSTANTIATE_TEST_SUITE_P(
    All, WhereAControlStands,
    testing::Values(Standing{"Inside", {5, 10, 35, 2}, TBBS_SEPARATOR, true},
                    Standing{"OverOneCorner", {45, 18, -3, -20}, TBBS_SEPARATOR, true},
                    Standing{"BesideTouchingTheEdge", {50, 0, -10, 0}, TBBS_SEPARATOR, false},
                    Standing{"BelowTouchingTheEdge", {0, 22, 0, -4}, TBBS_SEPARATOR, false},
                    Standing{"GapWithAState", {5, 10, 35, 2}, TBBS_SEPARATOR | TBBS_PRESSED, false}),
    [](const auto& info) { return std::string(info.param.name); });

TEST_F(SeparatorsHidingToolBar, WithoutAControlAllLinesStay) {
  Repaint();
  EXPECT_TRUE(HasLine(Gap(kGap)));
  EXPECT_TRUE(HasLine(Gap(kFreeGap)));
}

TEST_F(SeparatorsHidingToolBar, FillsInsideTheClipBoxOnly) {
  CRect gap = Gap(kGap);
  Stand({gap.left + 5, gap.top + 12, gap.left + 15, gap.bottom});
  Repaint();
  CBrush other(RGB(0, 200, 0));
  bar.brush = &other;
  const CRect right(gap.right - 10, gap.top, gap.right + 10, gap.bottom);
  Repaint(right);
  EXPECT_EQ(Pixels(gap), (std::vector<std::uint32_t>{kFillPixel, kFillPixel, 0xff00c800}));
  EXPECT_NE(Pixel(gap.right, gap.top + 4), 0xff00c800);
}

TEST_F(SeparatorsHidingToolBar, LaysOutBeforeItPaints) {
  CRect gap = Gap(kGap);
  Stand({gap.left + 5, gap.top + 12, gap.left + 15, gap.bottom});
  bar.SetButtonInfo(kGap, 100, TBBS_SEPARATOR, 90);
  ASSERT_TRUE(bar.m_bDelayedButtonLayout);
  ::InvalidateRect(bar.m_hWnd, nullptr, TRUE);
  ::UpdateWindow(bar.m_hWnd);
  EXPECT_FALSE(bar.m_bDelayedButtonLayout);
  EXPECT_EQ(Pixels(Gap(kGap)), Filled());
  EXPECT_EQ(Gap(kGap).Width(), 90);
}

TEST_F(SeparatorsHidingToolBar, TheBackgroundIsTheClasssOwn) {
  bar.ofClass = true;
  CRect gap = Gap(kGap);
  Stand({gap.left + 5, gap.top + 12, gap.left + 15, gap.bottom});
  const auto former = ::GetClassLong(bar.m_hWnd, GCL_HBRBACKGROUND);
  const HBRUSH solid = CreateSolidBrush(kFill);
  const COLORREF window = GetSysColor(COLOR_WINDOW);
  const std::uint32_t windowPixel =
      0xff000000U | (window & 0xff) << 16 | (window & 0xff00) | (window >> 16 & 0xff);
  const struct {
    const char* name;
    std::intptr_t background;
    std::uint32_t pixel;  // 0: the control's own
  } cases[] = {{"solid", reinterpret_cast<std::intptr_t>(solid), kFillPixel},
               {"theme colour's number", COLOR_WINDOW + 1, windowPixel},
               {"none", 0, 0}};
  for (const auto& [name, background, pixel] : cases) {
    SCOPED_TRACE(name);
    ::SetClassLong(bar.m_hWnd, GCL_HBRBACKGROUND, background);
    const CBrush* brush = bar.GetBackgroundBrush();
    EXPECT_EQ(brush == nullptr ? 0 : reinterpret_cast<std::intptr_t>(brush->m_hObject), background);
    Repaint();
    if (pixel != 0)
      EXPECT_EQ(Pixels(gap), (std::vector<std::uint32_t>{pixel, pixel, pixel}));
    else
      EXPECT_NE(Pixel(gap.left, gap.top + 4), windowPixel);
  }
  CGdiObject::DeleteTempMap();
  ::SetClassLong(bar.m_hWnd, GCL_HBRBACKGROUND, former);
  DeleteObject(solid);
}

TEST_F(SeparatorsHidingToolBar, WithoutAWindowThereIsNoBackground) {
  ToolBar none;
  none.ofClass = true;
  EXPECT_EQ(none.GetBackgroundBrush(), nullptr);
}

}  // namespace
