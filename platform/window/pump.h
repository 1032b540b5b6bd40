#pragma once

#include "platform/base/export.h"
#include "platform/window/messages.h"

// The message queue of the user-interface thread. Taken in this order: posted messages, input, WM_QUIT,
// timers.

enum : UINT { PM_NOREMOVE = 0, PM_REMOVE = 1 };

/// Looks for a message, optionally of one window (null: all) and of a range of numbers (0, 0: all). Never
/// waits, except that a loop which polls with PM_NOREMOVE is held for a few milliseconds, so that it doesn't
/// burn the processor. Nothing is dispatched, apart from painting, sizes and focus.
PLATFORM_API BOOL PeekMessage(MSG* message, HWND window, UINT first, UINT last, UINT remove);
inline BOOL PeekMessageA(MSG* message, HWND window, UINT first, UINT last, UINT remove) {
  return PeekMessage(message, window, first, last, remove);
}
/// Lets windows be painted and sized while the program is busy. No message is dispatched, and the user's
/// input waits.
PLATFORM_API void PaintWhileBusy();
/// Waits for a message. 0 for WM_QUIT.
PLATFORM_API BOOL GetMessage(MSG* message, HWND window, UINT first, UINT last);
/// Posts the WM_CHAR that a key message types.
PLATFORM_API BOOL TranslateMessage(const MSG* message);
PLATFORM_API LRESULT DispatchMessage(const MSG* message);
PLATFORM_API void PostQuitMessage(int exitCode);

namespace platform {

/// Gives a message to the framework before it is dispatched; true: it has been dealt with. Set once.
using PreTranslateHook = bool (*)(MSG* message);
PLATFORM_API void SetPreTranslateHook(PreTranslateHook hook);
/// Called when a host's event loop has emptied the queue, as our own loop calls for idle work. Set once.
using IdleHook = void (*)();
PLATFORM_API void SetIdleHook(IdleHook hook);
/// Called with each new window before its first message. Set once by the framework.
using CreateHook = void (*)(HWND window);
PLATFORM_API void SetCreateHook(CreateHook hook);

/// While it lives, a loop of messages runs on this thread, though it is not within a call of this header.
class PLATFORM_API LoopScope {
 public:
  LoopScope();
  ~LoopScope();
  LoopScope(const LoopScope&) = delete;
  LoopScope& operator=(const LoopScope&) = delete;
};

/// Makes the application object of the user interface if the host has none yet. The arguments must outlive
/// it.
PLATFORM_API void EnsureApplication(int* argc = nullptr, char** argv = nullptr);
/// True on the platform without a display, whose windows are pictures in memory.
PLATFORM_API bool IsOffscreen();
/// Whether a program may take the mouse for itself. Under Wayland it has it anyway while a button is down,
/// and an attempt only warns.
PLATFORM_API bool GrabsMouse();
/// Ends the application object if EnsureApplication made it.
PLATFORM_API void EndApplication();

}  // namespace platform
