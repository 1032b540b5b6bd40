#include <QApplication>
#include <QContextMenuEvent>
#include <QInputMethodEvent>
#include <QKeyEvent>
#include <QMouseEvent>
#include <QPointer>
#include <QWheelEvent>
#include <utility>

#include "platform/window/controls/detail/control.h"
#include "platform/window/detail/queue.h"
#include "platform/window/detail/virtual_keys.h"
#include "platform/window/detail/widgets.h"
#include "platform/window/detail/window_record.h"

namespace platform {
namespace {

/// The control that a widget belongs to, its list included; null if there is none.
HWND ControlWindowOf(const QObject* object) {
  if (object == nullptr || !object->isWidgetType()) return nullptr;
  for (const auto* widget = static_cast<const QWidget*>(object); widget != nullptr;
       widget = widget->parentWidget()) {
    if (const auto* client = dynamic_cast<const ClientWidget*>(widget))
      return ControlOf(client->Window()) ? client->Window() : nullptr;
  }
  return nullptr;
}

/// Gives the program the message at once, where it can't wait in the queue. True: the program used it up.
bool UsedUp(HWND window, UINT message, WPARAM wParam) {
  MSG now = {window, message, wParam, 1, MessageTime(), PointerPosition(), 0};
  try {
    return PreTranslateByHook(&now);
  } catch (...) {
    Queue::Instance().Keep(std::current_exception());
    return true;
  }
}

UINT MouseMessageOf(const QMouseEvent& event) {
  UINT message = WM_LBUTTONDOWN;
  if (event.type() == QEvent::MouseMove) return WM_MOUSEMOVE;
  if (event.type() == QEvent::MouseButtonRelease) message = WM_LBUTTONUP;
  if (event.type() == QEvent::MouseButtonDblClick) message = WM_LBUTTONDBLCLK;
  switch (event.button()) {
    case Qt::LeftButton:
      return message;
    case Qt::RightButton:
      return message + 3;
    case Qt::MiddleButton:
      return message + 6;
    default:
      return WM_NULL;
  }
}

class ControlFilter : public QObject {
 public:
  bool eventFilter(QObject* object, QEvent* event) override {
    switch (event->type()) {
      case QEvent::ShortcutOverride:
      case QEvent::KeyPress:
      case QEvent::KeyRelease:
      case QEvent::MouseButtonPress:
      case QEvent::MouseButtonRelease:
      case QEvent::MouseButtonDblClick:
      case QEvent::MouseMove:
      case QEvent::Wheel:
      case QEvent::ContextMenu:
      case QEvent::InputMethod:
      case QEvent::FocusIn:
      case QEvent::FocusOut:
        break;
      default:
        return false;
    }
    const HWND window = ControlWindowOf(object);
    if (window == nullptr) return false;
    auto* widget = static_cast<QWidget*>(object);
    if (widget->window()->windowType() == Qt::Popup) return AtList(window, *widget, *event);
    return AtControl(window, *widget, *event);
  }

 private:
  /// While a list is open Qt acts on its events at once. Keys still pass by the program first.
  bool AtList(HWND window, const QWidget& widget, QEvent& event) {
    if (event.type() != QEvent::ShortcutOverride && event.type() != QEvent::KeyPress) return false;
    if (event.type() == QEvent::KeyPress && !widget.isVisible()) {
      m_listKeySeen = false;  // its first half has closed the list
      event.accept();
      return true;
    }
    auto& key = static_cast<QKeyEvent&>(event);
    const int virtualKey = VirtualKeyOf(key);
    const std::shared_ptr<Control> control = ControlOf(window);
    if (event.type() == QEvent::ShortcutOverride) {
      if (m_listKeySeen && m_listEvent == &event) return false;  // on its way up to the list's frame
      m_listEvent = &event;
      m_listKeyUsed = UsedUp(window, WM_KEYDOWN, static_cast<WPARAM>(virtualKey)) || !ControlOf(window) ||
                      control->ListKey(virtualKey);
      m_listKeySeen = true;
      m_listKey = key.key();
    } else if (!m_listKeySeen) {  // a key without the override before it
      m_listKeyUsed = UsedUp(window, WM_KEYDOWN, static_cast<WPARAM>(virtualKey)) || !ControlOf(window) ||
                      control->ListKey(virtualKey);
    }
    if (event.type() == QEvent::KeyPress) {
      m_listKeySeen = false;
      const auto typed = key.text().toUcs4();
      const bool printable = !typed.isEmpty() && (typed.front() >= U' ' || typed.front() == 8);
      if (!m_listKeyUsed && printable) {
        m_listKeyUsed = true;  // letters are for the field, not for a search in the list
        if (!UsedUp(window, WM_CHAR, typed.front())) SendGuarded(window, WM_CHAR, typed.front(), 1);
      }
    }
    if (m_listKeyUsed) event.accept();
    return m_listKeyUsed;
  }

  /// The second half of a key whose first half has closed the list.
  bool ClosedTheList(const QEvent& event) {
    return std::exchange(m_listKeySeen, false) && static_cast<const QKeyEvent&>(event).key() == m_listKey;
  }

  bool AtControl(HWND window, QWidget& widget, QEvent& event) {
    switch (event.type()) {
      case QEvent::ShortcutOverride:
        return false;
      case QEvent::KeyPress:
        if (ClosedTheList(event)) break;
        [[fallthrough]];
      case QEvent::KeyRelease:
        QueueKey(window, static_cast<QKeyEvent&>(event));
        break;
      case QEvent::Wheel:
        QueueWheel(window, static_cast<QWheelEvent&>(event));
        break;
      case QEvent::ContextMenu:
        // The mouse's follows from WM_RBUTTONUP.
        if (static_cast<QContextMenuEvent&>(event).reason() == QContextMenuEvent::Keyboard)
          PostMessage(window, WM_CONTEXTMENU, reinterpret_cast<WPARAM>(window),
                      MenuPlaceWithoutPointer(window));
        break;
      case QEvent::InputMethod:
        return QueueComposed(window, widget, static_cast<QInputMethodEvent&>(event));
      case QEvent::FocusIn:
      case QEvent::FocusOut:
        NoteFocus(window, widget, static_cast<QFocusEvent&>(event));
        return false;
      default:
        Mouse(window, widget, static_cast<QMouseEvent&>(event));
        break;
    }
    event.accept();
    return true;
  }

  static void Mouse(HWND window, QWidget& widget, const QMouseEvent& event) {
    const UINT message = MouseMessageOf(event);
    const WindowRecord* record = FindWindowRecord(window);
    if (message == WM_NULL || !record->client) return;
    const QPoint point = widget.mapTo(record->client, event.position().toPoint());
    const QMouseEvent mapped(event.type(), point, event.globalPosition(), event.button(), event.buttons(),
                             event.modifiers());
    QueueMouse(window, mapped, message, *record->client);
  }

  /// The text of an input method comes without keys; as characters it passes by the program.
  static bool QueueComposed(HWND window, QWidget& widget, QInputMethodEvent& event) {
    if (event.commitString().isEmpty()) return false;
    if (TakesInput(window))
      for (const char32_t c : event.commitString().toUcs4())
        Queue::Instance().PostInput({window, WM_CHAR, c, 1, MessageTime(), PointerPosition(), 0});
    QInputMethodEvent cleared(event.preeditString(), event.attributes());
    static_cast<QObject&>(widget).event(&cleared);
    event.accept();
    return true;
  }

  static void NoteFocus(HWND window, const QWidget& widget, const QFocusEvent& event) {
    const std::shared_ptr<Control> control = ControlOf(window);
    if (control->Widget() != &widget) return;
    if (event.type() == QEvent::FocusIn)
      FocusGained(window);
    else if (event.reason() != Qt::PopupFocusReason && !control->KeepsFocus())
      FocusLost(window);
  }

  bool m_listKeyUsed = false;
  bool m_listKeySeen = false;  ///< its first half, the override of shortcuts
  int m_listKey = 0;
  const QEvent* m_listEvent = nullptr;  ///< to be compared only
};

}  // namespace

void WatchControlInput() {
  static auto* filter = new ControlFilter;  // outlives every application object
  static QPointer<QCoreApplication> watched;
  if (watched == QCoreApplication::instance()) return;
  watched = QCoreApplication::instance();
  watched->installEventFilter(filter);
}

}  // namespace platform
