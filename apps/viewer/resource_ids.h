#pragma once

#include "tessarel12.h"

// The numbers of the application's commands and texts, beside those of the library.

/// Commands. The string of the same number is the prompt, that of kMenuText the menu's text.
enum : UINT {
  kReload = 50001,
  kNextFile = 50002,
  kPreviousFile = 50003,
  kFullScreen = 50004,
  kCopy = 50005,
  kSelectArea = 50006,
  kClearSelection = 50007,
  kSaveTurned = 50008,
  kPrintPages = 50009,
  kWatchFolder = 50010,
  kOpenNewFiles = 50011,
  kTurnAtEnd = 50012,
  kKeepNoFit = 50020,
  kKeepWidth = 50021,
  kKeepHeight = 50022,
  kKeepPage = 50023,
  kFirstRecent = 50030,
  kLastRecent = 50038,
};

constexpr UINT MenuTextOf(UINT command) {
  return command + 500;
}

enum : std::uintptr_t { kLookTimer = 50150 };

/// Panes of the status bar beside the viewer's own.
enum : UINT { kDamagePane = 50101, kNamePane = 50102, kDpiPane = 50103 };

enum : UINT {
  IDS_EDIT_MENU = 50201,
  IDS_RECENT_MENU = 50202,
  IDS_KEEP_FIT_MENU = 50203,
  IDS_NO_RECENT = 50204,
  IDS_RECENT_ITEM = 50205,
  IDS_DAMAGED_ROW = 50206,
  IDS_DAMAGED_ROWS = 50207,
  IDS_DPI = 50208,
  IDS_DPI_BOTH = 50209,
  IDS_RELOADED = 50210,
  IDS_FILE_GONE = 50211,
  IDS_FILE_UNREADABLE = 50212,
  IDS_COPIED_PAGE = 50213,
  IDS_COPIED_PART = 50214,
  IDS_COPY_FAILED = 50215,
  IDS_SELECT_HINT = 50216,
  IDS_ABOUT = 50217,
  IDS_ALL_FILES_FILTER = 50219,
  IDS_EXPORT_FILTERS = 50220,
  IDS_EXPORTED = 50221,
  IDS_EXPORTED_SEVERAL = 50222,
  IDS_PRINTED = 50223,
  IDS_BAD_PAGES = 50224,
  IDS_PAGES_HINT = 50225,
  IDS_CANT_READ = 50226,
  IDS_CANT_WRITE = 50227,
  IDS_CANT_TURN = 50228,
  IDS_TURNED_NAME = 50229,
  IDS_TURNED_TITLE = 50230,
  IDS_TURNED_SAVED = 50231,
  IDS_NEW_FILE = 50232,
  IDS_NEW_FILES = 50233,
  IDS_OPEN_NEW_FILE = 50234,
  IDS_OPEN_NEW_FILES = 50235,
  IDS_WATCHING = 50236,
  IDS_WATCHING_NO_MORE = 50237,
  IDS_NO_PRINTERS = 50238,
  IDS_REPLACE = 50239,
  IDS_MANY_WINDOWS = 50240,
};

enum : UINT { IDD_EXPORT_PAGES = 50301, IDD_PRINT_PAGES = 50302 };

/// Controls of the dialogs.
enum : int {
  IDC_PAGES_ALL = 1001,
  IDC_PAGES_CURRENT = 1002,
  IDC_PAGES_SOME = 1003,
  IDC_PAGES_EDIT = 1004,
  IDC_PAGES_HINT = 1005,
  IDC_PAGES_PRINTER = 1006,
};
