// The peer of the viewer's start: a window of the toolkit with nothing in it, gone as soon as it is painted.

#include <QApplication>
#include <QWidget>
#include <cstdio>

#include "benchmarks/viewer/peak_memory.h"

namespace {

class Window : public QWidget {
 protected:
  void paintEvent(QPaintEvent*) override {
    std::puts("painted");
    std::fflush(stdout);
    QMetaObject::invokeMethod(qApp, "quit", Qt::QueuedConnection);
  }
};

}  // namespace

int main(int argc, char** argv) {
  const QApplication application(argc, argv);
  Window window;
  window.resize(1000, 760);
  window.show();
  const int result = QApplication::exec();
  std::printf("%ld\n", PeakMemory());
  return result;
}
