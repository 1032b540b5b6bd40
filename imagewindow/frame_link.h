#pragma once

#include "library/export.h"

/// A frame round an image window, as the window knows it: its parent, or its parent's parent where it sits in
/// the pane of a splitter.
class TESSAREL_API CImageWindowFrame {
 public:
  /// Called after each zoom by mouse or wheel, to show it; a zoom by one of the window's operations is the
  /// caller's to show.
  virtual void UpdateZoomStatus() = 0;
  /// Called for a file dropped on the window. The frame opens it as if the user had chosen it, or gives false
  /// to let the window open it alone.
  virtual bool OpenDroppedFile(const char* path) = 0;

 protected:
  ~CImageWindowFrame() = default;
};

/// WM_COMMAND of an image window to its parent, with the window's id: it has opened a file that was dropped
/// on it, and no frame did. GetCurrPage tells whether it shows.
enum : unsigned { ZPN_FILE_DROPPED = 0x0500 };
