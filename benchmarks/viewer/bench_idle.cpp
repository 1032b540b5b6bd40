#include <sys/resource.h>
#include <unistd.h>

#include <cstdio>
#include <filesystem>
#include <string>
#include <vector>

#include "benchmarks/imaging/text_file.h"
#include "tessarel12.h"
#include "tessarel12_testing.h"

// A viewer with a page that nobody touches: how often its process wakes up, against once in ten seconds.
// Wants QT_QPA_PLATFORM=offscreen where there is no display.

namespace {

constexpr UINT kWatched = 10'000;  // milliseconds
constexpr UINT kSettling = 1500;   // what follows an opening a second later is no idleness

/// Runs the program's loop for so long; how often any of its threads waited meanwhile.
long Waits(UINT milliseconds) {
  rusage before{};
  rusage after{};
  getrusage(RUSAGE_SELF, &before);
  const std::uintptr_t timer = SetTimer(nullptr, 0, milliseconds, nullptr);
  MSG message{};
  while (GetMessage(&message, nullptr, 0, 0) > 0 && message.message != WM_TIMER) DispatchMessage(&message);
  KillTimer(nullptr, timer);
  getrusage(RUSAGE_SELF, &after);
  return after.ru_nvcsw - before.ru_nvcsw;
}

}  // namespace

int main(int argc, char** argv) {
  if (AfxWinInit(argc, argv) == FALSE) return 1;
  const std::string file =
      (std::filesystem::temp_directory_path() / ("bench-idle-" + std::to_string(getpid()) + ".tif")).string();
  std::vector<std::uint8_t> page = TextPage();
  WritePages(file, {1, 1, COMPRESSION_CCITTFAX4, PHOTOMETRIC_MINISWHITE}, page, 3);
  auto* frame = new CImageFrame;  // ends with its window
  if (!frame->LoadFrame(IDR_ZP_VIEWER) || !frame->OpenImageFile(file.c_str())) return 1;
  frame->ShowWindow(SW_SHOW);
  platform::testing::PumpUntilIdle();
  Waits(kSettling);
  const long waits = Waits(kWatched) - 1;  // but for the timer's own
  std::printf("RATIO idle_wake_ups_in_10_seconds_vs_1 %.3f 1.00\n", static_cast<double>(waits));
  std::filesystem::remove(file);
  frame->DestroyWindow();
  return 0;
}
