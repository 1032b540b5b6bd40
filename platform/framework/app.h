#pragma once

#include "platform/base/string.h"
#include "platform/framework/thread.h"
#include "platform/spooler/print_records.h"

/// The application. A program has one object of a class derived from it.
class PLATFORM_API CWinApp : public CWinThread {
  DECLARE_DYNAMIC(CWinApp)
 public:
  explicit CWinApp(LPCTSTR name = nullptr);
  ~CWinApp() override;

  LPCTSTR m_pszAppName;  ///< shown in the title of message boxes
  CString m_lpCmdLine;   ///< the arguments, separated by spaces
  int m_nCmdShow = 5;
  int m_argc = 0;
  char** m_argv = nullptr;

  virtual BOOL InitApplication() { return TRUE; }
  virtual void DoWaitCursor(int change);
  virtual int DoMessageBox(LPCTSTR text, UINT type, UINT helpId);
  /// Fills hDevMode and hDevNames with the application's own for its printer, at first the default printer.
  /// They stay the application's. FALSE if there is no printer.
  BOOL GetPrinterDeviceDefaults(PRINTDLGA* dialog);

 protected:
  HGLOBAL m_hDevMode = nullptr;
  HGLOBAL m_hDevNames = nullptr;

 private:
  int m_waitCount = 0;
};

/// What the framework knows of the running program.
struct AFX_MODULE_STATE {
  CWinApp* m_pCurrentWinApp;     ///< null in a host without an application object
  LPCTSTR m_lpszCurrentAppName;  ///< never null
};
PLATFORM_API AFX_MODULE_STATE* AfxGetModuleState();

PLATFORM_API CWinApp* AfxGetApp();
/// "Tessarel12" where there is no application object.
PLATFORM_API LPCTSTR AfxGetAppName();
/// Makes the user interface ready. The arguments must live as long as the program.
PLATFORM_API BOOL AfxWinInit(int& argc, char** argv);
/// A whole program: AfxWinInit, InitInstance, Run. The exit code.
PLATFORM_API int AfxWinMain(int& argc, char** argv);
