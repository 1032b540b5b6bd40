// What happens to a window's file and folder from outside.

#include <algorithm>

#include "resources.h"
#include "settings.h"
#include "viewer_app.h"
#include "viewer_window.h"

void CViewerWindow::OnTimer(std::uintptr_t timer) {
  if (timer != kLookTimer) {
    CImageFrame::OnTimer(timer);
    return;
  }
  // Not under a dialog, which may be about what would change.
  if (IsWindowEnabled() == FALSE || m_pImageWnd == nullptr) return;
  LookAtFile();
  if (m_hWnd != nullptr && m_pImageWnd != nullptr) LookAtFolder();
}

// The file

void CViewerWindow::LookAtFile() {
  if (!m_fileWatch) return;
  const FileWatch::News news = m_fileWatch->Look();
  if (news == FileWatch::News::Gone) SetMessageText(Text(IDS_FILE_GONE));
  if (news != FileWatch::News::Changed) return;
  try {
    Describe(*m_file);  // what can't be read doesn't take the place of what is shown
  } catch (const FileError&) {
    SetMessageText(Text(IDS_FILE_UNREADABLE));
    return;
  }
  if (Reload()) SetMessageText(Text(IDS_RELOADED));
}

// The folder

void CViewerWindow::Watch(const std::string& folder) {
  m_folderWatch.emplace(folder);
  TellWatch();
  m_tellsWatch = true;  // again once a window that is just being made has shown its first message
}

void CViewerWindow::TellWatch() {
  SetMessageText(TextWith(IDS_WATCHING, m_folderWatch->Folder().c_str()));
  m_tellsWatch = false;
}

void CViewerWindow::OnWatchFolder() {
  if (m_folderWatch) {
    m_folderWatch.reset();
    SetMessageText(Text(IDS_WATCHING_NO_MORE));
  } else if (HasPath()) {
    Watch(std::filesystem::path(FullPath(m_file->Path())).parent_path().string());
  }
}

void CViewerWindow::OnUpdateWatchFolder(CCmdUI* ui) {
  Enable(ui, m_folderWatch.has_value() || HasPath());
  ui->SetCheck(m_folderWatch.has_value() ? 1 : 0);
}

void CViewerWindow::OnOpenNewFiles() {
  settings::WriteNumber("OpenNewFiles", settings::ReadNumber("OpenNewFiles", 0) == 0 ? 1 : 0);
}

void CViewerWindow::OnUpdateOpenNewFiles(CCmdUI* ui) {
  ui->SetCheck(settings::ReadNumber("OpenNewFiles", 0));
}

void CViewerWindow::LookAtFolder() {
  if (!m_folderWatch || m_asking) return;
  if (m_tellsWatch) TellWatch();
  const std::vector<std::string> arrived = m_folderWatch->Look();
  if (!arrived.empty()) TellArrival(arrived);
}

void CViewerWindow::TellArrival(const std::vector<std::string>& paths) {
  constexpr std::size_t kMostNames = 10;
  const auto name = [](const std::string& path) { return std::filesystem::path(path).filename().string(); };
  const int count = static_cast<int>(paths.size());
  const std::string last = name(paths.back());
  SetMessageText(count == 1 ? TextWith(IDS_NEW_FILE, last.c_str())
                            : TextWith(IDS_NEW_FILES, count, last.c_str()));
  if (settings::ReadNumber("OpenNewFiles", 0) == 0) {
    std::string names;
    for (std::size_t i = 0; i < std::min(paths.size(), kMostNames); ++i) names += name(paths[i]) + "\n";
    if (paths.size() > kMostNames) names += "…\n";
    const CString question = count == 1 ? TextWith(IDS_OPEN_NEW_FILE, last.c_str())
                                        : TextWith(IDS_OPEN_NEW_FILES, count, names.c_str());
    m_asking = true;
    const int answer = MessageBox(question, AfxGetAppName(), MB_YESNO | MB_ICONQUESTION);
    m_asking = false;
    if (answer != IDYES || m_hWnd == nullptr) return;
  }
  OpenArrived(paths);
}

/// An empty window takes the first.
void CViewerWindow::OpenArrived(const std::vector<std::string>& paths) {
  if (!TheViewerApp().MayOpen(paths.size())) return;
  for (const std::string& path : paths)
    if (m_hWnd != nullptr && m_pImageWnd != nullptr && !IsOpen())
      OpenPath(path);
    else
      TheViewerApp().OpenInNewWindow(path);
}
