#pragma once

#include <list>

#include "platform/base/string.h"
#include "platform/framework/cmd_target.h"
#include "platform/framework/position.h"

class CDocument;
class CFrameWnd;

/// Ties the classes of a document, its frame and its view together, under one number of the resources: menu,
/// and string with the texts of GetDocString. It knows the open documents but doesn't own them.
class PLATFORM_API CDocTemplate : public CCmdTarget {
  DECLARE_DYNAMIC(CDocTemplate)
 public:
  /// Lines of the resource string.
  enum DocStringIndex {
    windowTitle,  ///< of the main window
    docName,      ///< of documents without a file; a number is added where there can be several
    fileNewName,  ///< of the kind of document
    filterName,   ///< for file dialogs
    filterExt,    ///< ending of file names, with its dot
    regFileTypeId,
    regFileTypeName,
  };
  /// How well a file suits a template.
  enum Confidence {
    noAttempt,
    maybeAttemptForeign,
    maybeAttemptNative,
    yesAttemptForeign,
    yesAttemptNative,
    yesAlreadyOpen
  };

  /// The classes have to be such as can be created by name. frameClass: a frame, viewClass: a view or null
  /// for frames that make their own.
  CDocTemplate(UINT id, CRuntimeClass* docClass, CRuntimeClass* frameClass, CRuntimeClass* viewClass);
  CDocTemplate(const CDocTemplate&) = delete;
  CDocTemplate& operator=(const CDocTemplate&) = delete;
  /// Documents that are open stay, without a template.
  ~CDocTemplate() override;

  /// A line of the string. FALSE, with an empty text, if it is missing.
  virtual BOOL GetDocString(CString& text, DocStringIndex index) const;

  virtual POSITION GetFirstDocPosition() const;
  virtual CDocument* GetNextDoc(POSITION& position) const;
  virtual void AddDocument(CDocument* document);
  virtual void RemoveDocument(CDocument* document);

  /// match: the document that has the file open already, else null.
  virtual Confidence MatchDocType(LPCTSTR path, CDocument*& match);
  /// A document of the template without views, which is the caller's until a view has been added. Null on
  /// failure.
  virtual CDocument* CreateNewDocument();
  /// A hidden frame with views on the document; other: a frame of which it is the second, or null. Null on
  /// failure.
  virtual CFrameWnd* CreateNewFrame(CDocument* document, CFrameWnd* other);
  /// Ends the creation: first update of the views, and the frame comes to the front if it is to be seen.
  virtual void InitialUpdateFrame(CFrameWnd* frame, CDocument* document, BOOL makeVisible = TRUE);
  /// The document of a file, in a frame; path null: a new one. Null on failure, of which nothing is left.
  virtual CDocument* OpenDocumentFile(LPCTSTR path, BOOL makeVisible = TRUE) = 0;

  /// FALSE once the user wants a document to stay open.
  virtual BOOL SaveAllModified();
  virtual void CloseAllDocuments(BOOL endSession);
  /// Names a document that has no file.
  virtual void SetDefaultTitle(CDocument* document) = 0;

 protected:
  UINT m_nIDResource;
  CRuntimeClass* m_pDocClass;
  CRuntimeClass* m_pFrameClass;
  CRuntimeClass* m_pViewClass;

  /// A document with its frame; null, with a message, on failure.
  CFrameWnd* CreateFrameOrDelete(CDocument* document);
  /// A new document in a frame of its own, with the file loaded, or new content if path is null. Null, with
  /// nothing left and the user told, on failure.
  CDocument* CreateLoaded(LPCTSTR path, CFrameWnd*& frame, BOOL makeVisible);
  /// Takes back what a failed open has made.
  void Abandon(CFrameWnd* frame, CDocument* document);
  bool Has(const CDocument* document) const;
  /// docName or, where it is missing, a fixed text.
  CString UntitledName() const;

 private:
  std::list<CDocument*> m_documents;
};

/// Each document has a frame of its own, as a rule a CMDIChildWnd.
class PLATFORM_API CMultiDocTemplate : public CDocTemplate {
  DECLARE_DYNAMIC(CMultiDocTemplate)
 public:
  using CDocTemplate::CDocTemplate;
  CDocument* OpenDocumentFile(LPCTSTR path, BOOL makeVisible = TRUE) override;
  void SetDefaultTitle(CDocument* document) override;

 private:
  int m_untitled = 0;
};

/// One document in one main window; opening another file uses both again.
class PLATFORM_API CSingleDocTemplate : public CDocTemplate {
  DECLARE_DYNAMIC(CSingleDocTemplate)
 public:
  using CDocTemplate::CDocTemplate;
  CDocument* OpenDocumentFile(LPCTSTR path, BOOL makeVisible = TRUE) override;
  /// After a failed open the file of the one before counts as not open.
  Confidence MatchDocType(LPCTSTR path, CDocument*& match) override;
  void SetDefaultTitle(CDocument* document) override;

 private:
  CDocument* OpenFirst(LPCTSTR path, BOOL makeVisible);
  CDocument* OpenAgain(CDocument* document, LPCTSTR path, BOOL makeVisible);

  bool m_openFailed = false;  ///< the document may not hold what its path says
};
