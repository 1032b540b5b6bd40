// A host that keeps a viewer frame: opens a file in it, gives it commands, and writes a picture of it.
//
//   frame_picture FILE OUT.png [WxH] [COMMAND...]

#include <cstdio>
#include <cstdlib>

#include "tessarel12.h"
#include "tessarel12_testing.h"

int main(int argc, char** argv) {
  if (argc < 3) {
    std::fputs("usage: frame_picture FILE OUT.png [WxH] [COMMAND...]\n", stderr);
    return 2;
  }
  setenv("QT_QPA_PLATFORM", "offscreen", 0);
  AfxWinInit(argc, argv);
  // Nobody is there to close a box.
  platform::testing::SetMessageBoxAnswer([](const CString& text, UINT) {
    std::fprintf(stderr, "frame_picture: %s\n", static_cast<const char*>(text));
    return static_cast<int>(IDOK);
  });
  int width = 1000;
  int height = 760;
  if (argc > 3) std::sscanf(argv[3], "%dx%d", &width, &height);

  auto* frame = new CImageFrame;  // ends with its window
  if (!frame->LoadFrame(IDR_ZP_VIEWER)) return 1;
  frame->MoveWindow(0, 0, width, height);
  frame->ShowWindow(SW_SHOW);
  const bool opened = frame->OpenImageFile(argv[1]);
  if (opened) frame->SendMessage(WM_COMMAND, ID_ZP_ZOOM_FIT_TO_WIDTH);
  for (int i = 4; i < argc; ++i) frame->SendMessage(WM_COMMAND, static_cast<WPARAM>(std::atoi(argv[i])));
  platform::testing::PumpUntilIdle();
  frame->SendMessageToDescendants(WM_IDLEUPDATECMDUI, TRUE, 0);
  platform::testing::PumpUntilIdle();
  const bool written = platform::testing::SaveWindowPicture(*frame, argv[2]);
  if (!written) std::fprintf(stderr, "frame_picture: %s can't be written\n", argv[2]);
  frame->DestroyWindow();
  return opened && written ? 0 : 1;
}
