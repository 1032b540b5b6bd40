#pragma once

#include <list>

#include "platform/base/string.h"
#include "platform/framework/cmd_target.h"
#include "platform/framework/position.h"

class CDocTemplate;
class CFrameWnd;
class CView;

/// Content that views show. Its views are told of changes; with the last of them the document ends too,
/// unless m_bAutoDelete is off.
class PLATFORM_API CDocument : public CCmdTarget {
  DECLARE_DYNAMIC(CDocument)
 public:
  CDocument() = default;
  CDocument(const CDocument&) = delete;
  CDocument& operator=(const CDocument&) = delete;
  /// Views that are left stay, without a document.
  ~CDocument() override;

  /// Its template shows the frame once the document is loaded; one that takes a while may show it before.
  BOOL m_bShowsFrame = FALSE;
  BOOL m_bAutoDelete = TRUE;  ///< off: the document is its maker's

  const CString& GetTitle() const { return m_strTitle; }
  /// The name that the frames show.
  virtual void SetTitle(LPCTSTR title);
  /// Empty for a document that isn't of a file.
  const CString& GetPathName() const { return m_strPathName; }
  /// Keeps the path in full; its last part becomes the title. There is no list of files used before that
  /// addToRecent could mean.
  virtual void SetPathName(LPCTSTR path, BOOL addToRecent = TRUE);
  /// Null for a document that was made without one.
  CDocTemplate* GetDocTemplate() const { return m_pDocTemplate; }
  virtual BOOL IsModified() { return m_bModified; }
  virtual void SetModifiedFlag(BOOL modified = TRUE) { m_bModified = modified; }

  // Views, in the order in which they were added

  void AddView(CView* view);
  void RemoveView(CView* view);
  virtual POSITION GetFirstViewPosition() const;
  /// Null if the view at that place has gone.
  virtual CView* GetNextView(POSITION& position) const;
  /// Calls OnUpdate of every view but the sender.
  void UpdateAllViews(CView* sender, LPARAM hint = 0, CObject* hintObject = nullptr);
  /// Numbers the frames that show the document, and renews their titles.
  virtual void UpdateFrameCounts();
  /// After a view came or went.
  virtual void OnChangedViewList();

  // The stages of its life. FALSE: it didn't work, and the user has been told.

  virtual BOOL OnNewDocument();
  /// The base empties the document and sees that the file can be read; a derived class reads it.
  virtual BOOL OnOpenDocument(LPCTSTR path);
  /// The base can't write: FALSE.
  virtual BOOL OnSaveDocument(LPCTSTR path);
  /// Ends the frames with its views, then the content and, with m_bAutoDelete, the object.
  virtual void OnCloseDocument();
  /// Back to the state after construction. A document whose object is used again relies on it.
  virtual void DeleteContents() {}

  /// Asks the user about changes. FALSE: they aren't saved, and nothing may be closed.
  virtual BOOL SaveModified();
  /// TRUE if a frame may close: other frames show the document, or SaveModified agrees.
  virtual BOOL CanCloseFrame(CFrameWnd* frame);
  /// Told before a frame with its views ends.
  virtual void PreCloseFrame(CFrameWnd*) {}
  /// Saves under this path; null or empty: the user is asked for one.
  BOOL DoSave(LPCTSTR path);

  /// Itself, then its template.
  BOOL OnCmdMsg(UINT id, int code, void* extra, void* handlerInfo) override;

 protected:
  CString m_strTitle;
  CString m_strPathName;
  CDocTemplate* m_pDocTemplate = nullptr;
  BOOL m_bModified = FALSE;

 private:
  std::list<CView*> m_views;

  friend class CDocTemplate;
};
