#include "platform/window/full_screen.h"

#include <QWidget>

#include "platform/qt_bridge.h"

namespace platform {

bool ShowFullScreen(HWND window, bool full) {
  QWidget* const frame = AfxGetQWidget(window);
  if (frame == nullptr || !frame->isWindow()) return false;
  frame->setWindowState(full ? frame->windowState() | Qt::WindowFullScreen
                             : frame->windowState() & ~Qt::WindowStates(Qt::WindowFullScreen));
  return true;
}

}  // namespace platform
