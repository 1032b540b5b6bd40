#pragma once

#include <cstring>
#include <vector>

#include "frames/detail/modal_block.h"
#include "frames/viewer_frame.h"
#include "library/resource_ids.h"
#include "platform/base/file.h"
#include "platform/framework/app.h"
#include "platform/framework/cmd_ui.h"
#include "platform/framework/file_dialog.h"
#include "platform/framework/message_box.h"
#include "platform/framework/object_hold.h"
#include "platform/framework/thread.h"
#include "viewing/bars/viewer_bars.h"
#include "viewing/commands/open_filter.h"
#include "viewing/long_command.h"

// How something gets into the viewer frame and out of it: opening, modal viewing, closing, export. For the
// sources of the two frames.

namespace viewer_open {

// Pairs of text and pattern, each closed by a 0; the literal's own 0 closes the list.
inline constexpr char kExportFilter[] = "TIFF file\0*.tif\0Windows bitmap\0*.bmp\0";
inline constexpr std::size_t kLongestPath = 4096;
inline constexpr DWORD kTifFilter = 1;
inline constexpr DWORD kViewerStyle = WS_OVERLAPPEDWINDOW | FWS_ADDTOTITLE;

}  // namespace viewer_open

// Opening

template <typename Base>
bool CViewerFrame<Base>::AskForFile(CString* path) {
  CFileDialog dialog(TRUE, nullptr, nullptr, OFN_HIDEREADONLY | OFN_OVERWRITEPROMPT, kOpenFilter, this);
  dialog.m_ofn.Flags |= OFN_PATHMUSTEXIST | OFN_FILEMUSTEXIST;
  std::vector<char> name(viewer_open::kLongestPath);
  dialog.m_ofn.lpstrFile = name.data();
  dialog.m_ofn.nMaxFile = static_cast<DWORD>(name.size());
  if (dialog.DoModal() != IDOK) return false;
  *path = dialog.m_ofn.lpstrFile;
  return true;
}

template <typename Base>
bool CViewerFrame<Base>::OpenImageFile(const char* path) {
  const platform::ObjectHold hold(this);
  CString name(path);
  if (path == nullptr && !AskForFile(&name)) return true;
  if (IsGone()) return false;
  const LongCommand command(this, IDS_ZP_OPENING_PAGE);
  this->BeginWaitCursor();
  const bool opened = m_pImageWnd->OpenImageFile(name);
  this->EndWaitCursor();
  return opened ? ShowOpened() : FailedOpen();
}

template <typename Base>
bool CViewerFrame<Base>::OpenImageMemory(void* block, unsigned long size) {
  const platform::ObjectHold hold(this);
  if (IsGone()) return false;
  const LongCommand command(this, IDS_ZP_OPENING_PAGE);
  this->BeginWaitCursor();
  const bool opened = m_pImageWnd->OpenImageMemory(block, size);
  this->EndWaitCursor();
  return opened ? ShowOpened() : FailedOpen();
}

template <typename Base>
bool CViewerFrame<Base>::OpenDroppedFile(const char* path) {
  OpenImageFile(path);  // a failure is told and shown already
  return true;
}

template <typename Base>
bool CViewerFrame<Base>::ShowsPicture() const {
  return m_pImageWnd != nullptr && (m_pImageWnd->m_Bitmap.Flags & leadtools12::kAllocated) != 0;
}

template <typename Base>
bool CViewerFrame<Base>::FailedOpen() {
  // Or the report has opened something else, which the bars show.
  if (IsGone() || ShowsPicture()) return false;
  Clear();
  LEADTOOLS::ImgListClear(m_pThumbsWnd->m_hWnd);
  return false;
}

template <typename Base>
bool CViewerFrame<Base>::ShowOpened() {
  if (IsGone()) return false;
  ShowMessage(IDS_ZP_OPENING);
  m_bThumbsCreated = FALSE;
  if (m_bThumbsVisible != FALSE) FillThumbs();
  if (IsGone()) return false;
  const bool loaded = m_pImageWnd->LoadPage(1);
  if (IsGone()) return false;
  if (!loaded) {
    if (!ShowsPicture()) Clear();
    return false;
  }
  viewer_bars::ShowScale(CommandBars(), m_pImageWnd->GetScalePercent(), FALSE);
  EnablePane(ID_ZP_INDICATOR_ZOOM, true);
  viewer_bars::ShowPagePane(m_wndStatusBar, this->Page(), this->Pages(), FALSE);
  EnablePane(ID_ZP_INDICATOR_PAGE, true);
  if (this->Pages() < 2) {
    m_pImageWnd->SetFocus();
    m_wndComboPage.SendMessage(CB_RESETCONTENT);
    m_wndComboPage.EnableWindow(FALSE);
  } else {
    InitPageComboBox(this->Pages());
    m_wndComboPage.EnableWindow(TRUE);
    m_wndComboPage.Invalidate();
  }
  m_wndComboScale.EnableWindow(TRUE);
  m_pImageWnd->Invalidate();
  ShowMessage(AFX_IDS_IDLEMESSAGE);
  if (m_pImageWnd->m_nMouseMode == MouseModeNone) m_pImageWnd->SetMouseMode(MouseModeDrag);
  return true;
}

// Modal viewing

template <typename Base>
bool CViewerFrame<Base>::RunModal(CViewerFrame* frame, CWnd* parent, const char* title, bool disableParent,
                                  const std::function<bool()>& open) {
  if (frame->LoadFrame(IDR_ZP_VIEWER, viewer_open::kViewerStyle, parent, nullptr) == FALSE) return false;
  const platform::ObjectHold hold(frame);
  frame->SetWindowText(title);
  frame->m_strTitle = title;  // stays: the frame puts no other one over it
  if (!open() || frame->m_hWnd == nullptr) {
    frame->DestroyWindow();
    return false;
  }
  frame->ShowWindow(SW_SHOW);
  if constexpr (Traits::kHasSiblings) frame->MDIActivate();
  frame->UpdateWindow();
  const HWND above = ::GetParent(frame->m_hWnd);
  ModalBlock block;
  if (disableParent && parent != nullptr) block.Block(frame->m_hWnd, parent->m_hWnd);
  frame->m_bModal = true;
  const bool alive = frame->DoModalLoop();
  // Before the frame goes, so that the desktop makes the parent the active window.
  block.Release();
  if (alive) {
    frame->m_bModal = false;
    frame->DestroyWindow();
  }
  // It was hidden while none of its siblings could come up in its place.
  if (Traits::kHasSiblings && ::SendMessage(above, WM_MDIGETACTIVE) == 0) ::SendMessage(above, WM_MDINEXT);
  return true;
}

template <typename Base>
bool CViewerFrame<Base>::RunModalFile(CViewerFrame* frame, CWnd* parent, const char* path,
                                      const char* title) {
  return RunModal(frame, parent, title, true, [=] { return frame->OpenImageFile(path); });
}

template <typename Base>
bool CViewerFrame<Base>::RunModalMemory(CViewerFrame* frame, CWnd* parent, void* block, unsigned long size,
                                        const char* title) {
  // The parent stays enabled: the host goes on with this viewer beside it.
  return RunModal(frame, parent, title, false, [=] { return frame->OpenImageMemory(block, size); });
}

template <typename Base>
bool CViewerFrame<Base>::DoModalLoop() {
  const HWND self = this->m_hWnd;
  const auto alive = [self] { return ::IsWindow(self) != FALSE; };
  const auto ended = [this] {
    if (this->ContinueModal() != FALSE) return false;
    this->m_nFlags &= ~(WF_MODALLOOP | WF_CONTINUEMODAL);
    return true;
  };
  HWND owner = ::GetParent(self);
  if (owner == nullptr) owner = ::GetWindow(self, GW_OWNER);
  this->m_nFlags |= WF_MODALLOOP | WF_CONTINUEMODAL;
  CWinThread* thread = AfxGetThread();
  MSG* message = &thread->m_msgCur;
  for (;;) {
    // The queue waits a little within each look, so that this loop leaves the processor alone.
    while (PeekMessageA(message, nullptr, 0, 0, PM_NOREMOVE) == FALSE) {
      if (owner != nullptr)
        ::SendMessage(owner, WM_ENTERIDLE, MSGF_DIALOGBOX, reinterpret_cast<LPARAM>(self));
      if (!alive()) return false;
      if (ended()) return true;  // by a loop that ran within
    }
    do {
      if (thread->PumpMessage() == FALSE) {
        AfxPostQuitMessage(0);
        return alive();
      }
      if (!alive()) return false;
      if (ended()) return true;
      // The host's idle work doesn't run while this loop has the thread.
      if (thread->IsIdleMessage(message) != FALSE) {
        this->OnIdleUpdateCmdUI();
        m_wndToolBar.OnUpdateCmdUI(this, TRUE);
      }
    } while (PeekMessageA(message, nullptr, 0, 0, PM_NOREMOVE) != FALSE);
  }
}

template <typename Base>
void CViewerFrame<Base>::OnClose() {
  EndPanes();
  if (!m_bModal) {
    CFrameWnd::OnClose();
    return;
  }
  this->EndModalLoop(0);
  // A loop that runs within this one, of another viewer for example, may keep it for a while.
  this->ShowWindow(SW_HIDE);
}

template <typename Base>
bool CViewerFrame<Base>::ExitElsewhere() {
  if constexpr (Traits::kHasSiblings) {
    // Past the main window's own routing, which would come back here.
    CMDIFrameWnd* const main = this->GetMDIFrame();
    if (main != nullptr && main->CFrameWnd::OnCmdMsg(ID_APP_EXIT, CN_COMMAND, nullptr, nullptr) != FALSE)
      return true;
  }
  CWinApp* const app = AfxGetApp();
  return app != nullptr && app->OnCmdMsg(ID_APP_EXIT, CN_COMMAND, nullptr, nullptr) != FALSE;
}

template <typename Base>
void CViewerFrame<Base>::OnAppExit() {
  if (m_bModal || !ExitElsewhere()) this->PostMessage(WM_CLOSE);
}

// Export

template <typename Base>
void CViewerFrame<Base>::OnFileExport() {
  if (m_pImageWnd == nullptr) return;
  CFileDialog dialog(FALSE, nullptr, nullptr, OFN_HIDEREADONLY | OFN_OVERWRITEPROMPT, nullptr, this);
  dialog.m_ofn.Flags |= OFN_OVERWRITEPROMPT | OFN_PATHMUSTEXIST;
  dialog.m_ofn.lpstrFilter = viewer_open::kExportFilter;
  std::vector<char> name(viewer_open::kLongestPath);
  dialog.m_ofn.lpstrFile = name.data();
  dialog.m_ofn.nMaxFile = static_cast<DWORD>(name.size());
  CString title;
  title.LoadString(IDS_ZP_EXPORT_TITLE);
  dialog.m_ofn.lpstrTitle = title;
  if (dialog.DoModal() != IDOK || IsGone()) return;
  ShowMessage(IDS_ZP_EXPORTING);
  CString path = dialog.m_ofn.lpstrFile;
  const char* wanted = dialog.m_ofn.nFilterIndex == viewer_open::kTifFilter ? "tif" : "bmp";
  const char* extension = dialog.m_ofn.lpstrFile + dialog.m_ofn.nFileExtension;
  bool agreed = true;
  if (CString(extension).CompareNoCase(wanted) != 0) {
    // The dialog asked about the name without the extension.
    path += CString(".") + wanted;
    CFileStatus status;
    agreed = CFile::GetStatus(path, status) == FALSE ||
             AfxMessageBox(IDS_ZP_OVERWRITE, MB_YESNO | MB_ICONEXCLAMATION) != IDNO;
  }
  if (IsGone()) return;
  if (agreed) {
    this->BeginWaitCursor();
    m_pImageWnd->ExportAs(path);
    this->EndWaitCursor();
  }
  ShowMessage(AFX_IDS_IDLEMESSAGE);
}

template <typename Base>
void CViewerFrame<Base>::OnUpdateFileExport(CCmdUI* ui) {
  this->Enable(ui, this->IsShown());
}
