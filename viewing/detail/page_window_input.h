#pragma once

#include "library/load_cursor.h"
#include "library/wheel_lines.h"
#include "platform/framework/frame_wnd.h"
#include "platform/framework/object_hold.h"
#include "viewing/key_rules.h"
#include "viewing/mouse_rules.h"
#include "viewing/page_window.h"
#include "viewing/wheel_rules.h"
#include "viewing/window_parts.h"

// What mouse, wheel and keyboard do in a window that shows a page. Whoever is told of a new scale, and who
// reads that a picture can't be reduced, may delete the window.

// Cursors

template <typename Base>
bool CPageWindow<Base>::ClickZoomsIn() const {
  return Traits::kModes.ZoomsIn(Self().m_nMouseMode, Self().m_bShiftDown);
}

template <typename Base>
bool CPageWindow<Base>::IsStepPossible(bool in) const {
  return static_cast<bool>(in ? ZoomInPossible() : ZoomOutPossible());
}

template <typename Base>
void CPageWindow<Base>::ShowModeCursor(bool in, bool possible) const {
  if (Traits::kModes.Zooms(Self().m_nMouseMode))
    ShowLibraryCursor(mouse::ZoomCursor(in, possible));
  else if (Traits::kModes.Drags(Self().m_nMouseMode))
    ShowLibraryCursor(IDC_ZP_CURSOR_HAND);
  else if (Self().m_nMouseMode == 0)
    SetCursor(LoadCursor(nullptr, IDC_ARROW));
}

template <typename Base>
BOOL CPageWindow<Base>::OnSetCursor(CWnd*, UINT hitTest, UINT) {
  if (!Traits::kFrameHasCursor || hitTest == HTCLIENT) {
    if (Self().m_bZoomSelect)
      ShowLibraryCursor(IDC_ZP_CURSOR_SELECT);
    else
      ShowModeCursor(ClickZoomsIn(), IsStepPossible(ClickZoomsIn()));
  }
  return static_cast<BOOL>(this->Default());
}

// Buttons and moves

template <typename Base>
void CPageWindow<Base>::OnLButtonDown(UINT, CPoint point) {
  const platform::ObjectHold hold(this);
  this->SetFocus();
  if (Self().m_bZoomSelect) {
    this->SetCapture();
    Self().m_ptSelStart = Self().m_ptSelEnd = point;
    DrawBand(CRect(point, point), nullptr);
  } else if (Traits::kModes.Drags(Self().m_nMouseMode)) {
    this->SetCapture();
    ShowLibraryCursor(IDC_ZP_CURSOR_GRABBING);
    Self().m_ptDragLast = point;
  } else if (Traits::kModes.Zooms(Self().m_nMouseMode)) {
    ZoomAt(point);
  }
  if (hold.Exists()) this->Default();
}

template <typename Base>
void CPageWindow<Base>::OnMouseMove(UINT, CPoint point) {
  if (::GetCapture() != this->m_hWnd) return;
  if (Self().m_bZoomSelect) {
    MoveBand(mouse::SelectionRect(Self().m_ptSelStart, point));
    Self().m_ptSelEnd = point;
  } else if (Traits::kModes.Drags(Self().m_nMouseMode)) {
    MoveScrollPos(CSize(Self().m_ptDragLast.x - point.x, Self().m_ptDragLast.y - point.y));
    Self().m_ptDragLast = point;
  }
  this->Default();
}

template <typename Base>
void CPageWindow<Base>::OnLButtonUp(UINT, CPoint) {
  const platform::ObjectHold hold(this);
  if (Self().m_bZoomSelect) {
    Self().m_bZoomSelect = false;  // before the capture goes, which would otherwise count as lost
    ReleaseCapture();
    ZoomToSelection();
  } else if (Traits::kModes.Drags(Self().m_nMouseMode)) {
    ShowLibraryCursor(IDC_ZP_CURSOR_HAND);
    ReleaseCapture();
  }
  if (hold.Exists()) this->Default();
}

template <typename Base>
void CPageWindow<Base>::OnCaptureChanged(CWnd*) {
  if (Traits::kWatchesCapture && Self().m_bZoomSelect) {
    Self().m_bZoomSelect = false;
    MoveBand(CRect(0, 0, 0, 0));
  }
  this->Default();
}

template <typename Base>
bool CPageWindow<Base>::StepAndTell(bool in) {
  const platform::ObjectHold hold(this);
  if (in)
    ZoomIn();
  else
    ZoomOut();
  if (hold.Exists()) Self().UpdateZoomStatus();
  return hold.Exists();
}

template <typename Base>
void CPageWindow<Base>::ZoomAt(CPoint point) {
  const bool in = ClickZoomsIn();
  // Out has no such test: at the limit the view still centres on the click.
  if (!in || IsStepPossible(true)) {
    const CPoint pixel = mouse::PagePixelAt(point, Self().m_ptScroll, Self().m_dScaleFactor);
    if (!StepAndTell(in)) return;
    CRect client;
    this->GetClientRect(client);
    SetScrollPos(mouse::CentredOn(pixel, Self().m_dScaleFactor, client.Size()), TRUE);
  }
  if (!IsStepPossible(in)) ShowLibraryCursor(IDC_ZP_CURSOR_ZOOM_LIMIT);
}

// Zoom selection

template <typename Base>
void CPageWindow<Base>::ToggleZoomSelect() {
  const bool armed = !Self().m_bZoomSelect;
  BreakOff();  // a drag, or a selection with its frame
  Self().m_bZoomSelect = armed;
  if (armed)
    SetCursor(LoadCursor(nullptr, IDC_CROSS));
  else
    Self().SetMouseMode(Self().m_nMouseMode);
}

template <typename Base>
void CPageWindow<Base>::ZoomToSelection() {
  CRect client;
  this->GetClientRect(client);
  const CRect selection = mouse::SelectionRect(Self().m_ptSelStart, Self().m_ptSelEnd);
  if (selection.Width() == 0 || selection.Height() == 0) return;
  const CPoint corner(Self().m_ptScroll.x + selection.left - client.left,
                      Self().m_ptScroll.y + selection.top - client.top);
  const platform::ObjectHold hold(this);
  const double multiplier = MultiplyScale(mouse::SelectionMultiplier(client.Size(), selection.Size()));
  if (!hold.Exists()) return;
  SetScrollPos(mouse::Multiplied(corner, multiplier), TRUE);
  Self().UpdateZoomStatus();
}

template <typename Base>
void CPageWindow<Base>::DrawBand(const CRect& band, LPCRECT last) {
  CClientDC dc(this);
  dc.DrawDragRect(band, kBandSides, last, kBandSides);
}

/// Draws the frame at its new place, and takes it off the last one.
template <typename Base>
void CPageWindow<Base>::MoveBand(const CRect& band) {
  const CRect last = mouse::SelectionRect(Self().m_ptSelStart, Self().m_ptSelEnd);
  DrawBand(band, last);
}

template <typename Base>
void CPageWindow<Base>::RestoreBand(CDC* dc) {
  if (!Self().m_bZoomSelect || ::GetCapture() != this->m_hWnd) return;
  dc->DrawDragRect(mouse::SelectionRect(Self().m_ptSelStart, Self().m_ptSelEnd), kBandSides, nullptr,
                   kBandSides);
}

template <typename Base>
void CPageWindow<Base>::BreakOff() {
  if (this->m_hWnd == nullptr || ::GetCapture() != this->m_hWnd) return;
  if (Self().m_bZoomSelect && !Traits::kWatchesCapture) MoveBand(CRect(0, 0, 0, 0));
  ReleaseCapture();
}

// Keyboard

template <typename Base>
void CPageWindow<Base>::SetShift(bool down) {
  Self().m_bShiftDown = down;
  if (Self().m_bZoomSelect || !Traits::kModes.Zooms(Self().m_nMouseMode)) return;
  POINT pointer;
  GetCursorPos(&pointer);
  CRect window;
  this->GetWindowRect(window);
  if (window.PtInRect(pointer) != FALSE) ShowModeCursor(ClickZoomsIn(), IsStepPossible(ClickZoomsIn()));
}

template <typename Base>
void CPageWindow<Base>::OnKeyDown(UINT key, UINT, UINT) {
  if (key == VK_SHIFT) SetShift(true);
  const keys::Scroll scroll = keys::ScrollOfKey(key);
  if (scroll.message != 0) this->PostMessage(scroll.message, scroll.code);
  this->Default();
}

template <typename Base>
void CPageWindow<Base>::OnKeyUp(UINT key, UINT, UINT) {
  if (key == VK_SHIFT) SetShift(false);
  this->Default();
}

// Wheel, context menu

template <typename Base>
BOOL CPageWindow<Base>::OnMouseWheel(UINT flags, short delta, CPoint) {
  const wheel::WheelAction action = wheel::ActionOfWheel(flags, GetKeyState(VK_MENU) < 0);
  const bool full = m_wheel.Fills(action, delta);
  switch (action) {
    case wheel::WheelAction::ScrollVertically:
      ScrollByWheel(SB_VERT, delta);
      return TRUE;
    case wheel::WheelAction::ScrollHorizontally:
      ScrollByWheel(SB_HORZ, delta);
      return TRUE;
    case wheel::WheelAction::Zoom:
      if (full) StepAndTell(delta > 0);
      return FALSE;
    case wheel::WheelAction::TurnPage:
      if (full) TurnPageByWheel(delta);
      return FALSE;
    default:
      return FALSE;
  }
}

template <typename Base>
BOOL CPageWindow<Base>::OnMouseHWheel(UINT flags, short delta, CPoint) {
  const wheel::WheelAction action = wheel::ActionOfWheel(flags, GetKeyState(VK_MENU) < 0);
  const bool scrolls =
      action == wheel::WheelAction::ScrollVertically || action == wheel::WheelAction::ScrollHorizontally;
  if (scrolls) ScrollByWheel(SB_HORZ, -delta);
  return scrolls ? TRUE : FALSE;
}

template <typename Base>
void CPageWindow<Base>::ScrollByWheel(int bar, int delta) {
  const int position = this->GetScrollPos(bar) + wheel::WheelStep(delta, GetMouseScrollLines());
  Base::SetScrollPos(bar, position, TRUE);
  // The bar has limited the position; the message makes the view follow, in order with all others.
  this->PostMessage(bar == SB_VERT ? WM_VSCROLL : WM_HSCROLL, MAKEWPARAM(SB_THUMBPOSITION, position));
}

template <typename Base>
void CPageWindow<Base>::TurnPageByWheel(int delta) {
  const CFrameWnd* frame = this->GetParentFrame();
  if (frame != nullptr)
    ::PostMessage(frame->m_hWnd, WM_COMMAND, delta < 0 ? ID_ZP_NEXT_PAGE : ID_ZP_PREV_PAGE, 0);
}

template <typename Base>
void CPageWindow<Base>::OnContextMenu(CWnd*, CPoint point) {
  window_parts::ShowContextMenu(point, this->GetParentFrame());
}
