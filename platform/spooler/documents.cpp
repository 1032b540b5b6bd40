#include <new>

#include "platform/spooler/detail/printer_dc.h"
#include "platform/spooler/printers.h"

// The life of a document on a printing device context.

namespace platform {
namespace {

using Printer = std::shared_ptr<PrinterDc>;

int g_lastJob = 0;

/// Ends the document; its calls tell why until the next one begins.
int Fail(PrinterDc& printer, int error) {
  printer.job.reset();
  printer.failure = error;
  return error;
}

/// Runs a step of a living document, with the ways that each can fail.
template <typename Step>
int RunStep(HDC dc, Step step) {
  const Printer printer = FindPrinterDc(dc);
  if (!printer) return SP_ERROR;
  if (!printer->job) return printer->failure != 0 ? printer->failure : SP_ERROR;
  if (printer->asking) return SP_ERROR;  // a call out of the abort procedure
  try {
    const int result = step(printer);
    return result < 0 ? Fail(*printer, result) : result;
  } catch (const std::bad_alloc&) {
    return Fail(*printer, SP_OUTOFMEMORY);
  }
}

/// What the queue says now: the device context may be older than a change of the queue.
bool TakesJobs(const PrinterDc& printer) {
  const auto queue = FindQueue(printer.queue.name);
  return queue && queue->accepting;
}

}  // namespace
}  // namespace platform

int StartDocA(HDC dc, const DOCINFOA* info) {
  const auto printer = platform::FindPrinterDc(dc);
  if (!printer || info == nullptr || printer->job || printer->asking) return SP_ERROR;
  printer->failure = 0;
  const std::string output = info->lpszOutput != nullptr ? info->lpszOutput : printer->output;
  if (output.empty() && !platform::TakesJobs(*printer)) return platform::Fail(*printer, SP_ERROR);
  if (!platform::MayGoOn(dc, printer)) return platform::Fail(*printer, SP_APPABORT);
  try {
    int error = 0;
    auto job =
        std::make_unique<platform::Job>(info->lpszDocName == nullptr ? "" : info->lpszDocName, output, error);
    if (error != 0) return platform::Fail(*printer, error);
    printer->job = std::move(job);
  } catch (const std::bad_alloc&) {
    return platform::Fail(*printer, SP_OUTOFMEMORY);
  }
  return ++platform::g_lastJob;
}

int StartPage(HDC dc) {
  return platform::RunStep(dc, [dc](const auto& printer) {
    if (printer->job->IsPageOpen()) return int{SP_ERROR};
    if (!platform::MayGoOn(dc, printer)) return int{SP_APPABORT};
    printer->job->StartPage(printer->sheet);
    return 1;
  });
}

int EndPage(HDC dc) {
  return platform::RunStep(dc, [dc](const auto& printer) {
    if (!printer->job->IsPageOpen()) return int{SP_ERROR};
    const int error = printer->job->EndPage();
    if (error != 0) return error;
    return platform::MayGoOn(dc, printer) ? 1 : int{SP_APPABORT};
  });
}

int EndDoc(HDC dc) {
  return platform::RunStep(dc, [dc](const auto& printer) {
    if (printer->job->IsPageOpen())
      if (const int error = printer->job->EndPage(); error != 0) return error;
    const int result =
        printer->job->Finish(printer->queue.name, [dc, printer] { return platform::MayGoOn(dc, printer); });
    if (result > 0) printer->job.reset();
    return result;
  });
}

int AbortDoc(HDC dc) {
  const auto printer = platform::FindPrinterDc(dc);
  // Within the abort procedure the document is in use: its answer ends it.
  if (!printer || !printer->job || printer->asking) return SP_ERROR;
  printer->job.reset();
  return 1;
}

int SetAbortProc(HDC dc, ABORTPROC procedure) {
  const auto printer = platform::FindPrinterDc(dc);
  if (!printer) return SP_ERROR;
  printer->abortProcedure = procedure;
  return 1;
}
