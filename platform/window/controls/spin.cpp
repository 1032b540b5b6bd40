#include <QAccessible>
#include <QBoxLayout>
#include <QToolButton>
#include <algorithm>
#include <charconv>

#include "platform/window/controls/detail/control.h"

namespace platform {
namespace {

/// Two arrows, one above the other.
class SpinWidget : public QWidget {
 public:
  explicit SpinWidget(QWidget* parent) : QWidget(parent), m_up(this), m_down(this) {
    m_up.setArrowType(Qt::UpArrow);
    m_down.setArrowType(Qt::DownArrow);
    for (QToolButton* button : {&m_up, &m_down}) {
      button->setAutoRepeat(true);
      button->setFocusPolicy(Qt::NoFocus);
    }
  }
  QToolButton& Up() { return m_up; }
  QToolButton& Down() { return m_down; }

 protected:
  void resizeEvent(QResizeEvent*) override {
    const int half = height() / 2;
    m_up.setGeometry(0, 0, width(), half);
    m_down.setGeometry(0, half, width(), height() - half);
  }

 private:
  QToolButton m_up;
  QToolButton m_down;
};

class SpinControl : public Control {
 public:
  SpinControl(HWND window, QWidget* parent) : Control(window, new SpinWidget(parent)) {
    parent->setFocusProxy(nullptr);
    auto* widget = static_cast<SpinWidget*>(Widget());
    QObject::connect(&widget->Up(), &QToolButton::clicked, Context(), [this] { Step(1); });
    QObject::connect(&widget->Down(), &QToolButton::clicked, Context(), [this] { Step(-1); });
  }

  LRESULT Handle(UINT message, WPARAM wParam, LPARAM lParam) override {
    const auto words = static_cast<WPARAM>(lParam);
    switch (message) {
      case WM_CREATE:
        if ((Style() & UDS_AUTOBUDDY) != 0) SetBuddy(GetWindow(Window(), GW_HWNDPREV));
        return 0;
      case UDM_SETRANGE:  // the upper limit in the low word
        return SetRange(GET_Y_LPARAM(lParam), GET_X_LPARAM(lParam));
      case UDM_SETRANGE32:
        return SetRange(static_cast<int>(wParam), static_cast<int>(lParam));
      case UDM_GETRANGE32:
        if (wParam != 0) *reinterpret_cast<int*>(wParam) = m_low;
        if (lParam != 0) *reinterpret_cast<int*>(lParam) = m_high;
        return 0;
      case UDM_SETPOS:
        return LOWORD(static_cast<WPARAM>(SetPosition(static_cast<std::int16_t>(LOWORD(words)))));
      case UDM_SETPOS32:
        return SetPosition(static_cast<int>(lParam));
      case UDM_GETPOS: {
        const bool valid = ReadBuddy();
        return MAKELONG(m_position, valid ? 0 : 1);
      }
      case UDM_GETPOS32: {
        const bool valid = ReadBuddy();
        if (lParam != 0) *reinterpret_cast<BOOL*>(lParam) = valid ? FALSE : TRUE;
        return m_position;
      }
      default:
        return HandleMore(message, wParam, lParam);
    }
  }

  HWND Buddy() const { return m_buddy; }

  /// By an arrow: from what the field shows, if that is a number.
  void Step(int direction) {
    const std::shared_ptr<Control> alive = KeepAlive();
    ReadBuddy();
    // Limits the wrong way round turn the arrows round too.
    const int step = m_low <= m_high ? direction : -direction;
    int next = m_position + step;
    if ((Style() & UDS_WRAP) != 0 && (next < Lowest() || next > Highest()))
      next = next < Lowest() ? Highest() : Lowest();
    SetPosition(next);
    const HWND parent = GetParent(Window());
    const auto self = reinterpret_cast<LPARAM>(Window());
    SendMessage(parent, WM_VSCROLL, MAKEWPARAM(SB_THUMBPOSITION, m_position), self);
    SendMessage(parent, WM_VSCROLL, MAKEWPARAM(SB_ENDSCROLL, m_position), self);
  }

 protected:
  bool HasText() const override { return false; }
  bool TakesFocusByMouse() const override { return false; }
  int DialogCode() const override { return DLGC_STATIC; }

 private:
  LRESULT HandleMore(UINT message, WPARAM wParam, LPARAM lParam) {
    switch (message) {
      case UDM_SETBUDDY: {
        const HWND former = m_buddy;
        SetBuddy(reinterpret_cast<HWND>(wParam));
        return reinterpret_cast<LRESULT>(former);
      }
      case WM_LBUTTONDOWN:
        if (IsWindow(m_buddy) != 0) SetFocus(m_buddy);
        return Control::Handle(message, wParam, lParam);
      default:
        return Control::Handle(message, wParam, lParam);
    }
  }

  int Lowest() const { return std::min(m_low, m_high); }
  int Highest() const { return std::max(m_low, m_high); }

  LRESULT SetRange(int low, int high) {
    m_low = low;
    m_high = high;
    return 0;
  }

  /// The former position.
  int SetPosition(int position) {
    const int former = m_position;
    m_position = std::clamp(position, Lowest(), Highest());
    if ((Style() & UDS_SETBUDDYINT) != 0 && IsWindow(m_buddy) != 0)
      SetWindowText(m_buddy, std::to_string(m_position).c_str());
    if (m_position != former && QAccessible::isActive()) {
      QAccessibleValueChangeEvent event(Widget(), m_position);
      QAccessible::updateAccessibility(&event);
    }
    return former;
  }

  /// Takes the number that the buddy shows. False, and no change, if it is none within the range.
  bool ReadBuddy() {
    if ((Style() & UDS_SETBUDDYINT) == 0 || IsWindow(m_buddy) == 0) return true;
    const CString text = GetWindowText(m_buddy);
    const char* begin = text;
    const char* end = begin + text.GetLength();
    int number = 0;
    const auto [rest, error] = std::from_chars(begin, end, number);
    if (error != std::errc() || rest != end || number < Lowest() || number > Highest()) return false;
    m_position = number;
    return true;
  }

  /// Takes the buddy and the place beside it, which the buddy gives up.
  void SetBuddy(HWND buddy) {
    m_buddy = IsWindow(buddy) != 0 ? buddy : nullptr;
    if (m_buddy == nullptr || (Style() & (UDS_ALIGNRIGHT | UDS_ALIGNLEFT)) == 0) return;
    RECT field;
    GetWindowRect(m_buddy, &field);
    const int width = GetSystemMetrics(SM_CXVSCROLL);
    POINT origin = {field.left, field.top};
    ScreenToClient(GetParent(Window()), &origin);
    const int room = std::max(0, field.right - field.left - width);
    const int height = field.bottom - field.top;
    const bool right = (Style() & UDS_ALIGNRIGHT) != 0;
    MoveWindow(m_buddy, right ? origin.x : origin.x + width, origin.y, room, height, FALSE);
    MoveWindow(Window(), right ? origin.x + room : origin.x, origin.y, width, height, FALSE);
  }

  HWND m_buddy = nullptr;
  int m_low = 100;  // as the classic control: upside down until the program sets a range
  int m_high = 0;
  int m_position = 0;
};

}  // namespace

bool SpinByKey(HWND field, int virtualKey) {
  for (HWND other = GetWindow(field, GW_HWNDFIRST); other != nullptr; other = GetWindow(other, GW_HWNDNEXT)) {
    const auto spin = std::dynamic_pointer_cast<SpinControl>(ControlOf(other));
    if (!spin || spin->Buddy() != field) continue;
    if ((GetWindowLong(other, GWL_STYLE) & UDS_ARROWKEYS) == 0 || IsWindowEnabled(other) == 0) return false;
    spin->Step(virtualKey == VK_UP ? 1 : -1);
    return true;
  }
  return false;
}

std::shared_ptr<Control> MakeSpin(HWND window, QWidget* parent) {
  return std::make_shared<SpinControl>(window, parent);
}

}  // namespace platform
