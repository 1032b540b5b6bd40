// The menu bar of a top-level window.

#include <QApplication>
#include <QKeyEvent>
#include <utility>

#include "platform/window/detail/mdi_windows.h"
#include "platform/window/detail/menu_fill.h"
#include "platform/window/detail/menu_record.h"
#include "platform/window/detail/menu_widgets.h"
#include "platform/window/detail/widgets.h"
#include "platform/window/detail/window_record.h"

namespace platform {
namespace {

/// The letter behind the single "&", in lower case; 0 if there is none.
char32_t AccessKeyOf(const QString& text) {
  for (qsizetype i = 0; i + 1 < text.size(); ++i) {
    if (text[i] != u'&') continue;
    if (text[i + 1] != u'&') return text[i + 1].toLower().unicode();
    ++i;  // "&&" shows one
  }
  return 0;
}

bool IsInput(QEvent::Type type) {
  switch (type) {
    case QEvent::MouseButtonPress:
    case QEvent::MouseButtonRelease:
    case QEvent::MouseButtonDblClick:
    case QEvent::MouseMove:
    case QEvent::KeyPress:
    case QEvent::Shortcut:
      return true;
    default:
      return false;
  }
}

}  // namespace

MenuBar::MenuBar(HWND window, FrameWidget* parent) : QMenuBar(parent), m_window(window) {
  setNativeMenuBar(false);
}

void MenuBar::Fill(HMENU menu) {
  DropItems(*this);
  FillFromMenu(*this, m_window, menu, MenuChoice::Post);
}

bool MenuBar::Open(char32_t accessKey) {
  for (QAction* action : actions()) {
    const char32_t own = AccessKeyOf(action->text());
    if (!action->isEnabled() || (accessKey != 0 && own != QChar::toLower(accessKey))) continue;
    if (action->menu() == nullptr) {
      if (accessKey == 0) continue;
      action->trigger();
      return true;
    }
    setActiveAction(action);
    // Who comes by keyboard stands on the first item at once.
    QKeyEvent down(QEvent::KeyPress, Qt::Key_Down, Qt::NoModifier);
    QApplication::sendEvent(action->menu(), &down);
    return true;
  }
  return false;
}

bool MenuBar::event(QEvent* event) {
  // A disabled window stays as it looks but takes no input.
  if (IsInput(event->type()) && !TakesInput(m_window)) return true;
  return QMenuBar::event(event);
}

void MenuBar::focusOutEvent(QFocusEvent* event) {
  QMenuBar::focusOutEvent(event);
  if (QApplication::activePopupWidget() == nullptr) EndMenuSelection();
}

void RefreshMenuBar(WindowRecord& window) {
  if (!window.frame) return;
  if (window.menu == nullptr) {
    if (window.menuBar) {
      window.menuBar->hide();
      window.menuBar->deleteLater();
      window.menuBar = nullptr;
    }
  } else {
    if (!window.menuBar) window.menuBar = new MenuBar(window.handle, window.frame);
    window.menuBar->Fill(window.menu);
    window.menuBar->show();
    ShowMdiButtons(window);
  }
  LayoutWindow(window);
}

int MenuBarHeight(const WindowRecord& window) {
  if (!window.menuBar || !window.frame || window.menuBar->actions().isEmpty()) return 0;
  return window.menuBar->heightForWidth(window.frame->width());
}

void PlaceMenuBar(WindowRecord& window) {
  if (window.menuBar) window.menuBar->setGeometry(0, 0, window.frame->width(), MenuBarHeight(window));
}

bool HasMenuBar(HWND topLevel) {
  const WindowRecord* window = FindWindowRecord(topLevel);
  return window != nullptr && window->menuBar;
}

bool OpenMenuBar(HWND topLevel, char32_t accessKey) {
  return HasMenuBar(topLevel) && FindWindowRecord(topLevel)->menuBar->Open(accessKey);
}

void ForgetMenus(WindowRecord& window) {
  CloseTrackedMenu(window.handle);
  if (!window.IsChild()) DestroyMenu(std::exchange(window.menu, nullptr));
}

void DropFromBars(HMENU menu) {
  Windows().ForEach([menu](HWND, WindowRecord& window) {
    if (window.IsChild() || window.menu != menu) return;
    window.menu = nullptr;
    RefreshMenuBar(window);
  });
}

}  // namespace platform

using platform::FindWindowRecord;
using platform::WindowRecord;

BOOL SetMenu(HWND handle, HMENU menu) {
  WindowRecord* window = FindWindowRecord(handle);
  if (window == nullptr || window->IsChild() || (menu != nullptr && IsMenu(menu) == 0)) return FALSE;
  window->menu = menu;
  platform::RefreshMenuBar(*window);
  return TRUE;
}

HMENU GetMenu(HWND handle) {
  const WindowRecord* window = FindWindowRecord(handle);
  return window == nullptr ? nullptr : window->menu;
}

BOOL DrawMenuBar(HWND handle) {
  WindowRecord* window = FindWindowRecord(handle);
  if (window == nullptr || window->IsChild()) return FALSE;
  platform::RefreshMenuBar(*window);
  return TRUE;
}

bool platform::ChooseMenuItem(HWND topLevel, UINT id) {
  const auto path = PathToCommand(GetMenu(topLevel), id);
  if (path.empty() || !TakesInput(topLevel)) return false;
  for (std::size_t i = 0; i + 1 < path.size(); ++i) {
    if (!IsPathEnabled({path[i]})) return false;  // it wouldn't open
    TellInitMenuPopup(topLevel, GetSubMenu(path[i].menu, static_cast<int>(path[i].index)), path[i].index);
  }
  const auto now = PathToCommand(GetMenu(topLevel), id);  // handlers may have changed the menu
  if (now.empty() || !IsPathEnabled(now)) return false;
  return PostMessage(topLevel, WM_COMMAND, MAKEWPARAM(static_cast<int>(id), 0), 0) != 0;
}
