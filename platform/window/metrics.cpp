#include <QApplication>
#include <QCursor>
#include <QScreen>
#include <QStyle>

#include "platform/window/detail/queue.h"
#include "platform/window/window.h"

namespace {

int StyleMetric(QStyle::PixelMetric metric) {
  return QApplication::style()->pixelMetric(metric);
}

QSize ScreenSize() {
  const QScreen* screen = QGuiApplication::primaryScreen();
  return screen == nullptr ? QSize(800, 600) : screen->size();
}

}  // namespace

int GetSystemMetrics(int index) {
  platform::EnsureApplication();
  switch (index) {
    case SM_CXSCREEN:
      return ScreenSize().width();
    case SM_CYSCREEN:
      return ScreenSize().height();
    case SM_CXVSCROLL:
    case SM_CYHSCROLL:
      return StyleMetric(QStyle::PM_ScrollBarExtent);
    case SM_CYCAPTION:
      return StyleMetric(QStyle::PM_TitleBarHeight);
    case SM_CXBORDER:
    case SM_CYBORDER:
      return 1;
    case SM_CXEDGE:
    case SM_CYEDGE:
      return 2;
    case SM_CXICON:
    case SM_CYICON:
      return 32;
    case SM_CXSMICON:
    case SM_CYSMICON:
      return 16;
    case SM_CXDRAG:
    case SM_CYDRAG:
      return QApplication::startDragDistance();
    case SM_MOUSEWHEELPRESENT:
      return 1;
    default:
      return 0;
  }
}

BOOL SystemParametersInfoA(UINT action, UINT, void* data, UINT) {
  if (action != SPI_GETWHEELSCROLLLINES || data == nullptr) return FALSE;
  platform::EnsureApplication();
  *static_cast<UINT*>(data) = static_cast<UINT>(QApplication::wheelScrollLines());
  return TRUE;
}

BOOL GetCursorPos(POINT* point) {
  if (point == nullptr) return FALSE;
  platform::EnsureApplication();
  *point = platform::PointerPosition();
  return TRUE;
}
