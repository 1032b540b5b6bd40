// Panes side by side: sizes, dragging, a column taken out.

#include <gtest/gtest.h>

#include <cstdlib>
#include <vector>

#include "tessarel12_testing.h"
#include "tests/framework/bars_fixture.h"

using namespace bars_test;  // NOLINT: the tests' own names
namespace desktop = platform::testing;

namespace {

TEST(SplitterLayout, TheLastTrackTakesTheRestAndTooSmallOnesClose) {
  const struct {
    const char* name;
    std::vector<CSplitterWnd::CRowColInfo> tracks;
    int room;
    std::vector<int> sizes;
  } cases[] = {
      {"plain", {{0, 140, -1}, {0, 140, -1}}, 400, {140, 254}},
      {"one", {{0, 140, -1}}, 400, {400}},
      {"three", {{0, 50, -1}, {0, 60, -1}, {0, 5, -1}}, 200, {50, 60, 78}},
      {"no room for the last", {{0, 140, -1}, {0, 140, -1}}, 100, {100, 0}},
      {"last below its minimum", {{0, 140, -1}, {50, 140, -1}}, 180, {180, 0}},
      {"first below its minimum", {{30, 20, -1}, {0, 140, -1}}, 200, {0, 194}},
      {"nothing", {{0, 140, -1}, {0, 140, -1}}, 0, {0, 0}},
  };
  for (auto c : cases) {
    CSplitterWnd::LayoutTracks(c.tracks.data(), static_cast<int>(c.tracks.size()), c.room, 6);
    std::vector<int> sizes;
    for (const auto& track : c.tracks) sizes.push_back(track.nCurSize);
    EXPECT_EQ(sizes, c.sizes) << c.name;
  }
}

class Splitting : public ::testing::Test {
 protected:
  Splitting() : m_frame(Frame::Show(600, 300)) {}
  ~Splitting() override {
    m_frame->DestroyWindow();
    desktop::PumpUntilIdle();
  }
  std::pair<int, int> Columns() const {
    CRect first;
    CRect second;
    m_frame->splitter.GetPane(0, 0)->GetWindowRect(first);
    m_frame->splitter.GetPane(0, 1)->GetWindowRect(second);
    EXPECT_EQ(second.left - first.right, m_frame->splitter.m_cxSplitter);
    return {first.Width(), second.Width()};
  }
  Frame* m_frame;
};

TEST_F(Splitting, TheBarIsDragged) {
  ASSERT_EQ(Columns(), std::pair(140, 454));
  const struct {
    const char* name;
    int from, to;
    std::pair<int, int> columns;
  } cases[] = {{"right", 143, 203, {200, 394}},         {"taken at its edge", 200, 250, {250, 344}},
               {"beyond the left", 252, -50, {0, 594}}, {"beyond the right", 2, 900, {594, 0}},
               {"back", 596, 102, {100, 494}},          {"not on the bar", 50, 200, {100, 494}}};
  for (const auto& c : cases) {
    const CPoint from(c.from, 60);
    const CPoint to(c.to, 60);
    desktop::MoveMouse(m_frame->splitter, from);
    desktop::PressMouse(m_frame->splitter, from);
    desktop::MoveMouse(m_frame->splitter, to, true);
    desktop::PumpUntilIdle();
    desktop::ReleaseMouse(m_frame->splitter, to);
    desktop::PumpUntilIdle();
    EXPECT_EQ(Columns(), c.columns) << c.name;
  }
  EXPECT_EQ(CWnd::GetCapture(), nullptr);
}

TEST_F(Splitting, AnIdealWidthOutlivesOtherSizesOfTheFrame) {
  m_frame->SetWindowPos(nullptr, 0, 0, 120, 300, SWP_NOMOVE | SWP_NOZORDER);
  m_frame->SetWindowPos(nullptr, 0, 0, 700, 300, SWP_NOMOVE | SWP_NOZORDER);
  EXPECT_EQ(Columns(), std::pair(140, 554));
}

TEST_F(Splitting, ARecordBeyondTheColumnsStays) {
  Splitter& splitter = m_frame->splitter;
  CWnd* hidden = splitter.GetPane(0, 0);
  CWnd* shown = splitter.GetPane(0, 1);
  hidden->ShowWindow(SW_HIDE);
  hidden->SetDlgCtrlID(AFX_IDW_PANE_FIRST + 2);
  shown->SetDlgCtrlID(splitter.IdFromRowCol(0, 0));
  splitter.m_nCols = 1;
  splitter.m_pColInfo[1].nCurSize = splitter.m_pColInfo[0].nCurSize;
  splitter.RecalcLayout();
  CRect place;
  splitter.GetPane(0, 0)->GetWindowRect(place);
  EXPECT_EQ(place.Width(), 600);
  EXPECT_EQ(splitter.m_pColInfo[1].nCurSize, 140) << "layout touches the columns in use only";
  EXPECT_EQ(splitter.IsChildPane(hidden), FALSE);
  splitter.m_nCols = 2;
  shown->SetDlgCtrlID(splitter.IdFromRowCol(0, 1));
  hidden->SetDlgCtrlID(splitter.IdFromRowCol(0, 0));
  hidden->ShowWindow(SW_SHOWNA);
  splitter.m_pColInfo[0].nIdealSize = splitter.m_pColInfo[1].nCurSize;
  splitter.RecalcLayout();
  EXPECT_EQ(Columns(), std::pair(140, 454));
}

TEST_F(Splitting, APaneHasThePlaceThatItsNumberTells) {
  Splitter& splitter = m_frame->splitter;
  int row = -1;
  int column = -1;
  EXPECT_NE(splitter.IsChildPane(splitter.GetPane(0, 1), &row, &column), FALSE);
  EXPECT_EQ(std::pair(row, column), std::pair(0, 1));
  EXPECT_EQ(splitter.IsChildPane(m_frame), FALSE);
  splitter.SetActivePane(0, 1);
  EXPECT_EQ(splitter.GetActivePane(&row, &column), splitter.GetPane(0, 1));
  EXPECT_EQ(column, 1);
  m_frame->toolbar.SetFocus();
  EXPECT_EQ(splitter.GetActivePane(), nullptr);
  EXPECT_EQ(splitter.GetPane(1, 0), nullptr);
  EXPECT_NE(splitter.GetPane(0, 0)->GetExStyle() & WS_EX_CLIENTEDGE, 0U);
}

TEST_F(Splitting, WhatAPaneTellsReachesTheFrame) {
  m_frame->splitter.SendMessage(WM_COMMAND, kPrint);
  EXPECT_EQ(m_frame->trace, "P");
}

TEST(SplitterLife, BeforeAnyLayoutTheSizesAreUnknown) {
  CFrameWnd* frame = new CFrameWnd;  // NOLINT: ends with its window
  frame->Create(nullptr, "", WS_OVERLAPPEDWINDOW, CRect(0, 0, 300, 200));
  Splitter splitter;
  ASSERT_NE(splitter.CreateStatic(frame, 1, 2), FALSE);
  ASSERT_NE(splitter.CreateView(0, 0, RUNTIME_CLASS(Pane), CSize(140, 0), nullptr), FALSE);
  EXPECT_EQ(splitter.m_pColInfo[0].nCurSize, -1);
  EXPECT_EQ(splitter.m_pColInfo[0].nIdealSize, 140);
  EXPECT_EQ(splitter.CreateView(0, 0, RUNTIME_CLASS(Pane), CSize(1, 1), nullptr), FALSE) << "taken";
  EXPECT_EQ(splitter.CreateView(0, 2, RUNTIME_CLASS(Pane), CSize(1, 1), nullptr), FALSE) << "no such";
  frame->DestroyWindow();
}

}  // namespace
