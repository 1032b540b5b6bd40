// A window's files: chosen, dropped, read again, beside each other, opened before.

#include <algorithm>
#include <utility>

#include "folder.h"
#include "recent_files.h"
#include "resources.h"
#include "settings.h"
#include "viewer_app.h"
#include "viewer_page.h"
#include "viewer_window.h"

std::string FullPath(const std::string& path) {
  std::error_code error;
  const std::filesystem::path full = std::filesystem::absolute(path, error);
  return error ? path : full.lexically_normal().string();
}

bool CViewerWindow::OpenPath(const std::string& path) {
  return Open(std::make_unique<InputFile>(path), Options{});
}

bool CViewerWindow::OpenDroppedFile(const char* path) {
  OpenPath(path);  // a failure is told and shown already
  return true;
}

void CViewerWindow::OpenDroppedFiles(const std::vector<std::string>& paths) {
  std::size_t next = 0;
  if (!TheViewerApp().MayOpen(paths.size())) return;
  if (!paths.empty() && (paths.size() == 1 || !IsOpen())) OpenPath(paths[next++]);
  for (; next < paths.size(); ++next) TheViewerApp().OpenInNewWindow(paths[next]);
}

void CViewerWindow::OnDropFiles(HDROP drop) {
  // Beside the page: its window knows what to do.
  m_pImageWnd->SendMessage(WM_DROPFILES, reinterpret_cast<WPARAM>(drop));
}

void CViewerWindow::Ask() {
  const std::string filter(Text(IDS_ALL_FILES_FILTER) + "|*|");
  const std::string folder = settings::ReadText("Folder");
  CFileDialog dialog(TRUE, nullptr, nullptr, OFN_HIDEREADONLY | OFN_PATHMUSTEXIST | OFN_FILEMUSTEXIST,
                     (filter + "|").c_str(), this);
  std::vector<char> name(4096);
  dialog.m_ofn.lpstrFile = name.data();
  dialog.m_ofn.nMaxFile = static_cast<DWORD>(name.size());
  if (!folder.empty()) dialog.m_ofn.lpstrInitialDir = folder.c_str();
  if (dialog.DoModal() == IDOK && m_hWnd != nullptr) OpenPath(dialog.m_ofn.lpstrFile);
}

void CViewerWindow::OnReload() {
  if (m_fileWatch) m_fileWatch->Accept();
  Reload();
}

bool CViewerWindow::Reload() {
  if (m_file == nullptr || m_pImageWnd == nullptr) return false;
  const int page = m_pImageWnd->GetCurrPage();
  const int turn = m_pImageWnd->m_nRotation;
  const double scale = m_pImageWnd->GetScaleFactor();
  const CPoint position = m_pImageWnd->m_ptScroll;
  // The page again, or the last one of a file that has become shorter.
  if (!OpenImageFile(m_file->Path().c_str()) || m_hWnd == nullptr) return false;
  Show(std::min(page, m_pImageWnd->GetMaxPage()), Zoom::Kept, 0);
  if (m_hWnd == nullptr) return false;
  if (turn != 0) m_pImageWnd->Rotate(turn, true);
  if (m_pImageWnd->GetScaleFactor() != scale) m_pImageWnd->ZoomToScaleFactor(scale);
  PageWindow()->GoTo(position);
  UpdateZoomStatus();
  return true;
}

void CViewerWindow::GoToFile(int step) {
  if (!HasPath()) return;
  const std::string path = FileBeside(m_file->Path(), step);
  if (!path.empty()) OpenPath(path);
}

void CViewerWindow::OnRecent(UINT command) {
  const std::vector<std::string> files = RecentFiles();
  const std::size_t index = command - kFirstRecent;
  if (index >= files.size()) return;
  std::error_code ignored;
  if (!OpenPath(files[index]) && !std::filesystem::exists(files[index], ignored)) ForgetFile(files[index]);
}
