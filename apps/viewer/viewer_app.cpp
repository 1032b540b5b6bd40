#include "viewer_app.h"

#include <algorithm>
#include <cstdio>
#include <iterator>
#include <memory>

#include "resources.h"
#include "screenshot.h"
#include "viewer_window.h"

BEGIN_MESSAGE_MAP(CViewerApp, CWinApp)
ON_COMMAND(ID_APP_EXIT, OnExit)
END_MESSAGE_MAP()

namespace {

constexpr BYTE kControl = FVIRTKEY | FCONTROL;
constexpr WORD kF5 = VK_F1 + 4;
constexpr WORD kF11 = VK_F10 + 1;
constexpr BYTE kAlt = FVIRTKEY | FALT;

/// What the menus show, and what other viewers have taught.
constexpr ACCEL kKeys[] = {
    {kControl, 'A', ID_FILE_OPEN},
    {kControl, 'O', ID_FILE_OPEN},
    {kControl, 'E', ID_ZP_FILE_EXPORT},
    {kControl, 'S', ID_FILE_PRINT},
    {kControl, 'P', ID_FILE_PRINT},
    {kControl, 'Q', ID_APP_EXIT},
    {kControl, 'C', kCopy},
    {kControl | FSHIFT, 'S', kSaveTurned},
    {kControl, 'G', ID_ZP_GOTO_PAGE},
    {kControl, VK_NEXT, ID_ZP_NEXT_PAGE},
    {kControl, VK_PRIOR, ID_ZP_PREV_PAGE},
    {FVIRTKEY, VK_HOME, ID_ZP_FIRST_PAGE},
    {FVIRTKEY, VK_END, ID_ZP_LAST_PAGE},
    {kControl, VK_UP, ID_ZP_ZOOM_IN},
    {kControl, VK_DOWN, ID_ZP_ZOOM_OUT},
    {FVIRTKEY, kF5, kReload},
    {FVIRTKEY, kF11, kFullScreen},
    {kAlt, VK_NEXT, kNextFile},
    {kAlt, VK_PRIOR, kPreviousFile},
};

void ReportToStderr(int /*code*/, CString text) {  // NOLINT(performance-unnecessary-value-param)
  std::fprintf(stderr, "tessarel-viewer: %s\n", static_cast<const char*>(text));
}

CViewerApp* g_app = nullptr;

}  // namespace

CViewerApp& TheViewerApp() {
  return *g_app;
}

CViewerWindow* CViewerApp::MakeWindow() {
  const Placement placement = PlaceOfNext();
  auto* window = new CViewerWindow(m_keys);  // ends with its window
  m_windows.push_back(window);
  if (!window->Make(placement.place)) return nullptr;
  if (m_pMainWnd == nullptr) m_pMainWnd = window;
  // Failures go to a box only where there is a user.
  if (m_options.mode == Mode::Screenshot) window->m_pImageWnd->SetReportErrorCallBack(&ReportToStderr);
  window->ShowWindow(placement.maximized ? SW_SHOWMAXIMIZED : SW_SHOW);
  window->UpdateWindow();
  return window;
}

/// What the command line says, else where the last window stood; further windows have its size.
Placement CViewerApp::PlaceOfNext() const {
  if (m_options.geometry.width >= 0 || !HasUser()) return {m_options.geometry, false};
  Placement placement = SavedPlacement();
  if (m_windows.empty()) return placement;
  placement.maximized = false;
  placement.place.x = placement.place.y = -1;
  return placement;
}

bool CViewerApp::OpenInNewWindow(const std::string& path) {
  CViewerWindow* const window = MakeWindow();
  return window != nullptr && window->OpenPath(path);
}

bool CViewerApp::MayOpen(std::size_t windows) {
  constexpr std::size_t kUnasked = 20;
  return windows <= kUnasked || AfxMessageBox(TextWith(IDS_MANY_WINDOWS, static_cast<int>(windows)),
                                              MB_YESNO | MB_ICONQUESTION) == IDYES;
}

bool CViewerApp::OpenFile(const std::string& argument) {
  try {
    auto file = std::make_unique<InputFile>(argument);
    CViewerWindow* const window = MakeWindow();
    if (window == nullptr || !window->Open(std::move(file), m_options)) return false;
    const int pages = window->m_pImageWnd->GetMaxPage();
    if (m_options.page <= pages) return true;
    throw FileError(argument + ": there is no page " + std::to_string(m_options.page) + ", the file has " +
                    std::to_string(pages));
  } catch (const FileError& error) {
    std::fprintf(stderr, "tessarel-viewer: %s\n", error.what());
    return false;
  }
}

bool CViewerApp::TakePicture() {
  constexpr Geometry kUsual{1000, 760, -1, -1};
  if (m_options.geometry.width < 0) m_options.geometry = kUsual;
  if (!OpenFile(m_options.files.front())) return false;
  try {
    WriteScreenshot(*m_pMainWnd, m_options.target);
  } catch (const FileError& error) {
    std::fprintf(stderr, "tessarel-viewer: %s\n", error.what());
    return false;
  }
  return true;
}

BOOL CViewerApp::InitInstance() {
  g_app = this;
  RegisterAppResources();
  m_keys = CreateAcceleratorTable(kKeys, std::size(kKeys));
  if (m_options.mode == Mode::Screenshot) {
    m_failed = !TakePicture();
    return FALSE;
  }
  if (m_options.files.empty()) {
    CViewerWindow* const window = MakeWindow();
    if (window != nullptr && m_options.watch.empty()) window->Ask();
  }
  const platform::LoopScope loop;  // it runs next, and files may take long
  if (!m_options.files.empty()) m_failed = !OpenFile(m_options.files.front());
  if (MayOpen(m_options.files.size()))
    for (std::size_t i = 1; i < m_options.files.size(); ++i)
      m_failed = !OpenFile(m_options.files[i]) || m_failed;
  if (!m_options.watch.empty() && !m_windows.empty()) m_windows.front()->Watch(FullPath(m_options.watch));
  return m_pMainWnd != nullptr ? TRUE : FALSE;
}

int CViewerApp::DoMessageBox(LPCTSTR text, UINT type, UINT helpId) {
  if (m_options.mode == Mode::Window) return CWinApp::DoMessageBox(text, type, helpId);
  ReportToStderr(0, text);
  return IDOK;
}

int CViewerApp::ExitInstance() {
  const int result = CWinApp::ExitInstance();
  DestroyAcceleratorTable(m_keys);
  return m_failed ? 1 : result;
}

void CViewerApp::Forget(CViewerWindow* window) {
  std::erase(m_windows, window);
  // The end of the main window ends the program.
  if (m_pMainWnd == window && !m_windows.empty()) m_pMainWnd = m_windows.front();
}

void CViewerApp::OnExit() {
  for (CViewerWindow* const window : std::vector(m_windows))
    if (std::ranges::find(m_windows, window) != m_windows.end()) window->PostMessage(WM_CLOSE);
}
