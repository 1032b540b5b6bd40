#pragma once

#include <memory>

#include "imaging/ltwrap.h"
#include "library/export.h"

class PageSource;

/// One page of a document: its pixels, and what the file says of it. A page is loaded once, into an object
/// that holds nothing, and keeps its bitmap as long as it lives. A host may derive from it.
///
/// A load into a page that holds a bitmap doesn't free it: whoever kept a header of that bitmap owns it then.
/// Pages are counted from 0 here. Results are 1 for success and 0 for failure. Everything runs on the thread
/// of the user interface.
class TESSAREL_API CZPPage {
 public:
  CZPPage() = default;
  /// Both pages refer to the same pixels, which the last of them frees. A rotation of one reaches the pixels
  /// of the other, but not its record, so only copies that aren't turned are of use.
  CZPPage(const CZPPage& other);
  /// What the page held before is freed, unless another copy shows it still.
  CZPPage& operator=(const CZPPage& other);

  /// Takes a copy of a page that the host holds; nFormat is the file format code to note for it, and nothing
  /// else is known of its file. Callback and user data have no use here. A failure is reported.
  virtual int LoadPage(struct_LEAD_Bitmap* pBitmap, int nFormat, leadtools12::LoadRowCallback pfnCallback,
                       void* pUserData);
  /// Decodes a page of a file, turned upright and stretched to square pixels. A page that can't be decoded
  /// gives 0 and no report; what the file said of it until then is kept. The callback (null: none) is told of
  /// each row and may end the load.
  virtual int LoadPage(const char* pszFile, int nPage, leadtools12::LoadRowCallback pfnCallback,
                       void* pUserData);
  /// The same from a file's image in memory, which is not needed after the call.
  virtual int LoadPage(BYTE* pBuffer, DWORD dwSize, int nPage, leadtools12::LoadRowCallback pfnCallback,
                       void* pUserData);
  /// Tells the page that it is shown, or not needed for now. Here it changes nothing; 0 for a page without a
  /// bitmap that is to be shown.
  virtual int Activate(int bActivate);
  /// The page's bitmap, which stays the page's; null if there is none.
  virtual struct_LEAD_Bitmap* GetHBitmap();
  virtual ~CZPPage();

  /// What the file says of the page; all 0 until a load got that far. Stays the page's.
  struct_file_information* GetPageInfo() { return &m_fileInfo; }
  /// The file format code, -1 if there is none.
  int GetFormat() const { return m_nFormat; }
  /// Turns the bitmap by quarter turns; nAngle in hundredths of a degree, clockwise. bRemember: add it to the
  /// page's rotation. A failure is reported.
  int Rotate(int nAngle, int bRemember);

 protected:
  /// Called once the page's own bitmap has been decoded by any LoadPage, before anybody sees it: the place
  /// for a host's pages to draw on it (LEADTOOLS::CreateLeadDC), so that no LoadPage need be overridden.
  virtual void OnLoaded() {}
  /// What LoadPage does, into any record. On a failure the record's bitmap is freed.
  int DoLoad(struct_LEAD_Bitmap* pBitmap, const char* pszFile, int nPage,
             leadtools12::LoadRowCallback pfnCallback, void* pUserData);
  int DoLoad(struct_LEAD_Bitmap* pBitmap, BYTE* pBuffer, DWORD dwSize, int nPage,
             leadtools12::LoadRowCallback pfnCallback, void* pUserData);
  /// A callback for loads that moves a progress bar of 0 to 100; pUserData is its window handle. Never ends
  /// the load.
  static int LoadCallback(struct_file_information* pInfo, struct_LEAD_Bitmap* pBitmap, BYTE* pBytes,
                          UINT nFlags, int nRow, int nLines, void* pUserData);

  int m_nFormat = -1;
  struct_file_information m_fileInfo{};
  struct_LEAD_Bitmap m_bitmap{};  ///< owned
  int m_nRotation = 0;            ///< hundredths of a degree, more than -36000 and less than 36000

 private:
  friend class CZPDoc;

  bool HasBitmap() const { return (m_bitmap.Flags & leadtools12::kAllocated) != 0; }
  bool IsShared() const { return m_pShared != nullptr && m_pShared->pStorage == m_bitmap.pStorage; }
  void Share() const;
  void ReleaseBitmap();
  int TellLoaded(int loaded);
  void NoteInformation();
  int LoadFrom(const PageSource& source, struct_LEAD_Bitmap* bitmap, int page,
               leadtools12::LoadRowCallback callback, void* userData);
  int FailLoad(struct_LEAD_Bitmap* bitmap, CLeadtoolsException* exception);

  int m_nFailure = 0;    ///< of the load, for a document that has nothing else to tell
  CString m_strFailure;  ///< empty: none was told
  /// Frees the pixels with the last of the pages that refer to them. Null until the page is copied.
  mutable std::shared_ptr<struct_LEAD_Bitmap> m_pShared;
};
