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

/// A host's own pages in a document of its own, in the shell for many documents.
class CHostPage : public CZPPage {
 public:
  static inline int activated = 0;
  int Activate(int bActivate) override {
    activated += bActivate;
    return CZPPage::Activate(bActivate);
  }
};

class CHostDoc : public CZPDoc {
  DECLARE_DYNCREATE(CHostDoc)
  CZPPage* CreatePage() override { return new CHostPage; }
};
IMPLEMENT_DYNCREATE(CHostDoc, CZPDoc)

class CHostApp : public CWinApp {};
CHostApp g_app;

int Check(bool condition, const char* what) {
  if (!condition) std::printf("failed: %s\n", what);
  return condition ? 0 : 1;
}

int CheckShell(const char* path) {
  auto* kind = new CMultiDocTemplate(IDR_ZP_HOST, RUNTIME_CLASS(CHostDoc), RUNTIME_CLASS(CZPmdiChild),
                                     RUNTIME_CLASS(CZPView));
  g_app.AddDocTemplate(kind);
  auto* main = new CZPmdiFrame;  // ends with its window
  g_app.m_pMainWnd = main;
  int failures = Check(main->LoadFrame(IDR_ZP_HOST), "shell");
  auto* document = dynamic_cast<CHostDoc*>(g_app.OpenDocumentFile(path));
  if (Check(document != nullptr, "document") != 0) return failures + 1;
  auto* child = dynamic_cast<CZPmdiChild*>(main->MDIGetActive());
  if (Check(child != nullptr && child->m_pDoc == document, "child") != 0) return failures + 1;
  main->SendMessage(WM_COMMAND, ID_ZP_LAST_PAGE);
  failures += Check(document->GetActivePageNum() == 2 && CHostPage::activated == 1, "last page");
  child->m_pView->SetFitMode(FitModeWidth);
  failures += Check(child->m_pView->GetScalePercent() < 100, "fit");
  g_pfnReportError = &Count;
  failures += Check(document->OnOpenDocument("/no/such/file.tif") == 0 && g_reports == 2, "reported");
  g_app.m_pMainWnd = nullptr;
  main->DestroyWindow();
  return failures;
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
  return failures + CheckShell(argv[1]);
}
