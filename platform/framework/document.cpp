#include "platform/framework/document.h"

#include <unistd.h>

#include <algorithm>
#include <filesystem>
#include <vector>

#include "platform/base/file.h"
#include "platform/base/path.h"
#include "platform/base/translation.h"
#include "platform/framework/detail/list_walk.h"
#include "platform/framework/doc_template.h"
#include "platform/framework/file_dialog.h"
#include "platform/framework/frame_wnd.h"
#include "platform/framework/message_box.h"
#include "platform/framework/object_hold.h"
#include "platform/framework/view.h"

IMPLEMENT_DYNAMIC(CDocument, CCmdTarget)

CDocument::~CDocument() {
  for (CView* view : m_views) view->m_pDocument = nullptr;
  if (m_pDocTemplate != nullptr) m_pDocTemplate->RemoveDocument(this);
}

void CDocument::SetTitle(LPCTSTR title) {
  m_strTitle = CString(title);  // a copy first: it may be the title's own text
  UpdateFrameCounts();
}

void CDocument::SetPathName(LPCTSTR path, BOOL) {
  const CString given(path);
  std::error_code failed;
  const auto full = std::filesystem::absolute(static_cast<LPCTSTR>(given), failed);
  m_strPathName = given.IsEmpty() != 0 || failed ? given : CString(full.lexically_normal().c_str());
  SetTitle(platform::SplitPath(static_cast<LPCTSTR>(given)).name.c_str());
}

// Views

void CDocument::AddView(CView* view) {
  m_views.push_back(view);
  view->m_pDocument = this;
  OnChangedViewList();
}

void CDocument::RemoveView(CView* view) {
  m_views.remove(view);
  view->m_pDocument = nullptr;
  OnChangedViewList();  // this object may be gone
}

POSITION CDocument::GetFirstViewPosition() const {
  return platform::FirstPlace(m_views);
}

CView* CDocument::GetNextView(POSITION& position) const {
  return platform::NextEntry(m_views, position);
}

void CDocument::UpdateAllViews(CView* sender, LPARAM hint, CObject* hintObject) {
  const platform::ObjectHold hold(this);
  // Of a list that may change: a view that reports a failure lets the user close any of them.
  const std::vector<CView*> views(m_views.begin(), m_views.end());
  for (CView* view : views) {
    if (view == sender || std::find(m_views.begin(), m_views.end(), view) == m_views.end()) continue;
    const platform::ObjectHold holdView(view);
    view->OnUpdate(sender, hint, hintObject);
  }
}

namespace {

/// The frames of a document, each once, in the order of its views.
std::vector<CFrameWnd*> FramesOf(const CDocument& document) {
  std::vector<CFrameWnd*> frames;
  POSITION position = document.GetFirstViewPosition();
  while (position != nullptr) {
    const CView* view = document.GetNextView(position);
    CFrameWnd* frame = view == nullptr || view->m_hWnd == nullptr ? nullptr : view->GetParentFrame();
    if (frame != nullptr && std::find(frames.begin(), frames.end(), frame) == frames.end())
      frames.push_back(frame);
  }
  return frames;
}

}  // namespace

void CDocument::UpdateFrameCounts() {
  const std::vector<CFrameWnd*> frames = FramesOf(*this);
  int number = 1;
  for (CFrameWnd* frame : frames) {
    frame->m_nWindow = frames.size() == 1 ? -1 : number++;
    frame->OnUpdateFrameTitle(TRUE);
  }
}

void CDocument::OnChangedViewList() {
  if (m_views.empty() && m_bAutoDelete != 0)
    OnCloseDocument();
  else
    UpdateFrameCounts();
}

// Its life

BOOL CDocument::OnNewDocument() {
  DeleteContents();
  m_strPathName.Empty();
  SetModifiedFlag(FALSE);
  return TRUE;
}

BOOL CDocument::OnOpenDocument(LPCTSTR path) {
  CFileStatus status{};
  const bool there = CFile::GetStatus(path, status) != 0 && (status.m_attribute & CFile::directory) == 0;
  if (!there || ::access(path, R_OK) != 0) {
    AfxMessageBox(
        CString(path) + CString(platform::Localized("\nIl file non esiste o non può essere letto.")),
        MB_ICONEXCLAMATION);
    return FALSE;
  }
  DeleteContents();
  SetModifiedFlag(FALSE);
  return TRUE;
}

BOOL CDocument::OnSaveDocument(LPCTSTR) {
  return FALSE;
}

void CDocument::OnCloseDocument() {
  // The end of the last view shall not end the object under our feet.
  const BOOL autoDelete = m_bAutoDelete;
  m_bAutoDelete = FALSE;
  while (!m_views.empty()) {
    CView* view = m_views.front();
    CFrameWnd* frame = view->m_hWnd == nullptr ? nullptr : view->GetParentFrame();
    if (frame == nullptr) {
      RemoveView(view);  // in a window that isn't ours to close
      continue;
    }
    PreCloseFrame(frame);
    frame->DestroyWindow();
  }
  m_bAutoDelete = autoDelete;
  DeleteContents();
  if (m_bAutoDelete == 0) return;
  // At once, though a call of its own may keep the object for a while.
  if (m_pDocTemplate != nullptr) m_pDocTemplate->RemoveDocument(this);
  platform::DeleteWhenFree(this);
}

BOOL CDocument::CanCloseFrame(CFrameWnd* frame) {
  for (const CFrameWnd* other : FramesOf(*this))
    if (other != frame) return TRUE;
  return SaveModified();
}

BOOL CDocument::SaveModified() {
  if (IsModified() == 0) return TRUE;
  const CString question =
      CString(platform::Localized("Salvare le modifiche a ")) + m_strTitle + CString("?");
  switch (AfxMessageBox(question, MB_YESNOCANCEL | MB_ICONEXCLAMATION)) {
    case IDYES:
      return DoSave(m_strPathName);
    case IDNO:
      return TRUE;
    default:
      return FALSE;
  }
}

BOOL CDocument::DoSave(LPCTSTR path) {
  CString target(path);
  if (target.IsEmpty() != 0) {
    CFileDialog dialog(FALSE, nullptr, m_strTitle,
                       OFN_HIDEREADONLY | OFN_OVERWRITEPROMPT | OFN_PATHMUSTEXIST);
    if (dialog.DoModal() != IDOK) return FALSE;
    target = dialog.GetPathName();
  }
  if (OnSaveDocument(target) == 0) return FALSE;
  SetModifiedFlag(FALSE);
  SetPathName(target);
  return TRUE;
}

BOOL CDocument::OnCmdMsg(UINT id, int code, void* extra, void* handlerInfo) {
  if (CCmdTarget::OnCmdMsg(id, code, extra, handlerInfo) != 0) return TRUE;
  return m_pDocTemplate != nullptr && m_pDocTemplate->OnCmdMsg(id, code, extra, handlerInfo) != 0;
}
