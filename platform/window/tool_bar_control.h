#pragma once

#include "platform/base/types.h"
#include "platform/window/messages.h"

// The control behind CToolBar: a window of class "ToolbarWindow32" that holds a row (or column) of buttons.

#define TOOLBARCLASSNAME "ToolbarWindow32"

enum : DWORD { TBSTYLE_FLAT = 0x800 };

/// Styles of a button.
enum : BYTE {
  TBSTYLE_BUTTON = 0,
  TBSTYLE_SEP = 1,    ///< a gap, iBitmap units wide
  TBSTYLE_CHECK = 2,  ///< a click turns its check mark
  TBSTYLE_GROUP = 4,
  TBSTYLE_CHECKGROUP = TBSTYLE_GROUP | TBSTYLE_CHECK,  ///< a click takes the check mark from its neighbours
};

enum : BYTE {
  TBSTATE_CHECKED = 1,
  TBSTATE_PRESSED = 2,
  TBSTATE_ENABLED = 4,
  TBSTATE_HIDDEN = 8,
  TBSTATE_INDETERMINATE = 16,
};

struct tagTBBUTTON {
  int iBitmap;  ///< index in the image list; of a separator its width
  int idCommand;
  BYTE fsState;
  BYTE fsStyle;
};
using TBBUTTON = tagTBBUTTON;

// By the command: the enabling, checking and state messages. By the index: the others.
enum : UINT {
  TB_ENABLEBUTTON = WM_USER + 1,
  TB_CHECKBUTTON = WM_USER + 2,
  TB_PRESSBUTTON = WM_USER + 3,
  TB_HIDEBUTTON = WM_USER + 4,
  TB_INDETERMINATE = WM_USER + 5,
  TB_ISBUTTONENABLED = WM_USER + 9,
  TB_ISBUTTONCHECKED = WM_USER + 10,
  TB_ISBUTTONPRESSED = WM_USER + 11,
  TB_ISBUTTONHIDDEN = WM_USER + 12,
  TB_ISBUTTONINDETERMINATE = WM_USER + 13,
  TB_SETSTATE = WM_USER + 17,
  TB_GETSTATE = WM_USER + 18,      ///< -1 if there is no such button
  TB_ADDBUTTONS = WM_USER + 20,    ///< wParam count, lParam array of TBBUTTON
  TB_INSERTBUTTON = WM_USER + 21,  ///< wParam index, lParam TBBUTTON
  TB_DELETEBUTTON = WM_USER + 22,
  TB_GETBUTTON = WM_USER + 23,    ///< lParam TBBUTTON to fill
  TB_BUTTONCOUNT = WM_USER + 24,  ///< separators included
  TB_COMMANDTOINDEX = WM_USER + 25,
  TB_GETITEMRECT = WM_USER + 29,    ///< lParam RECT to fill, client coordinates
  TB_SETBUTTONSIZE = WM_USER + 31,  ///< lParam width, height
  TB_SETBITMAPSIZE = WM_USER + 32,
  TB_SETIMAGELIST = WM_USER + 48,  ///< the list stays the program's; the former one is returned
  TB_GETIMAGELIST = WM_USER + 49,
  TB_SETDISABLEDIMAGELIST = WM_USER + 54,
  TB_GETDISABLEDIMAGELIST = WM_USER + 55,
  TB_GETBUTTONSIZE = WM_USER + 58,
};
