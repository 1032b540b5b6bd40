#include "docview/zp_mdi_frame.h"

#include "docview/detail/zp_main_frame_def.h"

template class CZPMainFrame<CMDIFrameWnd>;

IMPLEMENT_DYNCREATE(CZPmdiFrame, CMDIFrameWnd)

BEGIN_MESSAGE_MAP(CZPmdiFrame, CZPMainFrame<CMDIFrameWnd>)
ON_UPDATE_COMMAND_UI(ID_ZP_DRAG_MODE, OnUpdateZpDragMode)
END_MESSAGE_MAP()

void CZPmdiFrame::OnUpdateZpDragMode(CCmdUI*) {
  for (CWnd* combo : {static_cast<CWnd*>(&m_wndComboPage), static_cast<CWnd*>(&m_wndComboScale)}) {
    if (combo->m_hWnd == nullptr) continue;
    combo->SetWindowText("");
    combo->EnableWindow(FALSE);
  }
  viewer_bars::EnablePane(m_wndStatusBar, ID_ZP_INDICATOR_PAGE, false);
  viewer_bars::EnablePane(m_wndStatusBar, ID_ZP_INDICATOR_ZOOM, false);
  // But for the first, which nobody handles now and which is grey for that reason.
  for (std::size_t i = 1; i < viewer_bars::kButtons.size(); ++i)
    m_wndToolBar.SendMessage(TB_SETSTATE, viewer_bars::kButtons[i], 0);
}
