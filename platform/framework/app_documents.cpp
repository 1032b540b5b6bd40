// The application and its documents.

#include "platform/base/translation.h"
#include "platform/framework/app.h"
#include "platform/framework/detail/list_walk.h"
#include "platform/framework/doc_template.h"
#include "platform/framework/document.h"
#include "platform/framework/file_dialog.h"
#include "platform/framework/frame_wnd.h"
#include "platform/framework/message_box.h"
#include "platform/framework/view.h"

namespace {

constexpr UINT kExit = 0xE141;

}  // namespace

BEGIN_MESSAGE_MAP(CWinApp, CWinThread)
ON_COMMAND(kExit, OnAppExit)
END_MESSAGE_MAP()

void CWinApp::DeleteTemplates() {
  for (const CDocTemplate* docTemplate : m_templates)
    delete docTemplate;  // NOLINT(cppcoreguidelines-owning-memory): taken over by AddDocTemplate
  m_templates.clear();
}

BOOL CWinApp::OnCmdMsg(UINT id, int code, void* extra, void* handlerInfo) {
  // A program whose windows are all alike has to say itself what its exit is.
  if (id == kExit && m_pMainWnd == nullptr) {
    const auto find = [=](const AFX_MSGMAP* map) {
      return AfxFindMessageEntry(map, WM_COMMAND, static_cast<UINT>(code), id);
    };
    if (find(GetMessageMap()) == find(CWinApp::GetThisMessageMap())) return FALSE;
  }
  return CWinThread::OnCmdMsg(id, code, extra, handlerInfo);
}

void CWinApp::AddDocTemplate(CDocTemplate* docTemplate) {
  m_templates.push_back(docTemplate);
}

CDocument* CWinApp::OpenDocumentFile(LPCTSTR path) {
  CDocTemplate* best = nullptr;
  CDocTemplate::Confidence bestMatch = CDocTemplate::noAttempt;
  for (CDocTemplate* docTemplate : m_templates) {
    CDocument* open = nullptr;
    const CDocTemplate::Confidence match = docTemplate->MatchDocType(path, open);
    if (match == CDocTemplate::yesAlreadyOpen && open != nullptr) {
      POSITION first = open->GetFirstViewPosition();
      CView* view = first == nullptr ? nullptr : open->GetNextView(first);
      if (CFrameWnd* frame = view == nullptr ? nullptr : view->GetParentFrame()) frame->ActivateFrame();
      return open;
    }
    if (match > bestMatch) {
      bestMatch = match;
      best = docTemplate;
    }
  }
  if (best != nullptr) return best->OpenDocumentFile(path);
  AfxMessageBox(platform::Localized("Impossibile aprire il documento."), MB_ICONSTOP);
  return nullptr;
}

BOOL CWinApp::SaveAllModified() {
  for (CDocTemplate* docTemplate : m_templates)
    if (docTemplate->SaveAllModified() == 0) return FALSE;
  return TRUE;
}

void CWinApp::CloseAllDocuments(BOOL endSession) {
  for (CDocTemplate* docTemplate : m_templates) docTemplate->CloseAllDocuments(endSession);
}

// Commands

void CWinApp::OnFileNew() {
  if (!m_templates.empty()) m_templates.front()->OpenDocumentFile(nullptr);
}

void CWinApp::OnFileOpen() {
  CString filter;
  for (const CDocTemplate* docTemplate : m_templates) {
    CString name;
    CString ending;
    docTemplate->GetDocString(name, CDocTemplate::filterName);
    docTemplate->GetDocString(ending, CDocTemplate::filterExt);
    if (name.IsEmpty() == 0 && ending.IsEmpty() == 0) filter += name + "|*" + ending + "|";
  }
  filter += platform::Localized("Tutti i file|*.*||");
  CFileDialog dialog(TRUE, nullptr, nullptr, OFN_HIDEREADONLY | OFN_FILEMUSTEXIST | OFN_PATHMUSTEXIST, filter,
                     m_pMainWnd);
  if (dialog.DoModal() == IDOK) OpenDocumentFile(dialog.GetPathName());
}

void CWinApp::OnAppExit() {
  if (m_pMainWnd != nullptr) m_pMainWnd->SendMessage(WM_CLOSE);
}
