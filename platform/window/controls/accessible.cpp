#include "platform/window/accessible.h"

#include <QAbstractItemView>
#include <QAccessible>
#include <QAccessibleWidget>
#include <QComboBox>
#include <QLineEdit>
#include <QPointer>
#include <vector>

#include "platform/window/control_messages.h"
#include "platform/window/controls/detail/control.h"
#include "platform/window/detail/accessible_factory.h"
#include "platform/window/detail/widgets.h"
#include "platform/window/detail/window_record.h"

namespace platform {
namespace {

QAccessible::Role RoleOf(AccessibleRole role) {
  switch (role) {
    case AccessibleRole::Dialog:
      return QAccessible::Dialog;
    case AccessibleRole::Document:
      return QAccessible::Document;
    case AccessibleRole::List:
      return QAccessible::List;
    case AccessibleRole::ListItem:
      return QAccessible::ListItem;
    case AccessibleRole::ToolBar:
      return QAccessible::ToolBar;
    case AccessibleRole::Button:
      return QAccessible::Button;
    case AccessibleRole::StatusBar:
      return QAccessible::StatusBar;
    case AccessibleRole::Text:
      return QAccessible::StaticText;
    default:
      return QAccessible::Client;
  }
}

QString TextOf(const CString& text) {
  return QString::fromUtf8(static_cast<const char*>(text));
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

/// The items of a client area; null if it has none, or has gone.
AccessibleItems* ItemsOf(const ClientWidget* client) {
  const WindowRecord* record = client == nullptr ? nullptr : FindWindowRecord(client->Window());
  return record == nullptr ? nullptr : record->accessibleItems.get();
}

int CountOf(const ClientWidget* client) {
  const AccessibleItems* items = ItemsOf(client);
  return items == nullptr ? 0 : items->Count();
}

/// One part of a window that draws itself.
class ItemInterface : public QAccessibleInterface, public QAccessibleActionInterface {
 public:
  ItemInterface(ClientWidget* client, int index) : m_client(client), m_index(index) {}

  bool isValid() const override { return m_index < CountOf(m_client); }
  QObject* object() const override { return nullptr; }
  QAccessibleInterface* parent() const override { return QAccessible::queryAccessibleInterface(m_client); }
  QAccessibleInterface* child(int) const override { return nullptr; }
  QAccessibleInterface* childAt(int, int) const override { return nullptr; }
  int childCount() const override { return 0; }
  int indexOfChild(const QAccessibleInterface*) const override { return -1; }
  QString text(QAccessible::Text kind) const override {
    return kind == QAccessible::Name ? TextOf(Item().name) : QString();
  }
  void setText(QAccessible::Text, const QString&) override {}
  QAccessible::Role role() const override { return RoleOf(Item().role); }

  QRect rect() const override {
    const RECT place = Item().place;
    if (!m_client || place.right <= place.left) return {};
    return {m_client->mapToGlobal(QPoint(place.left, place.top)),
            QSize(place.right - place.left, place.bottom - place.top)};
  }

  QAccessible::State state() const override {
    const AccessibleItem item = Item();
    const bool inList = item.role == AccessibleRole::ListItem;
    QAccessible::State state;
    state.invalid = !isValid();
    state.disabled = !item.enabled || !m_client || !m_client->isEnabled();
    state.invisible = !m_client || !m_client->isVisible();
    state.offscreen = !state.invisible && !m_client->rect().intersects(
                                              QRect(QPoint(item.place.left, item.place.top),
                                                    QPoint(item.place.right - 1, item.place.bottom - 1)));
    state.checkable = item.checkable;
    state.checked = item.checked;
    state.selectable = inList;
    state.selected = item.selected;
    state.focusable = inList || item.role == AccessibleRole::Button;
    state.active = item.current;
    state.focused = item.current && m_client && GetFocus() == m_client->Window();
    return state;
  }

  void* interface_cast(QAccessible::InterfaceType type) override {
    const bool acts = type == QAccessible::ActionInterface && Item().role != AccessibleRole::Text;
    return acts ? static_cast<QAccessibleActionInterface*>(this) : nullptr;
  }
  QStringList actionNames() const override { return {pressAction()}; }
  QStringList keyBindingsForAction(const QString&) const override { return {}; }
  void doAction(const QString& action) override {
    if (action == pressAction() && isValid() && TakesInput(m_client->Window()))
      ItemsOf(m_client)->Press(m_index);
  }

 private:
  AccessibleItem Item() const { return isValid() ? ItemsOf(m_client)->Item(m_index) : AccessibleItem(); }

  QPointer<ClientWidget> m_client;
  int m_index;
};

/// The client area of a window, which stands for it: its items first, then the windows in it.
class ClientInterface : public QAccessibleWidget {
 public:
  explicit ClientInterface(ClientWidget* client) : QAccessibleWidget(client), m_client(client) {}
  ~ClientInterface() override {
    for (const QAccessible::Id id : m_items) QAccessible::deleteAccessibleInterface(id);
  }
  ClientInterface(const ClientInterface&) = delete;
  ClientInterface& operator=(const ClientInterface&) = delete;

  QAccessible::Role role() const override {
    const AccessibleRole role = Role();
    return role == AccessibleRole::Dialog ? QAccessible::Client : RoleOf(role);  // the frame is the dialog
  }
  QAccessible::State state() const override {
    QAccessible::State state = QAccessibleWidget::state();
    state.focusable = TakesKeys();
    state.focused = m_client && GetFocus() == m_client->Window() && m_client->window()->isActiveWindow();
    state.readOnly = Role() == AccessibleRole::Document;
    return state;
  }

  int childCount() const override { return CountOf(m_client) + QAccessibleWidget::childCount(); }
  QAccessibleInterface* child(int index) const override {
    const int items = CountOf(m_client);
    if (index < 0 || index >= items) return QAccessibleWidget::child(index - items);
    while (static_cast<int>(m_items.size()) <= index)
      m_items.push_back(QAccessible::registerAccessibleInterface(
          new ItemInterface(m_client, static_cast<int>(m_items.size()))));
    return QAccessible::accessibleInterface(m_items[static_cast<std::size_t>(index)]);
  }
  int indexOfChild(const QAccessibleInterface* child) const override {
    for (std::size_t i = 0; i < m_items.size(); ++i)
      if (QAccessible::accessibleInterface(m_items[i]) == child) return static_cast<int>(i);
    const int inside = QAccessibleWidget::indexOfChild(child);
    return inside < 0 ? inside : CountOf(m_client) + inside;
  }
  QAccessibleInterface* childAt(int x, int y) const override {
    for (int i = 0; i < CountOf(m_client); ++i)
      if (child(i)->rect().contains(x, y)) return child(i);
    return QAccessibleWidget::childAt(x, y);
  }

  QStringList actionNames() const override {
    return TakesKeys() ? QStringList{setFocusAction()} : QStringList();
  }
  void doAction(const QString& action) override {
    if (action == setFocusAction() && TakesKeys()) SetFocus(m_client->Window());
  }

 private:
  AccessibleRole Role() const {
    const WindowRecord* record = m_client ? FindWindowRecord(m_client->Window()) : nullptr;
    return record == nullptr ? AccessibleRole::None : record->accessibleRole;
  }
  bool TakesKeys() const {
    const AccessibleRole role = Role();
    return (role == AccessibleRole::Document || role == AccessibleRole::List ||
            role == AccessibleRole::ToolBar) &&
           TakesInput(m_client->Window());
  }

  QPointer<ClientWidget> m_client;
  mutable std::vector<QAccessible::Id> m_items;  ///< made as they are asked for; they last as long as this
};

/// The whole of a window: of a top-level one the role and the title.
class FrameInterface : public QAccessibleWidget {
 public:
  explicit FrameInterface(FrameWidget* frame) : QAccessibleWidget(frame), m_frame(frame) {}

  QAccessible::Role role() const override {
    if (!m_frame || !m_frame->isWindow()) return QAccessible::Client;
    const WindowRecord* record = FindWindowRecord(m_frame->Window());
    const bool dialog = record != nullptr && record->accessibleRole == AccessibleRole::Dialog;
    return dialog ? QAccessible::Dialog : QAccessible::Window;
  }
  QString text(QAccessible::Text kind) const override {
    if (kind == QAccessible::Name && m_frame && m_frame->isWindow()) return m_frame->windowTitle();
    return QAccessibleWidget::text(kind);
  }

 private:
  QPointer<FrameWidget> m_frame;
};

/// The widget of a standard control that isn't one of Qt's.
class OwnControlInterface : public QAccessibleWidget {
 public:
  OwnControlInterface(QWidget* widget, HWND window, QAccessible::Role role)
      : QAccessibleWidget(widget, role), m_window(window) {}

  QString text(QAccessible::Text kind) const override {
    if (kind != QAccessible::Name || role() == QAccessible::SpinBox) return QAccessibleWidget::text(kind);
    return Spoken(TextOf(GetWindowText(m_window)));
  }

 private:
  HWND m_window;
};

/// Qt's own calls a combo with a field after what it shows.
class ComboInterface : public QAccessibleWidget {
 public:
  explicit ComboInterface(QComboBox* combo) : QAccessibleWidget(combo, QAccessible::ComboBox) {}

  QString text(QAccessible::Text kind) const override {
    const QComboBox* combo = Combo();
    return kind == QAccessible::Value && combo != nullptr ? combo->currentText()
                                                          : QAccessibleWidget::text(kind);
  }
  QAccessible::State state() const override {
    QAccessible::State state = QAccessibleWidget::state();
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

QAccessible::Role RoleOfControl(const WindowRecord& record) {
  if (record.windowClass->name == "msctls_updown32") return QAccessible::SpinBox;
  if (record.windowClass->name == "BUTTON") return QAccessible::Grouping;
  return GetWindowText(record.handle).IsEmpty() != 0 ? QAccessible::Separator : QAccessible::StaticText;
}

QAccessibleInterface* MakeInterface(const QString& className, QObject* object) {
  if (className != QLatin1String("QWidget") && className != QLatin1String("QComboBox")) return nullptr;
  if (auto* frame = dynamic_cast<FrameWidget*>(object)) return new FrameInterface(frame);
  if (auto* client = dynamic_cast<ClientWidget*>(object)) return new ClientInterface(client);
  auto* widget = static_cast<QWidget*>(object);
  const auto* client = dynamic_cast<ClientWidget*>(widget->parentWidget());
  const WindowRecord* record = client == nullptr ? nullptr : FindWindowRecord(client->Window());
  if (record == nullptr || !record->control || record->control->Widget() != widget) return nullptr;
  if (auto* combo = qobject_cast<QComboBox*>(widget)) return new ComboInterface(combo);
  return new OwnControlInterface(widget, record->handle, RoleOfControl(*record));
}

/// A field takes its combo's name, since the keyboard is there.
void NameWidget(QWidget& widget, const QString& name) {
  // Setting what is set already would announce a change.
  if (widget.accessibleName() != name) widget.setAccessibleName(name);
  const auto* combo = qobject_cast<QComboBox*>(&widget);
  if (combo != nullptr && combo->lineEdit() != nullptr) NameWidget(*combo->lineEdit(), name);
}

/// The text that names the field after it; empty for a control that is no label.
QString LabelOf(HWND control) {
  const auto code = static_cast<int>(SendMessage(control, WM_GETDLGCODE));
  const bool choice = (code & DLGC_BUTTON) != 0 && (code & (DLGC_DEFPUSHBUTTON | DLGC_UNDEFPUSHBUTTON)) == 0;
  const WindowRecord* record = FindWindowRecord(control);
  const bool label = record != nullptr && record->windowClass->name == "STATIC";
  return choice || label ? Spoken(TextOf(GetWindowText(control))) : QString();
}

}  // namespace

void ServeAccessibility() {
  QAccessible::installFactory(&MakeInterface);
}

void SetAccessible(HWND window, AccessibleRole role, std::shared_ptr<AccessibleItems> items) {
  WindowRecord* record = FindWindowRecord(window);
  if (record == nullptr) return;
  record->accessibleRole = role;
  record->accessibleItems = std::move(items);
}

namespace {

/// The widget that stands for a window; null for a dead handle.
QWidget* NamedWidget(HWND window) {
  const WindowRecord* record = FindWindowRecord(window);
  if (record == nullptr || !record->client) return nullptr;
  return record->control ? record->control->Widget() : record->client.data();
}

}  // namespace

CString GetAccessibleName(HWND window) {
  const QWidget* widget = NamedWidget(window);
  return widget == nullptr ? CString() : CString(widget->accessibleName().toUtf8().constData());
}

void SetAccessibleName(HWND window, LPCSTR name, LPCSTR description) {
  QWidget* widget = NamedWidget(window);
  if (widget == nullptr) return;
  NameWidget(*widget, QString::fromUtf8(name));
  const QString more = QString::fromUtf8(description);
  if (widget->accessibleDescription() != more) widget->setAccessibleDescription(more);
}

void AnnounceAccessibleItem(HWND window, int index) {
  const WindowRecord* record = FindWindowRecord(window);
  if (!QAccessible::isActive() || record == nullptr || !record->client || GetFocus() != window) return;
  QAccessibleInterface* client = QAccessible::queryAccessibleInterface(record->client);
  if (client == nullptr || index < 0 || index >= CountOf(record->client)) return;
  for (const QAccessible::Event kind : {QAccessible::Selection, QAccessible::Focus}) {
    QAccessibleEvent event(client->child(index), kind);
    QAccessible::updateAccessibility(&event);
  }
}

void NameFieldsByLabels(HWND dialog) {
  const WindowRecord* record = FindWindowRecord(dialog);
  if (record == nullptr) return;
  QString label;
  for (const HWND child : record->children) {
    const WindowRecord* field = FindWindowRecord(child);
    if (field == nullptr || !field->control) continue;
    const QString text = LabelOf(child);
    if (!text.isEmpty()) label = text;
    QWidget* widget = field->control->Widget();
    const bool named = widget != nullptr && (qobject_cast<QLineEdit*>(widget) != nullptr ||
                                             qobject_cast<QComboBox*>(widget) != nullptr ||
                                             field->windowClass->name.starts_with("msctls_"));
    if (named && widget->accessibleName().isEmpty()) NameWidget(*widget, label);
  }
}

}  // namespace platform
