// Tessarel, the viewer: command line, windows, and what it does without them.

#include <cstdio>
#include <cstdlib>

#include "command_line.h"
#include "input_file.h"
#include "interrupt.h"
#include "resources.h"
#include "viewer_app.h"
#include "windowless.h"

namespace {

/// Where nobody could answer a box: each failure that has one is thrown too, and told on standard error.
class CWindowlessApp : public CWinApp {
 public:
  CWindowlessApp() : CWinApp("Tessarel") {}
  int DoMessageBox(LPCTSTR /*text*/, UINT /*type*/, UINT /*helpId*/) override { return IDOK; }
};

void Run(const std::string& argument, const Options& options) {
  const InputFile file(argument);
  if (options.mode == Mode::Info) ShowInfo(file);
  if (options.mode == Mode::Export) {
    InterruptibleWork work(IDS_ZP_EXPORTING_PAGE);
    ExportPages(file, options, [&](int page, int pages) { return work.Reach(page, pages); });
  }
  if (options.mode == Mode::Print) PrintPages(file, options);
}

/// Every file gets its turn; 1 if one of them failed.
int RunWindowless(const Options& options) {
  RegisterAppResources();
  int status = 0;
  for (const std::string& argument : options.files) {
    try {
      Run(argument, options);
    } catch (const FileError& error) {
      std::fflush(stdout);
      std::fprintf(stderr, "tessarel-viewer: %s\n", error.what());
      status = 1;
    } catch (const Stopped&) {
      constexpr int kEndedBySignal = 128;  // as shells count
      return kEndedBySignal + InterruptibleWork::Signal();
    }
  }
  return status;
}

}  // namespace

int main(int argc, char** argv) {
  Options options;
  try {
    options = ReadCommandLine(std::span<const char* const>(argv, static_cast<std::size_t>(argc)));
  } catch (const UsageError& error) {
    std::fprintf(stderr, "tessarel-viewer: %s\nTry tessarel-viewer --help.\n", error.what());
    return 2;
  }
  if (options.mode == Mode::Help) return std::fputs(HelpText().c_str(), stdout) < 0 ? 1 : 0;
  if (options.mode == Mode::Version) return std::puts("tessarel-viewer " TESSAREL_VERSION) < 0 ? 1 : 0;
  if (options.mode != Mode::Window) setenv("QT_QPA_PLATFORM", "offscreen", 1);
  if (options.mode == Mode::Window || options.mode == Mode::Screenshot) {
    CViewerApp app(std::move(options));
    return AfxWinMain(argc, argv);
  }
  SelectTessarelLanguage(nullptr);  // failures are told in the user's language
  const CWindowlessApp app;
  AfxWinInit(argc, argv);
  return RunWindowless(options);
}
