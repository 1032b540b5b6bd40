#pragma once

#include "platform/base/types.h"

// The numbers of commands, controls, panes and texts. A menu item, a toolbar button, a handler and the
// command's prompt in the string table meet on one number.

enum : UINT {
  ID_ZP_ROTATE_LEFT = 40002,
  ID_ZP_ROTATE_RIGHT = 40003,
  ID_ZP_ROTATE_180 = 40004,
  ID_ZP_FILE_EXPORT = 40005,
  ID_ZP_ZOOM_IN_MODE = 40007,
  ID_ZP_ZOOM_FIT_TO_WIDTH = 40008,
  ID_ZP_ZOOM_FIT_TO_HEIGHT = 40009,
  ID_ZP_ZOOM_BEST_FIT = 40010,
  ID_ZP_ZOOM_CUSTOM = 40011,
  ID_ZP_PAGE_PRINT = 40012,
  ID_ZP_DRAG_MODE = 40013,
  ID_ZP_ZOOM_OUT_MODE = 40014,
  ID_ZP_ZOOM_SELECTED = 40016,
  ID_ZP_FIRST_PAGE = 40019,
  ID_ZP_LAST_PAGE = 40020,
  ID_ZP_GOTO_PAGE = 40021,
  ID_ZP_ZOOM_OUT = 40022,
  ID_ZP_ZOOM_IN = 40023,
  ID_ZP_NEXT_PAGE = 40024,
  ID_ZP_PREV_PAGE = 40025,
  ID_ZP_PAGE_PROPERTIES = 40026,
  ID_ZP_VIEW_THUMBNAILS = 40027,
  ID_FILE_OPEN = 57601,
  ID_FILE_PRINT = 57607,
  ID_ZP_COMBO_PAGE = 30019,
  ID_ZP_COMBO_SCALE = 30020,
  ID_ZP_SPIN_PAGE = 30021,
  ID_ZP_INDICATOR_ZOOM = 40000,
  ID_ZP_INDICATOR_PAGE = 40001,
  ID_VIEW_TOOLBAR = 59392,
  ID_VIEW_STATUS_BAR = 59393,
  AFX_IDS_IDLEMESSAGE = 57345,
  ID_ZP_TIMER_SAVE_ZOOM = 1011,
};

// Cursors. Each says what a press of the left button would do, or is doing.
enum : UINT {
  IDC_ZP_DRAGGING = 30006,
  IDC_ZP_DRAG = 30007,
  IDC_ZP_ZOOM_IN = 30008,
  IDC_ZP_ZOOM_OUT = 30009,
  IDC_ZP_ZOOM_LIMIT = 30010,  ///< a click can't zoom any further
  IDC_ZP_ZOOM_SELECT = 30012,
};

// Texts that the code names; the rest of the table are prompts of commands.
enum : UINT {
  IDS_ZP_ONE_FILE_ONLY = 30002,
  IDS_ZP_EXPORT_ONE_PAGE = 30044,
  IDS_ZP_EXPORT_DONE = 30045,
  IDS_ZP_COPY_ERROR = 30046,
  IDS_ZP_FILE_COPIED = 30047,
  IDS_ZP_NOT_AVAILABLE = 30059,
};
