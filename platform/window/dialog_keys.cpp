#include <cctype>
#include <string>
#include <vector>

#include "platform/window/detail/widgets.h"
#include "platform/window/detail/window_record.h"
#include "platform/window/dialog_keys.h"

using platform::FindWindowRecord;
using platform::WindowRecord;

namespace {

bool Has(HWND window, DWORD style) {
  return (static_cast<DWORD>(GetWindowLong(window, GWL_STYLE)) & style) != 0;
}

bool CanTakeFocus(HWND window) {
  return Has(window, WS_VISIBLE) && !Has(window, WS_DISABLED);
}

int CodeOf(HWND window) {
  return static_cast<int>(SendMessage(window, WM_GETDLGCODE));
}

bool IsPushButton(HWND window) {
  return (CodeOf(window) & (DLGC_DEFPUSHBUTTON | DLGC_UNDEFPUSHBUTTON)) != 0;
}

/// The control of the dialog in which a window stands, itself as a rule.
HWND ControlIn(HWND dialog, HWND window) {
  while (window != nullptr && GetParent(window) != dialog) window = GetParent(window);
  return window;
}

std::vector<HWND> ControlsOf(HWND dialog) {
  const WindowRecord* record = FindWindowRecord(dialog);
  return record == nullptr ? std::vector<HWND>() : record->children;
}

/// From a place in a ring of controls to the next that fits; null if none does.
template <typename Fits>
HWND Walk(const std::vector<HWND>& ring, HWND from, bool backwards, Fits fits) {
  const std::size_t count = ring.size();
  std::size_t at = backwards ? 0 : count - 1;
  for (std::size_t i = 0; i < count; ++i)
    if (ring[i] == from) at = i;
  for (std::size_t step = 0; step < count; ++step) {
    at = (at + (backwards ? count - 1 : 1)) % count;
    if (fits(ring[at])) return ring[at];
  }
  return nullptr;
}

/// From the first key on it is seen where the keyboard is.
void ShowFocusMarks(HWND dialog) {
  const WindowRecord* record = FindWindowRecord(dialog);
  if (record != nullptr && record->frame) record->frame->window()->setAttribute(Qt::WA_KeyboardFocusChange);
}

void FocusTo(HWND control) {
  SetFocus(control);
  if ((CodeOf(control) & DLGC_HASSETSEL) != 0) SendMessage(control, EM_SETSEL, 0, -1);
}

/// The letter after a single "&", in lower case; 0 if there is none.
int AccessKeyOf(const CString& text) {
  for (int i = text.Find('&'); i >= 0 && i + 1 < text.GetLength(); i = text.Find('&', i + 2))
    if (text.GetAt(i + 1) != '&') return std::tolower(static_cast<unsigned char>(text.GetAt(i + 1)));
  return 0;
}

void PressByAccessKey(HWND dialog, HWND control) {
  const int code = CodeOf(control);
  if ((code & DLGC_BUTTON) != 0) {
    SetFocus(control);
    SendMessage(control, BM_CLICK);
    return;
  }
  // A caption's letter means the field behind it.
  const HWND field = GetNextDlgTabItem(dialog, control, FALSE);
  if (field != nullptr) FocusTo(field);
}

bool AccessKey(HWND dialog, HWND focus, WPARAM letter) {
  if (letter <= ' ' || letter > 0x7f) return false;
  const int wanted = std::tolower(static_cast<int>(letter));
  const std::vector<HWND> controls = ControlsOf(dialog);
  if (controls.empty()) return false;
  const HWND found = Walk(controls, focus, false, [wanted](HWND control) {
    const int code = CodeOf(control);
    const bool captioned = (code & (DLGC_BUTTON | DLGC_STATIC)) != 0;
    return captioned && CanTakeFocus(control) && AccessKeyOf(GetWindowText(control)) == wanted;
  });
  if (found == nullptr) return false;
  PressByAccessKey(dialog, found);
  return true;
}

void Command(HWND dialog, int id) {
  const HWND button = GetDlgItem(dialog, id);
  if (button != nullptr && IsWindowEnabled(button) == 0) return;
  SendMessage(dialog, WM_COMMAND, MAKEWPARAM(id, BN_CLICKED), reinterpret_cast<LPARAM>(button));
}

/// The focused button, or the dialog's default one.
void Enter(HWND dialog, HWND focus) {
  if (focus != nullptr && IsPushButton(focus)) {
    SendMessage(focus, BM_CLICK);
    return;
  }
  const auto answer = static_cast<WPARAM>(SendMessage(dialog, DM_GETDEFID));
  Command(dialog, HIWORD(answer) == DC_HASDEFID ? LOWORD(answer) : 1);
}

/// An arrow moves on in the group; a radio button is chosen by that.
bool Arrow(HWND dialog, HWND focus, bool backwards) {
  if (focus == nullptr || (CodeOf(focus) & DLGC_WANTARROWS) != 0) return false;
  const HWND next = GetNextDlgGroupItem(dialog, focus, backwards ? TRUE : FALSE);
  if (next == nullptr || next == focus) return true;
  FocusTo(next);
  const bool radio = (CodeOf(next) & DLGC_RADIOBUTTON) != 0;
  if (radio && (GetWindowLong(next, GWL_STYLE) & BS_TYPEMASK) == BS_AUTORADIOBUTTON)
    SendMessage(next, BM_CLICK);
  return true;
}

bool KeyDown(HWND dialog, HWND focus, WPARAM key) {
  ShowFocusMarks(dialog);
  if (focus != nullptr && (CodeOf(focus) & DLGC_WANTALLKEYS) != 0) return false;  // an open list
  switch (key) {
    case VK_TAB: {
      if (GetKeyState(VK_CONTROL) < 0) return false;
      const HWND next = GetNextDlgTabItem(dialog, focus, GetKeyState(VK_SHIFT) < 0 ? TRUE : FALSE);
      if (next != nullptr) FocusTo(next);
      return true;
    }
    case VK_RETURN:
      Enter(dialog, focus);
      return true;
    case VK_ESCAPE:
    case VK_CANCEL:
      Command(dialog, 2);
      return true;
    case VK_LEFT:
    case VK_UP:
      return Arrow(dialog, focus, true);
    case VK_RIGHT:
    case VK_DOWN:
      return Arrow(dialog, focus, false);
    default:
      return false;
  }
}

}  // namespace

HWND GetNextDlgTabItem(HWND dialog, HWND control, BOOL previous) {
  const std::vector<HWND> controls = ControlsOf(dialog);
  if (controls.empty()) return nullptr;
  return Walk(controls, ControlIn(dialog, control), previous != 0,
              [](HWND c) { return Has(c, WS_TABSTOP) && CanTakeFocus(c); });
}

HWND GetNextDlgGroupItem(HWND dialog, HWND control, BOOL previous) {
  const std::vector<HWND> controls = ControlsOf(dialog);
  const HWND from = ControlIn(dialog, control);
  std::vector<HWND> group;
  bool inside = false;
  for (const HWND c : controls) {
    if (Has(c, WS_GROUP)) {
      if (inside) break;
      group.clear();
    }
    group.push_back(c);
    inside = inside || c == from;
  }
  if (!inside) return nullptr;
  return Walk(group, from, previous != 0, [](HWND c) { return CanTakeFocus(c) && CodeOf(c) != DLGC_STATIC; });
}

BOOL IsDialogMessage(HWND dialog, MSG* message) {
  if (IsWindow(dialog) == 0 || message == nullptr) return FALSE;
  if (message->hwnd != dialog && IsChild(dialog, message->hwnd) == 0) return FALSE;
  const HWND focus = ControlIn(dialog, message->hwnd);
  switch (message->message) {
    case WM_KEYDOWN:
      return KeyDown(dialog, focus, message->wParam) ? TRUE : FALSE;
    case WM_SYSCHAR:
      return AccessKey(dialog, focus, message->wParam) ? TRUE : FALSE;
    case WM_CHAR:
      // A letter alone will do where nobody takes letters.
      if (focus != nullptr && (CodeOf(focus) & DLGC_WANTCHARS) != 0) return FALSE;
      return AccessKey(dialog, focus, message->wParam) ? TRUE : FALSE;
    default:
      return FALSE;
  }
}
