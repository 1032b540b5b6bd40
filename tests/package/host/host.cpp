// A host outside the source tree: shows a page in its own frame, reads state back, and sees a failure
// reported.

#include <tessarel12.h>

#include <cstdio>

namespace {

int g_reports = 0;

void Count(int, CString) {
  ++g_reports;
}

class CHostWindow : public CImageWindow {
 public:
  using CImageWindow::RoundDouble;
};

int Check(bool condition, const char* what) {
  if (!condition) std::printf("failed: %s\n", what);
  return condition ? 0 : 1;
}

}  // namespace

int main(int argc, char** argv) {
  if (argc != 2) return 2;
  AfxWinInit(argc, argv);
  auto* frame = new CFrameWnd;
  CHostWindow window;
  int failures = Check(frame->Create(nullptr, "host", WS_OVERLAPPEDWINDOW, CRect(0, 0, 600, 400)), "frame");
  failures +=
      Check(window.Create(nullptr, "", WS_CHILD | WS_VISIBLE, CRect(0, 0, 600, 400), frame, 1), "window");
  frame->ShowWindow(SW_SHOW);
  window.SetReportErrorCallBack(&Count);
  failures +=
      Check(!window.OpenImageFile("/no/such/file.tif") && g_reports == 1, "one report for a missing file");
  failures += Check(window.OpenImageFile(argv[1]) && window.GetMaxPage() == 3, "three pages");
  failures += Check(window.LoadPage(2) && window.m_nCurrPage == 2, "page 2");
  failures += Check(window.m_Bitmap.Height == 2 * 1078, "square pixels");
  failures += Check(window.ZoomToScaleFactor(0.5) && window.m_SmartBitmap.Width == 864, "grey copy");
  window.SendMessage(WM_VSCROLL, SB_PAGEDOWN);
  failures += Check(window.m_ptScroll.y > 0 && g_reports == 1, "scrolled");
  return failures;
}
