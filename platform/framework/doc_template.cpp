#include "platform/framework/doc_template.h"

#include <algorithm>
#include <filesystem>

#include "platform/base/path.h"
#include "platform/base/translation.h"
#include "platform/framework/detail/list_walk.h"
#include "platform/framework/document.h"
#include "platform/framework/frame_wnd.h"
#include "platform/framework/message_box.h"
#include "platform/framework/view.h"

IMPLEMENT_DYNAMIC(CDocTemplate, CCmdTarget)

CDocTemplate::CDocTemplate(UINT id, CRuntimeClass* docClass, CRuntimeClass* frameClass,
                           CRuntimeClass* viewClass)
    : m_nIDResource(id), m_pDocClass(docClass), m_pFrameClass(frameClass), m_pViewClass(viewClass) {}

CDocTemplate::~CDocTemplate() {
  for (CDocument* document : m_documents) document->m_pDocTemplate = nullptr;
}

BOOL CDocTemplate::GetDocString(CString& text, DocStringIndex index) const {
  text.Empty();
  CString all;
  if (all.LoadString(m_nIDResource) == 0) return FALSE;
  int start = 0;
  for (int line = 0; line < static_cast<int>(index); ++line) {
    const int end = all.Find('\n', start);
    if (end < 0) return FALSE;
    start = end + 1;
  }
  const int end = all.Find('\n', start);
  text = end < 0 ? all.Mid(start) : all.Mid(start, end - start);
  return TRUE;
}

CString CDocTemplate::UntitledName() const {
  CString name;
  GetDocString(name, docName);
  return name.IsEmpty() != 0 ? CString(platform::Localized("Senza nome")) : name;
}

// Documents

POSITION CDocTemplate::GetFirstDocPosition() const {
  return platform::FirstPlace(m_documents);
}

CDocument* CDocTemplate::GetNextDoc(POSITION& position) const {
  return platform::NextEntry(m_documents, position);
}

void CDocTemplate::AddDocument(CDocument* document) {
  m_documents.push_back(document);
  document->m_pDocTemplate = this;
}

void CDocTemplate::RemoveDocument(CDocument* document) {
  m_documents.remove(document);
  document->m_pDocTemplate = nullptr;
}

bool CDocTemplate::Has(const CDocument* document) const {
  return std::find(m_documents.begin(), m_documents.end(), document) != m_documents.end();
}

namespace {

bool SameFile(const CString& a, const CString& b) {
  std::error_code failed;  // files that aren't there are compared by name
  const std::filesystem::path first(static_cast<LPCTSTR>(a));
  const std::filesystem::path second(static_cast<LPCTSTR>(b));
  if (std::filesystem::equivalent(first, second, failed)) return true;
  return std::filesystem::absolute(first, failed).lexically_normal() ==
         std::filesystem::absolute(second, failed).lexically_normal();
}

}  // namespace

CDocTemplate::Confidence CDocTemplate::MatchDocType(LPCTSTR path, CDocument*& match) {
  match = nullptr;
  for (CDocument* document : m_documents) {
    if (document->GetPathName().IsEmpty() != 0 || !SameFile(document->GetPathName(), path)) continue;
    match = document;
    return yesAlreadyOpen;
  }
  CString ending;
  GetDocString(ending, filterExt);
  const std::string own = platform::SplitName(platform::SplitPath(path).name).extension;
  const bool suits = ending.IsEmpty() == 0 && ending.CompareNoCase(own.c_str()) == 0;
  return suits ? yesAttemptNative : yesAttemptForeign;
}

CDocument* CDocTemplate::CreateNewDocument() {
  CObject* made = m_pDocClass == nullptr ? nullptr : m_pDocClass->CreateObject();
  CDocument* document = DYNAMIC_DOWNCAST(CDocument, made);
  if (document == nullptr) {
    delete made;  // NOLINT(cppcoreguidelines-owning-memory): of a class that is no document
    return nullptr;
  }
  AddDocument(document);
  return document;
}

// Frames

CFrameWnd* CDocTemplate::CreateNewFrame(CDocument* document, CFrameWnd* other) {
  CObject* made = m_pFrameClass == nullptr ? nullptr : m_pFrameClass->CreateObject();
  CFrameWnd* frame = DYNAMIC_DOWNCAST(CFrameWnd, made);
  if (frame == nullptr) {
    delete made;  // NOLINT(cppcoreguidelines-owning-memory): of a class that is no frame
    return nullptr;
  }
  CCreateContext context;
  context.m_pNewViewClass = m_pViewClass;
  context.m_pCurrentDoc = document;
  context.m_pNewDocTemplate = this;
  context.m_pCurrentFrame = other;
  // A frame that can't be made deletes itself.
  const BOOL loaded =
      frame->LoadFrame(m_nIDResource, DWORD{WS_OVERLAPPEDWINDOW} | FWS_ADDTOTITLE, nullptr, &context);
  return loaded == 0 ? nullptr : frame;
}

CFrameWnd* CDocTemplate::CreateFrameOrDelete(CDocument* document) {
  // Views of a frame that fails halfway come and go; the document shall not go with them.
  const BOOL autoDelete = document->m_bAutoDelete;
  document->m_bAutoDelete = FALSE;
  CFrameWnd* frame = CreateNewFrame(document, nullptr);
  document->m_bAutoDelete = autoDelete;
  if (frame == nullptr) {
    AfxMessageBox(platform::Localized("Impossibile creare la finestra del documento."), MB_ICONSTOP);
    delete document;  // NOLINT(cppcoreguidelines-owning-memory): no view has taken it over
  }
  return frame;
}

void CDocTemplate::InitialUpdateFrame(CFrameWnd* frame, CDocument* document, BOOL makeVisible) {
  frame->InitialUpdateFrame(document, makeVisible);
}

void CDocTemplate::Abandon(CFrameWnd* frame, CDocument* document) {
  frame->DestroyWindow();
  // One whose frame made no view has nobody that ends it.
  if (Has(document) && document->m_bAutoDelete != 0) document->OnCloseDocument();
}

// The end

BOOL CDocTemplate::SaveAllModified() {
  POSITION position = GetFirstDocPosition();
  while (position != nullptr) {
    CDocument* document = GetNextDoc(position);
    if (document != nullptr && document->SaveModified() == 0) return FALSE;
  }
  return TRUE;
}

void CDocTemplate::CloseAllDocuments(BOOL) {
  // The end of one may be the end of others, whose frames show both.
  const std::list<CDocument*> open = m_documents;
  for (CDocument* document : open)
    if (Has(document)) document->OnCloseDocument();
}
