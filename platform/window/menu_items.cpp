// What the items of a menu are and how they stand.

#include <algorithm>

#include "platform/window/detail/menu_record.h"

using platform::FindMenuItem;
using platform::FindMenuRecord;
using platform::MenuPlace;
using platform::MenuRecord;

HMENU GetSubMenu(HMENU menu, int position) {
  const MenuPlace place = FindMenuItem(menu, static_cast<UINT>(position), MF_BYPOSITION);
  return place ? place->popup : nullptr;
}

int GetMenuItemCount(HMENU menu) {
  const MenuRecord* record = FindMenuRecord(menu);
  return record == nullptr ? -1 : static_cast<int>(record->items.size());
}

UINT GetMenuItemID(HMENU menu, int position) {
  const MenuPlace place = FindMenuItem(menu, static_cast<UINT>(position), MF_BYPOSITION);
  return place && place->popup == nullptr ? place->id : static_cast<UINT>(-1);
}

UINT GetMenuState(HMENU menu, UINT item, UINT flags) {
  const MenuPlace place = FindMenuItem(menu, item, flags);
  if (!place) return static_cast<UINT>(-1);
  if (place->popup == nullptr) return place->flags;
  return (place->flags & 0xff) | static_cast<UINT>(std::max(GetMenuItemCount(place->popup), 0)) << 8;
}

int GetMenuStringA(HMENU menu, UINT item, LPSTR buffer, int bufferSize, UINT flags) {
  const MenuPlace place = FindMenuItem(menu, item, flags);
  if (!place) return 0;
  if (buffer == nullptr) return static_cast<int>(place->text.size());
  if (bufferSize < 1) return 0;
  const std::size_t length = place->text.copy(buffer, static_cast<std::size_t>(bufferSize) - 1);
  buffer[length] = 0;
  return static_cast<int>(length);
}

int EnableMenuItem(HMENU menu, UINT item, UINT enable) {
  constexpr UINT kState = MF_GRAYED | MF_DISABLED;
  const MenuPlace place = FindMenuItem(menu, item, enable);
  if (!place) return -1;
  const UINT former = place->flags & kState;
  place->flags = (place->flags & ~kState) | (enable & kState);
  return static_cast<int>(former);
}

DWORD CheckMenuItem(HMENU menu, UINT item, UINT check) {
  const MenuPlace place = FindMenuItem(menu, item, check);
  if (!place) return static_cast<DWORD>(-1);
  const DWORD former = place->flags & MF_CHECKED;
  place->flags = (place->flags & ~UINT{MF_CHECKED}) | (check & MF_CHECKED);
  return former;
}

BOOL CheckMenuRadioItem(HMENU menu, UINT first, UINT last, UINT checked, UINT flags) {
  const MenuPlace target = FindMenuItem(menu, checked, flags);
  if (!target) return FALSE;
  // Beyond the menu there are no items, so the range needn't be walked there.
  for (std::size_t i = 0; i < target.menu->items.size(); ++i) {
    platform::MenuItemRecord& item = target.menu->items[i];
    const UINT name = (flags & MF_BYPOSITION) != 0 ? static_cast<UINT>(i) : item.id;
    if (item.popup != nullptr || item.IsSeparator() || name < first || name > last) continue;
    item.flags &= ~UINT{MF_CHECKED | MFT_RADIOCHECK};
    if (name == checked) item.flags |= MF_CHECKED | MFT_RADIOCHECK;
  }
  return TRUE;
}
