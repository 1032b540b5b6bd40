#pragma once

#include "frames/viewer_frame.h"
#include "platform/framework/cmd_ui.h"

// The viewer frame's print commands. The image window prints and tells of failures. For the sources of the
// two frames.

template <typename Base>
void CViewerFrame<Base>::OnFilePrint() {
  if (m_pImageWnd != nullptr) m_pImageWnd->PrintCurFile(this, false);
}

template <typename Base>
void CViewerFrame<Base>::OnPagePrint() {
  if (m_pImageWnd != nullptr) m_pImageWnd->PrintCurrentPage();
}

template <typename Base>
void CViewerFrame<Base>::OnUpdateFilePrint(CCmdUI* ui) {
  EnableWithPage(ui);
}

template <typename Base>
void CViewerFrame<Base>::OnUpdatePagePrint(CCmdUI* ui) {
  OnUpdateFilePrint(ui);
}
