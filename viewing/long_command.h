#pragma once

#include <chrono>
#include <optional>

#include "library/export.h"
#include "platform/base/aside.h"
#include "platform/base/string.h"
#include "platform/window/busy.h"

class CWnd;

/// How far a command has come, in the message pane of a window's frame. A short command isn't told of. What
/// stood in the pane comes back at the end, unless another text has come meanwhile.
class TESSAREL_API ProgressPane {
 public:
  /// text: of the string table, with places for the page and the number of pages. window may be null, or
  /// without a pane.
  ProgressPane(CWnd* window, UINT text);
  ~ProgressPane();
  ProgressPane(const ProgressPane&) = delete;
  ProgressPane& operator=(const ProgressPane&) = delete;
  /// Page page is being dealt with.
  void Show(int page, int pages);

 private:
  using Clock = std::chrono::steady_clock;

  HWND m_pane;
  UINT m_text;
  Clock::time_point m_next;
  std::optional<CString> m_before;
  CString m_shown;
};

/// While it lives, a command takes long. Where a message loop runs, the window stays alive meanwhile: it
/// paints, timers come, pages are read and written aside, and Escape stops the command, as closing a window
/// does. Where none runs, the command blocks, and the pane keeps its text.
///
/// Handlers of the host run within Reach and within each call of the imaging service that reads or writes
/// files, so whoever makes one holds itself (ObjectHold) and looks afterwards whether it is still there. No
/// command of the library begins meanwhile.
class TESSAREL_API LongCommand {
 public:
  LongCommand(CWnd* window, UINT progress);
  LongCommand(const LongCommand&) = delete;
  LongCommand& operator=(const LongCommand&) = delete;

  /// Before each page. False once the command is to stop.
  bool Reach(int page, int pages);
  /// Whether the user has asked it to stop.
  bool IsStopped() const { return m_busy.IsStopped(); }

 private:
  ProgressPane m_pane;
  platform::BusyScope m_busy;
  std::optional<platform::AsideScope> m_aside;
};
