#pragma once

// A frame with a toolbar whose gaps hold two windows, a status bar and a splitter, as the viewer's frames
// have.

#include <memory>
#include <string>

#include "platform/framework/frame_wnd.h"
#include "platform/framework/splitter_wnd.h"
#include "platform/framework/status_bar.h"
#include "platform/framework/tool_bar.h"
#include "platform/graphics/image_list.h"
#include "platform/resources/resource_tables.h"

namespace bars_test {

enum : UINT {
  kPrint = 57607,
  kPrevious = 40025,
  kNext = 40024,
  kDrag = 40013,
  kThumbnails = 40027,
  kPageControl = 30019,
  kScaleControl = 30020,
  kZoomPane = 40000,
  kPagePane = 40001,
};

/// Index of the gap that holds the page control.
constexpr int kPageGap = 4;
constexpr int kScaleGap = 6;
constexpr UINT kToolbarStyle = 0x50402834;
constexpr UINT kStatusBarStyle = 0x50008200;

class Pane : public CWnd {
  DECLARE_DYNCREATE(Pane)
 protected:
  void PostNcDestroy() override { delete this; }  // as views do
  void OnPaint();
  DECLARE_MESSAGE_MAP()
};

/// Gives access to what derived classes see.
class Splitter : public CSplitterWnd {
 public:
  using CSplitterWnd::m_cxSplitter;
  using CSplitterWnd::m_nCols;
  using CSplitterWnd::m_pColInfo;
};

class Frame : public CFrameWnd {
 public:
  CToolBar toolbar;
  CStatusBar status;
  Splitter splitter;
  CWnd page;
  CWnd scale;
  CImageList images;
  std::string trace;
  bool hasPage = true;
  int mode = 0;

  /// Shown, laid out and idle. The frame deletes itself with its window.
  static Frame* Show(int width, int height);

 protected:
  int OnCreate(LPCREATESTRUCT cs);
  BOOL OnCreateClient(LPCREATESTRUCT cs, CCreateContext* context) override;
  void MakeToolbar();
  void MakeStatusBar();
  void OnPrint() { trace += "P"; }
  void OnNext() { trace += "N"; }
  void OnPageChosen() { trace += "C"; }
  void OnUpdateNext(CCmdUI* item);
  void OnUpdateDrag(CCmdUI* item);
  DECLARE_MESSAGE_MAP()
};

}  // namespace bars_test
