#include "imagewindow/image_window.h"
#include "imagewindow/mouse_rules.h"
#include "library/load_cursor.h"

// Mouse modes, cursors, zoom by click, dragging and the zoom selection.

namespace {

constexpr SIZE kBandSides = {1, 1};
constexpr unsigned kHighestMode = MouseModeZoomOut;

void ShowCursor(UINT id) {
  SetCursor(LoadLibraryCursor(id));
}

}  // namespace

// Cursors

bool CImageWindow::ClickZooms() const {
  return m_nMouseMode == MouseModeZoomIn || m_nMouseMode == MouseModeZoomOut;
}

bool CImageWindow::ClickZoomsIn() const {
  return (m_nMouseMode == MouseModeZoomIn) != m_bShiftDown;
}

void CImageWindow::ShowZoomCursor() {
  if (ClickZoomsIn())
    ShowCursor(ZoomInPossible() ? IDC_ZP_CURSOR_ZOOM_IN : IDC_ZP_CURSOR_ZOOM_LIMIT);
  else
    ShowCursor(ZoomOutPossible() ? IDC_ZP_CURSOR_ZOOM_OUT : IDC_ZP_CURSOR_ZOOM_LIMIT);
}

void CImageWindow::SetMouseMode(int mode) {
  m_nMouseMode = mode;
  if (static_cast<unsigned>(mode) > kHighestMode) return;
  // The limit isn't looked at before the pointer moves again.
  if (mode == MouseModeNone)
    SetCursor(LoadCursor(nullptr, IDC_ARROW));
  else if (mode == MouseModeDrag)
    ShowCursor(IDC_ZP_CURSOR_HAND);
  else
    ShowCursor(ClickZoomsIn() ? IDC_ZP_CURSOR_ZOOM_IN : IDC_ZP_CURSOR_ZOOM_OUT);
}

BOOL CImageWindow::OnSetCursor(CWnd*, UINT, UINT) {
  if (m_bZoomSelect)
    ShowCursor(IDC_ZP_CURSOR_SELECT);
  else if (ClickZooms())
    ShowZoomCursor();
  else if (m_nMouseMode == MouseModeNone)
    SetCursor(LoadCursor(nullptr, IDC_ARROW));
  else if (m_nMouseMode == MouseModeDrag)
    ShowCursor(IDC_ZP_CURSOR_HAND);
  return static_cast<BOOL>(Default());
}

void CImageWindow::SetShift(bool down) {
  m_bShiftDown = down;
  POINT pointer;
  GetCursorPos(&pointer);
  CRect window;
  GetWindowRect(window);
  if (ClickZooms() && !m_bZoomSelect && window.PtInRect(pointer) != FALSE) ShowZoomCursor();
}

// Buttons and moves

void CImageWindow::ZoomAt(CPoint point) {
  const bool in = ClickZoomsIn();
  // Out has no such test: at the limit the view still centres on the click.
  if (!in || ZoomInPossible()) {
    const CPoint pixel = mouse::PagePixelAt(point, m_ptScroll, m_dScaleFactor);
    if (in)
      ZoomIn();
    else
      ZoomOut();
    UpdateZoomStatus();
    CRect client;
    GetClientRect(client);
    SetScrollPos(mouse::CentredOn(pixel, m_dScaleFactor, client.Size()), TRUE);
  }
  if (!(in ? ZoomInPossible() : ZoomOutPossible())) ShowCursor(IDC_ZP_CURSOR_ZOOM_LIMIT);
}

void CImageWindow::OnLButtonDown(UINT, CPoint point) {
  SetFocus();
  if (m_bZoomSelect) {
    SetCapture();
    m_ptSelStart = m_ptSelEnd = point;
    CClientDC dc(this);
    dc.DrawDragRect(CRect(point, point), kBandSides, nullptr, kBandSides);
  } else if (m_nMouseMode == MouseModeDrag) {
    SetCapture();
    ShowCursor(IDC_ZP_CURSOR_GRABBING);
    m_ptDragLast = point;
  } else if (ClickZooms()) {
    ZoomAt(point);
  }
  Default();
}

void CImageWindow::OnMouseMove(UINT, CPoint point) {
  if (::GetCapture() != m_hWnd) return;
  if (m_bZoomSelect) {
    MoveBand(GetStartEndRect(m_ptSelStart, point));
    m_ptSelEnd = point;
  } else if (m_nMouseMode == MouseModeDrag) {
    MoveScrollPos(CSize(m_ptDragLast.x - point.x, m_ptDragLast.y - point.y));
    m_ptDragLast = point;
  }
  Default();
}

void CImageWindow::OnLButtonUp(UINT, CPoint) {
  if (m_bZoomSelect) {
    m_bZoomSelect = false;  // before the capture goes, which would otherwise count as lost
    ReleaseCapture();
    ZoomToSelection();
  } else if (m_nMouseMode == MouseModeDrag) {
    ShowCursor(IDC_ZP_CURSOR_HAND);
    ReleaseCapture();
  }
  Default();
}

// Zoom selection

CRect CImageWindow::GetStartEndRect(CPoint start, CPoint end) {
  return mouse::SelectionRect(start, end);
}

void CImageWindow::MoveBand(const CRect& band) {
  CClientDC dc(this);
  dc.DrawDragRect(band, kBandSides, GetStartEndRect(m_ptSelStart, m_ptSelEnd), kBandSides);
}

void CImageWindow::RestoreBand(CDC* dc) {
  if (m_bZoomSelect && ::GetCapture() == m_hWnd)
    dc->DrawDragRect(GetStartEndRect(m_ptSelStart, m_ptSelEnd), kBandSides, nullptr, kBandSides);
}

void CImageWindow::OnCaptureChanged(CWnd*) {
  if (m_bZoomSelect) {
    m_bZoomSelect = false;
    MoveBand(CRect(0, 0, 0, 0));
  }
  Default();
}

void CImageWindow::ZoomToSelection() {
  CRect client;
  GetClientRect(client);
  const CRect selection = GetStartEndRect(m_ptSelStart, m_ptSelEnd);
  if (selection.Width() == 0 || selection.Height() == 0) return;
  const CPoint corner(m_ptScroll.x + selection.left - client.left, m_ptScroll.y + selection.top - client.top);
  const double multiplier = MultiplyScaleFactor(mouse::SelectionMultiplier(client.Size(), selection.Size()));
  SetScrollPos(mouse::Multiplied(corner, multiplier), TRUE);
  UpdateZoomStatus();
}

void CImageWindow::ToggleZoomSelect() {
  m_bZoomSelect = !m_bZoomSelect;
  if (m_bZoomSelect)
    SetCursor(LoadCursor(nullptr, IDC_CROSS));
  else
    SetMouseMode(m_nMouseMode);
}
