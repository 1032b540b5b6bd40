#pragma once

#include "docview/zp_main_frame.h"

/// The main window of a multiple-document viewer, whose bars its CZPmdiChild windows share.
class TESSAREL_API CZPmdiFrame : public CZPMainFrame<CMDIFrameWnd> {
  DECLARE_DYNCREATE(CZPmdiFrame)
 public:
  CZPmdiFrame() = default;

 protected:
  ~CZPmdiFrame() override = default;

  /// Asked only while no document window is active: empties the bars then.
  void OnUpdateZpDragMode(CCmdUI* ui);

  DECLARE_MESSAGE_MAP()
};
