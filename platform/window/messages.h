#pragma once

#include "platform/base/types.h"

// Message numbers and the records that travel with them.

enum : UINT {
  WM_NULL = 0x0000,
  WM_CREATE = 0x0001,
  WM_DESTROY = 0x0002,
  WM_MOVE = 0x0003,
  WM_SIZE = 0x0005,
  WM_ACTIVATE = 0x0006,
  WM_SETFOCUS = 0x0007,
  WM_KILLFOCUS = 0x0008,
  WM_ENABLE = 0x000A,
  WM_SETREDRAW = 0x000B,
  WM_SETTEXT = 0x000C,
  WM_GETTEXT = 0x000D,
  WM_GETTEXTLENGTH = 0x000E,
  WM_PAINT = 0x000F,
  WM_CLOSE = 0x0010,
  WM_QUIT = 0x0012,
  WM_ERASEBKGND = 0x0014,
  WM_SYSCOLORCHANGE = 0x0015,
  WM_SHOWWINDOW = 0x0018,
  WM_CANCELMODE = 0x001F,
  WM_SETCURSOR = 0x0020,
  WM_GETFONT = 0x0031,
  WM_SETFONT = 0x0030,
  WM_CONTEXTMENU = 0x007B,
  WM_STYLECHANGED = 0x007D,
  WM_NCCREATE = 0x0081,
  WM_NCDESTROY = 0x0082,
  WM_KEYFIRST = 0x0100,
  WM_KEYDOWN = 0x0100,
  WM_KEYUP = 0x0101,
  WM_CHAR = 0x0102,
  WM_SYSKEYDOWN = 0x0104,
  WM_SYSKEYUP = 0x0105,
  WM_SYSCHAR = 0x0106,
  WM_KEYLAST = 0x0108,
  WM_COMMAND = 0x0111,
  WM_SYSCOMMAND = 0x0112,
  WM_TIMER = 0x0113,
  WM_HSCROLL = 0x0114,
  WM_VSCROLL = 0x0115,
  WM_INITMENUPOPUP = 0x0117,
  WM_MENUSELECT = 0x011F,
  WM_ENTERIDLE = 0x0121,
  WM_MOUSEFIRST = 0x0200,
  WM_MOUSEMOVE = 0x0200,
  WM_LBUTTONDOWN = 0x0201,
  WM_LBUTTONUP = 0x0202,
  WM_LBUTTONDBLCLK = 0x0203,
  WM_RBUTTONDOWN = 0x0204,
  WM_RBUTTONUP = 0x0205,
  WM_RBUTTONDBLCLK = 0x0206,
  WM_MBUTTONDOWN = 0x0207,
  WM_MBUTTONUP = 0x0208,
  WM_MBUTTONDBLCLK = 0x0209,
  WM_MOUSEWHEEL = 0x020A,
  WM_MOUSEHWHEEL = 0x020E,  ///< a wheel or touchpad turned sideways; to the right is forwards
  WM_MOUSELAST = 0x020E,
  WM_CAPTURECHANGED = 0x0215,
  WM_MDIACTIVATE = 0x0222,
  WM_MDINEXT = 0x0224,
  WM_MDIMAXIMIZE = 0x0225,
  WM_MDITILE = 0x0226,
  WM_MDICASCADE = 0x0227,
  WM_MDIICONARRANGE = 0x0228,
  WM_MDIGETACTIVE = 0x0229,
  WM_MDISETMENU = 0x0230,
  WM_MOUSELEAVE = 0x02A3,
  WM_DROPFILES = 0x0233,
  WM_KICKIDLE = 0x036A,
  WM_IDLEUPDATECMDUI = 0x0363,
  WM_USER = 0x0400,
  WM_APP = 0x8000,
};

/// WM_SIZE types.
enum : UINT { SIZE_RESTORED = 0, SIZE_MINIMIZED = 1, SIZE_MAXIMIZED = 2 };

/// Scroll codes in the low word of WM_HSCROLL and WM_VSCROLL.
enum : int {
  SB_LINEUP = 0,
  SB_LINELEFT = 0,
  SB_LINEDOWN = 1,
  SB_LINERIGHT = 1,
  SB_PAGEUP = 2,
  SB_PAGEDOWN = 3,
  SB_THUMBPOSITION = 4,
  SB_THUMBTRACK = 5,
  SB_TOP = 6,
  SB_BOTTOM = 7,
  SB_ENDSCROLL = 8,
};

/// Which scroll bar of a window.
enum : int { SB_HORZ = 0, SB_VERT = 1, SB_CTL = 2, SB_BOTH = 3 };

/// Which fields of a SCROLLINFO count.
enum : UINT {
  SIF_RANGE = 1,
  SIF_PAGE = 2,
  SIF_POS = 4,
  SIF_TRACKPOS = 16,
  SIF_ALL = SIF_RANGE | SIF_PAGE | SIF_POS | SIF_TRACKPOS,
};

struct tagSCROLLINFO {
  UINT cbSize;
  UINT fMask;
  int nMin;
  int nMax;
  UINT nPage;
  int nPos;
  int nTrackPos;  ///< while the thumb is dragged its place, else nPos
};
using SCROLLINFO = tagSCROLLINFO;
using LPSCROLLINFO = SCROLLINFO*;
static_assert(sizeof(SCROLLINFO) == 28);

/// State flags in wParam of the mouse messages.
enum : UINT { MK_LBUTTON = 1, MK_RBUTTON = 2, MK_SHIFT = 4, MK_CONTROL = 8, MK_MBUTTON = 16 };

enum : int { WHEEL_DELTA = 120 };

enum : int { HTNOWHERE = 0, HTCLIENT = 1, HTCAPTION = 2, HTVSCROLL = 7 };

/// Virtual keys; letters and digits are their upper-case ASCII codes.
enum : int {
  VK_LBUTTON = 0x01,
  VK_RBUTTON = 0x02,
  VK_CANCEL = 0x03,
  VK_MBUTTON = 0x04,
  VK_BACK = 0x08,
  VK_TAB = 0x09,
  VK_RETURN = 0x0D,
  VK_SHIFT = 0x10,
  VK_CONTROL = 0x11,
  VK_MENU = 0x12,
  VK_PAUSE = 0x13,
  VK_CAPITAL = 0x14,
  VK_ESCAPE = 0x1B,
  VK_SPACE = 0x20,
  VK_PRIOR = 0x21,
  VK_NEXT = 0x22,
  VK_END = 0x23,
  VK_HOME = 0x24,
  VK_LEFT = 0x25,
  VK_UP = 0x26,
  VK_RIGHT = 0x27,
  VK_DOWN = 0x28,
  VK_INSERT = 0x2D,
  VK_DELETE = 0x2E,
  VK_APPS = 0x5D,
  VK_NUMPAD0 = 0x60,
  VK_MULTIPLY = 0x6A,
  VK_ADD = 0x6B,
  VK_SUBTRACT = 0x6D,
  VK_DECIMAL = 0x6E,
  VK_DIVIDE = 0x6F,
  VK_F1 = 0x70,
  VK_F10 = 0x79,
  VK_F24 = 0x87,
  VK_OEM_PLUS = 0xBB,
  VK_OEM_COMMA = 0xBC,
  VK_OEM_MINUS = 0xBD,
  VK_OEM_PERIOD = 0xBE,
};

struct tagMSG {
  HWND hwnd;
  UINT message;
  WPARAM wParam;
  LPARAM lParam;
  DWORD time;      ///< milliseconds
  POINT pt;        ///< pointer in screen coordinates
  DWORD lPrivate;  ///< of a key message: the character that it types, 0 none
};
using MSG = tagMSG;
using LPMSG = MSG*;

using WNDPROC = LRESULT (*)(HWND, UINT, WPARAM, LPARAM);
using TIMERPROC = void (*)(HWND, UINT, std::uintptr_t, DWORD);
