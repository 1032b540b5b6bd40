#pragma once

#include "library/export.h"

/// A view that keeps a pointer to a page's bitmap between its document's hints. A host's own kind of view
/// derives from it too.
class TESSAREL_API CZPBitmapBorrower {
 public:
  /// The document's bitmaps are about to go. Until the next hint there is nothing to show: a paint may come
  /// before it, while a page waits for a slow source for example.
  virtual void ForgetBitmap() = 0;

 protected:
  ~CZPBitmapBorrower() = default;
};
