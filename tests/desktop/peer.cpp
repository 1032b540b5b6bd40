// The other program. "peer drag FILE": a window from which the file can be dragged, until it is ended.
// "peer paste": tells the size and the resolution of the picture in the clipboard.

#include <QtCore/QMimeData>
#include <QtCore/QTimer>
#include <QtCore/QUrl>
#include <QtGui/QClipboard>
#include <QtGui/QDrag>
#include <QtGui/QImage>
#include <QtGui/QMouseEvent>
#include <QtWidgets/QApplication>
#include <QtWidgets/QWidget>
#include <cstdio>

namespace {

class Source : public QWidget {
 public:
  explicit Source(const QString& file) : m_file(file) {
    setWindowTitle(u"peer"_qs);
    // Wherever a desktop of 1100 by 900 puts it, its middle is covered, and a corner is not.
    setFixedSize(700, 500);
  }

 protected:
  void mouseMoveEvent(QMouseEvent* event) override {
    if (event->buttons() != Qt::LeftButton) return;
    auto* const data = new QMimeData;
    data->setUrls({QUrl::fromLocalFile(m_file)});
    auto* const drag = new QDrag(this);  // lasts until the target has fetched the file's name
    drag->setMimeData(data);
    drag->exec(Qt::CopyAction);
  }

 private:
  QString m_file;
};

void TellPicture() {
  const QImage image = QApplication::clipboard()->image();
  if (image.isNull()) return;
  constexpr double kInchesInMeter = 39.3701;
  std::printf("%dx%d %.0f dpi\n", image.width(), image.height(), image.dotsPerMeterX() / kInchesInMeter);
  qApp->quit();
}

}  // namespace

int main(int argc, char** argv) {
  const QApplication app(argc, argv);
  Source window(argc > 2 ? QString::fromLocal8Bit(argv[2]) : QString());
  window.show();
  QTimer timer;
  if (argc == 2) {
    QObject::connect(&timer, &QTimer::timeout, qApp, &TellPicture);
    timer.start(50);
  }
  return QApplication::exec();
}
