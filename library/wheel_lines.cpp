#include "library/wheel_lines.h"

#include <array>
#include <cstdlib>

#include "platform/base/kernel.h"
#include "platform/registry/registry.h"
#include "platform/window/window.h"

namespace {

constexpr UINT kDefaultLines = 3;
constexpr DWORD kOtherFamily = 0x80000000;  // bit of the version: not a system with the wheel parameter

/// The setting of systems before version 4: a text in the user's registry. Text that is no number counts as
/// 0.
void ReadDesktopSetting(UINT* lines) {
  HKEY key = nullptr;
  if (RegOpenKeyExA(HKEY_CURRENT_USER, "Control Panel\\Desktop", 0, KEY_QUERY_VALUE, &key) != ERROR_SUCCESS)
    return;
  std::array<char, 128 + 1> text{};  // one more, for a value stored without its closing 0
  DWORD size = text.size() - 1;
  if (RegQueryValueExA(key, "WheelScrollLines", nullptr, nullptr, reinterpret_cast<BYTE*>(text.data()),
                       &size) == ERROR_SUCCESS)
    *lines = static_cast<UINT>(std::strtoul(text.data(), nullptr, 10));
  RegCloseKey(key);
}

}  // namespace

bool MouseScrollLines::AskDriver() {
  if (m_messageState == MessageState::NotTried) {
    m_message = RegisterWindowMessageA("MSH_SCROLL_LINES_MSG");
    m_messageState = m_message == 0 ? MessageState::Failed : MessageState::Registered;
  }
  if (m_messageState == MessageState::Failed) return false;
  const HWND driver = FindWindowA("MouseZ", "Magellan MSWHEEL");
  if (driver == nullptr || m_message == 0) return false;
  m_lines = static_cast<UINT>(SendMessage(driver, m_message, 0, 0));
  return true;
}

void MouseScrollLines::AskSystem(DWORD version) {
  m_lines = kDefaultLines;
  if ((version & 0xff) < 4)
    ReadDesktopSetting(&m_lines);
  else if ((version & kOtherFamily) == 0)
    SystemParametersInfoA(SPI_GETWHEELSCROLLLINES, 0, &m_lines, 0);
}

UINT MouseScrollLines::Get(DWORD version) {
  if (m_done) return m_lines;
  m_done = true;
  if (!AskDriver()) AskSystem(version);
  return m_lines;
}

UINT GetMouseScrollLines() {
  static MouseScrollLines lines;
  return lines.Get(GetVersion());
}
