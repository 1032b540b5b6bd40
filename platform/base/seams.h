#pragma once

#include <functional>
#include <string>
#include <vector>

#include "platform/base/export.h"
#include "platform/base/string.h"
#include "platform/base/types.h"

// Where something else takes the place of the user and of the print service. A host's tests go through
// tessarel12_testing.h, which sets these; nothing else does.

namespace platform {

/// What a file dialog asks for, and the answer.
struct FileDialogRequest {
  struct Filter {
    std::string text;
    std::string patterns;  ///< parted by ";"
  };
  bool open = true;  ///< else a name to write to
  std::string title;
  std::string folder;  ///< to begin in; empty: any
  std::vector<Filter> filters;
  std::string path;  ///< in: the name proposed; out: the file chosen
  unsigned filterIndex = 1;
};

/// What the print dialog asks, and the answer.
struct PrintDialogRequest {
  enum class Range { All, Pages, Selection };
  std::vector<std::string> printers;  ///< the queues to choose from; empty: only printing to a file is left
  std::string printer;                ///< in: the one proposed; out: the one chosen
  std::string file;                   ///< out: a file to print to, as PDF; empty: the queue
  Range range = Range::All;
  int fromPage = 0;
  int toPage = 0;
  int copies = 1;
  bool collate = false;
  bool landscape = false;
};

class PrintService;

/// Each is empty unless something takes its place.
struct Seams {
  std::function<int(const CString& text, const CString& title, UINT type)> messageBox;
  std::function<bool(FileDialogRequest& request)> fileDialog;
  std::function<bool(PrintDialogRequest& request)> printDialog;
  std::function<int(HMENU menu, HWND owner)> popupMenu;
  /// A modal dialog is up and about to run its loop.
  std::function<void(HWND dialog)> dialogShown;
  PrintService* printService = nullptr;
};
PLATFORM_API Seams& TheSeams();

}  // namespace platform
