#pragma once

#include "frames/viewer_frame.h"

/// The viewer as a document window of a host's multiple-document frame, which must be the parent.
class TESSAREL_API CImageMDIChild : public CViewerFrame<CMDIChildWnd> {
  DECLARE_DYNCREATE(CImageMDIChild)
 public:
  CImageMDIChild() = default;

  /// Shows a file in a viewer on top of the parent, which is disabled meanwhile, and returns when the user
  /// has closed it. path null: he is asked for one. False if nothing was shown.
  static bool DoModalViewer(CWnd* parent, const char* path, const char* title);
  /// The same for a file image in memory, which must live as long. The parent stays enabled.
  static bool DoModalViewer(CWnd* parent, void* block, unsigned long size, const char* title);

 protected:
  ~CImageMDIChild() override = default;
};
