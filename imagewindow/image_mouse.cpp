#include "imagewindow/image_window.h"
#include "viewing/page_input.h"

// Mouse modes, cursors, zoom by click, dragging and the zoom selection. What a mode does stands in
// page_input.h.

namespace {

constexpr unsigned kHighestMode = MouseModeZoomOut;

}  // namespace

bool CImageWindow::ClickDrags() const {
  return m_nMouseMode == MouseModeDrag;
}

bool CImageWindow::ClickZooms() const {
  return m_nMouseMode == MouseModeZoomIn || m_nMouseMode == MouseModeZoomOut;
}

bool CImageWindow::ClickZoomsIn() const {
  return (m_nMouseMode == MouseModeZoomIn) != m_bShiftDown;
}

void CImageWindow::SetMouseMode(int mode) {
  m_nMouseMode = mode;
  if (static_cast<unsigned>(mode) > kHighestMode) return;
  const PageInput input(*this);
  // The limit isn't looked at before the pointer moves again.
  if (ClickZooms())
    input.Show(mouse::ZoomCursor(ClickZoomsIn(), true));
  else if (ClickDrags())
    input.Show(IDC_ZP_CURSOR_HAND);
  else
    input.ShowArrow();
}

BOOL CImageWindow::OnSetCursor(CWnd*, UINT, UINT) {
  PageInput(*this).ShowCursor();
  return static_cast<BOOL>(Default());
}

void CImageWindow::OnLButtonDown(UINT, CPoint point) {
  PageInput(*this).Press(point);
  Default();
}

void CImageWindow::OnMouseMove(UINT, CPoint point) {
  if (PageInput(*this).Move(point)) Default();
}

void CImageWindow::OnLButtonUp(UINT, CPoint) {
  PageInput(*this).Release();
  Default();
}

void CImageWindow::OnCaptureChanged(CWnd*) {
  if (m_bZoomSelect) {
    m_bZoomSelect = false;
    PageInput(*this).MoveBand(CRect(0, 0, 0, 0));
  }
  Default();
}

CRect CImageWindow::GetStartEndRect(CPoint start, CPoint end) {
  return mouse::SelectionRect(start, end);
}

void CImageWindow::ZoomToSelection() {
  PageInput(*this).ZoomToSelection();
}

void CImageWindow::ToggleZoomSelect() {
  PageInput(*this).Toggle();
}
