#pragma once

#include "platform/base/types.h"

// Styles, messages and notifications of the standard controls. A control tells its parent of events by
// WM_COMMAND: its id and the notification in wParam, its handle in lParam. Styles are plain numbers, to be
// combined with those of windows.

enum : UINT { WM_GETDLGCODE = 0x0087 };
/// Which keys a control wants for itself, and what it is.
enum : int {
  DLGC_WANTARROWS = 0x01,
  DLGC_WANTALLKEYS = 0x04,  ///< Enter and Escape too
  DLGC_HASSETSEL = 0x08,
  DLGC_DEFPUSHBUTTON = 0x10,
  DLGC_UNDEFPUSHBUTTON = 0x20,
  DLGC_RADIOBUTTON = 0x40,
  DLGC_WANTCHARS = 0x80,
  DLGC_STATIC = 0x100,
  DLGC_BUTTON = 0x2000,
};

// Dialogs

/// Sent to the hook of a system dialog, once its controls are filled; lParam points to the dialog's record.
enum : UINT { WM_INITDIALOG = 0x0110 };
inline constexpr DWORD DS_MODALFRAME = 0x80;
enum : UINT { DM_GETDEFID = 0x0400 };
enum : int { DC_HASDEFID = 0x534B };
enum : int { MSGF_DIALOGBOX = 0 };

// "BUTTON"

inline constexpr DWORD BS_PUSHBUTTON = 0;
inline constexpr DWORD BS_DEFPUSHBUTTON = 1;
inline constexpr DWORD BS_CHECKBOX = 2;
inline constexpr DWORD BS_AUTOCHECKBOX = 3;
inline constexpr DWORD BS_RADIOBUTTON = 4;
inline constexpr DWORD BS_3STATE = 5;
inline constexpr DWORD BS_AUTO3STATE = 6;
inline constexpr DWORD BS_GROUPBOX = 7;
inline constexpr DWORD BS_AUTORADIOBUTTON = 9;
inline constexpr DWORD BS_TYPEMASK = 0x0F;
enum : UINT { BM_GETCHECK = 0xF0, BM_SETCHECK = 0xF1, BM_SETSTYLE = 0xF4, BM_CLICK = 0xF5 };
enum : int { BST_UNCHECKED = 0, BST_CHECKED = 1, BST_INDETERMINATE = 2 };
enum : int { BN_CLICKED = 0 };

// "EDIT", one line

inline constexpr DWORD ES_LEFT = 0;
inline constexpr DWORD ES_CENTER = 1;
inline constexpr DWORD ES_RIGHT = 2;
inline constexpr DWORD ES_PASSWORD = 0x20;
inline constexpr DWORD ES_AUTOHSCROLL = 0x80;
inline constexpr DWORD ES_READONLY = 0x800;
inline constexpr DWORD ES_NUMBER = 0x2000;
enum : UINT {
  EM_GETSEL = 0xB0,
  EM_SETSEL = 0xB1,
  EM_REPLACESEL = 0xC2,
  EM_LIMITTEXT = 0xC5,
  EM_SETREADONLY = 0xCF,
};
enum : int { EN_SETFOCUS = 0x100, EN_KILLFOCUS = 0x200, EN_CHANGE = 0x300, EN_UPDATE = 0x400 };

// "STATIC"

inline constexpr DWORD SS_LEFT = 0;
inline constexpr DWORD SS_CENTER = 1;
inline constexpr DWORD SS_RIGHT = 2;
inline constexpr DWORD SS_BLACKFRAME = 7;
inline constexpr DWORD SS_WHITEFRAME = 9;
inline constexpr DWORD SS_SIMPLE = 0x0B;
inline constexpr DWORD SS_LEFTNOWORDWRAP = 0x0C;
inline constexpr DWORD SS_ETCHEDHORZ = 0x10;
inline constexpr DWORD SS_ETCHEDVERT = 0x11;
inline constexpr DWORD SS_ETCHEDFRAME = 0x12;
inline constexpr DWORD SS_TYPEMASK = 0x1F;
inline constexpr DWORD SS_NOPREFIX = 0x80;
inline constexpr DWORD SS_CENTERIMAGE = 0x200;

// "COMBOBOX". The height given at creation is that of the field with its list dropped down.

inline constexpr DWORD CBS_DROPDOWN = 2;
inline constexpr DWORD CBS_DROPDOWNLIST = 3;
inline constexpr DWORD CBS_TYPEMASK = 3;
inline constexpr DWORD CBS_AUTOHSCROLL = 0x40;
inline constexpr DWORD CBS_SORT = 0x100;
enum : UINT {
  CB_GETEDITSEL = 0x140,
  CB_LIMITTEXT = 0x141,
  CB_SETEDITSEL = 0x142,
  CB_ADDSTRING = 0x143,
  CB_GETCOUNT = 0x146,
  CB_GETCURSEL = 0x147,
  CB_GETLBTEXT = 0x148,
  CB_GETLBTEXTLEN = 0x149,
  CB_RESETCONTENT = 0x14B,
  CB_SELECTSTRING = 0x14D,
  CB_SETCURSEL = 0x14E,
  CB_SHOWDROPDOWN = 0x14F,
  CB_GETDROPPEDSTATE = 0x157,
  CB_FINDSTRINGEXACT = 0x158,
};
enum : int { CB_OKAY = 0, CB_ERR = -1 };
enum : int {
  CBN_SELCHANGE = 1,
  CBN_SETFOCUS = 3,
  CBN_KILLFOCUS = 4,
  CBN_EDITCHANGE = 5,
  CBN_DROPDOWN = 7,
  CBN_CLOSEUP = 8,
  CBN_SELENDOK = 9,
  CBN_SELENDCANCEL = 10,
};

// "msctls_updown32", a pair of arrows beside a field, its buddy

inline constexpr DWORD UDS_WRAP = 0x01;
inline constexpr DWORD UDS_SETBUDDYINT = 0x02;
inline constexpr DWORD UDS_ALIGNRIGHT = 0x04;
inline constexpr DWORD UDS_ALIGNLEFT = 0x08;
inline constexpr DWORD UDS_AUTOBUDDY = 0x10;
inline constexpr DWORD UDS_ARROWKEYS = 0x20;
enum : UINT {
  UDM_SETRANGE = 0x465,
  UDM_SETPOS = 0x467,
  UDM_GETPOS = 0x468,
  UDM_SETBUDDY = 0x469,
  UDM_SETRANGE32 = 0x46F,
  UDM_GETRANGE32 = 0x470,  ///< both parameters pointers to int: low, high; may be null
  UDM_SETPOS32 = 0x471,
  UDM_GETPOS32 = 0x472,
};

// "msctls_progress32"

enum : UINT {
  PBM_SETRANGE = 0x401,
  PBM_SETPOS = 0x402,
  PBM_STEPIT = 0x405,
  PBM_GETPOS = 0x408,
};
