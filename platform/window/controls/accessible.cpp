#include "platform/window/accessible.h"

#include <QAccessible>
#include <QAccessibleWidget>
#include <QPointer>
#include <algorithm>
#include <vector>

#include "platform/window/controls/detail/accessible_control.h"
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
    if (index >= items) {
      const std::vector<QAccessibleInterface*> inside = Inside();
      const auto at = static_cast<std::size_t>(index - items);
      return at < inside.size() ? inside[at] : nullptr;
    }
    if (index < 0) return nullptr;
    while (static_cast<int>(m_items.size()) <= index)
      m_items.push_back(QAccessible::registerAccessibleInterface(
          new ItemInterface(m_client, static_cast<int>(m_items.size()))));
    return QAccessible::accessibleInterface(m_items[static_cast<std::size_t>(index)]);
  }
  int indexOfChild(const QAccessibleInterface* child) const override {
    for (std::size_t i = 0; i < m_items.size(); ++i)
      if (QAccessible::accessibleInterface(m_items[i]) == child) return static_cast<int>(i);
    const std::vector<QAccessibleInterface*> inside = Inside();
    const auto at = std::ranges::find(inside, child);
    return at == inside.end() ? -1 : CountOf(m_client) + static_cast<int>(at - inside.begin());
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
  /// The windows in it. Those of a dialog are read in the order of its tab stops, not as they were made.
  std::vector<QAccessibleInterface*> Inside() const {
    std::vector<QAccessibleInterface*> inside;
    inside.reserve(static_cast<std::size_t>(QAccessibleWidget::childCount()));
    for (int i = 0; i < QAccessibleWidget::childCount(); ++i) inside.push_back(QAccessibleWidget::child(i));
    if (Role() != AccessibleRole::Dialog) return inside;
    const std::vector<HWND>& order = FindWindowRecord(m_client->Window())->children;
    std::ranges::stable_sort(inside, {}, [&order](QAccessibleInterface* part) {
      auto* frame = dynamic_cast<FrameWidget*>(part->object());
      return std::ranges::find(order, frame == nullptr ? nullptr : frame->Window()) - order.begin();
    });
    return inside;
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
    if (kind == QAccessible::Name && m_frame && m_frame->isWindow())
      return m_frame->windowTitle().isEmpty() ? FirstText() : m_frame->windowTitle();
    return QAccessibleWidget::text(kind);
  }

 private:
  /// What a dialog without a title says.
  QString FirstText() const {
    const WindowRecord* record = FindWindowRecord(m_frame->Window());
    if (record == nullptr) return {};
    for (const HWND child : record->children)
      if (FindWindowRecord(child)->windowClass->name == "STATIC") return TextOf(GetWindowText(child));
    return {};
  }

  QPointer<FrameWidget> m_frame;
};

QAccessibleInterface* MakeInterface(const QString& className, QObject* object) {
  if (className == QLatin1String("QWidget")) {
    if (auto* frame = dynamic_cast<FrameWidget*>(object)) return new FrameInterface(frame);
    if (auto* client = dynamic_cast<ClientWidget*>(object)) return new ClientInterface(client);
  }
  return MakeControlInterface(className, object);
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

}  // namespace platform
