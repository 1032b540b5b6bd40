// A column taken out and put back: numbers, widths, the active pane, and the commands of the first pane.

#include "controls/splitter.h"

#include <gtest/gtest.h>

#include "platform/framework/frame_wnd.h"
#include "tessarel12_testing.h"

namespace {

class Pane : public CWnd {
  DECLARE_DYNCREATE(Pane)
 protected:
  void PostNcDestroy() override { delete this; }
};
IMPLEMENT_DYNCREATE(Pane, CWnd)

class Splitter : public CSplitter {
 public:
  using CSplitter::m_nCols;
  using CSplitter::m_pColInfo;
};

class Frame : public CFrameWnd {
 public:
  explicit Frame(int columns) : m_columns(columns) {}
  Splitter splitter;
  std::vector<CWnd*> panes;
  std::vector<std::pair<WPARAM, LPARAM>> commands;

 protected:
  BOOL OnCreateClient(LPCREATESTRUCT, CCreateContext* context) override {
    if (splitter.CreateStatic(this, 1, m_columns) == FALSE) return FALSE;
    for (int i = 0; i < m_columns; ++i) {
      splitter.CreateView(0, i, RUNTIME_CLASS(Pane), {100 + 20 * i, 0}, context);
      panes.push_back(splitter.GetPane(0, i));
    }
    return TRUE;
  }
  BOOL OnCommand(WPARAM wParam, LPARAM lParam) override {
    commands.emplace_back(wParam, lParam);
    return FALSE;
  }

 private:
  int m_columns;
};

class Splitters : public testing::TestWithParam<int> {
 protected:
  void Make(int columns) {
    frame = new Frame(columns);  // deletes itself with its window
    ASSERT_TRUE(frame->Create(nullptr, "host", WS_OVERLAPPEDWINDOW, CRect(0, 0, 800, 400)));
    frame->ShowWindow(SW_SHOW);
    platform::testing::PumpUntilIdle();
  }
  void TearDown() override {
    if (frame != nullptr) frame->DestroyWindow();
  }
  std::vector<int> Ids() const {
    std::vector<int> ids;
    for (CWnd* pane : frame->panes)
      ids.push_back(pane->GetDlgCtrlID() - static_cast<int>(AFX_IDW_PANE_FIRST));
    return ids;
  }
  std::vector<int> Widths() const {
    std::vector<int> widths;
    for (CWnd* pane : frame->panes) {
      CRect place;
      pane->GetWindowRect(place);
      widths.push_back(pane->IsWindowVisible() ? place.Width() : 0);
    }
    return widths;
  }

  Frame* frame = nullptr;
};

TEST_F(Splitters, HiddenColumnsAreParkedAndComeBack) {
  struct Case {
    int columns;
    int hidden;
    std::vector<int> ids;
  };
  const Case cases[] = {
      {2, 0, {2, 0}}, {2, 1, {0, 2}}, {3, 0, {3, 0, 1}}, {3, 1, {0, 3, 1}}, {3, 2, {0, 1, 3}}};
  for (const Case& c : cases) {
    Make(c.columns);
    const std::vector<int> idsBefore = Ids();
    const std::vector<int> widthsBefore = Widths();
    frame->splitter.HideColumn(c.hidden);
    EXPECT_EQ(Ids(), c.ids) << c.columns << c.hidden;
    EXPECT_EQ(frame->splitter.m_nHiddenCol, c.hidden);
    EXPECT_EQ(frame->splitter.m_nCols, c.columns - 1);
    EXPECT_EQ(frame->splitter.m_pColInfo[c.columns - 1].nCurSize,
              widthsBefore[static_cast<std::size_t>(c.hidden)]);
    EXPECT_FALSE(frame->panes[static_cast<std::size_t>(c.hidden)]->IsWindowVisible());
    frame->splitter.HideColumn(c.hidden == 0 ? 1 : 0);  // one at a time
    EXPECT_EQ(Ids(), c.ids) << c.columns << c.hidden;
    frame->splitter.ShowColumn();
    EXPECT_EQ(Ids(), idsBefore) << c.columns << c.hidden;
    EXPECT_EQ(frame->splitter.m_nHiddenCol, -1);
    EXPECT_EQ(Widths()[static_cast<std::size_t>(c.hidden)], widthsBefore[static_cast<std::size_t>(c.hidden)])
        << c.columns << c.hidden;
    frame->splitter.ShowColumn();  // none is out
    EXPECT_EQ(Ids(), idsBefore) << c.columns << c.hidden;
    frame->DestroyWindow();
    frame = nullptr;
  }
}

TEST_F(Splitters, AColumnKeepsItsLeastWidth) {
  Make(2);
  Splitter& splitter = frame->splitter;
  splitter.SetColumnInfo(0, 140, 60);
  splitter.RecalcLayout();
  splitter.SendMessage(WM_LBUTTONDOWN, MK_LBUTTON, MAKELPARAM(142, 10));
  splitter.SendMessage(WM_MOUSEMOVE, MK_LBUTTON, MAKELPARAM(8, 10));
  splitter.SendMessage(WM_LBUTTONUP, 0, MAKELPARAM(8, 10));
  EXPECT_EQ(Widths()[0], 60);
  struct {
    int saved, shown;
  } constexpr kCases[] = {{6, 60}, {-1, 60}, {90, 90}};
  for (const auto& c : kCases) {
    splitter.HideColumn(0);
    splitter.m_pColInfo[1].nCurSize = c.saved;
    splitter.ShowColumn();
    EXPECT_EQ(Widths()[0], c.shown) << c.saved;
  }
}

TEST_F(Splitters, TheRestFillsTheSplitter) {
  Make(2);
  frame->splitter.HideColumn(0);
  CRect splitter;
  frame->splitter.GetClientRect(splitter);
  EXPECT_GE(Widths()[1], splitter.Width() - 4);
}

TEST_F(Splitters, TheActivePaneMovesOn) {
  struct Case {
    int hidden;
    int active;  ///< afterwards, pane
  };
  for (const Case& c : {Case{0, 1}, Case{1, 2}, Case{2, 0}}) {
    Make(3);
    frame->splitter.SetActivePane(0, c.hidden);
    frame->splitter.HideColumn(c.hidden);
    EXPECT_EQ(frame->splitter.GetActivePane(), frame->panes[static_cast<std::size_t>(c.active)]) << c.hidden;
    frame->DestroyWindow();
    frame = nullptr;
  }
}

TEST_F(Splitters, CommandsOfThePanesReachTheFrame) {
  Make(2);
  const WPARAM picked = MAKEWPARAM(59648, 1024);
  struct Case {
    int hidden;  ///< -1 none
    LRESULT result;
  };
  // Taken for handled where it is the first pane's own; else it is the frame that tells.
  for (const Case& c : {Case{-1, 1}, Case{0, 0}, Case{1, 1}}) {
    if (c.hidden >= 0) frame->splitter.HideColumn(c.hidden);
    frame->commands.clear();
    EXPECT_EQ(frame->splitter.SendMessage(WM_COMMAND, picked, 77), c.result) << c.hidden;
    ASSERT_EQ(frame->commands.size(), 1U) << c.hidden;
    EXPECT_EQ(frame->commands[0], std::make_pair(picked, LPARAM{77})) << c.hidden;
    frame->splitter.ShowColumn();
  }
}

}  // namespace
