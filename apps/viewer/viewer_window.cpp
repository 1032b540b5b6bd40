#include "viewer_window.h"

#include <algorithm>
#include <utility>

#include "folder.h"
#include "viewer_app.h"

BEGIN_MESSAGE_MAP(CViewerWindow, CImageFrame)
ON_WM_DESTROY()
ON_COMMAND(ID_FILE_OPEN, OnOpen)
ON_COMMAND(kReload, OnReload)
ON_COMMAND(kNextFile, OnNextFile)
ON_COMMAND(kPreviousFile, OnPreviousFile)
ON_COMMAND(ID_APP_ABOUT, OnAbout)
ON_COMMAND(kFullScreen, OnFullScreen)
ON_UPDATE_COMMAND_UI(kFullScreen, OnUpdateFullScreen)
ON_UPDATE_COMMAND_UI(kReload, OnUpdateReload)
ON_UPDATE_COMMAND_UI_RANGE(kNextFile, kPreviousFile, OnUpdateOtherFile)
END_MESSAGE_MAP()

bool CViewerWindow::Make(const Geometry& geometry) {
  if (LoadFrame(IDR_ZP_HOST) == FALSE) return false;
  AddMenuItems();
  ShowTitle();
  if (geometry.width < 0) return true;
  const UINT keep = geometry.x < 0 ? SWP_NOMOVE : 0U;
  SetWindowPos(nullptr, geometry.x, geometry.y, geometry.width, geometry.height, SWP_NOZORDER | keep);
  return true;
}

void CViewerWindow::AddMenuItems() {
  CMenu* const file = GetMenu()->GetSubMenu(0);
  const UINT behindOpen = 1;
  file->InsertMenu(behindOpen, MF_BYPOSITION | MF_STRING, kPreviousFile, "File pre&cedente\tAlt+PgUp");
  file->InsertMenu(behindOpen, MF_BYPOSITION | MF_STRING, kNextFile, "File s&uccessivo\tAlt+PgDown");
  file->InsertMenu(behindOpen, MF_BYPOSITION | MF_STRING, kReload, "&Ricarica\tF5");
  GetMenu()->GetSubMenu(1)->AppendMenu(MF_STRING, kFullScreen, "Schermo &intero\tF11");
}

bool CViewerWindow::Open(std::unique_ptr<InputFile> file, const Options& options) {
  const std::unique_ptr<InputFile> former = std::exchange(m_file, std::move(file));
  const bool opened = OpenImageFile(m_file->Path().c_str());
  if (m_hWnd == nullptr) return false;
  ShowTitle();
  if (opened) Show(options.page, options.zoom, options.percent);
  return opened;
}

void CViewerWindow::Show(int page, Zoom zoom, double percent) {
  constexpr double kWhole = 100;
  if (page > 1 && m_pImageWnd->LoadPage(page)) FollowPage();
  switch (zoom) {
    case Zoom::Kept:
      return;
    case Zoom::Percent:
      m_pImageWnd->ZoomToScaleFactor(percent / kWhole);
      break;
    case Zoom::Width:
      m_pImageWnd->FitToWidth();
      break;
    case Zoom::Height:
      m_pImageWnd->FitToHeight();
      break;
    case Zoom::Page:
      m_pImageWnd->BestFit();
      break;
  }
  UpdateZoomStatus();
}

void CViewerWindow::ShowTitle() {
  const bool open = m_pImageWnd != nullptr && m_pImageWnd->GetMaxPage() > 0;
  std::string title = AfxGetAppName();
  if (open && m_file != nullptr)
    title = std::filesystem::path(m_file->Name()).filename().string() + " - " + title;
  m_strTitle = title.c_str();
  SetWindowText(m_strTitle);
}

bool CViewerWindow::OpenPath(const std::string& path) {
  return Open(std::make_unique<InputFile>(path), Options{});
}

bool CViewerWindow::OpenDroppedFile(const char* path) {
  OpenPath(path);  // a failure is told and shown already
  return true;
}

void CViewerWindow::Ask() {
  constexpr char kFilter[] = "*.*\0*.*\0";
  CFileDialog dialog(TRUE, nullptr, nullptr, OFN_HIDEREADONLY | OFN_PATHMUSTEXIST | OFN_FILEMUSTEXIST,
                     nullptr, this);
  dialog.m_ofn.lpstrFilter = kFilter;
  std::vector<char> name(4096);
  dialog.m_ofn.lpstrFile = name.data();
  dialog.m_ofn.nMaxFile = static_cast<DWORD>(name.size());
  if (dialog.DoModal() == IDOK && m_hWnd != nullptr) OpenPath(dialog.m_ofn.lpstrFile);
}

void CViewerWindow::OnReload() {
  if (m_file == nullptr || m_pImageWnd == nullptr) return;
  const int page = m_pImageWnd->GetCurrPage();
  // The page again, or the last one of a file that has become shorter.
  if (!OpenImageFile(m_file->Path().c_str()) || m_hWnd == nullptr) return;
  Show(std::min(page, m_pImageWnd->GetMaxPage()), Zoom::Kept, 0);
}

void CViewerWindow::GoToFile(int step) {
  if (m_file == nullptr || m_file->Path() != m_file->Name()) return;
  const std::string path = FileBeside(m_file->Path(), step);
  if (!path.empty()) OpenPath(path);
}

void CViewerWindow::OnFullScreen() {
  if (platform::ShowFullScreen(m_hWnd, !m_fullScreen)) m_fullScreen = !m_fullScreen;
}

void CViewerWindow::OnAbout() {
  MessageBox("Tessarel " TESSAREL_VERSION, AfxGetAppName(), MB_OK | MB_ICONINFORMATION);
}

void CViewerWindow::OnDestroy() {
  TheViewerApp().Forget(this);
  CImageFrame::OnDestroy();
}
