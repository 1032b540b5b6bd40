#include <sys/wait.h>
#include <unistd.h>

#include <chrono>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <filesystem>
#include <fstream>
#include <functional>
#include <string>
#include <vector>

#include "benchmarks/imaging/text_file.h"
#include "benchmarks/viewer/peak_memory.h"
#include "tessarel12.h"
#include "tessarel12_testing.h"

// The strip of thumbnails of a long file that is open already: until its first screenful is on the screen,
// and after a page far away was asked for, against a tenth of a second, which is about what one takes for at
// once; and the memory that it takes.

namespace {

constexpr double kAtOnceMs = 100;
constexpr double kMostMemory = 60 * 1024.0;  // KiB, for 100,000 pages
constexpr int kPages = 100'000;

void Append(std::string& bytes, std::uint32_t value, int count) {
  for (int i = 0; i < count; ++i) bytes += static_cast<char>(value >> (8 * i));
}

void AppendEntry(std::string& bytes, std::uint32_t tag, std::uint32_t type, std::uint32_t value) {
  Append(bytes, tag, 2);
  Append(bytes, type, 2);
  Append(bytes, 1, 4);
  Append(bytes, value, 4);
}

/// A chain of directories that share the strip of one page, as no disk would hold so many real ones.
void WriteChain(const std::string& path, int pages) {
  std::vector<std::uint8_t> page = TextPage();
  WritePages(path, {1, 1, COMPRESSION_CCITTFAX4, PHOTOMETRIC_MINISWHITE}, page, 1);
  TIFF* tiff = TIFFOpen(path.c_str(), "r");
  std::string strip(static_cast<std::size_t>(TIFFGetStrileByteCount(tiff, 0)), '\0');
  if (TIFFReadRawStrip(tiff, 0, strip.data(), static_cast<tmsize_t>(strip.size())) < 0) std::abort();
  TIFFClose(tiff);
  if (strip.size() % 2 != 0) strip += '\0';
  std::string bytes = "II*";
  bytes += '\0';
  Append(bytes, static_cast<std::uint32_t>(8 + strip.size()), 4);
  bytes += strip;
  for (int i = 0; i < pages; ++i) {
    Append(bytes, 9, 2);
    AppendEntry(bytes, TIFFTAG_IMAGEWIDTH, TIFF_LONG, kWidth);
    AppendEntry(bytes, TIFFTAG_IMAGELENGTH, TIFF_LONG, kHeight);
    AppendEntry(bytes, TIFFTAG_BITSPERSAMPLE, TIFF_SHORT, 1);
    AppendEntry(bytes, TIFFTAG_COMPRESSION, TIFF_SHORT, COMPRESSION_CCITTFAX4);
    AppendEntry(bytes, TIFFTAG_PHOTOMETRIC, TIFF_SHORT, PHOTOMETRIC_MINISWHITE);
    AppendEntry(bytes, TIFFTAG_STRIPOFFSETS, TIFF_LONG, 8);
    AppendEntry(bytes, TIFFTAG_SAMPLESPERPIXEL, TIFF_SHORT, 1);
    AppendEntry(bytes, TIFFTAG_ROWSPERSTRIP, TIFF_LONG, kHeight);
    AppendEntry(bytes, TIFFTAG_STRIPBYTECOUNTS, TIFF_LONG, static_cast<std::uint32_t>(strip.size()));
    const bool last = i + 1 == pages;
    Append(bytes, last ? 0 : static_cast<std::uint32_t>(bytes.size()) + 4, 4);
  }
  std::ofstream(path, std::ios::binary) << bytes;
}

double Milliseconds(const std::function<void()>& work) {
  const auto begin = std::chrono::steady_clock::now();
  work();
  return std::chrono::duration<double, std::milli>(std::chrono::steady_clock::now() - begin).count();
}

/// In a process of its own, whose memory doesn't count.
void WriteChainBeside(const std::string& path, int pages) {
  const pid_t child = fork();
  if (child == 0) {
    WriteChain(path, pages);
    std::_Exit(0);
  }
  int status = 0;
  waitpid(child, &status, 0);
  if (status != 0) std::abort();
}

void Measure(const char* name, const std::string& file, int pages) {
  WriteChainBeside(file, pages);
  auto* frame = new CFrameWnd;  // ends with its window
  if (frame->Create(nullptr, "host", WS_OVERLAPPEDWINDOW, CRect(0, 0, 300, 1000)) == FALSE) std::abort();
  frame->ShowWindow(SW_SHOW);
  CThumbsWindow strip;
  if (strip.Create("", "", WS_CHILD | WS_VISIBLE, CRect(0, 0, 140, 950), frame, 5) == FALSE) std::abort();
  struct_file_information info{};
  LEADTOOLS::FileInfo(file.c_str(), &info, leadtools12::kInfoCountsPages, nullptr);
  if (info.TotalPages != pages) std::abort();
  const long before = PeakMemory();
  const double first = Milliseconds([&] {
    strip.CreateThumbsFile(file.c_str());
    strip.UpdateWindow();
    platform::testing::PumpUntilIdle();
  });
  const double far = Milliseconds([&] {
    strip.SetSel(pages / 2);
    strip.UpdateWindow();
    platform::testing::PumpUntilIdle();
  });
  std::printf("RATIO strip_of_%s_pages_first_screenful_vs_100_ms %.3f 1.00\n", name, first / kAtOnceMs);
  std::printf("RATIO strip_of_%s_pages_far_page_vs_100_ms %.3f 1.00\n", name, far / kAtOnceMs);
  if (pages == kPages)
    std::printf("RATIO strip_of_%s_pages_memory_vs_60_MiB %.3f 1.00\n", name,
                static_cast<double>(PeakMemory() - before) / kMostMemory);
  std::fprintf(stderr, "  %s pages: %.1f ms, far page %.1f ms, %ld KiB\n", name, first, far,
               PeakMemory() - before);
  strip.DestroyWindow();
  frame->DestroyWindow();
}

}  // namespace

int main(int argc, char** argv) {
  if (AfxWinInit(argc, argv) == FALSE) return 1;
  const std::filesystem::path folder = std::filesystem::temp_directory_path();
  const std::string file = (folder / ("bench-strip-" + std::to_string(getpid()) + ".tif")).string();
  Measure("1000", file, 1000);
  Measure("100000", file, kPages);
  std::filesystem::remove(file);
  return 0;
}
