// The list of document windows at the end of a menu.

#include <algorithm>

#include "platform/window/detail/mdi_windows.h"
#include "platform/window/detail/window_record.h"
#include "platform/window/menu_handles.h"

namespace platform {
namespace {

constexpr std::size_t kListed = 9;  // each with a digit as its access key

/// A title as an item's text, in which "&" marks an access key.
std::string ItemText(const std::string& title) {
  std::string text;
  for (const char c : title) text += c == '&' ? std::string("&&") : std::string(1, c);
  return text;
}

void Append(HMENU menu, const MdiClient& client, HWND child, const std::string& prefix) {
  const WindowRecord* window = FindWindowRecord(child);
  const UINT checked = client.active == child ? MF_CHECKED : MF_UNCHECKED;
  AppendMenuA(menu, MF_STRING | checked, static_cast<std::uintptr_t>(window->id),
              (prefix + ItemText(window->text)).c_str());
}

bool IsOfList(const MdiClient& client, int position) {
  const HMENU popup = GetSubMenu(client.windowMenu, position);
  if (popup != nullptr) return popup == client.moreMenu;
  const UINT id = GetMenuItemID(client.windowMenu, position);
  return id >= client.firstId && id != static_cast<UINT>(-1);
}

}  // namespace

void RemoveMdiList(MdiClient& client) {
  int count = GetMenuItemCount(client.windowMenu);
  bool removed = false;
  while (count > 0 && IsOfList(client, count - 1)) {
    DeleteMenu(client.windowMenu, static_cast<UINT>(--count), MF_BYPOSITION);
    removed = true;
  }
  if (removed && count > 0) DeleteMenu(client.windowMenu, static_cast<UINT>(count - 1), MF_BYPOSITION);
  client.moreMenu = nullptr;
}

void RefreshMdiList(MdiClient& client, bool whole) {
  if (client.closing || IsMenu(client.windowMenu) == 0) return;
  RemoveMdiList(client);
  std::size_t listed = 0;
  for (const HWND child : client.order) {
    const WindowRecord* window = FindWindowRecord(child);
    if (window == nullptr || (window->style & WS_VISIBLE) == 0) continue;
    if (listed == 0) AppendMenuA(client.windowMenu, MF_SEPARATOR, 0, nullptr);
    if (listed < kListed) {
      Append(client.windowMenu, client, child,
             std::string("&").append(std::to_string(listed + 1)).append(" "));
    } else {
      if (client.moreMenu == nullptr) {
        client.moreMenu = CreatePopupMenu();
        AppendMenuA(client.windowMenu, MF_POPUP, reinterpret_cast<std::uintptr_t>(client.moreMenu),
                    "&Altre finestre");
      }
      Append(client.moreMenu, client, child, "");
      if (!whole) return;  // filled when the menu opens
    }
    ++listed;
  }
}

}  // namespace platform
