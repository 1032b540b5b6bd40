#include "viewer_window.h"

#include <utility>

#include "placement.h"
#include "recent_files.h"
#include "resources.h"
#include "settings.h"
#include "viewer_app.h"
#include "viewer_page.h"

BEGIN_MESSAGE_MAP(CViewerWindow, CImageFrame)
ON_WM_CREATE()
ON_WM_DESTROY()
ON_WM_DROPFILES()
ON_WM_TIMER()
ON_COMMAND(ID_FILE_OPEN, OnOpen)
ON_COMMAND(kReload, OnReload)
ON_COMMAND(kNextFile, OnNextFile)
ON_COMMAND(kPreviousFile, OnPreviousFile)
ON_COMMAND_RANGE(kFirstRecent, kLastRecent, OnRecent)
ON_COMMAND(ID_APP_ABOUT, OnAbout)
ON_COMMAND(kFullScreen, OnFullScreen)
ON_COMMAND(kTurnAtEnd, OnTurnAtEnd)
ON_COMMAND_RANGE(kKeepNoFit, kKeepPage, OnKeepFit)
ON_COMMAND(kCopy, OnCopy)
ON_COMMAND(kSelectArea, OnSelectArea)
ON_COMMAND(kClearSelection, OnClearSelection)
ON_COMMAND(ID_ZP_FILE_EXPORT, OnExportPages)
ON_COMMAND(kPrintPages, OnPrintPages)
ON_COMMAND(kSaveTurned, OnSaveTurned)
ON_COMMAND(kWatchFolder, OnWatchFolder)
ON_COMMAND(kOpenNewFiles, OnOpenNewFiles)
ON_UPDATE_COMMAND_UI(kPrintPages, OnUpdatePageCommand)
ON_UPDATE_COMMAND_UI(kSaveTurned, OnUpdateSaveTurned)
ON_UPDATE_COMMAND_UI(kWatchFolder, OnUpdateWatchFolder)
ON_UPDATE_COMMAND_UI(kOpenNewFiles, OnUpdateOpenNewFiles)
ON_UPDATE_COMMAND_UI(kFullScreen, OnUpdateFullScreen)
ON_UPDATE_COMMAND_UI(kTurnAtEnd, OnUpdateTurnAtEnd)
ON_UPDATE_COMMAND_UI_RANGE(kKeepNoFit, kKeepPage, OnUpdateKeepFit)
ON_UPDATE_COMMAND_UI(kReload, OnUpdateReload)
ON_UPDATE_COMMAND_UI_RANGE(kNextFile, kPreviousFile, OnUpdateOtherFile)
ON_UPDATE_COMMAND_UI_RANGE(kFirstRecent, kLastRecent, OnUpdateRecent)
ON_UPDATE_COMMAND_UI_RANGE(kCopy, kClearSelection, OnUpdatePageCommand)
ON_UPDATE_COMMAND_UI_RANGE(kDamagePane, kDpiPane, OnUpdatePane)
END_MESSAGE_MAP()

CRuntimeClass* CViewerWindow::ImageWindowClass() {
  return RUNTIME_CLASS(CViewerPage);
}

CViewerPage* CViewerWindow::PageWindow() const {
  return static_cast<CViewerPage*>(m_pImageWnd);
}

/// Not one that is only made for its picture: nothing of the user's goes into it, or comes out of it.
bool CViewerWindow::IsUserWindow() const {
  return TheViewerApp().HasUser();
}

int CViewerWindow::OnCreate(LPCREATESTRUCT cs) {
  if (CImageFrame::OnCreate(cs) == -1 || !MakePanes()) return -1;
  DragAcceptFiles();
  m_wndToolBar.EnableChevron();
  constexpr UINT kSecond = 1000;
  if (IsUserWindow()) SetTimer(kLookTimer, kSecond);
  return 0;
}

bool CViewerWindow::Make(const Geometry& geometry) {
  if (LoadFrame(IDR_ZP_HOST) == FALSE) return false;
  AddMenuItems();
  ShowTitle();
  if (IsUserWindow()) {
    PageWindow()->KeepFit(settings::ReadNumber("KeepFit", FitModeNone));
    PageWindow()->TurnAtEnd(settings::ReadNumber("TurnAtEnd", 1) != 0);
  }
  if (geometry.width < 0) return true;
  const UINT keep = geometry.x < 0 ? SWP_NOMOVE : 0U;
  SetWindowPos(nullptr, geometry.x, geometry.y, geometry.width, geometry.height, SWP_NOZORDER | keep);
  return true;
}

bool CViewerWindow::Open(std::unique_ptr<InputFile> file, const Options& options) {
  const std::unique_ptr<InputFile> former = std::exchange(m_file, std::move(file));
  m_fileWatch.reset();
  const bool opened = OpenImageFile(m_file->Path().c_str());
  if (m_hWnd == nullptr) return false;
  ShowTitle();
  if (opened && HasPath()) m_fileWatch.emplace(m_file->Path());
  if (opened && HasPath() && IsUserWindow()) {
    const std::string path = FullPath(m_file->Path());
    RememberFile(path);
    settings::WriteText("Folder", std::filesystem::path(path).parent_path().string());
  }
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

void CViewerWindow::OnDestroy() {
  if (IsUserWindow()) SavePlacement(m_hWnd);
  TheViewerApp().Forget(this);
  CImageFrame::OnDestroy();
}
