#pragma once

#include <QScrollBar>
#include <QWidget>

#include "platform/window/window.h"

class QMimeData;

namespace platform {

/// The whole of a window: edge, scroll bars and client area. It has no drawing of the program in it.
class FrameWidget : public QWidget {
 public:
  FrameWidget(HWND window, QWidget* parent, Qt::WindowFlags flags);
  ~FrameWidget() override;
  /// From here on the widget is on its own, about to be deleted.
  void Detach() { m_window = nullptr; }
  HWND Window() const { return m_window; }

 protected:
  bool event(QEvent* event) override;
  void paintEvent(QPaintEvent* event) override;
  void resizeEvent(QResizeEvent* event) override;
  void moveEvent(QMoveEvent* event) override;
  void showEvent(QShowEvent* event) override;
  void closeEvent(QCloseEvent* event) override;
  void keyPressEvent(QKeyEvent* event) override;
  void keyReleaseEvent(QKeyEvent* event) override;
  void focusInEvent(QFocusEvent* event) override;
  void focusOutEvent(QFocusEvent* event) override;
  bool focusNextPrevChild(bool) override { return false; }  // Tab is the program's key

 private:
  HWND m_window;
};

/// The client area: shows the window's surface and turns Qt's input into messages.
class ClientWidget : public QWidget {
 public:
  ClientWidget(HWND window, FrameWidget* parent);
  void Detach() { m_window = nullptr; }
  HWND Window() const { return m_window; }

 protected:
  bool event(QEvent* event) override;
  void leaveEvent(QEvent* event) override;
  void paintEvent(QPaintEvent* event) override;
  void mousePressEvent(QMouseEvent* event) override;
  void mouseReleaseEvent(QMouseEvent* event) override;
  void mouseDoubleClickEvent(QMouseEvent* event) override;
  void mouseMoveEvent(QMouseEvent* event) override;
  void wheelEvent(QWheelEvent* event) override;
  void contextMenuEvent(QContextMenuEvent* event) override;
  void dragEnterEvent(QDragEnterEvent* event) override;
  void dropEvent(QDropEvent* event) override;
  void keyPressEvent(QKeyEvent* event) override;
  void keyReleaseEvent(QKeyEvent* event) override;
  void inputMethodEvent(QInputMethodEvent* event) override;
  void focusInEvent(QFocusEvent* event) override;
  void focusOutEvent(QFocusEvent* event) override;
  bool focusNextPrevChild(bool) override { return false; }

 private:
  HWND m_window;
};

/// One scroll bar of a window. Its moves become WM_HSCROLL and WM_VSCROLL; the program moves the bar.
class WindowScrollBar : public QScrollBar {
 public:
  WindowScrollBar(HWND window, int bar, FrameWidget* parent);
  void Detach() { m_window = nullptr; }

 protected:
  void wheelEvent(QWheelEvent* event) override;
  void contextMenuEvent(QContextMenuEvent*) override {}

 private:
  void OnAction(int action);
  void OnReleased();
  void Send(int code, int position);

  HWND m_window;
  int m_bar;
};

// Qt's input as messages (input.cpp)

bool QueueKey(HWND window, const QKeyEvent& event);
void QueueMouse(HWND window, const QMouseEvent& event, UINT message, const QWidget& from);
void QueueWheel(HWND window, const QWheelEvent& event);
/// Where a context menu that the keyboard asks for opens, on the screen: at the caret, or inside the window.
LPARAM MenuPlaceWithoutPointer(HWND window);
/// WM_DROPFILES with the files of the event (drop_files.cpp).
void QueueDrop(HWND window, const QDropEvent& event);
bool CarriesFiles(const QMimeData* data);
/// False for a window that is disabled, itself or through a parent.
bool TakesInput(HWND window);

}  // namespace platform
