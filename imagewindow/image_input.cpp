#include "imagewindow/frame_link.h"
#include "imagewindow/image_window.h"
#include "platform/framework/frame_wnd.h"
#include "viewing/page_input.h"
#include "viewing/window_parts.h"

// Keyboard, wheel and context menu, and what the frame hears. The scrolling and the zoom that follow stand in
// image_scroll.cpp and image_scale.cpp.

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
  PageInput(*this).KeyDown(key);
  Default();
}

void CImageWindow::OnKeyUp(UINT key, UINT, UINT) {
  PageInput(*this).KeyUp(key);
  Default();
}

BOOL CImageWindow::OnMouseWheel(UINT flags, short delta, CPoint) {
  return PageInput(*this).Wheel(flags, delta);
}

void CImageWindow::OnContextMenu(CWnd*, CPoint point) {
  window_parts::ShowContextMenu(point, GetParentFrame());
}
