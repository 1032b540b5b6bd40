#pragma once

#include "library/export.h"

/// A frame round an image window that shows the zoom. The window calls it after each zoom by mouse or wheel;
/// a zoom by one of the window's operations is the caller's to show.
class TESSAREL_API CZoomStatusTarget {
 public:
  virtual void UpdateZoomStatus() = 0;

 protected:
  ~CZoomStatusTarget() = default;
};
