#include "tessarel12_testing.h"

#include <QApplication>
#include <QDropEvent>
#include <QElapsedTimer>
#include <QHelpEvent>
#include <QInputMethodEvent>
#include <QKeyEvent>
#include <QMenuBar>
#include <QMimeData>
#include <QMouseEvent>
#include <QPixmap>
#include <QPointer>
#include <QScrollBar>
#include <QStyle>
#include <QStyleOptionSlider>
#include <QToolButton>
#include <QToolTip>
#include <QUrl>
#include <QWheelEvent>

#include "platform/qt_bridge.h"
#include "platform/window/controls/inside.h"
#include "platform/window/messages.h"
#include "platform/window/pump.h"

namespace platform::testing {
namespace {

QWidget* ClientOf(HWND window) {
  return TheInside().client(window);
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
    if (TheInside().virtualKey(QKeyEvent(QEvent::KeyPress, key, Qt::NoModifier)) == virtualKey) return key;
  for (int key = Qt::Key_Escape; key <= Qt::Key_Menu; ++key)
    if (TheInside().virtualKey(QKeyEvent(QEvent::KeyPress, key, Qt::NoModifier)) == virtualKey) return key;
  return 0;
}

/// What the key types, as the desktop tells it.
QString TextOf(int virtualKey, Qt::KeyboardModifiers modifiers) {
  const bool letter = virtualKey >= 'A' && virtualKey <= 'Z';
  const bool digit = virtualKey >= '0' && virtualKey <= '9';
  if (letter && modifiers.testFlag(Qt::ControlModifier)) return QChar(virtualKey - 'A' + 1);
  if (letter) return QChar(modifiers.testFlag(Qt::ShiftModifier) ? virtualKey : virtualKey + 32);
  const bool types = digit || virtualKey == VK_BACK || virtualKey == VK_TAB || virtualKey == VK_RETURN ||
                     virtualKey == VK_ESCAPE || virtualKey == VK_SPACE;
  return types ? QString(QChar(virtualKey)) : QString();
}

/// The widget that the desktop gives a window's keys to: an open list takes them all.
QWidget* KeyReceiver(HWND window) {
  if (QWidget* popup = QApplication::activePopupWidget())
    return popup->focusWidget() != nullptr ? popup->focusWidget() : popup;
  if (auto* bar = qobject_cast<QMenuBar*>(QApplication::focusWidget()))
    return bar;  // the user has gone to it
  QWidget* control = TheInside().control(window);
  return control != nullptr ? control : ClientOf(window);
}

void SendKeyEvent(QEvent::Type type, HWND window, int qtKey, Qt::KeyboardModifiers modifiers,
                  const QString& text) {
  QWidget* receiver = KeyReceiver(window);
  if (receiver == nullptr) return;
  QKeyEvent event(type, qtKey, modifiers, text);
  QApplication::sendEvent(receiver, &event);
}

void SendKey(QEvent::Type type, HWND window, int virtualKey, Qt::KeyboardModifiers modifiers) {
  SendKeyEvent(type, window, QtKeyOf(virtualKey), modifiers, TextOf(virtualKey, modifiers));
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
  QWidget* client = ClientOf(window);
  if (client == nullptr) return;
  const QPoint local(point.x, point.y);
  QWidget* receiver = TheInside().control(window) != nullptr && client->childAt(local) != nullptr
                          ? client->childAt(local)
                          : client;
  // The title bar and border of a document window hold the mouse until the button is let go.
  static QPointer<QWidget> holder;
  const bool around = TheInside().isDocumentWindow(window) && !client->rect().contains(local);
  if (type == QEvent::MouseButtonPress) holder = around ? client->parentWidget() : nullptr;
  if (around) receiver = client->parentWidget();
  if (holder) receiver = holder;
  if (type == QEvent::MouseButtonRelease) holder = nullptr;
  QMouseEvent event(type, receiver->mapFromGlobal(client->mapToGlobal(local)), client->mapToGlobal(local),
                    button, buttons, modifiers);
  QApplication::sendEvent(receiver, &event);
}

QImage Grab(HWND window) {
  QWidget* frame = AfxGetQWidget(window);
  return frame == nullptr ? QImage() : frame->grab().toImage();
}

}  // namespace

void AdvanceTimers(UINT milliseconds) {
  TheInside().advanceTimers(milliseconds);
}

void HoldQueue(bool hold) {
  TheInside().holdQueue(hold);
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
    if (TheInside().preTranslate(&message)) continue;
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

void TypeText(HWND window, const char* text) {
  for (const char32_t c : QString::fromUtf8(text).toUcs4()) {
    const QString typed = QString::fromUcs4(&c, 1);
    const int key = c <= 0xff ? typed.toUpper().at(0).unicode() : 0;
    SendKeyEvent(QEvent::KeyPress, window, key, Qt::NoModifier, typed);
    SendKeyEvent(QEvent::KeyRelease, window, key, Qt::NoModifier, typed);
  }
}

void ComposeText(HWND window, const char* text) {
  QWidget* receiver = KeyReceiver(window);
  if (receiver == nullptr) return;
  QInputMethodEvent event;
  event.setCommitString(QString::fromUtf8(text));
  QApplication::sendEvent(receiver, &event);
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
  if (QWidget* client = ClientOf(window)) QApplication::sendEvent(client, &event);
}

CString ToolTipAt(HWND window, POINT point) {
  QWidget* client = ClientOf(window);
  if (client == nullptr) return {};
  // Qt lets a tip stand for a while after it was hidden.
  for (QWidget* widget : QApplication::topLevelWidgets())
    if (widget->inherits("QTipLabel")) widget->hide();
  const QPoint local(point.x, point.y);
  QHelpEvent event(QEvent::ToolTip, local, client->mapToGlobal(local));
  QApplication::sendEvent(client, &event);
  CString text = QToolTip::isVisible() ? QToolTip::text().toUtf8().constData() : "";
  QToolTip::hideText();
  return text;
}

void TurnWheel(HWND window, POINT point, int delta, bool shift, bool control, bool alt, int right) {
  QWidget* client = ClientOf(window);
  if (client == nullptr) return;
  const QPoint local(point.x, point.y);
  QWheelEvent event(local, client->mapToGlobal(local), QPoint(), QPoint(-right, delta), Qt::NoButton,
                    Modifiers(shift, control, alt), Qt::NoScrollPhase, false);
  QApplication::sendEvent(client, &event);
}

bool DropFiles(HWND window, POINT point, std::span<const char* const> paths) {
  QWidget* client = ClientOf(window);
  if (client == nullptr) return false;
  QMimeData data;
  QList<QUrl> urls;
  for (const char* path : paths) urls.append(QUrl::fromLocalFile(path));
  data.setUrls(urls);
  const QPoint local(point.x, point.y);
  QDragEnterEvent enter(local, Qt::CopyAction, &data, Qt::LeftButton, Qt::NoModifier);
  QApplication::sendEvent(client, &enter);
  if (!enter.isAccepted()) return false;
  QDropEvent drop(local, Qt::CopyAction, &data, Qt::LeftButton, Qt::NoModifier);
  QApplication::sendEvent(client, &drop);
  return drop.isAccepted();
}

void DragThumb(HWND window, int bar, int position, bool release) {
  QAbstractSlider* widget = TheInside().scrollBar(window, bar);
  if (widget == nullptr) return;
  const QPointer<QAbstractSlider> alive = widget;
  widget->setSliderDown(true);
  widget->setSliderPosition(position);  // a bar that is held down tracks
  if (alive && release) widget->setSliderDown(false);
}

void ClickScrollBar(HWND window, int bar, bool forward, bool page) {
  QAbstractSlider* widget = TheInside().scrollBar(window, bar);
  if (widget == nullptr) return;
  if (page)
    widget->triggerAction(forward ? QAbstractSlider::SliderPageStepAdd : QAbstractSlider::SliderPageStepSub);
  else
    widget->triggerAction(forward ? QAbstractSlider::SliderSingleStepAdd
                                  : QAbstractSlider::SliderSingleStepSub);
}

bool ChooseMenuItem(HWND topLevel, UINT id) {
  return TheInside().chooseMenuItem(topLevel, id);
}

// The buttons carry the command that each sends.
bool ClickMaximizedButton(HWND frame, UINT command) {
  QWidget* widget = AfxGetQWidget(frame);
  if (widget == nullptr) return false;
  for (auto* button : widget->findChildren<QToolButton*>()) {
    if (!button->isVisible() || button->property("command").toUInt() != command) continue;
    button->click();
    return true;
  }
  return false;
}

UINT CursorId(HCURSOR cursor) {
  return TheInside().cursorNumber(cursor);
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
