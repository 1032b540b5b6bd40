#include <unistd.h>

#include <algorithm>
#include <chrono>
#include <filesystem>
#include <functional>
#include <string>

#include "benchmarks/imaging/text_file.h"
#include "benchmarks/ratio.h"
#include "benchmarks/viewer/peak_memory.h"
#include "docview/zp_mdi_child.h"
#include "docview/zp_mdi_frame.h"
#include "library/resource_ids.h"
#include "platform/framework/app.h"
#include "platform/framework/doc_template.h"
#include "tessarel12_testing.h"

// A document of 100 bilevel pages in a shell: its open, which decodes them all, against the codec library's
// decoding alone; its memory against that of the pages and 30 MiB; and what opening and closing leaves
// behind. Wants QT_QPA_PLATFORM=offscreen where there is no display.

namespace {

constexpr int kPages = 100;
constexpr int kOpens = 1000;
constexpr long kAllowedKiB = 30L << 10;

class App : public CWinApp {
 public:
  App() : CWinApp("bench") {}
};
App g_app;

long ResidentKiB() {
  long pages = 0;
  long resident = 0;
  if (std::FILE* file = std::fopen("/proc/self/statm", "r")) {
    if (std::fscanf(file, "%ld %ld", &pages, &resident) != 2) resident = 0;
    std::fclose(file);
  }
  return resident * (::sysconf(_SC_PAGESIZE) / 1024);
}

void OpenAndClose(CDocTemplate& kind, const std::string& path) {
  CDocument* const document = kind.OpenDocumentFile(path.c_str());
  if (document == nullptr) std::abort();
  platform::testing::PumpUntilIdle();
  document->OnCloseDocument();
  platform::testing::PumpUntilIdle();
}

double Milliseconds(const std::function<void()>& work) {
  double best = 1e9;
  for (int i = 0; i < 15; ++i) {
    const auto begin = std::chrono::steady_clock::now();
    work();
    platform::testing::PumpUntilIdle();
    best = std::min(
        best, std::chrono::duration<double, std::milli>(std::chrono::steady_clock::now() - begin).count());
  }
  return best;
}

struct Costs {
  double paint;
  double command;
  double change;  ///< to the other window in front
};

/// Between the two windows that were opened last.
Costs MeasureWindows(CZPmdiFrame& main) {
  CMDIChildWnd* const front = main.MDIGetActive();
  main.MDINext();
  CMDIChildWnd* const other = main.MDIGetActive();
  auto* const view = static_cast<CZPmdiChild*>(other)->m_pView;
  Costs costs{};
  costs.paint = Milliseconds([&] {
    view->Invalidate();
    view->UpdateWindow();
  });
  costs.command = Milliseconds([&] {
    main.SendMessage(WM_COMMAND, ID_ZP_ZOOM_IN);
    main.SendMessage(WM_COMMAND, ID_ZP_ZOOM_OUT);
  });
  costs.change = Milliseconds([&] {
    front->MDIActivate();
    other->MDIActivate();
  });
  return costs;
}

/// With many windows everything costs what it costs with two.
void CompareWindows(CZPmdiFrame& main, CDocTemplate& kind, const std::string& path) {
  constexpr int kMany = 200;
  const auto open = [&](int count) {
    for (int i = 0; i < count; ++i) {
      const std::string copy = path + std::to_string(i) + ".tif";  // a file that is open isn't opened again
      std::filesystem::create_symlink(path, copy);
      CDocument* const document = kind.OpenDocumentFile(copy.c_str());
      std::filesystem::remove(copy);
      if (document == nullptr) std::abort();
    }
    platform::testing::PumpUntilIdle();
  };
  open(2);
  const Costs two = MeasureWindows(main);
  open(kMany - 2);
  const Costs many = MeasureWindows(main);
  std::printf("RATIO paint_with_200_windows_vs_2 %.3f %.2f\n", many.paint / two.paint, 1.5);
  std::printf("RATIO command_with_200_windows_vs_2 %.3f %.2f\n", many.command / two.command, 1.5);
  std::printf("RATIO change_of_200_windows_vs_2 %.3f %.2f\n", many.change / two.change, 1.5);
  std::fprintf(stderr, "  with 200 windows: paint %.2f ms, command %.2f ms, change %.2f ms\n", many.paint,
               many.command / 2, many.change / 2);
}

std::string WriteText(const char* name, std::vector<std::uint8_t>& page, int pages) {
  const std::string path =
      (std::filesystem::temp_directory_path() / (name + std::to_string(::getpid()) + ".tif")).string();
  WritePages(path, {1, 1, COMPRESSION_CCITTFAX4, PHOTOMETRIC_MINISWHITE}, page, pages);
  return path;
}

}  // namespace

int main(int argc, char** argv) {
  if (AfxWinInit(argc, argv) == FALSE) return 1;
  std::vector<std::uint8_t> page = TextPage();
  const std::string path = WriteText("bench-open-", page, kPages);
  auto* const kind = new CMultiDocTemplate(IDR_ZP_HOST, RUNTIME_CLASS(CZPDoc), RUNTIME_CLASS(CZPmdiChild),
                                           RUNTIME_CLASS(CZPView));
  g_app.AddDocTemplate(kind);
  auto* const main = new CZPmdiFrame;  // ends with its window
  g_app.m_pMainWnd = main;
  if (main->LoadFrame(IDR_ZP_HOST) == FALSE) return 1;
  main->ShowWindow(SW_SHOW);
  platform::testing::PumpUntilIdle();

  const long before = PeakMemory();
  auto* const document = dynamic_cast<CZPDoc*>(kind->OpenDocumentFile(path.c_str()));
  if (document == nullptr) return 1;
  platform::testing::PumpUntilIdle();
  const long used = PeakMemory() - before;
  const long pagesKiB = static_cast<long>(kPages) * ((kWidth + 7) / 8) * kHeight / 1024;
  std::printf("RATIO document_of_100_pages_memory %.3f %.2f\n",
              static_cast<double>(used) / static_cast<double>(pagesKiB + kAllowedKiB), 1.0);
  std::fprintf(stderr, "  document_of_100_pages_memory: %ld KiB, the pages %ld KiB\n", used, pagesKiB);

  // Into the open document, so that the making of windows isn't counted; the strip is.
  Ratio(
      "open_100_pages_vs_decode", 1.2, [&] { document->OnOpenDocument(path.c_str()); },
      [&] { DecodeAll(path, page); }, [] {}, 5);
  document->OnCloseDocument();

  const std::string small = WriteText("bench-close-", page, 2);
  for (int i = 0; i < kOpens / 10; ++i) OpenAndClose(*kind, small);
  const long settled = ResidentKiB();
  for (int i = 0; i < kOpens; ++i) OpenAndClose(*kind, small);
  const long grown = ResidentKiB() - settled;
  std::printf("RATIO memory_left_by_1000_opens_in_MiB %.3f %.2f\n", static_cast<double>(grown) / 1024, 1.0);
  CompareWindows(*main, *kind, small);
  std::filesystem::remove(path);
  std::filesystem::remove(small);
  g_app.m_pMainWnd = nullptr;
  main->DestroyWindow();
  return 0;
}
