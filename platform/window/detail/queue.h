#pragma once

#include <QElapsedTimer>
#include <QObject>
#include <deque>
#include <exception>
#include <functional>

#include "platform/window/pump.h"

namespace platform {

/// The thread's message queue. Qt's input becomes messages here, and both our pump and any foreign event loop
/// (a host's, a menu's) take them out: each message queued posts one event to this object, the kick, whose
/// handler drains the queue when no pump of ours is at work.
class Queue : public QObject {
 public:
  static Queue& Instance();

  void Post(const MSG& message);
  /// Input; an equal move right before is replaced.
  void PostInput(const MSG& message);
  void PostQuit(int exitCode);
  bool IsQuitPosted() const { return m_quit; }
  void PurgeWindow(HWND window);

  /// Takes without looking at Qt.
  bool Take(MSG* message, HWND window, UINT first, UINT last, bool remove);
  /// Lets Qt deliver what it has, then takes. May throw what a handler called from Qt threw.
  bool Pull(MSG* message, HWND window, UINT first, UINT last, bool remove);
  /// Lets Qt deliver what it has, but no input, and takes nothing.
  void LetPaint();
  /// For a command that takes long: lets Qt deliver what it has, and calls the timers that are due. Takes
  /// nothing else. What a handler throws is kept.
  void ServeBusy();
  /// Takes all input, which is for nobody. True: Escape was among it, or was posted.
  bool DropInput();
  /// How many posted messages would close a window.
  std::size_t CountOfCloses() const;
  /// Waits in Qt for something new, at most so long (-1: for ever).
  void Wait(int milliseconds);

  void AddTimer(HWND window, std::uintptr_t id, UINT milliseconds, TIMERPROC procedure);
  bool RemoveTimer(HWND window, std::uintptr_t id);
  std::uintptr_t NextTimerId() { return ++m_lastTimerId; }
  /// Makes every timer due that would be within that time, as if it had gone by.
  void AdvanceTimers(UINT milliseconds);
  TIMERPROC TimerProcedure(HWND window, std::uintptr_t id) const;

  void Keep(std::exception_ptr exception) { m_exception = std::move(exception); }
  void RethrowKept();
  /// While it lives, foreign event loops leave the queue alone.
  void HoldKick(bool hold) { m_held = hold; }

  bool InPump() const { return m_pumpDepth > 0; }
  int PumpDepth() const { return m_pumpDepth; }
  void BeginPump() { ++m_pumpDepth; }
  void EndPump() { --m_pumpDepth; }

  /// While it lives, a loop of ours is waiting, looking for messages or dispatching one.
  class PumpScope {
   public:
    PumpScope() { Instance().BeginPump(); }
    ~PumpScope() { Instance().EndPump(); }
    PumpScope(const PumpScope&) = delete;
    PumpScope& operator=(const PumpScope&) = delete;
  };

 protected:
  bool event(QEvent* event) override;
  void timerEvent(QTimerEvent* event) override;

 private:
  struct Timer {
    int qtId;
    HWND window;
    std::uintptr_t id;
    UINT milliseconds;
    UINT elapsed;  ///< by AdvanceTimers
    TIMERPROC procedure;
    bool due;
  };

  void Kick();
  void Drain();
  static bool Fits(const MSG& message, HWND window, UINT first, UINT last);
  bool TakeFrom(std::deque<MSG>& queue, MSG* message, HWND window, UINT first, UINT last, bool remove);
  bool TakeTimer(MSG* message, HWND window, UINT first, UINT last, bool remove);
  void Taken(const MSG& message);

  std::deque<MSG> m_posted;
  std::deque<MSG> m_input;
  std::deque<Timer> m_timers;
  bool m_quit = false;
  int m_exitCode = 0;
  bool m_kickPosted = false;
  bool m_held = false;
  int m_pumpDepth = 0;
  int m_pullLevel = -1;  ///< Qt's loop level while Pull lets Qt work
  std::uintptr_t m_lastTimerId = 0x8000;
  QElapsedTimer m_sinceQt;
  std::exception_ptr m_exception;
};

/// Milliseconds since some start.
DWORD MessageTime();
POINT PointerPosition();
/// Notes an input message in the key state (virtual_keys.cpp).
void TrackKeyState(const MSG& message);
bool PreTranslateByHook(MSG* message);
/// What DispatchMessage does, from a loop of Qt's.
LRESULT Dispatch(const MSG& message);

}  // namespace platform
