#include "platform/framework/splitter_wnd.h"
#include "platform/framework/view.h"

#include <algorithm>
#include <memory>

#include "platform/window/detail/theme.h"

IMPLEMENT_DYNAMIC(CSplitterWnd, CWnd)

BEGIN_MESSAGE_MAP(CSplitterWnd, CWnd)
ON_WM_SIZE()
ON_WM_SETFOCUS()
ON_WM_PAINT()
ON_WM_ERASEBKGND()
ON_WM_SETCURSOR()
ON_WM_MOUSEMOVE()
ON_WM_LBUTTONDOWN()
ON_WM_LBUTTONUP()
ON_WM_CAPTURECHANGED()
END_MESSAGE_MAP()

BOOL CSplitterWnd::CreateStatic(CWnd* parent, int rows, int columns, DWORD style, UINT id) {
  if (parent == nullptr || rows < 1 || rows > kMaxPanes || columns < 1 || columns > kMaxPanes) return FALSE;
  m_rows.assign(static_cast<std::size_t>(rows), {0, 0, -1});
  m_columns.assign(static_cast<std::size_t>(columns), {0, 0, -1});
  m_pRowInfo = m_rows.data();
  m_pColInfo = m_columns.data();
  m_nRows = rows;
  m_nCols = columns;
  const LPCTSTR windowClass =
      AfxRegisterWndClass(CS_DBLCLKS, LoadCursor(nullptr, IDC_ARROW), GetSysColorBrush(COLOR_BTNFACE));
  return Create(windowClass, nullptr, style, CRect(0, 0, 0, 0), parent, id);
}

BOOL CSplitterWnd::CreateView(int row, int column, CRuntimeClass* viewClass, SIZE size,
                              CCreateContext* context) {
  if (row < 0 || row >= m_nRows || column < 0 || column >= m_nCols || viewClass == nullptr) return FALSE;
  if (GetPane(row, column) != nullptr) return FALSE;
  CObject* made = viewClass->CreateObject();
  CWnd* pane = DYNAMIC_DOWNCAST(CWnd, made);
  if (pane == nullptr) {
    delete made;  // NOLINT(cppcoreguidelines-owning-memory): the class made what no window can own
    return FALSE;
  }
  m_pColInfo[column].nIdealSize = size.cx;
  m_pRowInfo[row].nIdealSize = size.cy;
  CCreateContext beside;
  if (context == nullptr) {
    // As one more view of what the frame shows.
    const CFrameWnd* frame = GetParentFrame();
    beside.m_pLastView = frame == nullptr ? nullptr : frame->GetActiveView();
    if (beside.m_pLastView != nullptr) beside.m_pCurrentDoc = beside.m_pLastView->GetDocument();
    beside.m_pNewViewClass = viewClass;
    context = &beside;
  }
  // A pane that can't be made ends by the rule of its class.
  if (pane->Create(nullptr, nullptr, WS_CHILD | WS_VISIBLE | WS_BORDER, CRect(CPoint(0, 0), size), this,
                   static_cast<UINT>(IdFromRowCol(row, column)), context) == 0)
    return FALSE;
  // A plain border becomes the sunken edge that panes have.
  if ((pane->GetStyle() & WS_BORDER) != 0) {
    pane->ModifyStyle(WS_BORDER, 0);
    pane->ModifyStyleEx(0, WS_EX_CLIENTEDGE, SWP_FRAMECHANGED);
  }
  return TRUE;
}

void CSplitterWnd::SetColumnInfo(int column, int ideal, int least) {
  if (column < 0 || column >= m_nCols) return;
  m_pColInfo[column].nIdealSize = ideal;
  m_pColInfo[column].nMinSize = least;
}

void CSplitterWnd::DeleteView(int row, int column) {
  if (CWnd* pane = GetPane(row, column)) pane->DestroyWindow();
}

// Rows, columns, panes

CWnd* CSplitterWnd::GetPane(int row, int column) const {
  return GetDlgItem(IdFromRowCol(row, column));
}

BOOL CSplitterWnd::IsChildPane(CWnd* window, int* row, int* column) const {
  if (window == nullptr || ::GetParent(window->m_hWnd) != m_hWnd) return FALSE;
  const int place = window->GetDlgCtrlID() - static_cast<int>(AFX_IDW_PANE_FIRST);
  if (place < 0 || place / kMaxPanes >= m_nRows || place % kMaxPanes >= m_nCols) return FALSE;
  if (row != nullptr) *row = place / kMaxPanes;
  if (column != nullptr) *column = place % kMaxPanes;
  return TRUE;
}

CWnd* CSplitterWnd::GetActivePane(int* row, int* column) {
  for (HWND window = ::GetFocus(); window != nullptr && window != m_hWnd; window = ::GetParent(window)) {
    CWnd* pane = FromHandle(window);
    if (IsChildPane(pane, row, column) != 0) return pane;
  }
  return nullptr;
}

void CSplitterWnd::SetActivePane(int row, int column, CWnd* pane) {
  if (pane == nullptr) pane = GetPane(row, column);
  if (pane != nullptr) pane->SetFocus();
}

// Messages

BOOL CSplitterWnd::OnCommand(WPARAM wParam, LPARAM lParam) {
  if (CWnd::OnCommand(wParam, lParam) != 0) return TRUE;
  // What the panes tell belongs to the frame.
  CFrameWnd* frame = GetParentFrame();
  return frame != nullptr && frame->SendMessage(WM_COMMAND, wParam, lParam) != 0;
}

void CSplitterWnd::OnSize(UINT type, int, int) {
  Default();
  if (type != SIZE_MINIMIZED) RecalcLayout();
}

void CSplitterWnd::OnSetFocus(CWnd*) {
  SetActivePane(0, 0);
}

void CSplitterWnd::OnPaint() {
  CPaintDC dc(this);
  CRect client;
  GetClientRect(client);
  dc.FillSolidRect(client, GetSysColor(COLOR_BTNFACE));
  LONG x = 0;
  for (int column = 0; column + 1 < m_nCols; ++column) {
    x += m_pColInfo[column].nCurSize;
    platform::DrawSplitterBar(dc, {x, 0, x + m_cxSplitter, client.bottom}, true);
    x += m_cxSplitter;
  }
  LONG y = 0;
  for (int row = 0; row + 1 < m_nRows; ++row) {
    y += m_pRowInfo[row].nCurSize;
    platform::DrawSplitterBar(dc, {0, y, client.right, y + m_cySplitter}, false);
    y += m_cySplitter;
  }
}

// Dragging. The panes follow at once.

void CSplitterWnd::ShowBarCursor(Bar bar) {
  LPCSTR shape = bar.column >= 0 ? IDC_SIZEWE : bar.row >= 0 ? IDC_SIZENS : IDC_ARROW;
  if (bar.column >= 0 && bar.row >= 0) shape = IDC_SIZEALL;
  ::SetCursor(LoadCursor(nullptr, shape));
}

BOOL CSplitterWnd::OnSetCursor(CWnd* window, UINT hit, UINT message) {
  // Over our own area the move that follows sets it, by its exact place.
  if (window == this && hit == HTCLIENT) return TRUE;
  return CWnd::OnSetCursor(window, hit, message);
}

void CSplitterWnd::OnLButtonDown(UINT, CPoint point) {
  m_dragged = BarAt(point);
  if (m_dragged.column < 0 && m_dragged.row < 0) return;
  int edge = 0;
  const bool column = m_dragged.column >= 0;
  const int last = column ? m_dragged.column : m_dragged.row;
  for (int i = 0; i <= last; ++i)
    edge += (column ? m_pColInfo[i].nCurSize : m_pRowInfo[i].nCurSize) +
            (i < last ? (column ? m_cxSplitter : m_cySplitter) : 0);
  m_dragOffset = (column ? point.x : point.y) - edge;
  SetCapture();
}

void CSplitterWnd::OnMouseMove(UINT, CPoint point) {
  if (m_dragged.column >= 0 || m_dragged.row >= 0)
    DragTo(point);
  else
    ShowBarCursor(BarAt(point));
}

void CSplitterWnd::DragTo(CPoint point) {
  const bool isColumn = m_dragged.column >= 0;
  CRowColInfo* tracks = isColumn ? m_pColInfo : m_pRowInfo;
  const int count = isColumn ? m_nCols : m_nRows;
  const int bar = isColumn ? m_cxSplitter : m_cySplitter;
  const int dragged = isColumn ? m_dragged.column : m_dragged.row;
  CRect client;
  GetClientRect(client);
  // The tracks before the bar stay, the one behind it gives or takes. None is dragged below its minimum.
  int start = 0;
  for (int i = 0; i < dragged; ++i) start += tracks[i].nCurSize + bar;
  int end = start + tracks[dragged].nCurSize + bar + tracks[dragged + 1].nCurSize;
  end = std::min(end, static_cast<int>(isColumn ? client.right : client.bottom));
  const int place = (isColumn ? point.x : point.y) - m_dragOffset - start;
  const int room = std::max(end - start - bar, 0);
  const int size = std::clamp(place, std::min(tracks[dragged].nMinSize, room), room);
  const int rest = std::max(end - start - bar - size, 0);
  for (int i = 0; i < count; ++i) tracks[i].nIdealSize = tracks[i].nCurSize;
  tracks[dragged].nIdealSize = size;
  tracks[dragged + 1].nIdealSize = rest;
  RecalcLayout();
}

void CSplitterWnd::OnLButtonUp(UINT, CPoint) {
  if (m_dragged.column >= 0 || m_dragged.row >= 0) ReleaseCapture();
}

void CSplitterWnd::OnCaptureChanged(CWnd*) {
  m_dragged = {};
}
