#include "platform/window/detail/queue.h"

#include <QAbstractEventDispatcher>
#include <QApplication>
#include <QCursor>
#include <QElapsedTimer>
#include <QThread>
#include <QTimer>
#include <QTimerEvent>
#include <algorithm>
#include <utility>

#include "platform/window/detail/mdi_windows.h"
#include "platform/window/detail/modal_widget.h"
#include "platform/window/mdi.h"
#include "platform/window/window.h"

namespace platform {
namespace {

PreTranslateHook g_preTranslate = nullptr;
IdleHook g_idle = nullptr;

// Waits inside empty polling peeks: short enough that WM_ENTERIDLE comes a hundred times a second for a
// while, and then ever longer, so that an idle program lets the processor sleep. Whatever comes ends a wait
// at once.
constexpr int kPollWaitMs = 10;
constexpr int kShortPolls = 20;
constexpr int kLongestPollWaitMs = 10'000;
constexpr int kDoublings = 10;  // of the wait, until it is longer than the longest

int PollWait(int emptyPolls) {
  if (emptyPolls < kShortPolls) return kPollWaitMs;
  return std::min(kPollWaitMs << std::min(emptyPolls - kShortPolls + 1, kDoublings), kLongestPollWaitMs);
}

// Two empty peeks closer together than this belong to a polling loop.
constexpr qint64 kPollGapNs = 200'000;
constexpr qint64 kLongestWithoutQtMs = 10;

/// A key belongs to the window that has the keyboard when the key's turn comes: what was typed before may
/// have moved it on.
void FollowFocus(MSG& message) {
  if (message.message < WM_KEYFIRST || message.message > WM_KEYLAST) return;
  const HWND focus = GetFocus();
  if (focus != nullptr && GetTopLevelWindow(focus) == GetTopLevelWindow(message.hwnd)) message.hwnd = focus;
}

}  // namespace

DWORD MessageTime() {
  static QElapsedTimer timer = [] {
    QElapsedTimer t;
    t.start();
    return t;
  }();
  return static_cast<DWORD>(timer.elapsed());
}

POINT PointerPosition() {
  const QPoint position = QCursor::pos();
  return {position.x(), position.y()};
}

void SetPreTranslateHook(PreTranslateHook hook) {
  g_preTranslate = hook;
}

void SetIdleHook(IdleHook hook) {
  g_idle = hook;
}

bool PreTranslateByHook(MSG* message) {
  return g_preTranslate != nullptr && g_preTranslate(message);
}

Queue& Queue::Instance() {
  static Queue queue;
  return queue;
}

void Queue::Kick() {
  if (m_kickPosted || QCoreApplication::instance() == nullptr) return;
  m_kickPosted = true;
  QCoreApplication::postEvent(this, new QEvent(QEvent::User));
}

void Queue::Post(const MSG& message) {
  if (QThread::currentThread() != thread()) {
    QMetaObject::invokeMethod(
        this, [this, message] { Post(message); }, Qt::QueuedConnection);
    return;
  }
  m_posted.push_back(message);
  Kick();
}

void Queue::PostInput(const MSG& message) {
  if (message.message == WM_MOUSEMOVE && !m_input.empty() && m_input.back().message == WM_MOUSEMOVE &&
      m_input.back().hwnd == message.hwnd && m_input.back().wParam == message.wParam)
    m_input.back() = message;
  else
    m_input.push_back(message);
  Kick();
}

void Queue::PostQuit(int exitCode) {
  m_quit = true;
  m_exitCode = exitCode;
  RejectModalWidgets();
  Kick();
}

void Queue::PurgeWindow(HWND window) {
  const auto ofWindow = [window](const MSG& m) { return m.hwnd == window; };
  m_posted.erase(std::remove_if(m_posted.begin(), m_posted.end(), ofWindow), m_posted.end());
  m_input.erase(std::remove_if(m_input.begin(), m_input.end(), ofWindow), m_input.end());
  std::vector<std::uintptr_t> ids;
  for (const Timer& timer : m_timers)
    if (timer.window == window) ids.push_back(timer.id);
  for (const std::uintptr_t id : ids) RemoveTimer(window, id);
}

bool Queue::Fits(const MSG& message, HWND window, UINT first, UINT last) {
  if (window != nullptr && message.hwnd != window && !IsChild(window, message.hwnd)) return false;
  return (first == 0 && last == 0) || (message.message >= first && message.message <= last);
}

bool Queue::TakeFrom(std::deque<MSG>& queue, MSG* message, HWND window, UINT first, UINT last, bool remove) {
  const auto found =
      std::find_if(queue.begin(), queue.end(), [&](const MSG& m) { return Fits(m, window, first, last); });
  if (found == queue.end()) return false;
  *message = *found;
  if (remove) {
    queue.erase(found);
    Taken(*message);
  }
  return true;
}

void Queue::Taken(const MSG& message) {
  TrackKeyState(message);
}

bool Queue::TakeTimer(MSG* message, HWND window, UINT first, UINT last, bool remove) {
  for (std::size_t i = 0; i < m_timers.size(); ++i) {
    Timer& timer = m_timers[i];
    if (!timer.due) continue;
    const MSG due = {timer.window,  WM_TIMER,          timer.id, reinterpret_cast<LPARAM>(timer.procedure),
                     MessageTime(), PointerPosition(), 0};
    if (!Fits(due, window, first, last)) continue;
    *message = due;
    if (remove) {
      Timer taken = timer;  // to the back, so that a fast timer doesn't starve the others
      taken.due = false;
      m_timers.erase(m_timers.begin() + static_cast<std::ptrdiff_t>(i));
      m_timers.push_back(taken);
    }
    return true;
  }
  return false;
}

bool Queue::Take(MSG* message, HWND window, UINT first, UINT last, bool remove) {
  if (TakeFrom(m_posted, message, window, first, last, remove)) return true;
  if (!m_input.empty()) FollowFocus(m_input.front());
  if (TakeFrom(m_input, message, window, first, last, remove)) return true;
  if (m_quit) {
    *message = {nullptr, WM_QUIT, static_cast<WPARAM>(m_exitCode), 0, MessageTime(), {}, 0};
    if (remove) m_quit = false;
    return true;
  }
  return TakeTimer(message, window, first, last, remove);
}

bool Queue::Pull(MSG* message, HWND window, UINT first, UINT last, bool remove) {
  // A handler that posts to itself without end must not keep Qt from painting and from seeing input.
  const bool starved = !m_sinceQt.isValid() || m_sinceQt.hasExpired(kLongestWithoutQtMs);
  if (!starved && Take(message, window, first, last, remove)) return true;
  const int outerLevel = m_pullLevel;
  m_pullLevel = QThread::currentThread()->loopLevel();
  QCoreApplication::processEvents();
  QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
  m_pullLevel = outerLevel;
  m_sinceQt.start();
  RethrowKept();
  return Take(message, window, first, last, remove);
}

void Queue::LetPaint() {
  const int outerLevel = m_pullLevel;
  m_pullLevel = QThread::currentThread()->loopLevel();
  QCoreApplication::processEvents(QEventLoop::ExcludeUserInputEvents);
  m_pullLevel = outerLevel;
  // A foreign loop must hear of what it was just kept from.
  if (!m_posted.empty() || !m_input.empty() || m_quit) Kick();
  RethrowKept();
}

void Queue::ServeBusy() {
  const int outerLevel = std::exchange(m_pullLevel, QThread::currentThread()->loopLevel());
  QCoreApplication::processEvents();
  // Each once: one that is due again as soon as it is called must not hold the command up.
  MSG timer;
  for (std::size_t left = m_timers.size(); left > 0 && TakeTimer(&timer, nullptr, 0, 0, true); --left) {
    try {
      Dispatch(timer);
    } catch (...) {
      Keep(std::current_exception());
    }
  }
  m_pullLevel = outerLevel;
  if (!m_posted.empty() || m_quit) Kick();
}

bool Queue::DropInput() {
  const auto isEscape = [](const MSG& m) { return m.message == WM_KEYDOWN && m.wParam == VK_ESCAPE; };
  const bool typed = std::any_of(m_input.begin(), m_input.end(), isEscape);
  for (const MSG& message : m_input) Taken(message);
  m_input.clear();
  return std::erase_if(m_posted, isEscape) > 0 || typed;
}

std::size_t Queue::CountOfCloses() const {
  return static_cast<std::size_t>(std::count_if(m_posted.begin(), m_posted.end(), [](const MSG& m) {
    return m.message == WM_CLOSE || (m.message == WM_SYSCOMMAND && (m.wParam & 0xfff0U) == SC_CLOSE);
  }));
}

void Queue::Wait(int milliseconds) {
  const int outerLevel = m_pullLevel;
  m_pullLevel = QThread::currentThread()->loopLevel();
  if (milliseconds < 0) {
    QCoreApplication::processEvents(QEventLoop::WaitForMoreEvents);
  } else {
    QTimer limit;
    limit.setSingleShot(true);
    limit.setTimerType(Qt::PreciseTimer);
    limit.start(milliseconds);
    QCoreApplication::processEvents(QEventLoop::WaitForMoreEvents);
  }
  m_pullLevel = outerLevel;
  RethrowKept();
}

void Queue::RethrowKept() {
  if (m_exception) std::rethrow_exception(std::exchange(m_exception, nullptr));
}

bool Queue::event(QEvent* event) {
  if (event->type() != QEvent::User) return QObject::event(event);
  m_kickPosted = false;  // first, since a handler may start a loop of its own
  // While our own Pull lets Qt work it takes the messages itself; a deeper loop level is a foreign loop
  // inside.
  const bool pulledByUs = m_pullLevel >= 0 && QThread::currentThread()->loopLevel() <= m_pullLevel;
  if (!pulledByUs && !m_held) Drain();
  return true;
}

void Queue::Drain() {
  const int outerLevel = std::exchange(m_pullLevel, -1);
  MSG message;
  while (Take(&message, nullptr, 0, 0, false)) {
    if (message.message == WM_QUIT) {
      if (m_pumpDepth > 0) break;  // it belongs to the pump below on the stack
      m_quit = false;
      QCoreApplication::exit(static_cast<int>(message.wParam));
      break;
    }
    Take(&message, nullptr, 0, 0, true);
    try {
      if (PreTranslateByHook(&message)) continue;
      TranslateMessage(&message);
      Dispatch(message);
    } catch (...) {
      Keep(std::current_exception());
    }
  }
  if (g_idle != nullptr) g_idle();
  m_pullLevel = outerLevel;
}

// Timers

void Queue::AddTimer(HWND window, std::uintptr_t id, UINT milliseconds, TIMERPROC procedure) {
  RemoveTimer(window, id);
  constexpr UINT kShortest = 10;  // as the classic timers
  const UINT period = std::max(milliseconds, kShortest);
  m_timers.push_back(
      {startTimer(static_cast<int>(std::min(period, 0x7fffffffU))), window, id, period, 0, procedure, false});
}

bool Queue::RemoveTimer(HWND window, std::uintptr_t id) {
  const auto found = std::find_if(m_timers.begin(), m_timers.end(),
                                  [&](const Timer& t) { return t.window == window && t.id == id; });
  if (found == m_timers.end()) return false;
  killTimer(found->qtId);
  m_timers.erase(found);
  return true;
}

void Queue::timerEvent(QTimerEvent* event) {
  for (Timer& timer : m_timers)
    if (timer.qtId == event->timerId()) timer.due = true;
  Kick();
}

void Queue::AdvanceTimers(UINT milliseconds) {
  for (Timer& timer : m_timers) {
    timer.elapsed += milliseconds;
    if (timer.elapsed < timer.milliseconds) continue;
    timer.elapsed %= timer.milliseconds;
    timer.due = true;
  }
  Kick();
}

TIMERPROC Queue::TimerProcedure(HWND window, std::uintptr_t id) const {
  const auto found = std::find_if(m_timers.begin(), m_timers.end(),
                                  [&](const Timer& t) { return t.window == window && t.id == id; });
  return found == m_timers.end() ? nullptr : found->procedure;
}

}  // namespace platform

using platform::Queue;

BOOL PeekMessage(MSG* message, HWND window, UINT first, UINT last, UINT remove) {
  platform::EnsureApplication();
  Queue::PumpScope pump;
  const bool take = (remove & PM_REMOVE) != 0;
  Queue& queue = Queue::Instance();
  if (queue.Pull(message, window, first, last, take)) return TRUE;
  if (take) return FALSE;
  static QElapsedTimer sinceEmpty;
  const bool polling = sinceEmpty.isValid() && sinceEmpty.nsecsElapsed() < platform::kPollGapNs;
  static int emptyPolls = 0;
  emptyPolls = polling ? std::min(emptyPolls + 1, platform::kShortPolls + platform::kDoublings) : 0;
  if (polling) queue.Wait(platform::PollWait(emptyPolls));
  const bool found = queue.Take(message, window, first, last, false);
  if (found) emptyPolls = 0;
  sinceEmpty.start();
  return found;
}

void PaintWhileBusy() {
  if (QCoreApplication::instance() != nullptr) Queue::Instance().LetPaint();
}

BOOL GetMessage(MSG* message, HWND window, UINT first, UINT last) {
  platform::EnsureApplication();
  Queue::PumpScope pump;
  Queue& queue = Queue::Instance();
  while (!queue.Pull(message, window, first, last, true)) queue.Wait(-1);
  return message->message != WM_QUIT;
}

BOOL TranslateMessage(const MSG* message) {
  if (message->message != WM_KEYDOWN && message->message != WM_SYSKEYDOWN) return FALSE;
  if (message->lPrivate == 0) return TRUE;
  MSG typed = *message;
  typed.message = message->message == WM_KEYDOWN ? WM_CHAR : WM_SYSCHAR;
  typed.wParam = message->lPrivate;
  typed.lPrivate = 0;
  Queue::Instance().Post(typed);
  return TRUE;
}

LRESULT DispatchMessage(const MSG* message) {
  // A loop of Qt's that the handler runs leaves WM_QUIT to the pump that called this.
  const Queue::PumpScope pump;
  return platform::Dispatch(*message);
}

namespace platform {

LRESULT Dispatch(const MSG& message) {
  if (message.message == WM_TIMER && message.lParam != 0) {
    // Looked up, not called by its address: anybody can post a WM_TIMER.
    const TIMERPROC procedure = Queue::Instance().TimerProcedure(message.hwnd, message.wParam);
    if (procedure != nullptr) procedure(message.hwnd, WM_TIMER, message.wParam, message.time);
    return 0;
  }
  const bool press = message.message == WM_LBUTTONDOWN || message.message == WM_RBUTTONDOWN ||
                     message.message == WM_MBUTTONDOWN;
  if (press) ActivateMdiChildAround(message.hwnd);
  return message.hwnd == nullptr ? 0
                                 : SendMessage(message.hwnd, message.message, message.wParam, message.lParam);
}

}  // namespace platform

void PostQuitMessage(int exitCode) {
  Queue::Instance().PostQuit(exitCode);
}

BOOL PostMessage(HWND window, UINT message, WPARAM wParam, LPARAM lParam) {
  // The window table belongs to the user-interface thread; from elsewhere the message goes unchecked.
  const bool ownThread = QThread::currentThread() == Queue::Instance().thread();
  if (ownThread && window != nullptr && !IsWindow(window)) return FALSE;
  Queue::Instance().Post({window, message, wParam, lParam, platform::MessageTime(), {}, 0});
  return TRUE;
}

std::uintptr_t SetTimer(HWND window, std::uintptr_t id, UINT milliseconds, TIMERPROC procedure) {
  if (window != nullptr && !IsWindow(window)) return 0;
  platform::EnsureApplication();
  if (window == nullptr) id = Queue::Instance().NextTimerId();
  Queue::Instance().AddTimer(window, id, milliseconds, procedure);
  return id == 0 ? 1 : id;
}

BOOL KillTimer(HWND window, std::uintptr_t id) {
  return Queue::Instance().RemoveTimer(window, id);
}
