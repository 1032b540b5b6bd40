// Runs the program of docs/first_window.md as far as its window, and takes a picture of that: main there is
// renamed.

#include <tessarel12.h>
#include <tessarel12_testing.h>

#undef main
int main(int argc, char** argv) {
  if (argc != 3) return 2;
  int used = 2;  // the picture is for this program
  AfxWinInit(used, argv);
  CWinApp* app = AfxGetApp();
  if (app == nullptr || app->InitInstance() == FALSE) return 1;
  platform::testing::PumpUntilIdle();
  auto* frame = static_cast<CFrameWnd*>(app->m_pMainWnd);
  auto* document = dynamic_cast<CZPDoc*>(frame->GetActiveDocument());
  return document != nullptr && document->GetPagesNum() == 3 &&
                 platform::testing::SaveWindowPicture(*frame, argv[2])
             ? 0
             : 1;
}
