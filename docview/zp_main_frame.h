#pragma once

#include "controls/separators_hiding_tool_bar.h"
#include "docview/zp_frame.h"
#include "library/export.h"
#include "platform/framework/mdi_wnd.h"
#include "platform/framework/status_bar.h"
#include "viewing/bars/combo_page_num.h"
#include "viewing/bars/combo_scale.h"

/// A main window of documents: it has the bars, asks for files to open, and tells of failures. CZPmdiFrame
/// and CZPsdiFrame are made of it. Its construction makes it the process's reporter of failures.
///
/// A host may build other bars by overriding the two operations that make them; the members have to hold
/// them.
template <typename Base>
class CZPMainFrame : public Base {
 public:
  CComboPageNum m_wndComboPage;
  CComboScale m_wndComboScale;
  CFont m_fontCombos;
  CStatusBar m_wndStatusBar;
  CSeparatorsHidingToolBar m_wndToolBar;
  CString m_strFilter;  ///< of the dialog that asks for a file

  /// A message box with code and text, or with a text of its own if there is none. Nothing for a job that the
  /// user ended.
  static void ReportErrorDefault(int nCode, CString strText);

 protected:
  CZPMainFrame();
  ~CZPMainFrame() override = default;

  /// 1 for success; else the frame isn't made.
  virtual int CreateToolBar();
  virtual int CreateStatusBar();

  int OnCreate(LPCREATESTRUCT cs);
  /// Asks for a file and opens it. Nothing unless the host has allowed files to be opened.
  void OnFileOpen();
  void OnUpdateFileOpen(CCmdUI* ui);

  DECLARE_MESSAGE_MAP()
};

extern template class TESSAREL_API CZPMainFrame<CMDIFrameWnd>;
extern template class TESSAREL_API CZPMainFrame<CZPFrame<CFrameWnd>>;
