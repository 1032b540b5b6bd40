// Where the panes and the bars of a splitter lie.

#include <algorithm>

#include "platform/framework/splitter_wnd.h"

void CSplitterWnd::LayoutTracks(CRowColInfo* tracks, int count, int room, int bar) {
  room = std::max(room, 0);
  for (int i = 0; i < count; ++i) {
    CRowColInfo& track = tracks[i];
    const bool last = i == count - 1;
    int size = last ? room : track.nIdealSize < track.nMinSize ? 0 : std::max(track.nIdealSize, 0);
    size = std::min(size, room);
    if (i > 0 && size < track.nMinSize && room < track.nMinSize) {
      tracks[i - 1].nCurSize += room + bar;  // no bar is left to grip either
      track.nCurSize = 0;
      room = 0;
      continue;
    }
    track.nCurSize = size;
    room = std::max(room - size - bar, 0);
  }
}

void CSplitterWnd::RecalcLayout() {
  CRect client;
  GetClientRect(client);
  if (m_nRows < 1 || m_nCols < 1 || client.IsRectEmpty() != 0) return;
  LayoutTracks(m_pColInfo, m_nCols, client.Width(), m_cxSplitter);
  LayoutTracks(m_pRowInfo, m_nRows, client.Height(), m_cySplitter);
  int y = 0;
  for (int row = 0; row < m_nRows; ++row) {
    int x = 0;
    for (int column = 0; column < m_nCols; ++column) {
      const CWnd* pane = GetPane(row, column);
      if (pane != nullptr)
        ::SetWindowPos(pane->m_hWnd, nullptr, x, y, m_pColInfo[column].nCurSize, m_pRowInfo[row].nCurSize,
                       SWP_NOZORDER | SWP_NOACTIVATE);
      x += m_pColInfo[column].nCurSize + m_cxSplitter;
    }
    y += m_pRowInfo[row].nCurSize + m_cySplitter;
  }
  Invalidate();
}

CSplitterWnd::Bar CSplitterWnd::BarAt(CPoint point) const {
  Bar found;
  int x = 0;
  for (int column = 0; column + 1 < m_nCols; ++column) {
    x += m_pColInfo[column].nCurSize;
    if (point.x >= x && point.x < x + m_cxSplitter) found.column = column;
    x += m_cxSplitter;
  }
  int y = 0;
  for (int row = 0; row + 1 < m_nRows; ++row) {
    y += m_pRowInfo[row].nCurSize;
    if (point.y >= y && point.y < y + m_cySplitter) found.row = row;
    y += m_cySplitter;
  }
  return found;
}
