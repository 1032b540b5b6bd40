#include "platform/window/print_window.h"

#include <QImage>
#include <QPixmap>
#include <QWidget>

#include "platform/graphics/gdi.h"
#include "platform/qt_bridge.h"

BOOL PrintWindow(HWND window, HDC dc, UINT /*flags*/) {
  QWidget* const frame = AfxGetQWidget(window);
  if (frame == nullptr) return FALSE;
  const QImage picture = frame->grab().toImage().convertToFormat(QImage::Format_RGB32);
  BITMAPINFO info{};
  info.bmiHeader.biSize = sizeof info.bmiHeader;
  info.bmiHeader.biWidth = picture.width();
  info.bmiHeader.biHeight = -picture.height();  // rows from the top
  info.bmiHeader.biPlanes = 1;
  info.bmiHeader.biBitCount = 32;
  return StretchDIBits(dc, 0, 0, frame->width(), frame->height(), 0, 0, picture.width(), picture.height(),
                       picture.constBits(), &info, DIB_RGB_COLORS, SRCCOPY) > 0
             ? TRUE
             : FALSE;
}
