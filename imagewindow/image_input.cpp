#include "imagewindow/frame_link.h"
#include "imagewindow/image_window.h"
#include "imagewindow/wheel_rules.h"
#include "library/resource_ids.h"
#include "library/wheel_lines.h"
#include "platform/framework/frame_wnd.h"

// Keyboard and wheel. The scrolling and the zoom that follow stand in image_scroll.cpp and image_scale.cpp.

CImageWindowFrame* CImageWindow::Frame() const {
  CWnd* parent = GetParent();
  // The window may sit in the pane of a splitter.
  if (parent != nullptr && parent->IsKindOf(RUNTIME_CLASS(CFrameWnd)) == FALSE) parent = parent->GetParent();
  return dynamic_cast<CImageWindowFrame*>(parent);
}

void CImageWindow::UpdateZoomStatus() {
  CImageWindowFrame* frame = Frame();
  if (frame != nullptr) frame->UpdateZoomStatus();
}

void CImageWindow::OnKeyDown(UINT key, UINT, UINT) {
  switch (key) {
    case VK_SHIFT:
      SetShift(true);
      break;
    case VK_PRIOR:
      PostMessage(WM_VSCROLL, SB_PAGEUP);
      break;
    case VK_NEXT:
      PostMessage(WM_VSCROLL, SB_PAGEDOWN);
      break;
    case VK_LEFT:
      PostMessage(WM_HSCROLL, SB_LINELEFT);
      break;
    case VK_UP:
      PostMessage(WM_VSCROLL, SB_LINEUP);
      break;
    case VK_RIGHT:
      PostMessage(WM_HSCROLL, SB_LINERIGHT);
      break;
    case VK_DOWN:
      PostMessage(WM_VSCROLL, SB_LINEDOWN);
      break;
    default:
      break;
  }
  Default();
}

void CImageWindow::OnKeyUp(UINT key, UINT, UINT) {
  if (key == VK_SHIFT) SetShift(false);
  Default();
}

// Wheel

void CImageWindow::ScrollByWheel(int bar, int delta) {
  const int position = GetScrollPos(bar) + wheel::WheelStep(delta, GetMouseScrollLines());
  CWnd::SetScrollPos(bar, position, TRUE);
  // The bar has limited the position; the message makes the view follow, in order with all others.
  PostMessage(bar == SB_VERT ? WM_VSCROLL : WM_HSCROLL, MAKEWPARAM(SB_THUMBPOSITION, position));
}

void CImageWindow::TurnPageByWheel(int delta) {
  const CFrameWnd* frame = GetParentFrame();
  if (frame != nullptr)
    ::PostMessage(frame->m_hWnd, WM_COMMAND, delta < 0 ? ID_ZP_NEXT_PAGE : ID_ZP_PREV_PAGE, 0);
}

BOOL CImageWindow::OnMouseWheel(UINT flags, short delta, CPoint) {
  switch (wheel::ActionOfWheel(flags, GetKeyState(VK_MENU) < 0)) {
    case wheel::WheelAction::ScrollVertically:
      ScrollByWheel(SB_VERT, delta);
      return TRUE;
    case wheel::WheelAction::ScrollHorizontally:
      ScrollByWheel(SB_HORZ, delta);
      return TRUE;
    case wheel::WheelAction::Zoom:
      if (delta > 0)
        ZoomIn();
      else
        ZoomOut();
      UpdateZoomStatus();
      return FALSE;
    case wheel::WheelAction::TurnPage:
      TurnPageByWheel(delta);
      return FALSE;
    default:
      return FALSE;
  }
}
