#pragma once

#include <cstddef>

#include "platform/base/export.h"
#include "platform/window/messages.h"

class CCmdTarget;

namespace platform {

/// Keeps objects whole while calls of theirs are on the stack, within which anything may happen: a dialog, a
/// message box, a handler of the host may close the window, its parent or the program. What ends by itself
/// meanwhile (DeleteWhenFree) is deleted when the last hold goes; its window is gone at once. Every message
/// holds its window and the windows that this one stands in; whoever opens a dialog or box outside of a
/// message holds itself.
///
/// Holds live on the stack of one thread and go in the reverse order in which they came.
class PLATFORM_API ObjectHold {
 public:
  explicit ObjectHold(CCmdTarget* object);
  /// The window's object and those of the windows up to its main window.
  explicit ObjectHold(HWND window);
  ObjectHold(const ObjectHold&) = delete;
  ObjectHold& operator=(const ObjectHold&) = delete;
  ~ObjectHold();

  /// False once the object has ended itself and is only kept, or its owner has deleted it, which no hold
  /// prevents. Whoever holds itself returns then, without a look at its members.
  bool Exists() const;

 private:
  std::size_t m_from;
};

/// Deletes an object, at once or when its last hold goes.
PLATFORM_API void DeleteWhenFree(CCmdTarget* object);
/// Told by each object at its end.
void ForgetHeld(const CCmdTarget* object);

}  // namespace platform
