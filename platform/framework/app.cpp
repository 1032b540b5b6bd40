#include "platform/framework/app.h"

#include "platform/base/global_memory.h"
#include "platform/framework/message_box.h"
#include "platform/framework/wnd.h"
#include "platform/spooler/detail/print_answer.h"
#include "platform/window/detail/show_message_box.h"

IMPLEMENT_DYNAMIC(CWinApp, CWinThread)

namespace {

CWinApp* g_app = nullptr;

/// Shows the wait cursor while the count is above 0; the new count.
int ChangeWaitCursor(int count, int change) {
  static HCURSOR restore = nullptr;
  const int changed = count + change;
  if (changed <= 0) {
    if (count > 0) SetCursor(restore);
    return 0;
  }
  const HCURSOR former = SetCursor(LoadCursor(nullptr, IDC_WAIT));
  if (count == 0) restore = former;
  return changed;
}

}  // namespace

CWinApp::CWinApp(LPCTSTR name) : m_pszAppName(name == nullptr ? "Tessarel12" : name) {
  g_app = this;
}

CWinApp::~CWinApp() {
  DeleteTemplates();
  GlobalFree(m_hDevMode);
  GlobalFree(m_hDevNames);
  if (g_app == this) g_app = nullptr;
}

BOOL CWinApp::GetPrinterDeviceDefaults(PRINTDLGA* dialog) {
  if (dialog == nullptr) return FALSE;
  if (m_hDevNames == nullptr) {
    PRINTDLGA defaults{};
    if (platform::AnswerWithDefaultPrinter(defaults) == 0) return FALSE;
    m_hDevMode = defaults.hDevMode;
    m_hDevNames = defaults.hDevNames;
  }
  dialog->hDevMode = m_hDevMode;
  dialog->hDevNames = m_hDevNames;
  return TRUE;
}

AFX_MODULE_STATE* AfxGetModuleState() {
  static AFX_MODULE_STATE state{};
  state = {g_app, AfxGetAppName()};
  return &state;
}

void CWinApp::DoWaitCursor(int change) {
  m_waitCount = ChangeWaitCursor(m_waitCount, change);
}

namespace {

void WaitCursor(int change) {
  static int count = 0;  // of a host without an application object
  if (g_app != nullptr)
    g_app->DoWaitCursor(change);
  else
    count = ChangeWaitCursor(count, change);
}

}  // namespace

void CCmdTarget::BeginWaitCursor() {
  WaitCursor(1);
}

void CCmdTarget::EndWaitCursor() {
  WaitCursor(-1);
}

int CWinApp::DoMessageBox(LPCTSTR text, UINT type, UINT) {
  return platform::ShowMessageBox(m_pszAppName, text, type);
}

CWinApp* AfxGetApp() {
  return g_app;
}

LPCTSTR AfxGetAppName() {
  return g_app == nullptr ? "Tessarel12" : g_app->m_pszAppName;
}

BOOL AfxWinInit(int& argc, char** argv) {
  platform::EnsureApplication(&argc, argv);
  if (g_app != nullptr) {
    g_app->m_argc = argc;
    g_app->m_argv = argv;
    for (int i = 1; i < argc; ++i) g_app->m_lpCmdLine += (i > 1 ? CString(" ") : CString()) + argv[i];
  }
  return TRUE;
}

int AfxWinMain(int& argc, char** argv) {
  if (g_app == nullptr || AfxWinInit(argc, argv) == 0) return 1;
  int result = 0;
  if (g_app->InitApplication() != 0 && g_app->InitInstance() != 0) {
    result = g_app->Run();
  } else {
    if (g_app->m_pMainWnd != nullptr) g_app->m_pMainWnd->DestroyWindow();
    result = g_app->ExitInstance();
  }
  platform::EndApplication();
  return result;
}
