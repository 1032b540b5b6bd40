#pragma once

#include <filesystem>
#include <memory>
#include <vector>

#include "command_line.h"
#include "input_file.h"

/// One window of the application: the ready-made viewer with keys, a title with the file's name, and the way
/// to the other files of its folder.
class CViewerWindow : public CImageFrame {
 public:
  explicit CViewerWindow(HACCEL keys) { m_hAccelTable = keys; }

  /// Makes the window, not yet shown.
  bool Make(const Geometry& geometry);
  /// Opens the file at the page and the scale that were asked for. False after a failure that was told.
  bool Open(std::unique_ptr<InputFile> file, const Options& options);
  /// Asks the user for a file.
  void Ask();
  bool OpenDroppedFile(const char* path) override;

 protected:
  void OnDestroy();
  void OnOpen() { Ask(); }
  void OnReload();
  void OnNextFile() { GoToFile(1); }
  void OnPreviousFile() { GoToFile(-1); }
  void OnAbout();
  void OnFullScreen();
  void OnUpdateFullScreen(CCmdUI* ui) { ui->SetCheck(m_fullScreen ? 1 : 0); }
  void OnUpdateReload(CCmdUI* ui) { Enable(ui, m_file != nullptr && IsOpen()); }
  void OnUpdateOtherFile(CCmdUI* ui) { Enable(ui, m_file != nullptr); }

 private:
  void GoToFile(int step);
  bool OpenPath(const std::string& path);
  void Show(int page, Zoom zoom, double percent);
  void ShowTitle();
  void AddMenuItems();

  bool m_fullScreen = false;
  std::unique_ptr<InputFile> m_file;  ///< lives as long as it is shown

  DECLARE_MESSAGE_MAP()
};
