#include "docview/zp_view.h"
#include "viewing/page_input.h"
#include "viewing/window_parts.h"

// Mouse, wheel, keyboard and context menu. What a mode does stands in page_input.h. The view isn't told when
// it loses the capture: a selection that is broken off stays armed.

bool CZPView::ClickDrags() const {
  return view::ClickDrags(m_nMouseMode);
}

bool CZPView::ClickZooms() const {
  return view::ClickZooms(m_nMouseMode);
}

bool CZPView::ClickZoomsIn() const {
  return view::ClickZoomsIn(m_nMouseMode, m_bShiftDown != 0);
}

int CZPView::SetMouseMode(int mode) {
  m_nMouseMode = mode;
  POINT pointer;
  GetCursorPos(&pointer);
  ScreenToClient(&pointer);
  CRect client;
  GetClientRect(client);
  if (client.PtInRect(pointer) == FALSE) return 0;
  const PageInput input(*this);
  if (view::ClickZooms(mode)) {
    const bool in = view::ClickZoomsIn(mode, false);  // Shift counts from the next move on
    input.Show(mouse::ZoomCursor(in, (in ? ZoomInPossible() : ZoomOutPossible()) != 0));
  } else if (view::ClickDrags(mode)) {
    input.Show(IDC_ZP_CURSOR_HAND);
  } else if (mode == ViewMouseNone) {
    input.ShowArrow();
  }
  return 1;
}

void CZPView::ToggleZoomSelect() {
  PageInput(*this).Toggle();
}

void CZPView::ZoomToSelection() {
  PageInput(*this).ZoomToSelection();
}

BOOL CZPView::OnSetCursor(CWnd*, UINT hitTest, UINT) {
  // Borders and scroll bars have cursors of their own.
  if (hitTest == HTCLIENT) PageInput(*this).ShowCursor();
  return static_cast<BOOL>(Default());
}

void CZPView::OnLButtonDown(UINT, CPoint point) {
  PageInput(*this).Press(point);
  Default();
}

void CZPView::OnMouseMove(UINT, CPoint point) {
  if (PageInput(*this).Move(point)) Default();
}

void CZPView::OnLButtonUp(UINT, CPoint) {
  PageInput(*this).Release();
  Default();
}

void CZPView::OnKeyDown(UINT key, UINT, UINT) {
  PageInput(*this).KeyDown(key);
  Default();
}

void CZPView::OnKeyUp(UINT key, UINT, UINT) {
  PageInput(*this).KeyUp(key);
  Default();
}

BOOL CZPView::OnMouseWheel(UINT flags, short delta, CPoint) {
  return PageInput(*this).Wheel(flags, delta);
}

void CZPView::OnContextMenu(CWnd*, CPoint point) {
  window_parts::ShowContextMenu(point, GetParentFrame());
}
