#include <QAbstractButton>
#include <QCheckBox>
#include <QCoreApplication>
#include <QKeySequence>
#include <QPainter>
#include <QPointer>
#include <QProxyStyle>
#include <QPushButton>
#include <QRadioButton>

#include "platform/window/controls/detail/control.h"
#include "platform/window/controls/detail/still_control.h"

namespace platform {
namespace {

UINT TypeOf(HWND window) {
  return static_cast<UINT>(GetWindowLong(window, GWL_STYLE)) & BS_TYPEMASK;
}

bool IsRadio(UINT type) {
  return type == BS_RADIOBUTTON || type == BS_AUTORADIOBUTTON;
}

bool IsCheckBox(UINT type) {
  return type == BS_CHECKBOX || type == BS_AUTOCHECKBOX || type == BS_3STATE || type == BS_AUTO3STATE;
}

/// Templates leave little room between a mark and its text.
class TightStyle : public QProxyStyle {
 public:
  int pixelMetric(PixelMetric metric, const QStyleOption* option, const QWidget* widget) const override {
    constexpr int kSpacing = 3;
    return metric == PM_RadioButtonLabelSpacing || metric == PM_CheckBoxLabelSpacing
               ? kSpacing
               : QProxyStyle::pixelMetric(metric, option, widget);
  }
};

void Tighten(QWidget& widget) {
  static QPointer<TightStyle> style;
  if (!style) {
    style = new TightStyle;
    style->setParent(QCoreApplication::instance());
  }
  widget.setStyle(style);
}

QAbstractButton* MakeWidget(UINT type, QWidget* parent) {
  if (IsRadio(type)) return new QRadioButton(parent);
  if (!IsCheckBox(type)) return new QPushButton(parent);
  auto* box = new QCheckBox(parent);
  box->setTristate(type == BS_3STATE || type == BS_AUTO3STATE);
  return box;
}

class ButtonControl : public Control {
 public:
  ButtonControl(HWND window, QWidget* parent)
      : Control(window, MakeWidget(TypeOf(window), parent)), m_type(TypeOf(window)) {
    Button().setAutoExclusive(false);  // groups are those of the dialog
    SetDefault(m_type == BS_DEFPUSHBUTTON);
    if (IsRadio(m_type) || IsCheckBox(m_type)) Tighten(Button());
    QObject::connect(&Button(), &QAbstractButton::clicked, Context(), [this] { Clicked(); });
  }

  LRESULT Handle(UINT message, WPARAM wParam, LPARAM lParam) override {
    switch (message) {
      case BM_GETCHECK:
        return m_check;
      case BM_SETCHECK:
        SetCheck(static_cast<int>(wParam));
        return 0;
      case BM_CLICK:
        Button().click();
        return 0;
      case BM_SETSTYLE:
        SetStyle(static_cast<UINT>(wParam));
        return 0;
      default:
        return Control::Handle(message, wParam, lParam);
    }
  }

 protected:
  QString Text() const override { return m_text; }
  void SetText(const QString& text) override {
    m_text = text;
    Button().setText(text);
    Button().setShortcut(QKeySequence());  // access keys are the dialog's matter
  }
  void KeyDown(int key, Qt::KeyboardModifiers) override {
    if (key == VK_SPACE) GiveKey(Button(), QEvent::KeyPress, Qt::Key_Space, Qt::NoModifier);
  }
  void KeyUp(int key, Qt::KeyboardModifiers) override {
    if (key == VK_SPACE) GiveKey(Button(), QEvent::KeyRelease, Qt::Key_Space, Qt::NoModifier);
  }
  void FocusChanged(bool gained) override { MarkDefault(gained); }
  int DialogCode() const override {
    if (IsRadio(m_type)) return DLGC_BUTTON | DLGC_RADIOBUTTON;
    if (IsCheckBox(m_type)) return DLGC_BUTTON;
    return DLGC_BUTTON | (m_type == BS_DEFPUSHBUTTON ? DLGC_DEFPUSHBUTTON : DLGC_UNDEFPUSHBUTTON);
  }

 private:
  QAbstractButton& Button() const { return *static_cast<QAbstractButton*>(Widget()); }

  void SetDefault(bool on) const {
    auto* push = qobject_cast<QPushButton*>(Widget());
    if (push == nullptr) return;
    push->setAutoDefault(false);
    push->setDefault(on);
  }

  /// Enter presses the push button with the keyboard, which is drawn as the default one meanwhile.
  void MarkDefault(bool focused) const {
    if (qobject_cast<QPushButton*>(Widget()) == nullptr) return;
    for (HWND other = GetWindow(Window(), GW_HWNDFIRST); other != nullptr;
         other = GetWindow(other, GW_HWNDNEXT)) {
      const auto button = std::dynamic_pointer_cast<ButtonControl>(ControlOf(other));
      if (button) button->SetDefault(focused ? other == Window() : button->m_type == BS_DEFPUSHBUTTON);
    }
  }

  void SetStyle(UINT type) {
    if (IsRadio(m_type) || IsCheckBox(m_type)) return;  // the widget can't change its kind
    m_type = type & BS_TYPEMASK;
    SetDefault(m_type == BS_DEFPUSHBUTTON);
  }

  void SetCheck(int check) {
    if (!Button().isCheckable()) return;
    m_check = check;
    auto* box = qobject_cast<QCheckBox*>(Widget());
    if (box != nullptr)
      box->setCheckState(static_cast<Qt::CheckState>(check == BST_INDETERMINATE ? Qt::PartiallyChecked
                                                     : check == BST_CHECKED     ? Qt::Checked
                                                                                : Qt::Unchecked));
    else
      Button().setChecked(check != BST_UNCHECKED);
    if (!IsRadio(m_type)) return;
    // Tab stops at the checked button of a group.
    const DWORD style = Style();
    const DWORD wanted = check != 0 ? style | WS_TABSTOP : style & ~static_cast<DWORD>(WS_TABSTOP);
    if (wanted != style) SetWindowLong(Window(), GWL_STYLE, static_cast<std::intptr_t>(wanted));
  }

  void Clicked() {
    const std::shared_ptr<Control> alive = KeepAlive();
    int check = m_check;
    if (m_type == BS_AUTOCHECKBOX) check = m_check == BST_CHECKED ? BST_UNCHECKED : BST_CHECKED;
    if (m_type == BS_AUTO3STATE) check = (m_check + 1) % 3;
    if (m_type == BS_AUTORADIOBUTTON) {
      UncheckGroup();
      check = BST_CHECKED;
    }
    SetCheck(check);  // the widget may have checked itself by another rule
    Notify(BN_CLICKED);
  }

  /// The other radio buttons between this one's group mark and the next.
  void UncheckGroup() const {
    HWND first = Window();
    while ((GetWindowLong(first, GWL_STYLE) & WS_GROUP) == 0) {
      const HWND former = GetWindow(first, GW_HWNDPREV);
      if (former == nullptr) break;
      first = former;
    }
    for (HWND other = first; other != nullptr; other = GetWindow(other, GW_HWNDNEXT)) {
      if (other != first && (GetWindowLong(other, GWL_STYLE) & WS_GROUP) != 0) break;
      if (other != Window() && (SendMessage(other, WM_GETDLGCODE) & DLGC_RADIOBUTTON) != 0)
        SendMessage(other, BM_SETCHECK, BST_UNCHECKED);
    }
  }

  UINT m_type;
  int m_check = BST_UNCHECKED;
  QString m_text;
};

/// The line runs through the middle of the title's height, as templates count on.
class GroupBoxWidget : public QWidget {
 public:
  explicit GroupBoxWidget(QWidget* parent) : QWidget(parent) {}
  void SetText(const QString& title) {
    m_title = title;
    update();
  }

 protected:
  void paintEvent(QPaintEvent*) override {
    constexpr int kIndent = 7;
    constexpr int kGap = 2;
    QPainter painter(this);
    const QFontMetrics metrics(font());
    const int width = metrics.size(Qt::TextShowMnemonic, m_title).width();
    const QRect title(kIndent, 0, width, metrics.height());
    if (!m_title.isEmpty()) {
      painter.setPen(
          palette().color(isEnabled() ? QPalette::Active : QPalette::Disabled, QPalette::WindowText));
      painter.drawText(title, Qt::TextShowMnemonic | Qt::TextDontClip, m_title);
      painter.setClipRegion(QRegion(rect()) - title.adjusted(-kGap, 0, kGap, 0));
    }
    painter.setPen(palette().color(QPalette::Mid));
    painter.drawRect(rect().adjusted(0, metrics.height() / 2, -1, -1));
  }

 private:
  QString m_title;
};

}  // namespace

std::shared_ptr<Control> MakeButton(HWND window, QWidget* parent) {
  // A frame with a title neither covers what stands inside nor takes its clicks.
  if (TypeOf(window) == BS_GROUPBOX)
    return std::make_shared<StillControl<GroupBoxWidget>>(window, parent, new GroupBoxWidget(parent));
  return std::make_shared<ButtonControl>(window, parent);
}

}  // namespace platform
