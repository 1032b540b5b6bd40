#include "platform/testing.h"

#include <QApplication>
#include <QElapsedTimer>
#include <QHelpEvent>
#include <QKeyEvent>
#include <QMouseEvent>
#include <QPixmap>
#include <QStyle>
#include <QStyleOptionSlider>
#include <QToolTip>
#include <QWheelEvent>

#include "platform/window/detail/keys.h"
#include "platform/window/detail/queue.h"
#include "platform/window/detail/widgets.h"
#include "platform/window/detail/window_record.h"

namespace platform::testing {
namespace {

ClientWidget* ClientOf(HWND window) {
  const WindowRecord* record = FindWindowRecord(window);
  return record == nullptr ? nullptr : record->client.data();
}

Qt::KeyboardModifiers Modifiers(bool shift, bool control, bool alt) {
  Qt::KeyboardModifiers modifiers = Qt::NoModifier;
  if (shift) modifiers |= Qt::ShiftModifier;
  if (control) modifiers |= Qt::ControlModifier;
  if (alt) modifiers |= Qt::AltModifier;
  return modifiers;
}

/// The Qt key that VirtualKeyOf turns into this virtual key.
int QtKeyOf(int virtualKey) {
  for (int key = Qt::Key_Space; key <= Qt::Key_AsciiTilde; ++key)
    if (VirtualKeyOf(QKeyEvent(QEvent::KeyPress, key, Qt::NoModifier)) == virtualKey) return key;
  for (int key = Qt::Key_Escape; key <= Qt::Key_Menu; ++key)
    if (VirtualKeyOf(QKeyEvent(QEvent::KeyPress, key, Qt::NoModifier)) == virtualKey) return key;
  return 0;
}

void SendKey(QEvent::Type type, HWND window, int virtualKey, Qt::KeyboardModifiers modifiers) {
  ClientWidget* client = ClientOf(window);
  if (client == nullptr) return;
  const bool letter = virtualKey >= 'A' && virtualKey <= 'Z';
  const bool digit = virtualKey >= '0' && virtualKey <= '9';
  QString text;
  if (letter || digit)
    text = QChar(letter && !modifiers.testFlag(Qt::ShiftModifier) ? virtualKey + 32 : virtualKey);
  QKeyEvent event(type, QtKeyOf(virtualKey), modifiers, text);
  QApplication::sendEvent(client, &event);
}

Qt::MouseButton QtButton(Button button) {
  switch (button) {
    case Button::Right:
      return Qt::RightButton;
    case Button::Middle:
      return Qt::MiddleButton;
    default:
      return Qt::LeftButton;
  }
}

void SendMouse(QEvent::Type type, HWND window, POINT point, Qt::MouseButton button, Qt::MouseButtons buttons,
               Qt::KeyboardModifiers modifiers) {
  ClientWidget* client = ClientOf(window);
  if (client == nullptr) return;
  const QPoint local(point.x, point.y);
  QMouseEvent event(type, local, client->mapToGlobal(local), button, buttons, modifiers);
  QApplication::sendEvent(client, &event);
}

WindowScrollBar* BarOf(HWND window, int bar) {
  const WindowRecord* record = FindWindowRecord(window);
  if (record == nullptr || (bar != SB_HORZ && bar != SB_VERT)) return nullptr;
  return record->bars[static_cast<std::size_t>(bar)].data();
}

QImage Grab(HWND window) {
  const WindowRecord* record = FindWindowRecord(window);
  return record == nullptr || !record->frame ? QImage() : record->frame->grab().toImage();
}

}  // namespace

void AdvanceTimers(UINT milliseconds) {
  Queue::Instance().AdvanceTimers(milliseconds);
}

void HoldQueue(bool hold) {
  Queue::Instance().HoldKick(hold);
}

void PumpUntilIdle(int milliseconds) {
  QElapsedTimer limit;
  limit.start();
  MSG message;
  // Twice empty in a row: the first time Qt may just have queued its own follow-up work.
  for (int empty = 0; empty < 2 && limit.elapsed() < milliseconds;) {
    if (PeekMessage(&message, nullptr, 0, 0, PM_REMOVE) == 0) {
      ++empty;
      continue;
    }
    empty = 0;
    if (message.message == WM_QUIT) {
      PostQuitMessage(static_cast<int>(message.wParam));
      return;
    }
    if (PreTranslateByHook(&message)) continue;
    TranslateMessage(&message);
    DispatchMessage(&message);
  }
}

void PressKey(HWND window, int virtualKey, bool shift, bool control, bool alt) {
  SendKey(QEvent::KeyPress, window, virtualKey, Modifiers(shift, control, alt));
}

void ReleaseKey(HWND window, int virtualKey, bool shift, bool control, bool alt) {
  SendKey(QEvent::KeyRelease, window, virtualKey, Modifiers(shift, control, alt));
}

void PressMouse(HWND window, POINT point, Button button, bool shift) {
  SendMouse(QEvent::MouseButtonPress, window, point, QtButton(button), QtButton(button),
            Modifiers(shift, false, false));
}

void ReleaseMouse(HWND window, POINT point, Button button) {
  SendMouse(QEvent::MouseButtonRelease, window, point, QtButton(button), Qt::NoButton, Qt::NoModifier);
}

void MoveMouse(HWND window, POINT point, bool leftDown) {
  SendMouse(QEvent::MouseMove, window, point, Qt::NoButton, leftDown ? Qt::LeftButton : Qt::NoButton,
            Qt::NoModifier);
}

void LeaveWindow(HWND window) {
  QEvent event(QEvent::Leave);
  if (ClientWidget* client = ClientOf(window)) QApplication::sendEvent(client, &event);
}

CString ToolTipAt(HWND window, POINT point) {
  ClientWidget* client = ClientOf(window);
  if (client == nullptr) return {};
  // Qt lets a tip stand for a while after it was hidden.
  for (QWidget* widget : QApplication::topLevelWidgets())
    if (widget->inherits("QTipLabel")) widget->hide();
  const QPoint local(point.x, point.y);
  QHelpEvent event(QEvent::ToolTip, local, client->mapToGlobal(local));
  QApplication::sendEvent(client, &event);
  const CString text = QToolTip::isVisible() ? QToolTip::text().toUtf8().constData() : "";
  QToolTip::hideText();
  return text;
}

void TurnWheel(HWND window, POINT point, int delta, bool shift, bool control, bool alt) {
  ClientWidget* client = ClientOf(window);
  if (client == nullptr) return;
  const QPoint local(point.x, point.y);
  QWheelEvent event(local, client->mapToGlobal(local), QPoint(), QPoint(0, delta), Qt::NoButton,
                    Modifiers(shift, control, alt), Qt::NoScrollPhase, false);
  QApplication::sendEvent(client, &event);
}

void DragThumb(HWND window, int bar, int position, bool release) {
  WindowScrollBar* widget = BarOf(window, bar);
  if (widget == nullptr) return;
  const QPointer<WindowScrollBar> alive = widget;
  widget->setSliderDown(true);
  widget->setSliderPosition(position);  // a bar that is held down tracks
  if (alive && release) widget->setSliderDown(false);
}

void ClickScrollBar(HWND window, int bar, bool forward, bool page) {
  WindowScrollBar* widget = BarOf(window, bar);
  if (widget == nullptr) return;
  if (page)
    widget->triggerAction(forward ? QAbstractSlider::SliderPageStepAdd : QAbstractSlider::SliderPageStepSub);
  else
    widget->triggerAction(forward ? QAbstractSlider::SliderSingleStepAdd
                                  : QAbstractSlider::SliderSingleStepSub);
}

bool SaveWindowPicture(HWND window, const char* path) {
  const QImage picture = Grab(window);
  return !picture.isNull() &&
         picture.convertToFormat(QImage::Format_RGB32).save(QString::fromUtf8(path), "PNG");
}

std::uint32_t WindowPixel(HWND window, int x, int y) {
  const QImage picture = Grab(window);
  return picture.valid(x, y) ? picture.pixel(x, y) | 0xff000000U : 0;
}

}  // namespace platform::testing
