#pragma once

#include <list>

#include "platform/base/string.h"
#include "platform/framework/position.h"
#include "platform/framework/thread.h"
#include "platform/spooler/print_records.h"

class CDocTemplate;
class CDocument;

/// The application. A program has one object of a class derived from it.
class PLATFORM_API CWinApp : public CWinThread {
  DECLARE_DYNAMIC(CWinApp)
 public:
  explicit CWinApp(LPCTSTR name = nullptr);
  CWinApp(const CWinApp&) = delete;
  CWinApp& operator=(const CWinApp&) = delete;
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

  /// Its own handlers; without a main window the exit command has none.
  BOOL OnCmdMsg(UINT id, int code, void* extra, void* handlerInfo) override;

  // Documents (app_documents.cpp)

  /// The application takes the template over and deletes it at its own end.
  void AddDocTemplate(CDocTemplate* docTemplate);
  /// Brings the document that has the file to the front, or has the template that suits the file best open
  /// it. Null on failure, of which the user has been told.
  virtual CDocument* OpenDocumentFile(LPCTSTR path);
  /// FALSE once the user wants a document to stay open.
  virtual BOOL SaveAllModified();
  void CloseAllDocuments(BOOL endSession);

  // Handlers for a program's own map; the exit command is in the map already.

  /// A new document of the first template.
  void OnFileNew();
  /// Asks for a file and opens it.
  void OnFileOpen();
  /// Closes the main window as its user does.
  void OnAppExit();

 protected:
  HGLOBAL m_hDevMode = nullptr;
  HGLOBAL m_hDevNames = nullptr;

 private:
  int m_waitCount = 0;
  std::list<CDocTemplate*> m_templates;
  void DeleteTemplates();

  DECLARE_MESSAGE_MAP()
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
