#include <sys/stat.h>
#include <unistd.h>

#include <QApplication>
#include <QDir>
#include <QFileInfo>
#include <QPointer>
#include <memory>

#include "platform/window/detail/accessible_factory.h"
#include "platform/window/detail/program_style.h"
#include "platform/window/detail/queue.h"
#include "platform/window/pump.h"

namespace {

/// Ends our loops when the host or the session manager ends the application.
class QuitFilter : public QObject {
 public:
  bool eventFilter(QObject* object, QEvent* event) override {
    const bool quits = event->type() == QEvent::Quit && object == QCoreApplication::instance();
    // A host's own loop ends by itself; only a loop of ours has to be told.
    if (quits && platform::Queue::Instance().InPump()) PostQuitMessage(0);
    return false;
  }
};

/// Follows the application object, the host's or ours, whichever there is.
void WatchForQuit() {
  static auto* filter = new QuitFilter;  // outlives every application object
  static QPointer<QCoreApplication> watched;
  if (watched == QCoreApplication::instance()) return;
  watched = QCoreApplication::instance();
  watched->installEventFilter(filter);
}

std::unique_ptr<QApplication>& Owned() {
  static auto* application =
      new std::unique_ptr<QApplication>;  // ended by EndApplication, not by static teardown
  return *application;
}

}  // namespace

namespace {

/// Qt keeps sockets and the like in this folder and complains where no session manager has made it.
void ProvideRuntimeFolder() {
  if (qEnvironmentVariableIsSet("XDG_RUNTIME_DIR")) return;
  const QString folder = QDir::tempPath() + "/runtime-" + QString::number(getuid());
  if (mkdir(QFile::encodeName(folder), S_IRWXU) == 0 || QFileInfo(folder).ownerId() == getuid())
    qputenv("XDG_RUNTIME_DIR", QFile::encodeName(folder));
}

}  // namespace

bool platform::IsOffscreen() {
  static const bool offscreen = QGuiApplication::platformName() == "offscreen";
  return offscreen;
}

bool platform::GrabsMouse() {
  static const bool grabs =
      !IsOffscreen() && !QGuiApplication::platformName().startsWith(QLatin1String("wayland"));
  return grabs;
}

void platform::EnsureApplication(int* argc, char** argv) {
  if (QCoreApplication::instance() != nullptr) {
    WatchForQuit();
    ServeAccessibility();
    return;
  }
  ProvideRuntimeFolder();
  static int noArguments = 1;
  static char name[] = "tessarel12";
  static char* arguments[] = {name, nullptr};
  Owned() = argc == nullptr ? std::make_unique<QApplication>(noArguments, arguments)
                            : std::make_unique<QApplication>(*argc, argv);
  QApplication::setQuitOnLastWindowClosed(false);
  ServeAccessibility();  // behind Qt's own, which would answer first
  SetProgramStyle();
  WatchForQuit();
}

void platform::EndApplication() {
  if (!Owned()) return;
  QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
  Owned().reset();
}
