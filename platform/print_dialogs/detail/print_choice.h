#pragma once

#include <string>
#include <vector>

#include "platform/base/seams.h"
#include "platform/spooler/detail/queues.h"
#include "platform/spooler/print_records.h"

namespace platform {

/// What the print dialog is about: all that is chosen in it, and among what.
struct PrintChoice {
  PrintDialogRequest request;
  std::vector<PrintQueue> queues;  ///< in the order of request.printers
  DEVMODEA mode{};                 ///< of the printer chosen
  int minPage = 0;
  int maxPage = 0;
  bool mayPages = true;
  bool maySelection = true;
  bool mayFile = true;
};

/// The queue of the printer chosen; what files are printed with if there is none of that name.
PrintQueue ChosenQueue(const PrintChoice& choice);
/// Goes over to another printer's sheet; the orientation stays.
void ChoosePrinter(PrintChoice& choice, const std::string& name);
/// Why the choice can't be printed, in Italian; empty if it can. field: the one to correct.
enum class PrintField { None, FromPage, ToPage, Copies, Printer };
std::string RefusalOf(const PrintChoice& choice, PrintField& field);
/// State of a queue in Italian.
std::string StatusText(const PrintQueue& queue);

/// Shows the dialog of the record's template. False if the user gives up, or the dialog couldn't be made.
bool AskPrintChoice(PRINTDLGA& dialog, PrintChoice& choice);
/// Asks for paper and orientation. False if the user gives up.
bool AskPrintProperties(HWND owner, PrintChoice& choice);

}  // namespace platform
