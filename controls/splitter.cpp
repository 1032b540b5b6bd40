#include "controls/splitter.h"

#include <algorithm>

#include "platform/framework/frame_wnd.h"

namespace {

/// The id under which a hidden pane waits: that of the column behind the last one.
int ParkedId(int row, int columns) {
  return static_cast<int>(AFX_IDW_PANE_FIRST) + 16 * row + columns;
}

}  // namespace

// While a column is out, m_nCols is one lower than the number of panes, and the record behind the last
// visible column keeps the hidden one's width.

void CSplitter::HideColumn(int column) {
  if (m_nHiddenCol != -1 || column < 0 || column >= m_nCols) return;
  m_nHiddenCol = column;
  int activeRow = 0;
  int activeColumn = 0;
  if (GetActivePane(&activeRow, &activeColumn) != nullptr && activeColumn == column)
    SetActivePane(activeRow, column + 1 < m_nCols ? column + 1 : 0);
  for (int row = 0; row < m_nRows; ++row) {
    CWnd* pane = GetPane(row, column);
    pane->ShowWindow(SW_HIDE);
    pane->SetDlgCtrlID(ParkedId(row, m_nCols));
    for (int next = column + 1; next < m_nCols; ++next)
      GetPane(row, next)->SetDlgCtrlID(IdFromRowCol(row, next - 1));
  }
  --m_nCols;
  m_pColInfo[m_nCols].nCurSize = m_pColInfo[column].nCurSize;
  RecalcLayout();
}

void CSplitter::ShowColumn() {
  if (m_nHiddenCol == -1) return;
  const int shown = m_nHiddenCol;
  m_nHiddenCol = -1;
  const int width = m_pColInfo[m_nCols].nCurSize;
  ++m_nCols;
  for (int row = 0; row < m_nRows; ++row) {
    CWnd* pane = GetDlgItem(ParkedId(row, m_nCols));
    pane->ShowWindow(SW_SHOWNA);
    // From high to low, so that each id is free when it is given.
    for (int column = m_nCols - 2; column >= shown; --column)
      GetPane(row, column)->SetDlgCtrlID(IdFromRowCol(row, column + 1));
    pane->SetDlgCtrlID(IdFromRowCol(row, shown));
  }
  for (int column = shown + 1; column < m_nCols; ++column)
    m_pColInfo[column].nIdealSize = m_pColInfo[column - 1].nCurSize;
  // A width that a narrow window had left of it is none that anybody wants back.
  CRowColInfo& column = m_pColInfo[shown];
  if (width != -1 && width >= column.nMinSize) column.nIdealSize = width;
  column.nIdealSize = std::max(column.nIdealSize, column.nMinSize);
  RecalcLayout();
}

BOOL CSplitter::OnCommand(WPARAM wParam, LPARAM lParam) {
  if (LOWORD(wParam) != IdFromRowCol(0, 0) || m_nHiddenCol == 0)
    return CSplitterWnd::OnCommand(wParam, lParam);
  CFrameWnd* frame = GetParentFrame();
  if (frame != nullptr) frame->SendMessage(WM_COMMAND, wParam, lParam);
  return TRUE;
}
