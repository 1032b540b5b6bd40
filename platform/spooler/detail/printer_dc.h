#pragma once

#include <memory>
#include <string>

#include "platform/spooler/detail/job.h"

namespace platform {

/// What stands behind a printing device context.
struct PrinterDc {
  PrintQueue queue;
  std::string output;  ///< the file that is printed to; empty: the queue
  Sheet sheet;
  ABORTPROC abortProcedure = nullptr;
  bool asking = false;  ///< the abort procedure runs
  std::unique_ptr<Job> job;
  int failure = 0;  ///< SP_... that ended the document; 0: none did
};

/// Null for any other or dead device context. Shared, since an abort procedure may delete it while it is
/// used.
std::shared_ptr<PrinterDc> FindPrinterDc(HDC dc);
/// Asks the abort procedure. False: the program wants the document to end, or has ended it in the procedure
/// itself.
bool MayGoOn(HDC dc, const std::shared_ptr<PrinterDc>& printer);
/// A device context for a queue, or for a file if output isn't empty.
HDC CreatePrinterDC(const PrintQueue& queue, const std::string& output, const DEVMODEA* mode);

}  // namespace platform
