#include "platform/window/window_placement.h"

#include <QWidget>

#include "platform/qt_bridge.h"
#include "platform/window/window.h"

namespace {

QWidget* MainWindow(HWND window) {
  QWidget* const frame = AfxGetQWidget(window);
  return frame != nullptr && frame->isWindow() ? frame : nullptr;
}

UINT CommandOf(const QWidget& frame) {
  if (frame.isMaximized()) return SW_SHOWMAXIMIZED;
  return frame.isMinimized() ? SW_SHOWMINIMIZED : SW_SHOWNORMAL;
}

}  // namespace

BOOL GetWindowPlacement(HWND window, WINDOWPLACEMENT* placement) {
  const QWidget* const frame = MainWindow(window);
  if (frame == nullptr || placement == nullptr) return FALSE;
  const bool normal = !frame->isMaximized() && !frame->isMinimized() && !frame->isFullScreen();
  const QSize size = normal ? frame->size() : frame->normalGeometry().size();
  // What moves a window counts the desktop's frame in.
  const QPoint corner =
      normal ? frame->pos()
             : frame->normalGeometry().topLeft() - (frame->geometry().topLeft() - frame->pos());
  placement->length = sizeof *placement;
  placement->flags = 0;
  placement->showCmd = CommandOf(*frame);
  placement->ptMinPosition = placement->ptMaxPosition = {-1, -1};
  placement->rcNormalPosition = {corner.x(), corner.y(), corner.x() + size.width(),
                                 corner.y() + size.height()};
  return TRUE;
}

BOOL SetWindowPlacement(HWND window, const WINDOWPLACEMENT* placement) {
  if (MainWindow(window) == nullptr || placement == nullptr) return FALSE;
  const RECT& place = placement->rcNormalPosition;
  SetWindowPos(window, nullptr, place.left, place.top, place.right - place.left, place.bottom - place.top,
               SWP_NOZORDER);
  ShowWindow(window, static_cast<int>(placement->showCmd));
  return TRUE;
}
