#pragma once

#include <optional>

#include "imaging/ltwrap.h"
#include "library/export.h"
#include "platform/base/geometry.h"
#include "platform/base/string.h"
#include "platform/spooler/print_records.h"
#include "print/print_format.h"

class CDC;
class CPrintDialog;
class CWnd;
class ProgressPane;

/// Prints a document of many pages: a file, a file image in memory, or bitmaps that are decoded already.
///
/// A file job holds one page at a time. Every printing call returns when the document is spooled or the user
/// has given up, and throws an int (PrintFailure or a negative SP_...) or a CLeadtoolsException* otherwise.
/// parent, if not null, is disabled meanwhile and owns the abort dialog. Pages are counted from 1 unless told
/// otherwise. One job runs at a time.
class TESSAREL_API CPrintFile {
 public:
  /// The name stands at the head of the document's name at the spooler.
  explicit CPrintFile(const char* appName);
  /// A copy has handles of its own and no decoded page.
  CPrintFile(const CPrintFile& other);
  CPrintFile& operator=(const CPrintFile& other);
  virtual ~CPrintFile();

  /// Shows the print dialog, unless the default printer is to be taken. format becomes the process's current
  /// one, an unknown value as fit to page; the user may change it in the dialog. No copies: nothing at all
  /// happens.
  void Print(const char* path, short copies, CWnd* parent, bool defaultPrinter, PrintFormat format);
  /// The same for a file image, which stays the caller's. format isn't checked.
  void PrintMem(void* image, unsigned long size, short copies, CWnd* parent, bool defaultPrinter,
                PrintFormat format);
  /// The same for borrowed bitmaps; a null one is passed over. selection, if not null, is offered as the
  /// dialog's choice of that name. first and last from 0; last -1: to the end.
  void PrintBitmaps(struct_LEAD_Bitmap** pages, int count, struct_LEAD_Bitmap* selection, short copies,
                    CWnd* parent, bool defaultPrinter, PrintFormat format, int first, int last,
                    const char* documentName);
  /// Prints all of a file on the printer of that name, without a dialog. The current format stays as it is.
  void Print_Def(const char* printer, const char* path, short copies, PrintFormat format);
  /// The same for the pages of a range.
  void Print_Range(const char* printer, const char* path, short copies, short fromPage, short toPage,
                   PrintFormat format);

  /// Pages of a file; 0 if it can't be read, which is reported.
  unsigned int CountPages(const char* path);
  /// Pages of a file's image in memory, which stays the caller's; size in bytes.
  unsigned int CountPagesMem(void* image, unsigned long size);
  /// What the print dialog begins with: copies of the record's device handles, which stay the caller's.
  void SetPrintOptions(PRINTDLGA* record);

  /// The current format of the process.
  static int GetPrintFormat();
  /// For the next jobs of the process, those of CPrintBitmap too.
  static void SetPrintFormat(PrintFormat format);

 protected:
  /// first and last from 0; last -1: to the end.
  void DoPrint(short copies, CWnd* parent, bool defaultPrinter, int first, int last);
  /// The spooling: the record's range, nCopies times. byPage: the copies of a page follow each other. Path
  /// and page count aren't looked at.
  void Print_Work(const char* path, PRINTDLGA& record, int pages, CDC& dc, CWnd* parent, bool byPage);
  /// Brings a page (-1: the selection) into m_Bitmap, its pixels made square for the printer if there is one.
  /// 0: there is no such bitmap.
  int LoadPage(int page, CDC* printer);
  /// Back to no source and no page.
  void Initialize();
  /// Shrinks a size that exceeds the limit, keeping its shape.
  void FitRect(CSize& size, CSize limit);

  struct_LEAD_Bitmap** m_ppBitmaps = nullptr;  ///< borrowed pages; null in a job that decodes
  int m_nBitmaps = 0;
  struct_LEAD_Bitmap* m_pSelBitmap = nullptr;  ///< borrowed
  void* m_pFileMem = nullptr;                  ///< the caller's
  DWORD m_dwFileMemSize = 0;
  CString m_strFile;              ///< empty: not a file job
  CString m_strDocName;           ///< tail of the document's name
  CString m_strAppName;           ///< its head
  struct_LEAD_Bitmap m_Bitmap{};  ///< the page being printed; a header only if the page is borrowed
  HGLOBAL m_hDevMode = nullptr;
  HGLOBAL m_hDevNames = nullptr;

 private:
  class SourceReset;
  class JobFormat;

  bool OwnsPage() const;
  int CountJobPages();
  void DecodePage(int page);
  void MakePixelsSquare(CDC& printer);
  void FillRecord(CPrintDialog& dialog, short copies, int first, int last, int pages) const;
  void PresetOrientation(CPrintDialog& dialog) const;
  void PrintPages(const PRINTDLGA& record, CDC& dc, bool byPage, ProgressPane& pane);
  void PrintSheet(CDC& dc, HGLOBAL mode);
  void PrintNamed(const char* printer, const char* path, short copies, PrintFormat format,
                  std::optional<WORD> fromPage, std::optional<WORD> toPage);

  std::optional<int> m_jobFormat;  ///< of a job on a named printer, in the place of the current format
};

/// A copy of a global block; null for a null handle or without memory.
HGLOBAL DupGlobalBlock(HGLOBAL block);
