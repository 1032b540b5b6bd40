#pragma once

#include "platform/base/types.h"

/// Finds out once how many lines a notch of the mouse wheel scrolls: from a wheel driver's window, else from
/// the system's setting.
class MouseScrollLines {
 public:
  /// version as GetVersion gives it. A later change of the setting isn't noticed.
  UINT Get(DWORD version);

 private:
  enum class MessageState : WORD { NotTried, Failed, Registered };

  bool AskDriver();
  void AskSystem(DWORD version);

  bool m_done = false;
  MessageState m_messageState = MessageState::NotTried;
  UINT m_message = 0;
  UINT m_lines = 0;
};

/// The same for this process. The answer of its first call stays.
UINT GetMouseScrollLines();
