#include <QApplication>
#include <QKeyEvent>
#include <QLineEdit>
#include <QMouseEvent>
#include <QWheelEvent>

#include "platform/window/detail/queue.h"
#include "platform/window/detail/virtual_keys.h"
#include "platform/window/detail/widgets.h"
#include "platform/window/detail/window_record.h"

namespace platform {
namespace {

UINT MouseFlags(Qt::MouseButtons buttons, Qt::KeyboardModifiers modifiers) {
  UINT flags = 0;
  if ((buttons & Qt::LeftButton) != 0) flags |= MK_LBUTTON;
  if ((buttons & Qt::RightButton) != 0) flags |= MK_RBUTTON;
  if ((buttons & Qt::MiddleButton) != 0) flags |= MK_MBUTTON;
  if ((modifiers & Qt::ShiftModifier) != 0) flags |= MK_SHIFT;
  if ((modifiers & Qt::ControlModifier) != 0) flags |= MK_CONTROL;
  return flags;
}

DWORD AltState(Qt::KeyboardModifiers modifiers) {
  return kAltKnown | ((modifiers & Qt::AltModifier) != 0 ? kAltDown : 0);
}

/// The window that a key at this widget is for.
HWND KeyTarget(HWND window) {
  const HWND focus = GetFocus();
  return focus != nullptr && GetTopLevelWindow(focus) == GetTopLevelWindow(window) ? focus : window;
}

DWORD TypedCharacter(const QKeyEvent& event) {
  const QString text = event.text();
  if (text.isEmpty()) return 0;
  const auto points = text.toUcs4();
  return points.isEmpty() ? 0 : points.front();
}

}  // namespace

bool TakesInput(HWND window) {
  return FindWindowRecord(window) != nullptr && IsEnabledChain(window);
}

bool QueueKey(HWND window, const QKeyEvent& event) {
  const HWND target = KeyTarget(window);
  const int key = VirtualKeyOf(event);
  const DWORD typed = TypedCharacter(event);
  if (!TakesInput(target) || (key == 0 && typed == 0)) return false;
  const bool down = event.type() == QEvent::KeyPress;
  const bool system = key == VK_MENU || key == VK_F10 || (event.modifiers() & Qt::AltModifier) != 0;
  const UINT message = down ? (system ? WM_SYSKEYDOWN : WM_KEYDOWN) : (system ? WM_SYSKEYUP : WM_KEYUP);
  // Bits 0 to 15 the repeat count, 29 Alt is down, 30 down before, 31 being let go.
  const DWORD flags = 1U | ((event.modifiers() & Qt::AltModifier) != 0 ? 1U << 29 : 0) |
                      (event.isAutoRepeat() ? 1U << 30 : 0) | (down ? 0 : 3U << 30);
  Queue::Instance().PostInput({target, message, static_cast<WPARAM>(key), static_cast<LPARAM>(flags),
                               MessageTime(), PointerPosition(), down ? typed : 0});
  return true;
}

void QueueMouse(HWND window, const QMouseEvent& event, UINT message, const QWidget& from) {
  const HWND capture = GetCapture();
  HWND target = window;
  QPoint point = event.position().toPoint();
  if (capture != nullptr && capture != window) {
    const WindowRecord* record = FindWindowRecord(capture);
    if (record != nullptr && record->client) {
      target = capture;
      point = record->client->mapFromGlobal(from.mapToGlobal(point));
    }
  }
  if (!TakesInput(target)) return;
  if (capture == nullptr)
    SendGuarded(target, WM_SETCURSOR, reinterpret_cast<WPARAM>(target),
                MAKELPARAM(HTCLIENT, static_cast<int>(message)));
  if (!TakesInput(target)) return;
  const QPoint global = event.globalPosition().toPoint();
  Queue::Instance().PostInput({target,
                               message,
                               MouseFlags(event.buttons(), event.modifiers()),
                               MAKELPARAM(point.x(), point.y()),
                               MessageTime(),
                               {global.x(), global.y()},
                               AltState(event.modifiers())});
}

void QueueWheel(HWND window, const QWheelEvent& event) {
  // A touchpad tells of parts of a notch; Alt turns a desktop's vertical wheel into a horizontal one.
  QPoint delta = event.angleDelta();
  if (event.modifiers().testFlag(Qt::AltModifier) && delta.y() == 0) delta = delta.transposed();
  const QPoint global = event.globalPosition().toPoint();
  const auto flags = static_cast<int>(MouseFlags(event.buttons(), event.modifiers()));
  const auto queue = [&](UINT message, int turn) {
    // To the window under the pointer, as people expect on this desktop, not to the one with the keyboard.
    if (turn == 0 || !TakesInput(window)) return;
    Queue::Instance().PostInput({window,
                                 message,
                                 MAKEWPARAM(flags, turn),
                                 MAKELPARAM(global.x(), global.y()),
                                 MessageTime(),
                                 {global.x(), global.y()},
                                 AltState(event.modifiers())});
  };
  queue(WM_MOUSEWHEEL, delta.y());
  queue(WM_MOUSEHWHEEL, -delta.x());  // to the right is forwards
}

LPARAM MenuPlaceWithoutPointer(HWND window) {
  const WindowRecord* record = FindWindowRecord(window);
  if (record == nullptr || !record->client) return -1;
  const auto* field = record->control ? record->client->findChild<QLineEdit*>() : nullptr;
  const QPoint place =
      field != nullptr
          ? field->mapToGlobal(field->inputMethodQuery(Qt::ImCursorRectangle).toRect().bottomLeft())
          : record->client->mapToGlobal(record->client->rect().center());
  return MAKELPARAM(place.x(), place.y());
}

}  // namespace platform
