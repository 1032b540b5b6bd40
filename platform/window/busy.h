#pragma once

#include <chrono>

#include "platform/base/export.h"
#include "platform/window/messages.h"

// What the user sees of the program while a command of it takes long.

namespace platform {

/// Whether a loop of messages, ours or one of Qt's, runs below on the stack. A program without one expects
/// that nothing is dispatched within its calls.
PLATFORM_API bool RunsInLoop();

/// While it lives, a command takes long and calls Serve now and then. Scopes may be nested, and then share
/// the user's wish to stop. Where no loop runs it does nothing.
class PLATFORM_API BusyScope {
 public:
  BusyScope();
  ~BusyScope();
  BusyScope(const BusyScope&) = delete;
  BusyScope& operator=(const BusyScope&) = delete;

  /// Lets windows be painted and sized, and timers come, a few milliseconds after the last time at the
  /// earliest. What the user types and clicks is for nobody and dropped, but Escape, and the close of a
  /// window, ask the command to stop: false from then on. Posted messages wait, that close among them.
  bool Serve();
  bool IsStopped() const;
  /// Whether what runs now was called by Serve, with no loop in between: nothing that could begin a command
  /// should.
  static bool IsServing();
  /// Puts off a message that was sent within Serve, and asks the command to stop if it closes a window.
  /// False: it is not the time for that.
  static bool PutOffClose(HWND window);

 private:
  using Clock = std::chrono::steady_clock;

  bool m_active;
  Clock::time_point m_next;
};

}  // namespace platform
