#include "platform/window/busy.h"

#include <QApplication>
#include <QKeyEvent>
#include <QThread>
#include <memory>
#include <utility>

#include "platform/window/detail/busy_filter.h"
#include "platform/window/detail/queue.h"
#include "platform/window/detail/virtual_keys.h"
#include "platform/window/window.h"

namespace platform {
namespace {

// Often enough for a timer of a few milliseconds.
constexpr std::chrono::milliseconds kServeInterval(4);

int LoopLevel() {
  return QThread::currentThread()->loopLevel();
}

/// What nested scopes share.
struct Busy {
  Busy() : closes(Queue::Instance().CountOfCloses()) {}
  BusyFilter filter;
  std::size_t closes;  ///< those that waited before the command began
  bool stopped = false;
  int scopes = 0;
  // Of the innermost Serve; -1: none
  int servingLevel = -1;
  int servingDepth = -1;
};

std::unique_ptr<Busy>& TheBusy() {
  static std::unique_ptr<Busy> busy;
  return busy;
}

bool IsInput(QEvent::Type type) {
  switch (type) {
    case QEvent::KeyPress:
    case QEvent::KeyRelease:
    case QEvent::ShortcutOverride:
    case QEvent::Shortcut:
    case QEvent::InputMethod:
    case QEvent::MouseButtonPress:
    case QEvent::MouseButtonRelease:
    case QEvent::MouseButtonDblClick:
    case QEvent::MouseMove:
    case QEvent::Wheel:
    case QEvent::ContextMenu:
    case QEvent::TouchBegin:
    case QEvent::TouchUpdate:
    case QEvent::TouchEnd:
    case QEvent::TabletPress:
    case QEvent::TabletMove:
    case QEvent::TabletRelease:
    case QEvent::NativeGesture:
    case QEvent::DragEnter:
    case QEvent::DragMove:
    case QEvent::Drop:
      return true;
    default:
      return false;
  }
}

}  // namespace

BusyFilter::BusyFilter() : m_level(LoopLevel()) {
  QCoreApplication::instance()->installEventFilter(this);
}

BusyFilter::~BusyFilter() = default;

bool BusyFilter::eventFilter(QObject* /*object*/, QEvent* event) {
  if (!IsInput(event->type()) || LoopLevel() > m_level) return false;
  if (event->type() == QEvent::KeyPress || event->type() == QEvent::KeyRelease) NoteKey(*event);
  event->ignore();
  return true;
}

void BusyFilter::NoteKey(const QEvent& event) {
  const auto& key = static_cast<const QKeyEvent&>(event);
  const bool down = key.type() == QEvent::KeyPress;
  MSG message{};
  message.message = down ? WM_KEYDOWN : WM_KEYUP;
  message.wParam = static_cast<WPARAM>(VirtualKeyOf(key));
  TrackKeyState(message);
  if (down && key.key() == Qt::Key_Escape && !key.isAutoRepeat()) m_escape = true;
}

bool RunsInLoop() {
  return QCoreApplication::instance() != nullptr && (Queue::Instance().InPump() || LoopLevel() > 0);
}

LoopScope::LoopScope() {
  Queue::Instance().BeginPump();
}

LoopScope::~LoopScope() {
  Queue::Instance().EndPump();
}

BusyScope::BusyScope() : m_active(RunsInLoop()), m_next(Clock::now() + kServeInterval) {
  if (!m_active) return;
  if (TheBusy() == nullptr) TheBusy() = std::make_unique<Busy>();
  ++TheBusy()->scopes;
}

BusyScope::~BusyScope() {
  if (m_active && --TheBusy()->scopes == 0) TheBusy().reset();
}

bool BusyScope::Serve() {
  if (!m_active) return true;
  if (Clock::now() < m_next) return !IsStopped();
  Busy& busy = *TheBusy();
  Queue& queue = Queue::Instance();
  const int level = std::exchange(busy.servingLevel, LoopLevel());
  {
    const Queue::PumpScope pump;
    const int depth = std::exchange(busy.servingDepth, queue.PumpDepth());
    queue.ServeBusy();
    busy.servingDepth = depth;
  }
  busy.servingLevel = level;
  if (busy.filter.IsEscapePressed() || queue.DropInput() || queue.CountOfCloses() > busy.closes ||
      queue.IsQuitPosted())
    busy.stopped = true;
  m_next = Clock::now() + kServeInterval;
  return !busy.stopped;
}

bool BusyScope::IsStopped() const {
  return m_active && TheBusy()->stopped;
}

bool BusyScope::IsServing() {
  const Busy* const busy = TheBusy().get();
  return busy != nullptr && busy->servingLevel == LoopLevel() &&
         busy->servingDepth == Queue::Instance().PumpDepth();
}

bool BusyScope::PutOffClose(HWND window) {
  return IsServing() && PostMessage(window, WM_CLOSE, 0, 0) != FALSE;
}

}  // namespace platform
