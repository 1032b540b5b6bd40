#pragma once

#include <string>

#include "platform/spooler/detail/sheet.h"

// The record that print dialogs begin with and answer in. What needs no dialog stands here, so that the
// application's default printer doesn't either.

namespace platform {

/// Notes how a request for a printer ended (CDERR_..., PDERR_..., 0 for well): TRUE if well.
BOOL EndPrintDialog(DWORD error);
/// What was noted last.
DWORD PrintDialogError();

/// The printer's name in a block with a DEVNAMES; empty without one.
std::string DeviceOf(HGLOBAL names);
/// False if the block holds no whole DEVMODE.
bool ReadMode(HGLOBAL block, DEVMODEA& mode);

/// Fills the record for a printer. output: the file printed to, or empty. Notes how it ended.
BOOL AnswerWithPrinter(PRINTDLGA& dialog, const PrintQueue& queue, const std::string& output,
                       const DEVMODEA& mode);
/// The same for the default printer, as PD_RETURNDEFAULT asks for it.
BOOL AnswerWithDefaultPrinter(PRINTDLGA& dialog);

}  // namespace platform
