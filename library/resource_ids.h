#pragma once

#include "platform/base/types.h"

// The numbers of commands, controls, panes and texts. A menu item, a toolbar button, a handler and the
// command's prompt in the string table meet on one number.

enum : UINT {
  ID_ZP_ROTATE_LEFT = 40002,         ///< turns the page by 90 degrees to the left
  ID_ZP_ROTATE_RIGHT = 40003,        ///< turns the page by 90 degrees to the right
  ID_ZP_ROTATE_180 = 40004,          ///< turns the page upside down
  ID_ZP_FILE_EXPORT = 40005,         ///< writes the file into another one, after the file dialog
  ID_ZP_ZOOM_IN_MODE = 40007,        ///< a click zooms in by a step
  ID_ZP_ZOOM_FIT_TO_WIDTH = 40008,   ///< fits the width
  ID_ZP_ZOOM_FIT_TO_HEIGHT = 40009,  ///< fits the height
  ID_ZP_ZOOM_BEST_FIT = 40010,       ///< fits the whole page
  ID_ZP_ZOOM_CUSTOM = 40011,         ///< asks for a scale in percent
  ID_ZP_PAGE_PRINT = 40012,          ///< prints the page that is shown on the default printer
  ID_ZP_DRAG_MODE = 40013,           ///< the left button drags the page
  ID_ZP_ZOOM_OUT_MODE = 40014,       ///< a click zooms out by a step
  ID_ZP_ZOOM_SELECTED = 40016,       ///< arms the zoom selection for one drag
  ID_ZP_FIRST_PAGE = 40019,          ///< first page
  ID_ZP_LAST_PAGE = 40020,           ///< last page
  ID_ZP_GOTO_PAGE = 40021,           ///< asks for a page
  ID_ZP_ZOOM_OUT = 40022,            ///< to the next smaller step
  ID_ZP_ZOOM_IN = 40023,             ///< to the next larger step
  ID_ZP_NEXT_PAGE = 40024,           ///< next page
  ID_ZP_PREV_PAGE = 40025,           ///< previous page
  ID_ZP_PAGE_PROPERTIES = 40026,     ///< shows what the file says of the page
  ID_ZP_VIEW_THUMBNAILS = 40027,     ///< shows or hides the strip of thumbnails
  ID_FILE_OPEN = 57601,              ///< asks for a file and opens it
  ID_FILE_PRINT = 57607,             ///< prints the file, after the print dialog
  ID_ZP_COMBO_PAGE = 30019,
  ID_ZP_COMBO_SCALE = 30020,
  ID_ZP_SPIN_PAGE = 30021,
  ID_ZP_INDICATOR_ZOOM = 40000,
  ID_ZP_INDICATOR_PAGE = 40001,
  ID_APP_ABOUT = 57664,        ///< the host's
  ID_APP_EXIT = 57665,         ///< closes the viewer, or the application
  ID_HELP_FINDER = 57667,      ///< the host's
  ID_VIEW_TOOLBAR = 59392,     ///< shows or hides the toolbar
  ID_VIEW_STATUS_BAR = 59393,  ///< shows or hides the status bar
  ID_ZP_TIMER_SAVE_ZOOM = 1011,
};

// Texts beside the prompts of commands, whose numbers are the commands'. Not all are shown by the library.
enum : UINT {
  IDS_ZP_ONE_FILE_ONLY = 30002,
  IDS_ZP_EXPORT_TITLE = 30035,
  IDS_ZP_PRINTING = 30036,
  IDS_ZP_OVERWRITE = 30037,
  IDS_ZP_ZOOM_RULER = 30038,  ///< never shown: as wide as the zoom pane
  IDS_ZP_PAGE_RULER = 30039,  ///< never shown: as wide as the page pane
  IDS_ZP_NO_SUCH_PAGE = 30040,
  IDS_ZP_OPENING = 30041,
  IDS_ZP_EXPORTING = 30042,
  IDS_ZP_SCALE_OUT_OF_RANGE = 30043,
  IDS_ZP_EXPORT_ONE_PAGE = 30044,
  IDS_ZP_EXPORT_DONE = 30045,
  IDS_ZP_COPY_ERROR = 30046,
  IDS_ZP_FILE_COPIED = 30047,
  IDS_ZP_PRINT_UNKNOWN = 30048,
  IDS_ZP_NOT_PRINTABLE = 30049,
  IDS_ZP_NO_PRINTER_DC = 30050,
  IDS_ZP_NO_DEFAULT_PRINTER = 30051,
  IDS_ZP_NO_DEVICE_BITMAP = 30052,
  IDS_ZP_SPOOLER_UNKNOWN = 30053,
  IDS_ZP_SPOOLER_NO_DETAILS = 30054,
  IDS_ZP_PRINT_NO_MEMORY = 30055,
  IDS_ZP_PRINT_NO_DISK = 30056,
  IDS_ZP_SPOOLER_ENDED = 30057,
  IDS_ZP_PRINT_ERROR = 30058,
  IDS_ZP_NOT_AVAILABLE = 30059,
  IDS_ZP_PRINT_ABORTED = 40030,
  IDS_ZP_NO_STRIP = 40031,
  IDS_ZP_NO_DETAILS = 40032,
  IDS_ZP_PAGE_CAPTION = 40033,
  IDS_ZP_PAGE_UNSUPPORTED = 40034,
  IDS_ZP_PRINT_NO_ANSWER = 41001,
  IDS_ZP_JOB_STOPPED = 41002,
  IDS_ZP_JOB_CANCELLED = 41003,
  IDS_ZP_JOB_REFUSED = 41004,
  IDS_ZP_PAGE_COMBO_NAME = 41005,   ///< what a screen reader calls the combo
  IDS_ZP_SCALE_COMBO_NAME = 41006,  ///< the same
  // How far a command has come: page %1 of %2
  IDS_ZP_OPENING_PAGE = 41007,
  IDS_ZP_EXPORTING_PAGE = 41008,
  IDS_ZP_PRINTING_PAGE = 41009,
  IDS_ZP_STRIP_PAGE = 41010,
};

// Menus, dialogs and pictures. Kinds count apart, so a menu, a cursor and an icon may have one number.
enum : UINT {
  IDR_ZP_VIEWER = 30001,  ///< menu and icon of the viewer frames
  IDR_ZP_HOST = 30006,    ///< menu for a host that opens files itself; icon of the document's frames
  IDR_ZP_CONTEXT = 30005,
  IDB_ZP_VIEWER_TOOLBAR = 30004,
  IDB_ZP_DOCUMENT_TOOLBAR = 1012,
  IDC_ZP_CURSOR_GRABBING = 30006,
  IDC_ZP_CURSOR_HAND = 30007,
  IDC_ZP_CURSOR_ZOOM_IN = 30008,
  IDC_ZP_CURSOR_ZOOM_OUT = 30009,
  IDC_ZP_CURSOR_ZOOM_LIMIT = 30010,
  IDC_ZP_CURSOR_SELECT = 30012,
  IDD_ZP_GOTO_PAGE = 30003,
  IDD_ZP_CUSTOM_ZOOM = 30011,
  IDD_ZP_PROPERTIES = 30023,
  IDD_ZP_PRINT_FORMAT = 1000,
  IDD_ZP_PRINT_ABORT = 1009,
};

// Controls of the dialogs; an id counts within its dialog only.
enum : int {
  IDC_ZP_STATIC = -1,      ///< a text or box that no code names
  IDC_ZP_CANCEL = 40017,   ///< of the go-to and the zoom dialog, which don't use IDCANCEL
  IDC_ZP_ZOOM_OK = 40014,  ///< of the zoom dialog, which doesn't use IDOK
  IDC_ZP_GOTO_FIRST = 30013,
  IDC_ZP_GOTO_LAST = 30014,
  IDC_ZP_GOTO_NUMBER = 30015,
  IDC_ZP_GOTO_EDIT = 30016,
  IDC_ZP_GOTO_SPIN_PLACE = 30017,  ///< lends its rectangle to the spin control ID_ZP_SPIN_PAGE
  IDC_ZP_ZOOM_PERCENT = 30018,
  IDC_ZP_FILE_SIZE = 30024,
  IDC_ZP_FILE_PAGES = 30025,
  IDC_ZP_FILE_FORMAT = 30026,
  IDC_ZP_PAGE_NUMBER = 30027,
  IDC_ZP_PAGE_COMPRESSION = 30028,
  IDC_ZP_PAGE_BITS = 30029,
  IDC_ZP_FILE_PATH = 30030,
  IDC_ZP_FILE_NAME = 30031,
  IDC_ZP_PAGE_PIXELS = 30032,
  IDC_ZP_PAGE_RESOLUTION = 30033,
  IDC_ZP_PAGE_REAL_SIZE = 30034,
  IDC_ZP_FORMAT_FIT = 1000,
  IDC_ZP_FORMAT_REAL = 1001,
  IDC_ZP_FORMAT_PIXELS = 1002,
  IDC_ZP_ABORT_CANCEL = 1007,
  IDC_ZP_PRINT_FORMAT = 1000,  ///< of the print dialog: opens the print format dialog
};
