#include "platform/qt_bridge.h"

#include <QEvent>
#include <QWidget>

#include "platform/window/detail/widgets.h"
#include "platform/window/detail/window_record.h"

namespace platform {
HWND CreateWindowIn(CREATESTRUCT wanted, QWidget* hostParent);  // window.cpp
}

namespace {

constexpr const char* kHostClass = "TessarelQtHost";

/// Keeps the window as large as the host's widget.
class FillFilter : public QObject {
 public:
  FillFilter(QWidget* host, HWND window) : QObject(host), m_host(host), m_window(window) {
    host->installEventFilter(this);
  }

  bool eventFilter(QObject* object, QEvent* event) override {
    if (object == m_host && event->type() == QEvent::Resize)
      SetWindowPos(m_window, nullptr, 0, 0, m_host->width(), m_host->height(), SWP_NOZORDER | SWP_NOACTIVATE);
    return false;
  }

 private:
  QWidget* m_host;
  HWND m_window;
};

/// Hands size and focus on to the program's window inside.
LRESULT HostProc(HWND window, UINT message, WPARAM wParam, LPARAM lParam) {
  const HWND child = GetWindow(window, GW_CHILD);
  if (message == WM_SIZE && child != nullptr)
    SetWindowPos(child, nullptr, 0, 0, WidthOfSizeParam(lParam), HeightOfSizeParam(lParam),
                 SWP_NOZORDER | SWP_NOACTIVATE);
  if (message == WM_SETFOCUS && child != nullptr) SetFocus(child);
  return DefWindowProc(window, message, wParam, lParam);
}

}  // namespace

QWidget* AfxGetQWidget(HWND window) {
  const platform::WindowRecord* record = platform::FindWindowRecord(window);
  return record == nullptr ? nullptr : record->frame.data();
}

HWND AfxWindowInWidget(QWidget* host) {
  if (host == nullptr) return nullptr;
  if (platform::FindWindowClass(kHostClass) == nullptr) {
    WNDCLASS windowClass{};
    windowClass.lpfnWndProc = &HostProc;
    windowClass.lpszClassName = kHostClass;
    RegisterClassA(&windowClass);
  }
  const HWND window =
      platform::CreateWindowIn({nullptr, nullptr, nullptr, nullptr, host->height(), host->width(), 0, 0,
                                WS_CHILD | WS_VISIBLE, "", kHostClass, 0},
                               host);
  if (window != nullptr) new FillFilter(host, window);  // NOLINT: the host's widget owns it
  return window;
}
