// A Qt program that has the viewer in it: docked beside its own widgets, and modal on top of its window.
//
//   qt_host [FILE]

#include <tessarel12.h>

#include "viewer_widget.h"

#include <QApplication>
#include <QDockWidget>
#include <QMainWindow>
#include <QPlainTextEdit>
#include <QToolBar>

int main(int argc, char** argv) {
  const QApplication application(argc, argv);
  const QByteArray file = argc > 1 ? argv[1] : "";

  QMainWindow window;
  window.setCentralWidget(new QPlainTextEdit("The program's own widgets."));
  auto* dock = new QDockWidget("Fax", &window);
  auto* viewer = new ViewerWidget;
  dock->setWidget(viewer);
  window.addDockWidget(Qt::RightDockWidgetArea, dock);
  if (!file.isEmpty()) viewer->Open(file);

  window.addToolBar("Fax")->addAction("Show on top", [&] { ShowModal(&window, file); });
  window.resize(1200, 800);
  window.show();
  return QApplication::exec();
}
