#pragma once

#include "library/resource_ids.h"
#include "viewing/bars/viewer_bars.h"

// Where the viewers' frames differ in their bars and commands, beside what shows their pages.

/// How the commands of a frame behave and are marked.
struct ViewerKind {
  bool marksFits;       ///< a fit that goes on has its item checked
  bool clicksAreRadio;  ///< the mouse modes have a dot, not a check
  bool scaleFromEntry;  ///< a scale picked from the list is read from its entry, not from the edit field
};

inline constexpr ViewerKind kImageFrame = {false, false, true};
inline constexpr ViewerKind kImageChild = {false, false, false};
inline constexpr ViewerKind kDocumentFrame = {true, true, true};

inline constexpr viewer_bars::ToolBarLook kImageToolBar = {IDB_ZP_VIEWER_TOOLBAR, 50, 102, 4, false};
inline constexpr viewer_bars::ToolBarLook kDocumentToolBar = {IDB_ZP_DOCUMENT_TOOLBAR, 55, 142, 5, true};
