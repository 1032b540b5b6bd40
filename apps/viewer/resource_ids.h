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
  IDS_IMAGES_FILTER = 50218,
  IDS_ALL_FILES_FILTER = 50219,
};
