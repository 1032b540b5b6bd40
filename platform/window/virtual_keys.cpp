#include <QKeyEvent>
#include <array>

#include "platform/window/detail/queue.h"
#include "platform/window/detail/virtual_keys.h"
#include "platform/window/window.h"

namespace {

std::array<bool, 256> g_down{};

void SetDown(WPARAM key, bool down) {
  if (key < g_down.size()) g_down[key] = down;
}

struct KeyPair {
  int qt;
  int vk;
};

constexpr KeyPair kKeys[] = {
    {Qt::Key_Backspace, VK_BACK},
    {Qt::Key_Tab, VK_TAB},
    {Qt::Key_Backtab, VK_TAB},
    {Qt::Key_Return, VK_RETURN},
    {Qt::Key_Enter, VK_RETURN},
    {Qt::Key_Shift, VK_SHIFT},
    {Qt::Key_Control, VK_CONTROL},
    {Qt::Key_Alt, VK_MENU},
    {Qt::Key_AltGr, VK_MENU},
    {Qt::Key_Pause, VK_PAUSE},
    {Qt::Key_CapsLock, VK_CAPITAL},
    {Qt::Key_Escape, VK_ESCAPE},
    {Qt::Key_Space, VK_SPACE},
    {Qt::Key_PageUp, VK_PRIOR},
    {Qt::Key_PageDown, VK_NEXT},
    {Qt::Key_End, VK_END},
    {Qt::Key_Home, VK_HOME},
    {Qt::Key_Left, VK_LEFT},
    {Qt::Key_Up, VK_UP},
    {Qt::Key_Right, VK_RIGHT},
    {Qt::Key_Down, VK_DOWN},
    {Qt::Key_Insert, VK_INSERT},
    {Qt::Key_Delete, VK_DELETE},
    {Qt::Key_Menu, VK_APPS},
    {Qt::Key_Plus, VK_OEM_PLUS},
    {Qt::Key_Comma, VK_OEM_COMMA},
    {Qt::Key_Minus, VK_OEM_MINUS},
    {Qt::Key_Period, VK_OEM_PERIOD},
};

constexpr KeyPair kKeypad[] = {
    {Qt::Key_Asterisk, VK_MULTIPLY}, {Qt::Key_Plus, VK_ADD},      {Qt::Key_Minus, VK_SUBTRACT},
    {Qt::Key_Period, VK_DECIMAL},    {Qt::Key_Comma, VK_DECIMAL}, {Qt::Key_Slash, VK_DIVIDE},
};

}  // namespace

int platform::VirtualKeyOf(const QKeyEvent& event) {
  const int key = event.key();
  if ((event.modifiers() & Qt::KeypadModifier) != 0) {
    if (key >= Qt::Key_0 && key <= Qt::Key_9) return VK_NUMPAD0 + (key - Qt::Key_0);
    for (const KeyPair& pair : kKeypad)
      if (pair.qt == key) return pair.vk;
  }
  if ((key >= Qt::Key_A && key <= Qt::Key_Z) || (key >= Qt::Key_0 && key <= Qt::Key_9)) return key;
  if (key >= Qt::Key_F1 && key <= Qt::Key_F24) return VK_F1 + (key - Qt::Key_F1);
  for (const KeyPair& pair : kKeys)
    if (pair.qt == key) return pair.vk;
  return 0;
}

void platform::TrackKeyState(const MSG& message) {
  switch (message.message) {
    case WM_KEYDOWN:
    case WM_SYSKEYDOWN:
      SetDown(message.wParam, true);
      return;
    case WM_KEYUP:
    case WM_SYSKEYUP:
      SetDown(message.wParam, false);
      return;
    default:
      break;
  }
  if (message.message < WM_MOUSEFIRST || message.message > WM_MOUSELAST) return;
  // Mouse messages carry the truth about buttons and two of the modifiers; a key let go in another program's
  // window is caught up with here.
  const auto flags = static_cast<UINT>(LOWORD(message.wParam));
  SetDown(VK_LBUTTON, (flags & MK_LBUTTON) != 0);
  SetDown(VK_RBUTTON, (flags & MK_RBUTTON) != 0);
  SetDown(VK_MBUTTON, (flags & MK_MBUTTON) != 0);
  SetDown(VK_SHIFT, (flags & MK_SHIFT) != 0);
  SetDown(VK_CONTROL, (flags & MK_CONTROL) != 0);
  if (message.lPrivate != 0) SetDown(VK_MENU, (message.lPrivate & kAltDown) != 0);
}

short GetKeyState(int key) {
  const bool down =
      key >= 0 && key < static_cast<int>(g_down.size()) && g_down[static_cast<std::size_t>(key)];
  return down ? static_cast<short>(0xff80) : static_cast<short>(0);
}
