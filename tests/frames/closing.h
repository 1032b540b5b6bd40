#pragma once

#include <functional>
#include <string>
#include <utility>

#include "platform/framework/thread.h"
#include "platform/window/busy.h"
#include "platform/window/pump.h"
#include "platform/window/window.h"

/// What RunInLoop is still to do.
inline std::function<void()>& NextInLoop() {
  static std::function<void()> next;
  return next;
}

/// Something that is done once while a modal call waits for the user: it comes with a timer, which only a
/// loop of that call can take.
class MeanwhileDo {
 public:
  explicit MeanwhileDo(std::function<void()> action) {
    Action() = std::move(action);
    SetTimer(nullptr, 0, 30, &Run);
  }
  MeanwhileDo(const MeanwhileDo&) = delete;
  MeanwhileDo& operator=(const MeanwhileDo&) = delete;
  ~MeanwhileDo() { Action() = nullptr; }

  /// Whether it was done; only once.
  static bool IsDone() { return Action() == nullptr; }

 private:
  static std::function<void()>& Action() {
    static std::function<void()> action;
    return action;
  }
  static void Run(HWND, UINT, std::uintptr_t timer, DWORD) {
    // On a slow machine it is due before the call has begun, or while that works still; it comes again.
    if (NextInLoop() || platform::BusyScope::IsServing()) return;
    KillTimer(nullptr, timer);
    if (Action()) std::exchange(Action(), nullptr)();
  }
};

inline bool HasMessages() {
  MSG message;
  return PeekMessage(&message, nullptr, 0, 0, PM_NOREMOVE) != FALSE;
}

/// Runs something in the program's own message loop; whether that has ended with WM_QUIT.
inline bool RunInLoop(std::function<void()> action) {
  NextInLoop() = std::move(action);
  SetTimer(nullptr, 0, 0, [](HWND, UINT, std::uintptr_t timer, DWORD) {
    KillTimer(nullptr, timer);
    std::exchange(NextInLoop(), nullptr)();
    PostMessage(nullptr, WM_NULL);
  });
  bool quit = false;
  while (!quit && (NextInLoop() || HasMessages())) quit = AfxGetThread()->PumpMessage() == FALSE;
  return quit;
}
