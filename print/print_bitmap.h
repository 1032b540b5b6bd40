#pragma once

#include "imaging/ltwrap.h"
#include "library/export.h"
#include "platform/base/string.h"
#include "print/print_format.h"

class CDC;
class CWnd;

/// Prints one bitmap in memory on one sheet: the page as the viewer shows it.
class TESSAREL_API CPrintBitmap {
 public:
  /// The name stands at the head of the document's name at the spooler.
  explicit CPrintBitmap(const char* appName);
  CPrintBitmap(const CPrintBitmap&) = default;
  CPrintBitmap& operator=(const CPrintBitmap&) = default;
  virtual ~CPrintBitmap() = default;

  /// The bitmap is borrowed. format becomes the process's current format, unchecked; the user may change it
  /// in the print dialog, which is shown unless the default printer is to be taken. Returns when the sheet is
  /// spooled or the user gives up. Throws an int, PrintFailure or a negative SP_..., or a
  /// CLeadtoolsException*. parent, if not null, is disabled meanwhile.
  void Print(struct_LEAD_Bitmap* bitmap, CWnd* parent, bool defaultPrinter, PrintFormat format);

  /// The current format of the process.
  static int GetPrintFormat();
  /// For this and the next jobs of the process, those of CPrintFile too.
  static void SetPrintFormat(PrintFormat format);

 private:
  void PrintSheet(struct_LEAD_Bitmap* bitmap, CDC& dc) const;

  CString m_strAppName;
};
