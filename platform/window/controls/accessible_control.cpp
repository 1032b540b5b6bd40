// Standard controls as screen readers find them: fields with their labels, combos, arrows beside a field.

#include "platform/window/controls/detail/accessible_control.h"

#include <QAbstractItemView>
#include <QAccessibleWidget>
#include <QComboBox>
#include <QLineEdit>

#include "platform/window/accessible.h"
#include "platform/window/control_messages.h"
#include "platform/window/controls/detail/accessible_edit.h"
#include "platform/window/controls/detail/control.h"
#include "platform/window/detail/widgets.h"
#include "platform/window/detail/window_record.h"

namespace platform {
namespace {

using Relations = QList<std::pair<QAccessibleInterface*, QAccessible::Relation>>;

QString TextOf(HWND window) {
  return QString::fromUtf8(static_cast<const char*>(GetWindowText(window)));
}

/// A label's text as it is read: without the mark of its access key and the colon at its end.
QString Spoken(QString text) {
  text.replace(QLatin1String("&&"), QString(QChar(1)));
  text.remove(QLatin1Char('&'));
  text.replace(QChar(1), QLatin1Char('&'));
  text = text.trimmed();
  if (text.endsWith(QLatin1Char(':'))) text.chop(1);
  return text.trimmed();
}

/// The control that a widget is; null for any other widget.
const WindowRecord* RecordOf(const QWidget& widget) {
  const auto* client = dynamic_cast<ClientWidget*>(widget.parentWidget());
  const WindowRecord* record = client == nullptr ? nullptr : FindWindowRecord(client->Window());
  if (record == nullptr) return nullptr;
  // Qt may ask while the control is being made, and keeps the answer.
  const bool is = record->control ? record->control->Widget() == &widget
                                  : widget.metaObject() != &QWidget::staticMetaObject;
  return is ? record : nullptr;
}

QAccessibleInterface* InterfaceOf(HWND window) {
  const WindowRecord* record = FindWindowRecord(window);
  return record == nullptr || !record->control
             ? nullptr
             : QAccessible::queryAccessibleInterface(record->control->Widget());
}

/// A control's widget, with the tie between label and field. Base: of Qt.
template <typename Base>
class LabelledInterface : public Base {
 public:
  LabelledInterface(QWidget* widget, HWND window, QAccessible::Role role)
      : Base(widget, role), m_window(window) {}

  Relations relations(QAccessible::Relation match) const override {
    Relations relations = Base::relations(match);
    const WindowRecord* record = FindWindowRecord(m_window);
    if (record == nullptr) return relations;
    const auto add = [&](HWND other, QAccessible::RelationFlag relation) {
      QAccessibleInterface* interface = match.testFlag(relation) ? InterfaceOf(other) : nullptr;
      if (interface != nullptr) relations.append({interface, relation});
    };
    add(record->accessibleLabel, QAccessible::Label);
    const WindowRecord* dialog = FindWindowRecord(record->parent);
    if (dialog == nullptr) return relations;
    for (const HWND field : dialog->children)
      if (FindWindowRecord(field)->accessibleLabel == m_window) add(field, QAccessible::Labelled);
    return relations;
  }

 protected:
  HWND Window() const { return m_window; }

 private:
  HWND m_window;
};

using ControlInterface = LabelledInterface<QAccessibleWidget>;

/// A text, a frame with a title, a line.
class StillInterface : public ControlInterface {
 public:
  using ControlInterface::ControlInterface;
  QString text(QAccessible::Text kind) const override {
    return kind == QAccessible::Name ? Spoken(TextOf(Window())) : ControlInterface::text(kind);
  }
};

/// Qt's own takes a button for a check box unless Qt itself unchecks the others of the group.
class RadioInterface : public ControlInterface {
 public:
  using ControlInterface::ControlInterface;
  QString text(QAccessible::Text kind) const override {
    return kind == QAccessible::Name ? Spoken(TextOf(Window())) : ControlInterface::text(kind);
  }
  QAccessible::State state() const override {
    QAccessible::State state = ControlInterface::state();
    state.checkable = true;
    state.checked = SendMessage(Window(), BM_GETCHECK) == BST_CHECKED;
    return state;
  }
  QStringList actionNames() const override { return {pressAction()}; }
  void doAction(const QString& action) override {
    if (action == pressAction() && TakesInput(Window())) SendMessage(Window(), BM_CLICK);
  }
};

/// The arrows beside a field, as one part with a value.
class SpinInterface : public ControlInterface, public QAccessibleValueInterface {
 public:
  using ControlInterface::ControlInterface;

  int childCount() const override { return 0; }
  QAccessibleInterface* child(int) const override { return nullptr; }
  void* interface_cast(QAccessible::InterfaceType type) override {
    return type == QAccessible::ValueInterface ? static_cast<QAccessibleValueInterface*>(this)
                                               : ControlInterface::interface_cast(type);
  }
  QString text(QAccessible::Text kind) const override {
    return kind == QAccessible::Value ? currentValue().toString() : ControlInterface::text(kind);
  }

  QVariant currentValue() const override { return static_cast<int>(SendMessage(Window(), UDM_GETPOS32)); }
  QVariant minimumValue() const override { return Range().first; }
  QVariant maximumValue() const override { return Range().second; }
  QVariant minimumStepSize() const override { return 1; }
  void setCurrentValue(const QVariant& value) override {
    if (TakesInput(Window())) SendMessage(Window(), UDM_SETPOS32, 0, value.toInt());
  }

  QStringList actionNames() const override { return {increaseAction(), decreaseAction()}; }
  void doAction(const QString& action) override {
    if (action == increaseAction()) setCurrentValue(currentValue().toInt() + 1);
    if (action == decreaseAction()) setCurrentValue(currentValue().toInt() - 1);
  }

 private:
  std::pair<int, int> Range() const {
    int low = 0;
    int high = 0;
    SendMessage(Window(), UDM_GETRANGE32, reinterpret_cast<WPARAM>(&low), reinterpret_cast<LPARAM>(&high));
    return std::minmax(low, high);
  }
};

/// Qt's own calls a combo with a field after what it shows.
class ComboInterface : public ControlInterface {
 public:
  using ControlInterface::ControlInterface;

  QString text(QAccessible::Text kind) const override {
    const QComboBox* combo = Combo();
    return kind == QAccessible::Value && combo != nullptr ? combo->currentText()
                                                          : ControlInterface::text(kind);
  }
  QAccessible::State state() const override {
    QAccessible::State state = ControlInterface::state();
    state.expandable = true;
    state.expanded = Combo() != nullptr && Combo()->view()->isVisible();
    state.editable = Combo() != nullptr && Combo()->isEditable();
    return state;
  }
  QStringList actionNames() const override { return {showMenuAction(), pressAction()}; }
  void doAction(const QString& action) override {
    if (Combo() == nullptr || !Combo()->isEnabled() || !actionNames().contains(action)) return;
    if (Combo()->view()->isVisible())
      Combo()->hidePopup();
    else
      Combo()->showPopup();
  }

 private:
  QComboBox* Combo() const { return qobject_cast<QComboBox*>(widget()); }
};

QAccessibleInterface* MakeStillInterface(QWidget* widget, const WindowRecord& record) {
  const DWORD type = record.style & SS_TYPEMASK;
  const bool text = type <= SS_RIGHT || type == SS_SIMPLE || type == SS_LEFTNOWORDWRAP;
  QAccessible::Role role = text ? QAccessible::StaticText : QAccessible::Separator;
  if (record.windowClass->name == "BUTTON") role = QAccessible::Grouping;
  return new StillInterface(widget, record.handle, role);
}

/// The text that names the field after it; empty for a control that is no label.
QString LabelOf(HWND control) {
  const auto code = static_cast<int>(SendMessage(control, WM_GETDLGCODE));
  const bool choice = (code & DLGC_BUTTON) != 0 && (code & (DLGC_DEFPUSHBUTTON | DLGC_UNDEFPUSHBUTTON)) == 0;
  const WindowRecord* record = FindWindowRecord(control);
  const bool label = record != nullptr && record->windowClass->name == "STATIC";
  return choice || label ? Spoken(TextOf(control)) : QString();
}

bool IsField(const WindowRecord& record) {
  QWidget* widget = record.control->Widget();
  return widget != nullptr &&
         (qobject_cast<QLineEdit*>(widget) != nullptr || qobject_cast<QComboBox*>(widget) != nullptr ||
          record.windowClass->name.starts_with("msctls_"));
}

}  // namespace

QAccessibleInterface* MakeControlInterface(const QString& className, QObject* object) {
  const bool combo = className == QLatin1String("QComboBox");
  const bool edit = className == QLatin1String("QLineEdit");
  const bool radio = className == QLatin1String("QRadioButton");
  if (!combo && !edit && !radio && className != QLatin1String("QWidget")) return nullptr;
  auto* widget = static_cast<QWidget*>(object);
  const WindowRecord* record = RecordOf(*widget);
  if (record == nullptr) return nullptr;
  const HWND window = record->handle;
  if (combo) return new ComboInterface(widget, window, QAccessible::ComboBox);
  if (edit) return new LabelledInterface<EditInterface>(widget, window, QAccessible::EditableText);
  if (radio) return new RadioInterface(widget, window, QAccessible::RadioButton);
  if (record->windowClass->name == "msctls_updown32")
    return new SpinInterface(widget, window, QAccessible::SpinBox);
  return MakeStillInterface(widget, *record);
}

void NameWidget(QWidget& widget, const QString& name) {
  // Setting what is set already would announce a change.
  if (widget.accessibleName() != name) widget.setAccessibleName(name);
  // The keyboard is in the field.
  const auto* combo = qobject_cast<QComboBox*>(&widget);
  if (combo != nullptr && combo->lineEdit() != nullptr) NameWidget(*combo->lineEdit(), name);
}

void NameFieldsByLabels(HWND dialog) {
  const WindowRecord* record = FindWindowRecord(dialog);
  if (record == nullptr) return;
  QString name = TextOf(dialog);  // of a field without a label
  HWND label = nullptr;
  for (const HWND child : record->children) {
    WindowRecord* field = FindWindowRecord(child);
    if (field == nullptr || !field->control) continue;
    if (const QString text = LabelOf(child); !text.isEmpty()) {
      name = text;
      label = child;
    }
    if (!IsField(*field) || !field->control->Widget()->accessibleName().isEmpty()) continue;
    NameWidget(*field->control->Widget(), name);
    field->accessibleLabel = label;
  }
}

}  // namespace platform
