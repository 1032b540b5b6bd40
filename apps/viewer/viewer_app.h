#pragma once

#include <vector>

#include "command_line.h"
#include "tessarel12.h"

class CViewerWindow;

/// Commands of the application, beside those of the viewer.
enum : UINT { kReload = 50001, kNextFile = 50002, kPreviousFile = 50003, kFullScreen = 50004 };

/// The application with its windows; it ends with the last one.
class CViewerApp : public CWinApp {
 public:
  explicit CViewerApp(Options options) : CWinApp("Tessarel"), m_options(std::move(options)) {}

  BOOL InitInstance() override;
  int ExitInstance() override;
  int DoMessageBox(LPCTSTR text, UINT type, UINT helpId) override;
  /// A window is about to go.
  void Forget(CViewerWindow* window);

 protected:
  void OnExit();

 private:
  CViewerWindow* MakeWindow();
  bool OpenFile(const std::string& argument);
  bool TakePicture();

  Options m_options;
  HACCEL m_keys = nullptr;
  std::vector<CViewerWindow*> m_windows;
  bool m_failed = false;

  DECLARE_MESSAGE_MAP()
};

CViewerApp& TheViewerApp();
