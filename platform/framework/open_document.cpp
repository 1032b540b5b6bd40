// How the two kinds of templates open a document.

#include "platform/base/translation.h"
#include "platform/framework/doc_template.h"
#include "platform/framework/document.h"
#include "platform/framework/frame_wnd.h"
#include "platform/framework/message_box.h"
#include "platform/framework/object_hold.h"
#include "platform/framework/thread.h"
#include "platform/framework/view.h"

IMPLEMENT_DYNAMIC(CMultiDocTemplate, CDocTemplate)
IMPLEMENT_DYNAMIC(CSingleDocTemplate, CDocTemplate)

namespace {

/// Fills a document that stands in its frame already: views are told by the document itself.
bool Load(CDocTemplate& of, CDocument* document, LPCTSTR path) {
  if (path == nullptr) {
    of.SetDefaultTitle(document);
    return document->OnNewDocument() != 0;
  }
  const CWaitCursor wait;
  if (document->OnOpenDocument(path) == 0) return false;
  document->SetPathName(path);
  return true;
}

void ReportNoDocument() {
  AfxMessageBox(platform::Localized("Impossibile creare il documento."), MB_ICONSTOP);
}

}  // namespace

CDocument* CDocTemplate::CreateLoaded(LPCTSTR path, CFrameWnd*& frame, BOOL makeVisible) {
  CDocument* document = CreateNewDocument();
  if (document == nullptr) {
    ReportNoDocument();
    return nullptr;
  }
  frame = CreateFrameOrDelete(document);
  if (frame == nullptr) return nullptr;
  document->m_bShowsFrame = makeVisible;
  const platform::ObjectHold holdDocument(document);
  const platform::ObjectHold holdFrame(frame);
  const bool loaded = Load(*this, document, path);
  if (loaded && frame->m_hWnd != nullptr) return document;
  Abandon(frame, document);
  return nullptr;
}

CDocument* CMultiDocTemplate::OpenDocumentFile(LPCTSTR path, BOOL makeVisible) {
  CFrameWnd* frame = nullptr;
  CDocument* document = CreateLoaded(path, frame, makeVisible);
  if (document == nullptr) return nullptr;
  if (path == nullptr) ++m_untitled;
  InitialUpdateFrame(frame, document, makeVisible);
  return document;
}

void CMultiDocTemplate::SetDefaultTitle(CDocument* document) {
  CString number;
  number.Format("%d", m_untitled + 1);
  document->SetTitle(UntitledName() + number);
}

CDocument* CSingleDocTemplate::OpenDocumentFile(LPCTSTR path, BOOL makeVisible) {
  POSITION first = GetFirstDocPosition();
  return first == nullptr ? OpenFirst(path, makeVisible) : OpenAgain(GetNextDoc(first), path, makeVisible);
}

CDocument* CSingleDocTemplate::OpenFirst(LPCTSTR path, BOOL makeVisible) {
  CFrameWnd* frame = nullptr;
  CDocument* document = CreateLoaded(path, frame, makeVisible);
  if (document == nullptr) return nullptr;
  CWinThread* thread = AfxGetThread();
  if (thread->m_pMainWnd == nullptr) thread->m_pMainWnd = frame;
  InitialUpdateFrame(frame, document, makeVisible);
  return document;
}

CDocument* CSingleDocTemplate::OpenAgain(CDocument* document, LPCTSTR path, BOOL makeVisible) {
  if (document->SaveModified() == 0) return nullptr;
  POSITION first = document->GetFirstViewPosition();
  CFrameWnd* frame = nullptr;
  if (first != nullptr) frame = document->GetNextView(first)->GetParentFrame();
  if (frame == nullptr) frame = CreateFrameOrDelete(document);
  if (frame == nullptr) return nullptr;
  const platform::ObjectHold holdDocument(document);
  const platform::ObjectHold holdFrame(frame);
  const BOOL modified = document->IsModified();
  document->SetModifiedFlag(FALSE);
  const bool loaded = Load(*this, document, path);
  if (frame->m_hWnd == nullptr) return nullptr;  // closed meanwhile, and the document with it
  if (!loaded) {
    // The user's changes are there as long as the old content is.
    if (document->IsModified() == 0) document->SetModifiedFlag(modified);
    m_openFailed = true;
    return nullptr;
  }
  m_openFailed = false;
  InitialUpdateFrame(frame, document, makeVisible);
  return document;
}

CDocTemplate::Confidence CSingleDocTemplate::MatchDocType(LPCTSTR path, CDocument*& match) {
  const Confidence confidence = CDocTemplate::MatchDocType(path, match);
  if (confidence != yesAlreadyOpen || !m_openFailed) return confidence;
  match = nullptr;
  return yesAttemptNative;
}

void CSingleDocTemplate::SetDefaultTitle(CDocument* document) {
  document->SetTitle(UntitledName());
}
