// What is done with the page that a window shows.

#include "clipboard_copy.h"
#include "resources.h"
#include "viewer_page.h"
#include "viewer_window.h"

void CViewerWindow::OnCopy() {
  const CRect part = PageWindow()->SelectedPart();
  if (!CopyToClipboard(*m_pImageWnd, part))
    MessageBox(Text(IDS_COPY_FAILED), AfxGetAppName(), MB_OK | MB_ICONEXCLAMATION);
  else
    SetMessageText(Text(part.IsRectEmpty() != FALSE ? IDS_COPIED_PAGE : IDS_COPIED_PART));
}

void CViewerWindow::OnSelectArea() {
  PageWindow()->ArmSelection();
  SetMessageText(Text(IDS_SELECT_HINT));
}

void CViewerWindow::OnClearSelection() {
  PageWindow()->ClearSelection();
}
