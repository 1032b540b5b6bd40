#include "platform/window/accelerators.h"

#include <algorithm>
#include <memory>
#include <span>
#include <vector>

#include "platform/base/detail/handle_table.h"
#include "platform/window/detail/menu_record.h"
#include "platform/window/detail/menu_widgets.h"
#include "platform/window/window.h"

namespace {

using AcceleratorTable = std::vector<ACCEL>;

platform::HandleTable<AcceleratorTable, HACCEL>& Tables() {
  static auto* tables = new platform::HandleTable<AcceleratorTable, HACCEL>;  // windows may outlive statics
  return *tables;
}

bool IsDown(int key) {
  return GetKeyState(key) < 0;
}

bool Fits(const ACCEL& entry, const MSG& message) {
  const bool alt = (entry.fVirt & FALT) != 0;
  if (message.wParam != entry.key) return false;
  if ((entry.fVirt & FVIRTKEY) == 0) return message.message == (alt ? WM_SYSCHAR : WM_CHAR);
  if (message.message != WM_KEYDOWN && message.message != WM_SYSKEYDOWN) return false;
  // Bit 29: Alt was down with the key.
  return IsDown(VK_SHIFT) == ((entry.fVirt & FSHIFT) != 0) &&
         IsDown(VK_CONTROL) == ((entry.fVirt & FCONTROL) != 0) && (message.lParam >> 29 & 1) == (alt ? 1 : 0);
}

/// False while the command stands in the window's menu and is grey there.
bool IsAvailable(HWND window, UINT command) {
  for (const auto& step : platform::PathToCommand(GetMenu(window), command))
    if (const HMENU popup = GetSubMenu(step.menu, static_cast<int>(step.index)))
      platform::TellInitMenuPopup(window, popup, step.index);
  const auto path = platform::PathToCommand(GetMenu(window), command);
  return path.empty() || platform::IsPathEnabled(path);
}

}  // namespace

HACCEL CreateAcceleratorTableA(const ACCEL* entries, int count) {
  if (entries == nullptr || count < 1) return nullptr;
  return Tables().Add(std::make_unique<AcceleratorTable>(entries, entries + count));
}

BOOL DestroyAcceleratorTable(HACCEL table) {
  return Tables().Remove(table) != nullptr;
}

int TranslateAcceleratorA(HWND window, HACCEL handle, MSG* message) {
  const AcceleratorTable* table = Tables().Get(handle);
  if (table == nullptr || message == nullptr || IsWindow(window) == 0) return FALSE;
  const auto entry =
      std::find_if(table->begin(), table->end(), [&](const ACCEL& e) { return Fits(e, *message); });
  if (entry == table->end()) return FALSE;
  const UINT command = entry->cmd;  // the table may go in a handler
  if (IsWindowEnabled(window) != 0 && IsAvailable(window, command))
    SendMessage(window, WM_COMMAND, MAKEWPARAM(static_cast<int>(command), 1), 0);
  return TRUE;
}
