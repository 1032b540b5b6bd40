#pragma once

#include <functional>
#include <map>
#include <memory>
#include <string>

#include "platform/spooler/detail/pdf_writer.h"
#include "platform/spooler/detail/sheet.h"
#include "platform/spooler/detail/spool_file.h"

namespace platform {

/// A document being printed. Its end without Finish leaves nothing behind.
class Job {
 public:
  /// output: a file of the user; empty for a document that goes to a queue. error: 0, or the SP_... for which
  /// there can't be a document.
  Job(const std::string& title, const std::string& output, int& error);

  bool IsPageOpen() const { return m_pageOpen; }
  void StartPage(const Sheet& sheet);
  /// 0, or SP_...
  int EndPage();
  /// Draws on the open page: part lies inside the image, place and clip are dots from the corner of the
  /// printable area; a width or height of the place below 0 mirrors.
  void Draw(const PrinterImage& image, const RECT& part, const PdfRect& place, const RECT& clip);
  /// Hands the document over to the file or the queue. 1, or SP_...
  int Finish(const std::string& queue, const std::function<bool()>& goOn);

 private:
  PdfRect PointsOnPage(const PdfRect& dots) const;

  std::string m_title;
  bool m_toFile;
  SpoolFile m_file;
  std::unique_ptr<PdfWriter> m_pdf;
  Sheet m_sheet;
  std::map<int, int> m_caps;
  double m_height = 0;  // of the page, in points
  Paper m_firstPaper;
  bool m_pageOpen = false;
};

}  // namespace platform
