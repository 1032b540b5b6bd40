#include "platform/window/controls/detail/control.h"

#include <QMouseEvent>
#include <QWheelEvent>

#include "platform/graphics/detail/device_context.h"
#include "platform/window/detail/widgets.h"
#include "platform/window/detail/window_record.h"

namespace platform {
namespace {

struct MouseKind {
  QEvent::Type type;
  Qt::MouseButton button;
};

MouseKind MouseKindOf(UINT message) {
  if (message == WM_MOUSEMOVE) return {QEvent::MouseMove, Qt::NoButton};
  constexpr Qt::MouseButton kButtons[] = {Qt::LeftButton, Qt::RightButton, Qt::MiddleButton};
  constexpr QEvent::Type kTypes[] = {QEvent::MouseButtonPress, QEvent::MouseButtonRelease,
                                     QEvent::MouseButtonDblClick};
  const UINT index = message - WM_LBUTTONDOWN;  // down, up, double click of each button in turn
  return {kTypes[index % 3], kButtons[index / 3]};
}

Qt::MouseButtons ButtonsOf(WPARAM flags) {
  Qt::MouseButtons buttons = Qt::NoButton;
  if ((flags & MK_LBUTTON) != 0) buttons |= Qt::LeftButton;
  if ((flags & MK_RBUTTON) != 0) buttons |= Qt::RightButton;
  if ((flags & MK_MBUTTON) != 0) buttons |= Qt::MiddleButton;
  return buttons;
}

Qt::KeyboardModifiers ModifiersOf(WPARAM flags) {
  Qt::KeyboardModifiers modifiers = Qt::NoModifier;
  if ((flags & MK_SHIFT) != 0) modifiers |= Qt::ShiftModifier;
  if ((flags & MK_CONTROL) != 0) modifiers |= Qt::ControlModifier;
  return modifiers;
}

/// Straight to the widget's handler: what it leaves alone must not travel up to the window, which would queue
/// it again.
void Give(QObject& receiver, QEvent& event) {
  receiver.event(&event);
}

}  // namespace

Qt::KeyboardModifiers CurrentModifiers() {
  Qt::KeyboardModifiers modifiers = Qt::NoModifier;
  if (GetKeyState(VK_SHIFT) < 0) modifiers |= Qt::ShiftModifier;
  if (GetKeyState(VK_CONTROL) < 0) modifiers |= Qt::ControlModifier;
  return modifiers;
}

std::shared_ptr<Control> ControlOf(HWND window) {
  const WindowRecord* record = FindWindowRecord(window);
  return record == nullptr ? nullptr : record->control;
}

Control::Control(HWND window, QWidget* widget) : m_window(window), m_widget(widget) {
  widget->setFocusPolicy(Qt::NoFocus);  // the focus moves when the message is dispatched, not before
  widget->parentWidget()->setFocusProxy(widget);
  widget->show();
}

Control::~Control() = default;

std::shared_ptr<Control> Control::KeepAlive() const {
  return ControlOf(m_window);
}

void Control::Notify(int code) {
  const HWND parent = GetParent(m_window);
  SendGuarded(parent, WM_COMMAND, MAKEWPARAM(GetDlgCtrlID(m_window), code),
              reinterpret_cast<LPARAM>(m_window));
}

void Control::Resized(int width, int height) {
  m_widget->setGeometry(0, 0, width, height);
}

void Control::GiveKey(QWidget& widget, QEvent::Type type, int qtKey, Qt::KeyboardModifiers modifiers,
                      const QString& text) {
  QKeyEvent event(type, qtKey, modifiers, text);
  Give(widget, event);
}

void Control::GiveMouse(UINT message, WPARAM flags, LPARAM words) {
  const MouseKind kind = MouseKindOf(message);
  const QWidget* client = m_widget->parentWidget();
  const QPoint point(GET_X_LPARAM(words), GET_Y_LPARAM(words));
  const bool press = kind.type == QEvent::MouseButtonPress || kind.type == QEvent::MouseButtonDblClick;
  if (press || !m_mouseTarget) {
    QWidget* inner = m_widget->childAt(m_widget->mapFrom(client, point));
    m_mouseTarget = inner == nullptr ? m_widget.data() : inner;
  }
  const QPointer<QWidget> target = m_mouseTarget;
  if (kind.type == QEvent::MouseButtonRelease && ButtonsOf(flags) == Qt::NoButton) m_mouseTarget = nullptr;
  if (kind.type == QEvent::MouseMove && ButtonsOf(flags) == Qt::NoButton) m_mouseTarget = nullptr;
  QMouseEvent event(kind.type, target->mapFrom(client, point), client->mapToGlobal(point), kind.button,
                    ButtonsOf(flags), ModifiersOf(flags));
  Give(*target, event);
}

void Control::GiveWheel(WPARAM wParam, LPARAM lParam) {
  const QPoint global(GET_X_LPARAM(lParam), GET_Y_LPARAM(lParam));
  const int delta = static_cast<std::int16_t>(HIWORD(wParam));
  QWheelEvent event(m_widget->mapFromGlobal(global), global, QPoint(), QPoint(0, delta), Qt::NoButton,
                    ModifiersOf(LOWORD(wParam)), Qt::NoScrollPhase, false);
  Give(*m_widget, event);
}

LRESULT Control::HandleText(UINT message, WPARAM wParam, LPARAM lParam) {
  WindowRecord* record = FindWindowRecord(m_window);
  if (message == WM_SETTEXT) {
    const auto* text = reinterpret_cast<const char*>(lParam);
    record->text = text == nullptr ? "" : text;
    SetText(QString::fromStdString(record->text));
    return TRUE;
  }
  if (HasText()) record->text = Text().toStdString();
  return DefWindowProc(m_window, message, wParam, lParam);
}

/// False: not input.
bool Control::HandleInput(UINT message, WPARAM wParam, LPARAM lParam) {
  Qt::KeyboardModifiers modifiers = CurrentModifiers();
  switch (message) {
    case WM_SYSKEYDOWN:
      if (wParam == VK_F10) return false;
      modifiers |= Qt::AltModifier;
      [[fallthrough]];
    case WM_KEYDOWN:
      KeyDown(static_cast<int>(wParam), modifiers);
      return true;
    case WM_KEYUP:
      KeyUp(static_cast<int>(wParam), modifiers);
      return true;
    case WM_CHAR:
      Char(static_cast<char32_t>(wParam));
      return true;
    default:
      break;
  }
  if (message < WM_MOUSEFIRST || message > WM_MBUTTONDBLCLK) return false;
  if (!IsEnabledChain(m_window)) return true;
  if ((message == WM_LBUTTONDOWN || message == WM_LBUTTONDBLCLK) && TakesFocusByMouse()) {
    SetFocus(m_window);
    if (FindWindowRecord(m_window) == nullptr) return true;
  }
  GiveMouse(message, wParam, lParam);
  if (message == WM_RBUTTONUP) DefWindowProc(m_window, message, wParam, lParam);
  return true;
}

LRESULT Control::Handle(UINT message, WPARAM wParam, LPARAM lParam) {
  if (!m_widget) return DefWindowProc(m_window, message, wParam, lParam);
  if (HandleInput(message, wParam, lParam)) return 0;
  switch (message) {
    case WM_SETTEXT:
    case WM_GETTEXT:
    case WM_GETTEXTLENGTH:
      return HandleText(message, wParam, lParam);
    case WM_SIZE:
      Resized(LOWORD(static_cast<WPARAM>(lParam)), HIWORD(static_cast<WPARAM>(lParam)));
      return 0;
    case WM_PAINT:
      ValidateRect(m_window, nullptr);
      m_widget->update();
      return 0;
    case WM_ERASEBKGND:
      return 1;
    case WM_ENABLE:
    case WM_STYLECHANGED:
      m_widget->setEnabled((Style() & WS_DISABLED) == 0);
      return 0;
    case WM_SETFONT:
      m_font = reinterpret_cast<HFONT>(wParam);
      m_widget->setFont(FontOf(m_font));
      FontChanged();
      return 0;
    case WM_GETFONT:
      return reinterpret_cast<LRESULT>(m_font);
    case WM_SETFOCUS:
    case WM_KILLFOCUS:
      FocusChanged(message == WM_SETFOCUS);
      return 0;
    case WM_SETCURSOR:
      return TRUE;  // the widget has its own
    case WM_GETDLGCODE:
      return DialogCode();
    case WM_MOUSEWHEEL:
      // Only a control that is being worked in turns with the wheel.
      if (GetFocus() != m_window) return DefWindowProc(m_window, message, wParam, lParam);
      GiveWheel(wParam, lParam);
      return 0;
    default:
      return DefWindowProc(m_window, message, wParam, lParam);
  }
}

}  // namespace platform
