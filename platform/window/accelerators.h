#pragma once

#include "platform/base/export.h"
#include "platform/window/messages.h"

// Keys as commands.

/// Flags of an ACCEL. Without FVIRTKEY the key is a character that is typed.
enum : BYTE { FVIRTKEY = 1, FNOINVERT = 2, FSHIFT = 4, FCONTROL = 8, FALT = 16 };

struct tagACCEL {
  BYTE fVirt;
  WORD key;
  WORD cmd;
};
using ACCEL = tagACCEL;
using LPACCEL = ACCEL*;

/// A copy of the entries, the caller's to destroy. Null for none.
PLATFORM_API HACCEL CreateAcceleratorTableA(const ACCEL* entries, int count);
inline HACCEL CreateAcceleratorTable(const ACCEL* entries, int count) {
  return CreateAcceleratorTableA(entries, count);
}
PLATFORM_API BOOL DestroyAcceleratorTable(HACCEL table);
/// If the message is a key of the table: sends WM_COMMAND with code 1 to the window and gives TRUE. While the
/// command's item in the window's menu is grey, or the window disabled, the key is used up without a command.
/// The menu that it lies in gets its WM_INITMENUPOPUP before, so that its state is up to date.
PLATFORM_API int TranslateAcceleratorA(HWND window, HACCEL table, MSG* message);
inline int TranslateAccelerator(HWND window, HACCEL table, MSG* message) {
  return TranslateAcceleratorA(window, table, message);
}
