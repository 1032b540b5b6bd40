#pragma once

#include <QMenu>
#include <QMenuBar>

#include "platform/window/menu_handles.h"

// Menus on the screen, made from their records.

namespace platform {

class FrameWidget;
struct WindowRecord;

/// What becomes of an item that is chosen.
enum class MenuChoice {
  Post,   ///< WM_COMMAND to the owner
  Return  ///< to the caller of QMenu::exec, as the action's data
};

/// A pop-up or sub-menu. It tells the owner before it shows and is filled anew after that.
class PopupMenu : public QMenu {
 public:
  PopupMenu(HWND owner, HMENU menu, UINT index, MenuChoice choice, QWidget* parent);

 private:
  void OnAboutToShow();

  HWND m_owner;
  HMENU m_menu;
  UINT m_index;  ///< in the menu above
  MenuChoice m_choice;
};

/// The bar at the top of a window.
class MenuBar : public QMenuBar {
 public:
  MenuBar(HWND window, FrameWidget* parent);
  /// Takes the items over from the record.
  void Fill(HMENU menu);
  /// Opens the menu with that access key, with 0 the first one. False if there is none.
  bool Open(char32_t accessKey);

 protected:
  bool event(QEvent* event) override;
  void focusOutEvent(QFocusEvent* event) override;

 private:
  HWND m_window;
};

/// Sends WM_INITMENUPOPUP.
void TellInitMenuPopup(HWND owner, HMENU menu, UINT index);
/// Ends the run of WM_MENUSELECT messages, if one is on.
void EndMenuSelection();

// Bars of windows (menu_bar.cpp)

/// Makes, fills or takes away the bar as the window's menu says, and places client area and bar.
void RefreshMenuBar(WindowRecord& window);
int MenuBarHeight(const WindowRecord& window);
void PlaceMenuBar(WindowRecord& window);
bool HasMenuBar(HWND topLevel);
/// Opens the menu with that access key, with 0 the first one. False if there is none.
bool OpenMenuBar(HWND topLevel, char32_t accessKey);
/// At the end of a window: closes what it tracks and destroys its menu.
void ForgetMenus(WindowRecord& window);
/// A menu that ends is shown in no bar any more.
void DropFromBars(HMENU menu);
/// Closes the tracked pop-up of that owner.
void CloseTrackedMenu(HWND owner);

/// As a user does who opens the menus that lead to the command. False if it can't be chosen.
bool ChooseMenuItem(HWND topLevel, UINT id);

}  // namespace platform
