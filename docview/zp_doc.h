#pragma once

#include "docview/hints.h"
#include "docview/zp_page.h"
#include "library/export.h"
#include "platform/base/ptr_array.h"
#include "platform/framework/document.h"

class CWnd;

/// An image document with all its pages in memory. An open decodes every page, and shows those that it has if
/// that takes a while; from then on a change of page, the thumbnails and the printing decode nothing. It is
/// read only, and never counts as modified.
///
/// Pages are counted from 0. A page argument is a page of the document, or -1 for the active page where that
/// is told. Results are 1 for success and 0 for failure. Its views hear of changes
/// by the hints of hints.h. A document that is opened has to have a view already; its frame, if that is
/// a CZPDocumentFrame, is told of each open.
class TESSAREL_API CZPDoc : public CDocument {
  DECLARE_DYNCREATE(CZPDoc)
 public:
  ~CZPDoc() override;

  /// Opens a file in the place of what was shown. 1 if at least one page could be decoded; the others stay
  /// pages without a bitmap. A file of which no page can be decoded is reported, with what the first one has
  /// met. One that can't be read at all is reported, and leaves an empty document.
  BOOL OnOpenDocument(LPCTSTR pszPath) override;
  /// Writes nothing: 0.
  BOOL OnSaveDocument(LPCTSTR pszPath) override;

  /// The same as OnOpenDocument from a file's image in memory, which stays the caller's and isn't needed
  /// after the call. The document has no path and no title then.
  virtual int OpenDocumentMemory(BYTE* pBuffer, DWORD dwSize);
  /// Prints the pages, as they are shown and without decoding them, in one job; the print dialog comes up
  /// unless the default printer is to be taken. The first and last page are held within the document; -1 as
  /// the last: to its end. 0: nothing was to be printed, or the job failed, of which the user knows.
  virtual int PrintDocument(CWnd* pParent, bool bDefaultPrinter, int nFirstPage, int nLastPage);
  /// Prints a page, or -1 for the active one, on the default printer without a dialog.
  virtual void PrintPage(int nPage);
  /// 0 if there is no such page, which changes nothing.
  virtual int SetActivePage(int nPage);

  /// Tells all views that something changed: view::kHintAllPages, kHintPageChanged (with the page, counted
  /// from 0; the active one if none is given) or kHintOtherPage. A host calls it after it changed a page's
  /// pixels.
  void TellViews(int nHint, int nPage = view::kActivePage);

  /// How many pages the document has, those that couldn't be decoded too.
  int GetPagesNum() const { return m_arrPages.GetSize(); }
  /// -1 before the first open and after one that failed.
  int GetActivePageNum() const { return m_nActivePage; }
  /// A page's bitmap, or with -1 the active page's; null if it has none. It stays the page's and lives until
  /// the next open.
  struct_LEAD_Bitmap* GetHBitmap(int nPage);
  /// Tells a page that its bitmap isn't needed for now. 0, and nothing is told, for the active page.
  int ReleaseHBitmap(int nPage);
  /// Turns the active page; in hundredths of a degree, clockwise. 0 if it has no bitmap.
  int Rotate(int nAngle);
  /// The file format code of a page, or with -1 of the active one. -1 if it is unknown.
  int GetPageFormat(int nPage) const;
  /// The format of the next print job.
  int GetPrintFormat() const { return m_nPrintFormat; }
  /// Shows what the file says of the active page, of which there has to be one, until the user closes the
  /// dialog.
  void ShowPageInfo();

 protected:
  CZPDoc() = default;

  BOOL OnNewDocument() override;
  /// A page for the document, which takes it over: the place for a host's own kind of page.
  virtual CZPPage* CreatePage();
  /// The name of a file format; empty if it has none.
  static CString GetFileFormat(int nFormat);
  /// Tells the frame of the first view of an open.
  void InitialFrameUpdate();

  int m_nPrintFormat = 0;
  int m_nActivePage = -1;
  CPtrArray m_arrPages;  ///< of CZPPage, owned; null entries are passed over when they are deleted

 private:
  class PageInLoad;

  template <class LoadPage>
  int LoadPages(int nCount, const LoadPage& loadPage);
  /// Null for a number that is no page of the document.
  CZPPage* PageAt(int nPage) const;
  /// The same with -1 for the active page.
  CZPPage* PageOrActive(int nPage) const;
  void DeletePages();
  /// The pages are about to go, in the midst of a print job perhaps.
  void StopPrinting();
  void ShowOpened(int nActivePage);
  /// Shows pages that an open has loaded while it goes on with the rest.
  void ShowSoFar(int nFirst, int nEnd);
  int FailOpen(CLeadtoolsException* pException);
  void BecomeEmpty();
  void ReportNoPage() const;

  DECLARE_MESSAGE_MAP()
};
