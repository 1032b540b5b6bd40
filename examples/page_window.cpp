// A small host: one frame window with a CImageWindow in it.
//
//   page_window FILE
//   page_window FILE --screenshot OUT.png [--page N] [--zoom PERCENT] [--size WxH]

#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <string>

#include "imagewindow/image_window.h"
#include "platform/framework/app.h"
#include "platform/framework/frame_wnd.h"
#include "tessarel12_testing.h"

namespace {

struct Options {
  const char* file = nullptr;
  const char* screenshot = nullptr;
  int page = 1;
  double zoomPercent = 0;  ///< 0: the page fits the window's width
  int width = 1000;
  int height = 760;
};

constexpr const char* kUsage =
    "usage: page_window FILE [--page N] [--zoom PERCENT] [--size WxH] [--screenshot OUT.png]\n"
    "keys: PageDown, PageUp page; Home, End first and last page; arrows scroll;\n"
    "      + - zoom; 1 actual size; W, H, B fit width, height, page; Esc ends\n";

bool ReadNumber(const char* text, double& value) {
  char* end = nullptr;
  value = std::strtod(text, &end);
  return end != text && *end == 0;
}

/// False for words that make no sense.
bool ReadOptions(int argc, char** argv, Options& options) {
  for (int i = 1; i < argc; ++i) {
    const std::string word = argv[i];
    const bool option = word.rfind("--", 0) == 0;
    if (!option) {
      if (options.file != nullptr) return false;
      options.file = argv[i];
      continue;
    }
    const char* value = i + 1 < argc ? argv[++i] : "";
    double number = 0;
    char rest = 0;
    if (word == "--screenshot" && *value != 0) {
      options.screenshot = value;
    } else if (word == "--page" && ReadNumber(value, number) && number >= 1 && number < 1e6) {
      options.page = static_cast<int>(number);
    } else if (word == "--zoom" && ReadNumber(value, number) && number >= 1 && number <= 1000) {
      options.zoomPercent = number;
    } else if (word == "--size" &&
               std::sscanf(value, "%dx%d%c", &options.width, &options.height, &rest) == 2 &&
               options.width > 0 && options.height > 0 && options.width <= 16000 && options.height <= 16000) {
      continue;
    } else {
      return false;
    }
  }
  return options.file != nullptr;
}

Options g_options;

class CPageFrame : public CFrameWnd {
 public:
  CImageWindow m_wndImage;

  /// False after a failure, which has been reported.
  bool Open(const Options& options);

 protected:
  BOOL OnCreateClient(LPCREATESTRUCT, CCreateContext*) override {
    return m_wndImage.Create(nullptr, "", WS_CHILD | WS_VISIBLE, CRect(0, 0, 0, 0), this, AFX_IDW_PANE_FIRST);
  }
  BOOL PreTranslateMessage(MSG* message) override {
    if (message->message == WM_KEYDOWN && OnKey(static_cast<int>(message->wParam))) return TRUE;
    return CFrameWnd::PreTranslateMessage(message);
  }

 private:
  bool OnKey(int key);
  bool Turn(int page);
  void Scroll(UINT message, int code) { m_wndImage.PostMessage(message, static_cast<WPARAM>(code)); }
  void ShowState();
};

bool CPageFrame::Open(const Options& options) {
  if (!m_wndImage.OpenImageFile(options.file) || !m_wndImage.LoadPage(options.page)) {
    m_wndImage.Invalidate();
    return false;
  }
  if (options.zoomPercent > 0) {
    m_wndImage.ZoomToScaleFactor(options.zoomPercent / 100);
  } else {
    m_wndImage.FitToWidth();
  }
  ShowState();
  return true;
}

bool CPageFrame::Turn(int page) {
  if (!m_wndImage.LoadPage(page)) return false;
  ShowState();
  return true;
}

void CPageFrame::ShowState() {
  CString title;
  title.Format("%s - %d/%d - %d%%", static_cast<const char*>(m_wndImage.GetFileName()),
               m_wndImage.GetCurrPage(), m_wndImage.GetMaxPage(), m_wndImage.GetScalePercent());
  SetWindowText(title);
}

bool CPageFrame::OnKey(int key) {
  switch (key) {
    case VK_NEXT:
      Turn(m_wndImage.GetCurrPage() + 1);
      break;
    case VK_PRIOR:
      Turn(m_wndImage.GetCurrPage() - 1);
      break;
    case VK_HOME:
      Turn(1);
      break;
    case VK_END:
      Turn(m_wndImage.GetMaxPage());
      break;
    case VK_UP:
      Scroll(WM_VSCROLL, SB_LINEUP);
      break;
    case VK_DOWN:
      Scroll(WM_VSCROLL, SB_LINEDOWN);
      break;
    case VK_LEFT:
      Scroll(WM_HSCROLL, SB_LINELEFT);
      break;
    case VK_RIGHT:
      Scroll(WM_HSCROLL, SB_LINERIGHT);
      break;
    case VK_ADD:
    case VK_OEM_PLUS:
      m_wndImage.ZoomIn();
      break;
    case VK_SUBTRACT:
    case VK_OEM_MINUS:
      m_wndImage.ZoomOut();
      break;
    case '1':
      m_wndImage.ZoomToScaleFactor(1.0);
      break;
    case 'W':
      m_wndImage.FitToWidth();
      break;
    case 'H':
      m_wndImage.FitToHeight();
      break;
    case 'B':
      m_wndImage.BestFit();
      break;
    case VK_ESCAPE:
      PostMessage(WM_CLOSE);
      break;
    default:
      return false;
  }
  ShowState();
  return true;
}

void ReportToStderr(int code,
                    CString text) {  // NOLINT(performance-unnecessary-value-param): the callback's shape
  std::fprintf(stderr, "Error ZP%04d: %s\n", code, static_cast<const char*>(text));
}

class CPageApp : public CWinApp {
 public:
  CPageApp() : CWinApp("Tessarel12") {}
  int m_nExitCode = 0;

  BOOL InitInstance() override;
  int ExitInstance() override {
    const int result = CWinApp::ExitInstance();
    return m_nExitCode != 0 ? m_nExitCode : result;
  }

 private:
  bool TakePicture(CPageFrame& frame);
};

BOOL CPageApp::InitInstance() {
  auto* frame = new CPageFrame;  // ends with its window
  const CRect place(0, 0, g_options.width, g_options.height);
  if (frame->Create(nullptr, m_pszAppName, WS_OVERLAPPEDWINDOW, place) == 0) return FALSE;
  m_pMainWnd = frame;
  frame->ShowWindow(SW_SHOW);
  if (g_options.screenshot == nullptr) {
    frame->Open(g_options);
    return TRUE;
  }
  frame->m_wndImage.SetReportErrorCallBack(&ReportToStderr);
  if (!TakePicture(*frame)) m_nExitCode = 1;
  return FALSE;
}

bool CPageApp::TakePicture(CPageFrame& frame) {
  if (!frame.Open(g_options)) {
    const int pages = frame.m_wndImage.GetMaxPage();
    if (pages > 0 && g_options.page > pages)
      std::fprintf(stderr, "page_window: there is no page %d, the file has %d\n", g_options.page, pages);
    return false;
  }
  platform::testing::PumpUntilIdle();
  if (platform::testing::SaveWindowPicture(frame.m_hWnd, g_options.screenshot)) return true;
  std::fprintf(stderr, "page_window: %s can't be written\n", g_options.screenshot);
  return false;
}

CPageApp g_theApp;

}  // namespace

int main(int argc, char** argv) {
  if (!ReadOptions(argc, argv, g_options)) {
    std::fputs(kUsage, stderr);
    return 2;
  }
  if (g_options.screenshot != nullptr) setenv("QT_QPA_PLATFORM", "offscreen", 1);
  return AfxWinMain(argc, argv);
}
