#pragma once

#include <vector>

#include "command_line.h"
#include "placement.h"
#include "tessarel12.h"

class CViewerWindow;

/// The application with its windows; it ends with the last one.
class CViewerApp : public CWinApp {
 public:
  explicit CViewerApp(Options options) : CWinApp("Tessarel"), m_options(std::move(options)) {}

  BOOL InitInstance() override;
  int ExitInstance() override;
  int DoMessageBox(LPCTSTR text, UINT type, UINT helpId) override;
  /// A new window with the file. False after a failure that was told.
  bool OpenInNewWindow(const std::string& path);
  /// Whether so many windows may be opened at once: of many the user is asked.
  bool MayOpen(std::size_t windows);
  /// Somebody sees the windows.
  bool HasUser() const { return m_options.mode == Mode::Window; }
  const std::vector<CViewerWindow*>& Windows() const { return m_windows; }
  /// A window is about to go.
  void Forget(CViewerWindow* window);

 protected:
  void OnExit();

 private:
  CViewerWindow* MakeWindow();
  Placement PlaceOfNext() const;
  bool OpenFile(const std::string& argument);
  bool TakePicture();

  Options m_options;
  HACCEL m_keys = nullptr;
  std::vector<CViewerWindow*> m_windows;
  bool m_failed = false;

  DECLARE_MESSAGE_MAP()
};

CViewerApp& TheViewerApp();
