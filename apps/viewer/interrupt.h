#pragma once

#include <optional>

#include "tessarel12.h"

/// While it lives, Ctrl+C, and who ends the program otherwise, stop what is being written instead, so that
/// nothing stays half done; a second time ends the program at once. How far the work is is told on a
/// terminal.
class InterruptibleWork {
 public:
  /// text: of the string table, with places for the page and the number of pages.
  explicit InterruptibleWork(UINT text);
  ~InterruptibleWork();
  InterruptibleWork(const InterruptibleWork&) = delete;
  InterruptibleWork& operator=(const InterruptibleWork&) = delete;

  /// Before each page; false once it is to stop.
  bool Reach(int page, int pages);
  /// The signal that has stopped it, 0 for none.
  static int Signal();

 private:
  UINT m_text;
  bool m_told = false;
  platform::AsideScope m_aside;
};
