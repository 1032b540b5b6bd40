#pragma once

#include "platform/framework/cmd_target.h"
#include "platform/window/pump.h"

class CWnd;
class CException;

/// The user-interface thread: its main window and its message loop.
class PLATFORM_API CWinThread : public CCmdTarget {
  DECLARE_DYNAMIC(CWinThread)
 public:
  CWinThread();
  CWinThread(const CWinThread&) = delete;
  CWinThread& operator=(const CWinThread&) = delete;
  ~CWinThread() override;

  CWnd* m_pMainWnd = nullptr;  ///< its end ends the thread's loop
  MSG m_msgCur{};

  /// FALSE: the program ends before its loop begins.
  virtual BOOL InitInstance() { return FALSE; }
  virtual int ExitInstance() { return static_cast<int>(m_msgCur.wParam); }
  /// The loop; its end is ExitInstance's result.
  virtual int Run();
  /// Takes one message, waiting for it, and dispatches it. FALSE for WM_QUIT.
  virtual BOOL PumpMessage();
  virtual BOOL PreTranslateMessage(MSG* message);
  /// Called while the queue is empty, count from 0. TRUE: call again.
  virtual BOOL OnIdle(LONG count);
  /// FALSE for messages after which nothing can have become out of date.
  virtual BOOL IsIdleMessage(MSG* message);
  /// An exception that a handler let pass. The result goes to the sender of the message.
  virtual LRESULT ProcessWndProcException(CException* exception, const MSG* message);

 private:
  UINT m_lastIdleMessage = 0;
  POINT m_lastIdlePoint{-1, -1};
};

/// The thread's object: the application, or one made on first use for a host without a CWinApp.
PLATFORM_API CWinThread* AfxGetThread();
/// The main window of the thread, or null.
PLATFORM_API CWnd* AfxGetMainWnd();
PLATFORM_API void AfxPostQuitMessage(int exitCode);
