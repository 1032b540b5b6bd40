#pragma once

#include "platform/base/types.h"

// Buttons, picture and preset of a message box, and its answers, which are also the numbers of buttons in
// dialogs.

enum : UINT {
  MB_OK = 0x00,
  MB_OKCANCEL = 0x01,
  MB_ABORTRETRYIGNORE = 0x02,
  MB_YESNOCANCEL = 0x03,
  MB_YESNO = 0x04,
  MB_RETRYCANCEL = 0x05,
  MB_TYPEMASK = 0x0F,
  MB_ICONERROR = 0x10,
  MB_ICONHAND = 0x10,
  MB_ICONSTOP = 0x10,
  MB_ICONQUESTION = 0x20,
  MB_ICONEXCLAMATION = 0x30,
  MB_ICONWARNING = 0x30,
  MB_ICONINFORMATION = 0x40,
  MB_ICONASTERISK = 0x40,
  MB_ICONMASK = 0xF0,
  MB_DEFBUTTON1 = 0x000,
  MB_DEFBUTTON2 = 0x100,
  MB_DEFBUTTON3 = 0x200,
  MB_DEFMASK = 0xF00,
};
enum : int { IDOK = 1, IDCANCEL = 2, IDABORT = 3, IDRETRY = 4, IDIGNORE = 5, IDYES = 6, IDNO = 7 };
