#pragma once

#include "platform/base/types.h"

// Styles and numbers of control bars.

enum : DWORD {
  CBRS_SIZE_DYNAMIC = 0x0004,
  CBRS_TOOLTIPS = 0x0010,
  CBRS_FLYBY = 0x0020,  ///< the status bar tells what the button under the pointer does
  CBRS_BORDER_LEFT = 0x0100,
  CBRS_BORDER_TOP = 0x0200,
  CBRS_BORDER_RIGHT = 0x0400,
  CBRS_BORDER_BOTTOM = 0x0800,
  CBRS_BORDER_ANY = 0x0F00,
  CBRS_ALIGN_LEFT = 0x1000,
  CBRS_ALIGN_TOP = 0x2000,
  CBRS_ALIGN_RIGHT = 0x4000,
  CBRS_ALIGN_BOTTOM = 0x8000,
  CBRS_ALIGN_ANY = 0xF000,
  CBRS_ORIENT_HORZ = CBRS_ALIGN_TOP | CBRS_ALIGN_BOTTOM,
  CBRS_ORIENT_VERT = CBRS_ALIGN_LEFT | CBRS_ALIGN_RIGHT,
  CBRS_GRIPPER = 0x00400000,
  CBRS_ALL = 0x0040FFFF,

  CBRS_LEFT = CBRS_ALIGN_LEFT | CBRS_BORDER_RIGHT,
  CBRS_TOP = CBRS_ALIGN_TOP | CBRS_BORDER_BOTTOM,
  CBRS_RIGHT = CBRS_ALIGN_RIGHT | CBRS_BORDER_LEFT,
  CBRS_BOTTOM = CBRS_ALIGN_BOTTOM | CBRS_BORDER_TOP,
};

enum : UINT {
  AFX_IDW_TOOLBAR = 0xE800,  ///< also the number of the command that shows and hides the bar
  AFX_IDW_STATUS_BAR = 0xE801,
  AFX_IDW_DOCKBAR_TOP = 0xE81B,
  AFX_IDW_DOCKBAR_LEFT = 0xE81C,
  AFX_IDW_DOCKBAR_RIGHT = 0xE81D,
  AFX_IDW_DOCKBAR_BOTTOM = 0xE81E,
  ID_SEPARATOR = 0,
};

/// Messages between a frame and its bars.
enum : UINT {
  WM_SIZEPARENT = 0x0361,        ///< lParam AFX_SIZEPARENTPARAMS: the bar takes its place
  WM_SETMESSAGESTRING = 0x0362,  ///< wParam string number, or lParam a text; the former number
  WM_POPMESSAGESTRING = 0x0375,
};

/// How a bar's size is asked for.
enum : DWORD { LM_STRETCH = 0x01, LM_HORZ = 0x02, LM_HORZDOCK = 0x08, LM_VERTDOCK = 0x10 };
