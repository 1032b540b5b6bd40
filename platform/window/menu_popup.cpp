// Pop-ups on the screen and what they tell their owner.

#include <QActionGroup>
#include <QApplication>
#include <QPointer>
#include <QScreen>
#include <utility>

#include "platform/base/seams.h"
#include "platform/window/detail/menu_fill.h"
#include "platform/window/detail/menu_record.h"
#include "platform/window/detail/menu_widgets.h"
#include "platform/window/detail/widgets.h"
#include "platform/window/detail/window_record.h"

namespace platform {
namespace {

HWND g_selecting = nullptr;  // the owner that has had a WM_MENUSELECT but not the last one
QPointer<PopupMenu> g_tracked;
HWND g_trackedOwner = nullptr;

void TellSelected(HWND owner, HMENU menu, UINT index) {
  const MenuPlace place = FindMenuItem(menu, index, MF_BYPOSITION);
  if (!place) return;
  // Moving over a bar that isn't open selects nothing.
  const bool open = QApplication::activePopupWidget() != nullptr ||
                    dynamic_cast<MenuBar*>(QApplication::focusWidget()) != nullptr;
  if (!open) return;
  g_selecting = owner;
  const UINT name = place->popup != nullptr ? index : place->id;
  SendGuarded(owner, WM_MENUSELECT,
              MAKEWPARAM(static_cast<int>(name), static_cast<int>(place->flags | MF_MOUSESELECT)),
              reinterpret_cast<LPARAM>(menu));
}

/// The user may be on the way from one menu of the bar to the next, so the end is looked for later.
void LookForEnd() {
  QMetaObject::invokeMethod(
      qApp,
      [] {
        const bool inBar = dynamic_cast<MenuBar*>(QApplication::focusWidget()) != nullptr;
        if (QApplication::activePopupWidget() == nullptr && !inBar) EndMenuSelection();
      },
      Qt::QueuedConnection);
}

void SetMarks(QAction& action, const MenuItemRecord& item) {
  action.setEnabled(item.IsEnabled());
  action.setCheckable((item.flags & MF_CHECKED) != 0);
  action.setChecked((item.flags & MF_CHECKED) != 0);
  // Qt draws a dot for actions of which only one can be checked.
  if ((item.flags & MFT_RADIOCHECK) != 0) (new QActionGroup(&action))->addAction(&action);
}

}  // namespace

void FillFromMenu(QWidget& target, HWND owner, HMENU menu, MenuChoice choice) {
  const MenuRecord* record = FindMenuRecord(menu);
  if (record == nullptr) return;
  for (UINT i = 0; i < record->items.size(); ++i) {
    const MenuItemRecord& item = record->items[i];
    QAction* action = nullptr;
    if (item.popup != nullptr) {
      action = (new PopupMenu(owner, item.popup, i, choice, &target))->menuAction();
    } else {
      action = new QAction(&target);
      action->setSeparator(item.IsSeparator());
      action->setData(item.id);
    }
    // Behind a tab stands the name of a key, which Qt puts at the right; no shortcut is set, keys are the
    // program's affair.
    action->setText(QString::fromStdString(item.text));
    action->setMenuRole(QAction::NoRole);
    SetMarks(*action, item);
    QObject::connect(action, &QAction::hovered, &target, [=] { TellSelected(owner, menu, i); });
    if (item.popup == nullptr && choice == MenuChoice::Post)
      QObject::connect(action, &QAction::triggered, &target, [owner, id = item.id] {
        EndMenuSelection();
        PostMessage(owner, WM_COMMAND, MAKEWPARAM(static_cast<int>(id), 0), 0);
      });
    target.addAction(action);
  }
}

void DropItems(QWidget& target) {
  // Sub-menus may be on the stack of callers.
  for (PopupMenu* menu : target.findChildren<PopupMenu*>(QString(), Qt::FindDirectChildrenOnly)) {
    target.removeAction(menu->menuAction());
    menu->deleteLater();
  }
  for (QAction* action : target.actions()) {
    target.removeAction(action);
    action->deleteLater();
  }
}

void TellInitMenuPopup(HWND owner, HMENU menu, UINT index) {
  SendGuarded(owner, WM_INITMENUPOPUP, reinterpret_cast<WPARAM>(menu),
              MAKELPARAM(static_cast<int>(index), 0));
}

void EndMenuSelection() {
  const HWND owner = std::exchange(g_selecting, nullptr);
  if (owner != nullptr) SendGuarded(owner, WM_MENUSELECT, MAKEWPARAM(0, 0xffff), 0);
}

PopupMenu::PopupMenu(HWND owner, HMENU menu, UINT index, MenuChoice choice, QWidget* parent)
    : QMenu(parent), m_owner(owner), m_menu(menu), m_index(index), m_choice(choice) {
  setSeparatorsCollapsible(false);  // places count
  connect(this, &QMenu::aboutToShow, this, &PopupMenu::OnAboutToShow);
  connect(this, &QMenu::aboutToHide, this, &LookForEnd);
  FillFromMenu(*this, m_owner, m_menu, m_choice);  // Qt wants to know the size beforehand
}

void PopupMenu::OnAboutToShow() {
  ReleaseCapture();
  TellInitMenuPopup(m_owner, m_menu, m_index);
  DropItems(*this);
  FillFromMenu(*this, m_owner, m_menu, m_choice);
}

void CloseTrackedMenu(HWND owner) {
  if (g_tracked && g_trackedOwner == owner) g_tracked->close();
}

namespace {

/// What the user, or the test in his place, chooses; 0 for nothing.
UINT AnswerFor(HMENU menu, HWND owner) {
  const auto tell = [owner](const auto& self, HMENU popup, UINT index) -> void {
    TellInitMenuPopup(owner, popup, index);
    for (int i = 0; i < GetMenuItemCount(popup); ++i)
      if (const HMENU inner = GetSubMenu(popup, i)) self(self, inner, static_cast<UINT>(i));
  };
  tell(tell, menu, 0);
  const int id = TheSeams().popupMenu(menu, owner);
  const auto path = PathToCommand(menu, static_cast<UINT>(id));
  return id != 0 && !path.empty() && IsPathEnabled(path) ? static_cast<UINT>(id) : 0;
}

QPoint PlaceFor(const QMenu& menu, UINT flags, QPoint point) {
  const QSize size = menu.sizeHint();
  if ((flags & TPM_RIGHTALIGN) != 0) point.rx() -= size.width();
  if ((flags & TPM_CENTERALIGN) != 0) point.rx() -= size.width() / 2;
  if ((flags & TPM_BOTTOMALIGN) != 0) point.ry() -= size.height();
  if ((flags & TPM_VCENTERALIGN) != 0) point.ry() -= size.height() / 2;
  return point;
}

UINT ShowAndAsk(HMENU menu, UINT flags, QPoint point, const WindowRecord& owner) {
  const HWND handle = owner.handle;
  // The owner's widget may end while the menu is open, and the menu with it.
  g_tracked = new PopupMenu(handle, menu, 0, MenuChoice::Return, owner.frame);
  g_trackedOwner = handle;
  const QAction* action = g_tracked->exec(PlaceFor(*g_tracked, flags, point));
  const UINT chosen = action == nullptr ? 0 : action->data().toUInt();
  if (g_tracked) g_tracked->deleteLater();
  g_tracked = nullptr;
  EndMenuSelection();
  return chosen;
}

}  // namespace

}  // namespace platform

BOOL TrackPopupMenu(HMENU menu, UINT flags, int x, int y, int, HWND owner, const RECT*) {
  const platform::WindowRecord* window = platform::FindWindowRecord(owner);
  if (IsMenu(menu) == 0 || window == nullptr || !window->frame || platform::g_tracked) return FALSE;
  ReleaseCapture();
  window = platform::FindWindowRecord(owner);
  if (window == nullptr) return FALSE;
  const UINT chosen = platform::TheSeams().popupMenu
                          ? platform::AnswerFor(menu, owner)
                          : platform::ShowAndAsk(menu, flags, QPoint(x, y), *window);
  if ((flags & TPM_RETURNCMD) != 0) return static_cast<BOOL>(chosen);
  if (chosen != 0) PostMessage(owner, WM_COMMAND, MAKEWPARAM(static_cast<int>(chosen), 0), 0);
  return TRUE;
}
