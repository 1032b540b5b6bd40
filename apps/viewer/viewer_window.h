#pragma once

#include <filesystem>
#include <memory>
#include <optional>
#include <vector>

#include "command_line.h"
#include "file_watch.h"
#include "input_file.h"
#include "resource_ids.h"

class CViewerPage;

/// One window of the application: the ready-made viewer with keys, a title with the file's name, and what
/// goes beyond one file at a time.
class CViewerWindow : public CImageFrame {
 public:
  explicit CViewerWindow(HACCEL keys) { m_hAccelTable = keys; }

  /// Makes the window, not yet shown.
  bool Make(const Geometry& geometry);
  /// Opens the file at the page and the scale that were asked for. False after a failure that was told.
  bool Open(std::unique_ptr<InputFile> file, const Options& options);
  bool OpenPath(const std::string& path);
  /// Asks the user for a file.
  void Ask();
  bool OpenDroppedFile(const char* path) override;
  /// One replaces what is shown; of several each gets a window.
  void OpenDroppedFiles(const std::vector<std::string>& paths);
  /// Tells of new images in the folder from now on.
  void Watch(const std::string& folder);
  BOOL PreTranslateMessage(MSG* message) override;

 protected:
  CRuntimeClass* ImageWindowClass() override;
  int OnCreate(LPCREATESTRUCT cs);
  void OnDestroy();
  void OnDropFiles(HDROP drop);

  // Files (viewer_window_files.cpp)

  void OnOpen() { Ask(); }
  void OnReload();
  void OnNextFile() { GoToFile(1); }
  void OnPreviousFile() { GoToFile(-1); }
  void OnRecent(UINT command);
  void OnTimer(std::uintptr_t timer);
  void OnWatchFolder();
  void OnOpenNewFiles();
  void OnUpdateWatchFolder(CCmdUI* ui);
  void OnUpdateOpenNewFiles(CCmdUI* ui);
  void OnUpdateReload(CCmdUI* ui) { Enable(ui, m_file != nullptr && IsOpen()); }
  void OnUpdateOtherFile(CCmdUI* ui) { Enable(ui, m_file != nullptr); }

  // Menu, bars and keys (viewer_window_menu.cpp)

  void OnAbout();
  void OnFullScreen();
  void OnTurnAtEnd();
  void OnKeepFit(UINT command);
  void OnUpdateFullScreen(CCmdUI* ui) { ui->SetCheck(m_fullScreen ? 1 : 0); }
  void OnUpdateTurnAtEnd(CCmdUI* ui);
  void OnUpdateKeepFit(CCmdUI* ui);
  void OnUpdateRecent(CCmdUI* ui);
  void OnUpdatePane(CCmdUI* ui);

  // Page (viewer_window_page.cpp)

  void OnCopy();
  void OnSelectArea();
  void OnClearSelection();
  void OnExportPages();
  void OnPrintPages();
  void OnSaveTurned();
  void OnUpdateSaveTurned(CCmdUI* ui) { Enable(ui, IsShown() && m_file != nullptr); }
  void OnUpdatePageCommand(CCmdUI* ui) { Enable(ui, IsShown()); }

 private:
  CViewerPage* PageWindow() const;
  bool IsUserWindow() const;
  void GoToFile(int step);
  void Show(int page, Zoom zoom, double percent);
  /// Reads the file again and keeps page, scale, turn and place. False after a failure that was told.
  bool Reload();
  void LookAtFile();
  void LookAtFolder();
  void TellWatch();
  void TellArrival(const std::vector<std::string>& paths);
  void OpenArrived(const std::vector<std::string>& paths);
  void ShowError(const std::string& text);
  /// The path that the user chooses to write to; empty: he gave up. kind: of the filter that he chose, from
  /// 0.
  std::string AskForTarget(const std::string& filters, UINT title, const std::string& name, DWORD& kind);
  bool AskForExport(Options& options);
  /// A target that the file dialog hasn't asked about.
  bool MayReplace(const std::vector<std::string>& targets, const std::string& asked);
  void ShowTitle();
  void AddMenuItems();
  bool MakePanes();
  CString PaneText(UINT pane) const;
  int RoomFor(UINT pane) const;
  /// Takes the keyboard to the next or previous of toolbar, combos, strip and page.
  void StepFocus(bool back);
  bool TakesFocusKey(const MSG& message);
  bool TakesEscape(const MSG& message);
  /// A file of the disk is shown, not standard input.
  bool HasPath() const { return m_file != nullptr && m_file->Path() == m_file->Name(); }

  bool m_fullScreen = false;
  std::optional<FileWatch> m_fileWatch;  ///< of a file of the disk
  std::optional<FolderWatch> m_folderWatch;
  bool m_tellsWatch = false;
  bool m_asking = false;              ///< a box about new files is open
  std::unique_ptr<InputFile> m_file;  ///< lives as long as it is shown

  DECLARE_MESSAGE_MAP()
};

/// The file as an absolute path, for lists that outlive the current folder.
std::string FullPath(const std::string& path);
