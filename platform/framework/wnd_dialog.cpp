#include <string>

#include "platform/framework/app.h"
#include "platform/framework/ddx.h"
#include "platform/framework/message_box.h"
#include "platform/framework/thread.h"
#include "platform/framework/wnd.h"
#include "platform/window/dialog_keys.h"
#include "platform/window/pump.h"

// What every window can do of a dialog's work.

const CWnd CWnd::wndTop(Marker{}, HWND_TOP);
const CWnd CWnd::wndBottom(Marker{}, HWND_BOTTOM);

int CWnd::RunModalLoop(DWORD) {
  CWinThread* thread = AfxGetThread();
  m_nFlags |= WF_MODALLOOP | WF_CONTINUEMODAL;
  LONG idleCount = 0;
  bool idle = true;
  MSG next;
  while (m_hWnd != nullptr && ContinueModal() != 0) {
    while (idle && PeekMessage(&next, nullptr, 0, 0, PM_NOREMOVE) == 0)
      idle = SendMessage(WM_KICKIDLE, MSGF_DIALOGBOX, idleCount++) != 0;
    if (thread->PumpMessage() == 0) {
      AfxPostQuitMessage(static_cast<int>(thread->m_msgCur.wParam));
      m_nFlags &= ~static_cast<UINT>(WF_MODALLOOP | WF_CONTINUEMODAL);
      return -1;
    }
    if (thread->IsIdleMessage(&thread->m_msgCur) != 0) {
      idle = true;
      idleCount = 0;
    }
  }
  m_nFlags &= ~static_cast<UINT>(WF_MODALLOOP | WF_CONTINUEMODAL);
  return m_nModalResult;
}

void CWnd::EndModalLoop(int result) {
  m_nModalResult = result;
  if ((m_nFlags & WF_CONTINUEMODAL) == 0) return;
  m_nFlags &= ~static_cast<UINT>(WF_CONTINUEMODAL);
  PostMessage(WM_NULL);  // the loop may be waiting
}

BOOL CWnd::IsDialogMessage(MSG* message) {
  return ::IsDialogMessage(m_hWnd, message);
}

void CWnd::SetFont(CFont* font, BOOL redraw) {
  SendMessage(WM_SETFONT, reinterpret_cast<WPARAM>(font == nullptr ? nullptr : font->m_hObject), redraw);
}

void CWnd::SetDlgItemInt(int id, UINT value, BOOL isSigned) {
  const std::string text = isSigned != 0 ? std::to_string(static_cast<int>(value)) : std::to_string(value);
  SetDlgItemText(id, text.c_str());
}

int CWnd::GetDlgItemText(int id, CString& text) const {
  text = ::GetWindowText(::GetDlgItem(m_hWnd, id));
  return text.GetLength();
}

void CWnd::CenterWindow(CWnd* over) {
  const HWND owner = over != nullptr ? over->m_hWnd : ::GetParent(m_hWnd);
  CRect own(0, 0, 0, 0);
  GetWindowRect(own);
  const CRect screen(0, 0, GetSystemMetrics(SM_CXSCREEN), GetSystemMetrics(SM_CYSCREEN));
  CRect area = screen;
  if (owner != nullptr && ::IsWindowVisible(owner) != 0) ::GetWindowRect(owner, area);
  int x = (area.left + area.right - own.Width()) / 2;
  int y = (area.top + area.bottom - own.Height()) / 2;
  if ((GetStyle() & WS_CHILD) != 0) {
    POINT origin = {x, y};
    ::ScreenToClient(::GetParent(m_hWnd), &origin);
    x = origin.x;
    y = origin.y;
  } else {  // wholly on the screen, the top left corner before all
    x = std::max(0, std::min(x, screen.Width() - own.Width()));
    y = std::max(0, std::min(y, screen.Height() - own.Height()));
  }
  SetWindowPos(nullptr, x, y, 0, 0, SWP_NOSIZE | SWP_NOZORDER | SWP_NOACTIVATE);
}

BOOL CWnd::UpdateData(BOOL save) {
  CDataExchange exchange(this, save);
  DoDataExchange(&exchange);
  return TRUE;
}
