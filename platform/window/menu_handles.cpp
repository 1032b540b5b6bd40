#include "platform/window/menu_handles.h"

#include <algorithm>
#include <span>
#include <utility>

#include "platform/base/translation.h"
#include "platform/resources/detail/find.h"
#include "platform/window/detail/menu_record.h"
#include "platform/window/detail/menu_widgets.h"

using platform::FindMenuItem;
using platform::FindMenuRecord;
using platform::MenuItemRecord;
using platform::MenuPlace;
using platform::MenuRecord;
using platform::Menus;

// Finding items

namespace platform {

HandleTable<MenuRecord, HMENU>& Menus() {
  static auto* table = new HandleTable<MenuRecord, HMENU>;  // windows may outlive statics
  return *table;
}

MenuPlace FindMenuItem(HMENU handle, UINT item, UINT flags) {
  MenuRecord* menu = FindMenuRecord(handle);
  if (menu == nullptr) return {};
  if ((flags & MF_BYPOSITION) != 0) return item < menu->items.size() ? MenuPlace{menu, item} : MenuPlace{};
  const std::vector<MenuStep> path = PathToCommand(handle, item);
  return path.empty() ? MenuPlace{} : MenuPlace{FindMenuRecord(path.back().menu), path.back().index};
}

std::vector<MenuStep> PathToCommand(HMENU handle, UINT id) {
  const MenuRecord* menu = FindMenuRecord(handle);
  if (menu == nullptr) return {};
  for (std::size_t i = 0; i < menu->items.size(); ++i) {
    const MenuItemRecord& item = menu->items[i];
    const MenuStep step = {handle, static_cast<UINT>(i)};
    if (item.popup == nullptr && !item.IsSeparator() && item.id == id) return {step};
    if (item.popup == nullptr) continue;
    std::vector<MenuStep> path = PathToCommand(item.popup, id);
    if (path.empty()) continue;
    path.insert(path.begin(), step);
    return path;
  }
  return {};
}

bool IsPathEnabled(const std::vector<MenuStep>& path) {
  return std::all_of(path.begin(), path.end(), [](const MenuStep& step) {
    const MenuPlace place = FindMenuItem(step.menu, step.index, MF_BYPOSITION);
    return place && place->IsEnabled();
  });
}

}  // namespace platform

// Life

HMENU CreateMenu() {
  return Menus().Add(std::make_unique<MenuRecord>());
}

HMENU CreatePopupMenu() {
  return CreateMenu();
}

namespace {

using Lines = std::span<const platform::MenuLine>;

/// Takes lines up to the End of the menu at their front; the rest is left in them.
HMENU MenuOfLines(Lines& lines) {
  using Kind = platform::MenuLine::Kind;
  const HMENU menu = CreateMenu();
  while (!lines.empty()) {
    const platform::MenuLine& line = lines.front();
    lines = lines.subspan(1);
    if (line.kind == Kind::End) break;
    if (line.kind == Kind::Separator) {
      AppendMenuA(menu, MF_SEPARATOR, 0, nullptr);
    } else if (line.kind == Kind::Popup) {
      AppendMenuA(menu, MF_POPUP, reinterpret_cast<std::uintptr_t>(MenuOfLines(lines)),
                  platform::Localized(line.text));
    } else {
      AppendMenuA(menu, MF_STRING, line.id, platform::Localized(line.text));
    }
  }
  return menu;
}

}  // namespace

HMENU LoadMenuA(HINSTANCE module, LPCSTR name) {
  const platform::MenuResource* resource = platform::FindMenuResource(module, name);
  if (resource == nullptr) return nullptr;
  Lines lines = resource->lines;
  return MenuOfLines(lines);
}

BOOL DestroyMenu(HMENU menu) {
  const std::unique_ptr<MenuRecord> record = Menus().Remove(menu);
  if (!record) return FALSE;
  platform::DropFromBars(menu);
  for (const MenuItemRecord& item : record->items) DestroyMenu(item.popup);
  return TRUE;
}

BOOL IsMenu(HMENU menu) {
  return FindMenuRecord(menu) != nullptr;
}

// Items

namespace {

bool Contains(HMENU outer, HMENU inner) {
  if (outer == inner) return true;
  const MenuRecord* menu = FindMenuRecord(outer);
  return menu != nullptr && std::any_of(menu->items.begin(), menu->items.end(), [inner](const auto& item) {
           return item.popup != nullptr && Contains(item.popup, inner);
         });
}

/// False for a sub-menu that is dead or holds the menu that it would go into.
bool MakeItem(HMENU menu, UINT flags, std::uintptr_t idOrMenu, LPCSTR text, MenuItemRecord& item) {
  constexpr UINT kKept = MF_GRAYED | MF_DISABLED | MF_CHECKED | MF_POPUP | MF_SEPARATOR | MFT_RADIOCHECK;
  item.flags = flags & kKept;
  if ((flags & MF_POPUP) != 0) {
    item.popup = reinterpret_cast<HMENU>(idOrMenu);
    if (IsMenu(item.popup) == 0 || Contains(item.popup, menu)) return false;
  } else {
    item.id = static_cast<UINT>(idOrMenu);
  }
  if (!item.IsSeparator() && text != nullptr) item.text = text;
  return true;
}

}  // namespace

BOOL AppendMenuA(HMENU menu, UINT flags, std::uintptr_t idOrMenu, LPCSTR text) {
  return InsertMenuA(menu, static_cast<UINT>(-1), flags | MF_BYPOSITION, idOrMenu, text);
}

BOOL InsertMenuA(HMENU menu, UINT item, UINT flags, std::uintptr_t idOrMenu, LPCSTR text) {
  MenuRecord* record = FindMenuRecord(menu);
  MenuItemRecord made;
  if (record == nullptr || !MakeItem(menu, flags, idOrMenu, text, made)) return FALSE;
  const MenuPlace place = FindMenuItem(menu, item, flags);
  auto& items = place ? place.menu->items : record->items;
  const std::size_t index = place ? place.index : items.size();
  items.insert(items.begin() + static_cast<std::ptrdiff_t>(index), std::move(made));
  return TRUE;
}

BOOL ModifyMenuA(HMENU menu, UINT item, UINT flags, std::uintptr_t idOrMenu, LPCSTR text) {
  const MenuPlace place = FindMenuItem(menu, item, flags);
  MenuItemRecord made;
  if (!place || !MakeItem(menu, flags, idOrMenu, text, made)) return FALSE;
  const HMENU former = std::exchange(*place.operator->(), std::move(made)).popup;
  if (former != place->popup) DestroyMenu(former);
  return TRUE;
}

BOOL RemoveMenu(HMENU menu, UINT item, UINT flags) {
  const MenuPlace place = FindMenuItem(menu, item, flags);
  if (!place) return FALSE;
  place.menu->items.erase(place.menu->items.begin() + static_cast<std::ptrdiff_t>(place.index));
  return TRUE;
}

BOOL DeleteMenu(HMENU menu, UINT item, UINT flags) {
  const MenuPlace place = FindMenuItem(menu, item, flags);
  if (!place) return FALSE;
  const HMENU popup = place->popup;
  RemoveMenu(menu, item, flags);
  DestroyMenu(popup);
  return TRUE;
}
