#include <array>

#include "input_file.h"
#include "windowless.h"

namespace {

std::string DefaultPrinter() {
  std::array<char, 1024> name{};
  DWORD size = name.size();
  if (GetDefaultPrinterA(name.data(), &size) == FALSE) throw FileError("there is no default printer");
  return name.data();
}

const char* TextOf(int failure) {
  switch (failure) {
    case PrintFailureNoDefaultPrinter:
      return "there is no default printer";
    case PrintFailureNoDeviceContext:
      return "the printer can't be used";
    case PrintFailureNoSuchPrinter:
      return "there is no such printer";
    case SP_OUTOFDISK:
      return "no room for the print job";
    case SP_OUTOFMEMORY:
      return "no memory for the print job";
    case SP_NOANSWER:
      return "the print service doesn't answer";
    default:
      return "the printer doesn't take the job";
  }
}

}  // namespace

void PrintRanges(const InputFile& file, const std::string& printer, const PageRanges& ranges) {
  CPrintFile job("Tessarel");
  for (const PageRange& range : ranges)
    Imaging(file, [&] {
      job.Print_Range(printer.c_str(), file.Path().c_str(), 1, static_cast<short>(range.first),
                      static_cast<short>(range.last), PrintFormatFitToPage);
    });
}

void PrintPages(const InputFile& file, const Options& options) {
  const PageRanges ranges = RangesWithin(options.pages, Describe(file).TotalPages);
  const std::string printer = options.printer.empty() ? DefaultPrinter() : options.printer;
  try {
    PrintRanges(file, printer, ranges);
  } catch (int failure) {
    throw FileError(printer + ": " + TextOf(failure));
  }
}
