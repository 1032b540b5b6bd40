#include "platform/framework/thread.h"

#include <memory>

#include "platform/base/exception.h"
#include "platform/framework/detail/handler_failure.h"
#include "platform/framework/detail/idle_update.h"
#include "platform/framework/menu.h"
#include "platform/framework/message_box.h"
#include "platform/framework/object_hold.h"
#include "platform/framework/wnd.h"

IMPLEMENT_DYNAMIC(CWinThread, CCmdTarget)

namespace {

CWinThread* g_thread = nullptr;

bool PreTranslate(MSG* message) {
  return AfxGetThread()->PreTranslateMessage(message) != 0;
}

/// Idle work in a loop that isn't ours. Temporary objects stay: a handler below on the stack may use them.
void UpdateInHostLoop() {
  const MSG none{};
  try {
    platform::UpdateFramesAtIdle();
    platform::UpdateMoreFramesAtIdle();
  } catch (...) {
    platform::TellHandlerFailure(none);
  }
}

}  // namespace

CWinThread::CWinThread() {
  if (g_thread == nullptr) g_thread = this;
  platform::SetPreTranslateHook(&PreTranslate);
  platform::SetIdleHook(&UpdateInHostLoop);
}

CWinThread::~CWinThread() {
  if (g_thread == this) g_thread = nullptr;
}

CWinThread* AfxGetThread() {
  if (g_thread == nullptr)
    new CWinThread;  // NOLINT: registers itself; for hosts without an application object
  return g_thread;
}

CWnd* AfxGetMainWnd() {
  return AfxGetThread()->m_pMainWnd;
}

void AfxPostQuitMessage(int exitCode) {
  PostQuitMessage(exitCode);
}

int CWinThread::Run() {
  for (;;) {
    LONG idleCount = 0;
    bool idle = true;
    MSG next;
    while (idle && PeekMessage(&next, nullptr, 0, 0, PM_NOREMOVE) == 0)
      if (OnIdle(idleCount++) == 0) idle = false;
    do {
      if (PumpMessage() == 0) return ExitInstance();
      if (IsIdleMessage(&m_msgCur) != 0) break;
    } while (PeekMessage(&next, nullptr, 0, 0, PM_NOREMOVE) != 0);
  }
}

BOOL CWinThread::PumpMessage() {
  if (GetMessage(&m_msgCur, nullptr, 0, 0) == 0) return FALSE;
  MSG message = m_msgCur;  // a nested loop changes m_msgCur
  const platform::LoopScope loop;
  if (PreTranslateMessage(&message) == 0) {
    TranslateMessage(&message);
    DispatchMessage(&message);
  }
  return TRUE;
}

BOOL CWinThread::PreTranslateMessage(MSG* message) {
  const platform::ObjectHold hold(message->hwnd);
  // From the window up to its main window; each may deal with the message before it is dispatched.
  for (HWND handle = message->hwnd; handle != nullptr; handle = GetParent(handle)) {
    CWnd* window = CWnd::FromHandlePermanent(handle);
    if (window != nullptr && window->PreTranslateMessage(message) != 0) return TRUE;
    if (window != nullptr && window == m_pMainWnd) return FALSE;
  }
  return FALSE;
}

BOOL CWinThread::OnIdle(LONG count) {
  if (count == 0) {
    platform::UpdateFramesAtIdle();
    return TRUE;
  }
  if (platform::UpdateMoreFramesAtIdle()) return TRUE;
  CWnd::DeleteTempMap();
  CMenu::DeleteTempMap();
  CDC::DeleteTempMap();
  CGdiObject::DeleteTempMap();
  return FALSE;
}

BOOL CWinThread::IsIdleMessage(MSG* message) {
  if (message->message == WM_MOUSEMOVE) {
    const bool same = message->message == m_lastIdleMessage && message->pt.x == m_lastIdlePoint.x &&
                      message->pt.y == m_lastIdlePoint.y;
    m_lastIdleMessage = message->message;
    m_lastIdlePoint = message->pt;
    return same ? FALSE : TRUE;
  }
  constexpr UINT kCaretBlink = 0x0118;
  return message->message != WM_PAINT && message->message != kCaretBlink;
}

LRESULT CWinThread::ProcessWndProcException(CException* exception, const MSG* message) {
  char text[512];
  if (exception->GetErrorMessage(text, sizeof text) != 0) AfxMessageBox(text, MB_ICONSTOP);
  if (message->message == WM_CREATE) return -1;
  if (message->message == WM_PAINT) ValidateRect(message->hwnd, nullptr);
  return 0;
}
