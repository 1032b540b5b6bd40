#include <sys/wait.h>
#include <unistd.h>

#include <array>
#include <chrono>
#include <cstdio>
#include <cstring>
#include <filesystem>
#include <string>
#include <vector>

#include "benchmarks/imaging/text_file.h"
#include "benchmarks/ratio.h"

// The whole viewer as a process: from its start to the first page on the screen, and its peak of memory after
// a walk through a long file, against a window of the toolkit with nothing in it.
namespace {

constexpr int kPages = 100;
constexpr int kRuns = 9;
constexpr double kMoreMemory = 12 * 1024.0;  // KiB that the viewer may take over the empty window

struct Outcome {
  double milliseconds = 0;  ///< from the start to its line "painted"
  long kilobytes = 0;       ///< the line behind it
};

Outcome Run(const std::string& command) {
  const auto begin = std::chrono::steady_clock::now();
  std::FILE* child = popen(command.c_str(), "r");
  Outcome outcome;
  std::array<char, 64> line{};
  while (std::fgets(line.data(), line.size(), child) != nullptr) {
    if (std::strncmp(line.data(), "painted", 7) == 0)
      outcome.milliseconds =
          std::chrono::duration<double, std::milli>(std::chrono::steady_clock::now() - begin).count();
    else
      outcome.kilobytes = std::atol(line.data());
  }
  if (pclose(child) != 0) std::abort();
  return outcome;
}

}  // namespace

int main(int, char** argv) {
  const std::filesystem::path programs = std::filesystem::path(argv[0]).parent_path();
  const std::string file =
      (std::filesystem::temp_directory_path() / ("bench-viewer-" + std::to_string(getpid()) + ".tif"))
          .string();
  std::vector<std::uint8_t> page = TextPage();
  WritePages(file, {1, 1, COMPRESSION_CCITTFAX4, PHOTOMETRIC_MINISWHITE}, page, kPages);

  const std::string empty = "exec " + (programs / "empty_window").string();
  const std::string viewer = "exec " + (programs / "first_page").string() + " " + file;
  std::vector<double> ratios;
  long emptyMemory = 0;
  for (int i = 0; i < kRuns; ++i) {
    const Outcome peer = Run(empty);
    emptyMemory = peer.kilobytes;
    ratios.push_back(Run(viewer).milliseconds / peer.milliseconds);
  }
  const long memory = Run(viewer + " " + std::to_string(kPages)).kilobytes;
  std::filesystem::remove(file);
  std::printf("RATIO viewer_first_page_vs_empty_window %.3f 1.30\n", MedianOf(ratios));
  std::printf("RATIO viewer_memory_of_100_pages_vs_12_MiB_over_empty_window %.3f 1.00\n",
              static_cast<double>(memory - emptyMemory) / kMoreMemory);
  std::fprintf(stderr, "  peak %ld KiB, empty window %ld KiB\n", memory, emptyMemory);
  return 0;
}
