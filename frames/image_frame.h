#pragma once

#include "frames/viewer_frame.h"

/// The viewer as a window of its own. A host keeps it like any frame, or runs it in one call.
class TESSAREL_API CImageFrame : public CViewerFrame<CFrameWnd> {
  DECLARE_DYNCREATE(CImageFrame)
 public:
  CImageFrame() = default;

  /// Shows a file in a viewer on top of the parent, which is disabled meanwhile, and returns when the user
  /// has closed it. path null: he is asked for one. False if nothing was shown.
  static bool DoModalViewer(CWnd* parent, const char* path, const char* title);
  /// The same for a file image in memory, which must live as long. The parent stays enabled.
  static bool DoModalViewer(CWnd* parent, void* block, unsigned long size, const char* title);

 protected:
  ~CImageFrame() override = default;
};
