#pragma once

#include "docview/zp_main_frame.h"
#include "library/library_entry.h"
#include "library/report_error.h"
#include "platform/framework/app.h"
#include "platform/framework/cmd_ui.h"
#include "platform/framework/file_dialog.h"
#include "viewing/bars/viewer_bars.h"
#include "viewing/commands/open_filter.h"
#include "viewing/commands/viewer_kinds.h"

// How a main window of documents works. For the sources of the two frames.

namespace main_frame {

inline constexpr DWORD kOpenFlags =
    OFN_FILEMUSTEXIST | OFN_PATHMUSTEXIST | OFN_HIDEREADONLY | OFN_OVERWRITEPROMPT;

}  // namespace main_frame

template <typename Base>
CZPMainFrame<Base>::CZPMainFrame() : m_strFilter(kOpenFilter) {
  g_pfnReportError = &CZPMainFrame::ReportErrorDefault;
}

template <typename Base>
void CZPMainFrame<Base>::ReportErrorDefault(int nCode, CString strText) {
  if (strText.IsEmpty() != FALSE) strText.LoadString(IDS_ZP_NO_DETAILS);
  ShowErrorBox(nCode, strText);
}

// Bars

template <typename Base>
int CZPMainFrame<Base>::OnCreate(LPCREATESTRUCT cs) {
  if (Base::OnCreate(cs) == -1) return -1;
  if (CreateToolBar() == 0 || CreateStatusBar() == 0) return -1;
  viewer_bars::DockToolBar(this, m_wndToolBar);
  return 0;
}

template <typename Base>
int CZPMainFrame<Base>::CreateToolBar() {
  return viewer_bars::CreateToolBar(this, {m_wndToolBar, m_wndComboPage, m_wndComboScale, m_fontCombos},
                                    kDocumentToolBar)
             ? 1
             : 0;
}

template <typename Base>
int CZPMainFrame<Base>::CreateStatusBar() {
  return viewer_bars::CreateStatusBar(this, m_wndStatusBar) ? 1 : 0;
}

// Opening

template <typename Base>
void CZPMainFrame<Base>::OnFileOpen() {
  if (g_bFilesOpeningEnabled == 0) return;
  CFileDialog dialog(TRUE, nullptr, nullptr, main_frame::kOpenFlags, m_strFilter, nullptr);
  if (dialog.DoModal() != IDOK) return;
  const CWaitCursor wait;
  this->UpdateWindow();
  if (CWinApp* app = AfxGetApp()) app->OpenDocumentFile(dialog.GetPathName());
}

template <typename Base>
void CZPMainFrame<Base>::OnUpdateFileOpen(CCmdUI* ui) {
  ui->Enable(g_bFilesOpeningEnabled);
}

BEGIN_TEMPLATE_MESSAGE_MAP(CZPMainFrame, Base, Base)
ON_WM_CREATE()
ON_COMMAND(ID_FILE_OPEN, OnFileOpen)
ON_UPDATE_COMMAND_UI(ID_FILE_OPEN, OnUpdateFileOpen)
END_MESSAGE_MAP()
