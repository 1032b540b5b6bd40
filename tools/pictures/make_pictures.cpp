// Makes the pictures of the documents.
//
//   make_pictures FAX FOLDER

#include <QApplication>
#include <QDockWidget>
#include <QMainWindow>
#include <QPlainTextEdit>
#include <cstdio>
#include <filesystem>
#include <string>

#include "examples/qt/viewer_widget.h"
#include "tessarel12_testing.h"

namespace {

namespace fs = std::filesystem;
namespace ui = platform::testing;

class Application : public CWinApp {
 public:
  Application() : CWinApp("Tessarel12") {}
};
Application g_application;

/// As an idle program looks: buttons enabled and checked, everything painted.
void Settle(CWnd& window) {
  ui::PumpUntilIdle();
  window.SendMessageToDescendants(WM_IDLEUPDATECMDUI, TRUE, 0);
  ui::PumpUntilIdle();
}

bool PictureOfViewer(const std::string& fax, const std::string& picture) {
  auto* frame = new CImageFrame;  // ends with its window
  if (frame->LoadFrame(IDR_ZP_VIEWER) == FALSE) return false;
  frame->MoveWindow(0, 0, 1000, 700);
  frame->ShowWindow(SW_SHOW);
  if (!frame->OpenImageFile(fax.c_str())) return false;
  for (const UINT command : {ID_ZP_LAST_PAGE, ID_ZP_VIEW_THUMBNAILS, ID_ZP_ZOOM_FIT_TO_WIDTH})
    frame->SendMessage(WM_COMMAND, command);
  Settle(*frame);
  const bool made = ui::SaveWindowPicture(*frame, picture.c_str());
  frame->DestroyWindow();
  return made;
}

bool PictureOfShell(const std::string& fax, const std::string& picture) {
  g_application.AddDocTemplate(new CMultiDocTemplate(IDR_ZP_HOST, RUNTIME_CLASS(CZPDoc),
                                                     RUNTIME_CLASS(CZPmdiChild), RUNTIME_CLASS(CZPView)));
  auto* frame = new CZPmdiFrame;  // ends with its window
  g_application.m_pMainWnd = frame;
  if (frame->LoadFrame(IDR_ZP_HOST) == FALSE) return false;
  frame->MoveWindow(0, 0, 800, 624);
  frame->ShowWindow(SW_SHOW);
  for (const char* name : {"uno.tif", "due.tif", "tre.tif"}) {
    const fs::path copy = fs::path(picture).parent_path() / name;
    fs::copy_file(fax, copy, fs::copy_options::overwrite_existing);
    if (g_application.OpenDocumentFile(copy.c_str()) == nullptr) return false;
  }
  frame->MDITile();
  for (const UINT command :
       {ID_ZP_NEXT_PAGE, ID_ZP_ROTATE_RIGHT, ID_ZP_VIEW_THUMBNAILS, ID_ZP_ZOOM_FIT_TO_WIDTH})
    frame->SendMessage(WM_COMMAND, command);
  Settle(*frame);
  const bool made = ui::SaveWindowPicture(*frame, picture.c_str());
  g_application.m_pMainWnd = nullptr;
  frame->DestroyWindow();
  for (const char* name : {"uno.tif", "due.tif", "tre.tif"})
    fs::remove(fs::path(picture).parent_path() / name);
  return made;
}

bool PictureInQt(const std::string& fax, const std::string& picture) {
  QMainWindow window;
  window.setCentralWidget(new QPlainTextEdit("The program's own widgets."));
  auto* dock = new QDockWidget("Fax", &window);
  auto* viewer = new ViewerWidget;
  dock->setWidget(viewer);
  window.addDockWidget(Qt::RightDockWidgetArea, dock);
  window.resize(1000, 600);
  window.show();
  window.resizeDocks({dock}, {740}, Qt::Horizontal);
  ui::PumpUntilIdle();
  if (!viewer->Open(fax.c_str())) return false;
  viewer->Frame()->SendMessage(WM_COMMAND, ID_ZP_ZOOM_FIT_TO_WIDTH);
  Settle(*viewer->Frame());
  const bool made = window.grab().save(picture.c_str());
  delete dock;
  return made;
}

}  // namespace

int main(int argc, char** argv) {
  if (argc != 3) {
    std::fputs("usage: make_pictures FAX FOLDER\n", stderr);
    return 2;
  }
  setenv("QT_QPA_PLATFORM", "offscreen", 1);
  AfxWinInit(argc, argv);
  const std::string fax = argv[1];
  const std::string folder = argv[2];
  const bool made = PictureOfViewer(fax, folder + "/viewer.png") &&
                    PictureOfShell(fax, folder + "/shell.png") && PictureInQt(fax, folder + "/qt.png");
  if (!made) std::fputs("make_pictures: a picture can't be made\n", stderr);
  return made ? 0 : 1;
}
