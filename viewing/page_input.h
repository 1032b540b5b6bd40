#pragma once

#include "library/load_cursor.h"
#include "library/wheel_lines.h"
#include "platform/framework/frame_wnd.h"
#include "viewing/key_rules.h"
#include "viewing/mouse_rules.h"
#include "viewing/wheel_rules.h"

/// What mouse, wheel and keyboard do in a window that shows a page, written once for the image window and the
/// document's view, which number their mouse modes and zoom in ways of their own.
///
/// Window is a CWnd with the fields for position, scale, selection and dragging as CImageWindow has them, and
/// with ClickDrags, ClickZooms and ClickZoomsIn, which tell what its mode means, with SetMouseMode, the zoom
/// operations, UpdateZoomStatus, SetScrollPos, MoveScrollPos, and MultiplyScale, which multiplies the scale
/// as far as it goes and gives the multiplier that was used. This is a friend of it. Default processing is
/// left to the window's handlers.
template <class Window>
class PageInput {
 public:
  explicit PageInput(Window& window) : m_window(window) {}

  // Buttons and moves

  void Press(CPoint point) {
    m_window.SetFocus();
    if (m_window.m_bZoomSelect) {
      m_window.SetCapture();
      m_window.m_ptSelStart = m_window.m_ptSelEnd = point;
      DrawBand(CRect(point, point), nullptr);
    } else if (m_window.ClickDrags()) {
      m_window.SetCapture();
      Show(IDC_ZP_CURSOR_GRABBING);
      m_window.m_ptDragLast = point;
    } else if (m_window.ClickZooms()) {
      ZoomAt(point);
    }
  }

  /// False while the mouse isn't this window's alone: nothing follows then.
  bool Move(CPoint point) {
    if (::GetCapture() != m_window.m_hWnd) return false;
    if (m_window.m_bZoomSelect) {
      MoveBand(mouse::SelectionRect(m_window.m_ptSelStart, point));
      m_window.m_ptSelEnd = point;
    } else if (m_window.ClickDrags()) {
      m_window.MoveScrollPos(CSize(m_window.m_ptDragLast.x - point.x, m_window.m_ptDragLast.y - point.y));
      m_window.m_ptDragLast = point;
    }
    return true;
  }

  void Release() {
    if (m_window.m_bZoomSelect) {
      m_window.m_bZoomSelect = false;  // before the capture goes, which would otherwise count as lost
      ReleaseCapture();
      m_window.ZoomToSelection();
    } else if (m_window.ClickDrags()) {
      Show(IDC_ZP_CURSOR_HAND);
      ReleaseCapture();
    }
  }

  // Cursors

  void ShowCursor() {
    if (m_window.m_bZoomSelect)
      Show(IDC_ZP_CURSOR_SELECT);
    else if (m_window.ClickZooms())
      ShowZoomCursor();
    else if (m_window.ClickDrags())
      Show(IDC_ZP_CURSOR_HAND);
    else if (m_window.m_nMouseMode == 0)
      ShowArrow();
  }

  static void Show(UINT id) { SetCursor(LoadLibraryCursor(id)); }
  static void ShowArrow() { SetCursor(LoadCursor(nullptr, IDC_ARROW)); }

  // Zoom selection

  /// Arms it, or takes that back.
  void Toggle() {
    m_window.m_bZoomSelect = !m_window.m_bZoomSelect;
    if (m_window.m_bZoomSelect)
      SetCursor(LoadCursor(nullptr, IDC_CROSS));
    else
      m_window.SetMouseMode(m_window.m_nMouseMode);
  }

  /// The selection's top left corner comes to the window's, and all of it fits. Nothing for an empty one.
  void ZoomToSelection() {
    CRect client;
    m_window.GetClientRect(client);
    const CRect selection = mouse::SelectionRect(m_window.m_ptSelStart, m_window.m_ptSelEnd);
    if (selection.Width() == 0 || selection.Height() == 0) return;
    const CPoint corner(m_window.m_ptScroll.x + selection.left - client.left,
                        m_window.m_ptScroll.y + selection.top - client.top);
    const double multiplier =
        m_window.MultiplyScale(mouse::SelectionMultiplier(client.Size(), selection.Size()));
    m_window.SetScrollPos(mouse::Multiplied(corner, multiplier), TRUE);
    m_window.UpdateZoomStatus();
  }

  /// Draws the selection's frame at its new place, and takes it off the last one.
  void MoveBand(const CRect& band) {
    const CRect last = mouse::SelectionRect(m_window.m_ptSelStart, m_window.m_ptSelEnd);
    DrawBand(band, last);
  }

  /// Draws the frame again over what was just painted.
  void RestoreBand(CDC* dc) {
    if (!m_window.m_bZoomSelect || ::GetCapture() != m_window.m_hWnd) return;
    dc->DrawDragRect(mouse::SelectionRect(m_window.m_ptSelStart, m_window.m_ptSelEnd), kBandSides, nullptr,
                     kBandSides);
  }

  // Keyboard

  void KeyDown(UINT key) {
    if (key == VK_SHIFT) SetShift(true);
    const keys::Scroll scroll = keys::ScrollOfKey(key);
    if (scroll.message != 0) m_window.PostMessage(scroll.message, scroll.code);
  }
  void KeyUp(UINT key) {
    if (key == VK_SHIFT) SetShift(false);
  }

  // Wheel

  /// The event's result.
  BOOL Wheel(UINT flags, int delta) {
    switch (wheel::ActionOfWheel(flags, GetKeyState(VK_MENU) < 0)) {
      case wheel::WheelAction::ScrollVertically:
        ScrollByWheel(SB_VERT, delta);
        return TRUE;
      case wheel::WheelAction::ScrollHorizontally:
        ScrollByWheel(SB_HORZ, delta);
        return TRUE;
      case wheel::WheelAction::Zoom:
        Step(delta > 0);
        m_window.UpdateZoomStatus();
        return FALSE;
      case wheel::WheelAction::TurnPage:
        TurnPageByWheel(delta);
        return FALSE;
      default:
        return FALSE;
    }
  }

 private:
  static constexpr SIZE kBandSides = {1, 1};

  bool IsPossible(bool in) const {
    return static_cast<bool>(in ? m_window.ZoomInPossible() : m_window.ZoomOutPossible());
  }
  void Step(bool in) {
    if (in)
      m_window.ZoomIn();
    else
      m_window.ZoomOut();
  }
  void ZoomAt(CPoint point) {
    const bool in = m_window.ClickZoomsIn();
    // Out has no such test: at the limit the view still centres on the click.
    if (!in || IsPossible(true)) {
      const CPoint pixel = mouse::PagePixelAt(point, m_window.m_ptScroll, m_window.m_dScaleFactor);
      Step(in);
      m_window.UpdateZoomStatus();
      CRect client;
      m_window.GetClientRect(client);
      m_window.SetScrollPos(mouse::CentredOn(pixel, m_window.m_dScaleFactor, client.Size()), TRUE);
    }
    if (!IsPossible(in)) Show(IDC_ZP_CURSOR_ZOOM_LIMIT);
  }
  void ShowZoomCursor() {
    const bool in = m_window.ClickZoomsIn();
    Show(mouse::ZoomCursor(in, IsPossible(in)));
  }
  void SetShift(bool down) {
    m_window.m_bShiftDown = down;
    POINT pointer;
    GetCursorPos(&pointer);
    CRect window;
    m_window.GetWindowRect(window);
    if (m_window.ClickZooms() && !m_window.m_bZoomSelect && window.PtInRect(pointer) != FALSE)
      ShowZoomCursor();
  }
  void DrawBand(const CRect& band, LPCRECT last) {
    CClientDC dc(&m_window);
    dc.DrawDragRect(band, kBandSides, last, kBandSides);
  }
  void ScrollByWheel(int bar, int delta) {
    CWnd& window = m_window;
    const int position = window.GetScrollPos(bar) + wheel::WheelStep(delta, GetMouseScrollLines());
    window.SetScrollPos(bar, position, TRUE);
    // The bar has limited the position; the message makes the view follow, in order with all others.
    window.PostMessage(bar == SB_VERT ? WM_VSCROLL : WM_HSCROLL, MAKEWPARAM(SB_THUMBPOSITION, position));
  }
  void TurnPageByWheel(int delta) {
    const CFrameWnd* frame = m_window.GetParentFrame();
    if (frame != nullptr)
      ::PostMessage(frame->m_hWnd, WM_COMMAND, delta < 0 ? ID_ZP_NEXT_PAGE : ID_ZP_PREV_PAGE, 0);
  }

  Window& m_window;
};
