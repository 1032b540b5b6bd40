// The whole viewer with a file, gone as soon as its first page is on the screen. With a second argument it
// walks through so many pages first. Prints its peak of memory too.

#include <cstdio>
#include <cstdlib>

#include "benchmarks/viewer/peak_memory.h"
#include "tessarel12.h"
#include "tessarel12_testing.h"

int main(int argc, char** argv) {
  AfxWinInit(argc, argv);
  auto* frame = new CImageFrame;  // ends with its window
  if (!frame->LoadFrame(IDR_ZP_VIEWER)) return 1;
  frame->MoveWindow(0, 0, 1000, 760);
  if (!frame->OpenImageFile(argv[1])) return 1;
  frame->ShowWindow(SW_SHOW);
  frame->UpdateWindow();
  platform::testing::PumpUntilIdle();
  std::puts("painted");
  std::fflush(stdout);
  const int pages = argc > 2 ? std::atoi(argv[2]) : 0;
  for (int i = 0; i < pages; ++i) {
    frame->SendMessage(WM_COMMAND, ID_ZP_NEXT_PAGE);
    frame->UpdateWindow();
    platform::testing::PumpUntilIdle();
  }
  std::printf("%ld\n", PeakMemory());
  frame->DestroyWindow();
  return 0;
}
