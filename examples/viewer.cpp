// The whole viewer in one call. Without a file it asks for one.

#include "tessarel12.h"

int main(int argc, char** argv) {
  AfxWinInit(argc, argv);
  const char* file = argc > 1 ? argv[1] : nullptr;
  return CImageFrame::DoModalViewer(nullptr, file, "Tessarel12") ? 0 : 1;
}
