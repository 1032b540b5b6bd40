#pragma once

#include <string>
#include <vector>

#include "platform/base/detail/handle_table.h"
#include "platform/window/menu_handles.h"

namespace platform {

struct MenuItemRecord {
  UINT flags = 0;  ///< MF_GRAYED, MF_DISABLED, MF_CHECKED, MF_POPUP, MF_SEPARATOR, MFT_RADIOCHECK
  UINT id = 0;
  HMENU popup = nullptr;
  std::string text;

  bool IsEnabled() const { return (flags & (MF_GRAYED | MF_DISABLED)) == 0; }
  bool IsSeparator() const { return (flags & MF_SEPARATOR) != 0; }
};

struct MenuRecord {
  std::vector<MenuItemRecord> items;
};

HandleTable<MenuRecord, HMENU>& Menus();
/// Null for a dead handle.
inline MenuRecord* FindMenuRecord(HMENU menu) {
  return Menus().Get(menu);
}

/// Where an item lies.
struct MenuPlace {
  MenuRecord* menu = nullptr;
  std::size_t index = 0;
  MenuItemRecord* operator->() const { return &menu->items[index]; }
  explicit operator bool() const { return menu != nullptr; }
};
/// By command or place, as flags say.
MenuPlace FindMenuItem(HMENU menu, UINT item, UINT flags);

/// A step on the way from a menu to a command in it.
struct MenuStep {
  HMENU menu;
  UINT index;
};
/// The sub-menus on the way and last the item; empty if the command isn't there.
std::vector<MenuStep> PathToCommand(HMENU menu, UINT id);
/// False if a step of the path is gone, grey or disabled.
bool IsPathEnabled(const std::vector<MenuStep>& path);

}  // namespace platform
