// What a frame does for the bars at its edges.

#include <algorithm>

#include "platform/framework/cmd_ui.h"
#include "platform/framework/control_bar.h"
#include "platform/framework/detail/idle_update.h"
#include "platform/framework/frame_wnd.h"
#include "platform/framework/mdi_wnd.h"

namespace {

std::vector<CFrameWnd*>& Frames() {
  static auto* frames = new std::vector<CFrameWnd*>;  // as long as any frame
  return *frames;
}

/// Bars that stay where they are take the whole edge; the movable ones share the rest, rows before columns.
int LayoutOrder(const CControlBar& bar) {
  if (bar.m_dwDockStyle == 0) return 0;
  return (bar.m_dwStyle & CBRS_ORIENT_HORZ) != 0 ? 1 : 2;
}

/// The alignment style for an edge, with the border line at the side of the pane.
DWORD StyleAt(DWORD style, UINT dockBar) {
  DWORD edge = 0;
  switch (dockBar) {
    case AFX_IDW_DOCKBAR_TOP:
      edge = CBRS_TOP;
      break;
    case AFX_IDW_DOCKBAR_BOTTOM:
      edge = CBRS_BOTTOM;
      break;
    case AFX_IDW_DOCKBAR_LEFT:
      edge = CBRS_LEFT;
      break;
    case AFX_IDW_DOCKBAR_RIGHT:
      edge = CBRS_RIGHT;
      break;
    default:
      return style;
  }
  if ((style & CBRS_BORDER_ANY) == 0) edge &= CBRS_ALIGN_ANY;
  return (style & ~DWORD{CBRS_ALIGN_ANY | CBRS_BORDER_ANY}) | edge;
}

}  // namespace

CFrameWnd::CFrameWnd() {
  Frames().push_back(this);
}

CFrameWnd::~CFrameWnd() {
  auto& frames = Frames();
  frames.erase(std::remove(frames.begin(), frames.end(), this), frames.end());
}

namespace {

/// Document windows that are still to be brought up to date, by handle since they may end meanwhile.
std::vector<HWND>& Waiting() {
  static auto* waiting = new std::vector<HWND>;
  return *waiting;
}

/// All windows below, except frames, which have their own turn, and what holds document windows.
void UpdateBelow(HWND parent) {
  const auto* main = DYNAMIC_DOWNCAST(CMDIFrameWnd, CWnd::FromHandlePermanent(parent));
  std::vector<HWND> children;  // a handler may change them
  for (HWND child = GetWindow(parent, GW_CHILD); child != nullptr; child = GetWindow(child, GW_HWNDNEXT))
    if (main == nullptr || child != main->m_hWndMDIClient) children.push_back(child);
  for (const HWND child : children) {
    if (DYNAMIC_DOWNCAST(CFrameWnd, CWnd::FromHandlePermanent(child)) != nullptr) continue;
    SendMessage(child, WM_IDLEUPDATECMDUI, TRUE);
    UpdateBelow(child);
  }
}

void UpdateFrame(HWND frame) {
  if (IsWindowVisible(frame) == 0) return;
  SendMessage(frame, WM_IDLEUPDATECMDUI, TRUE);
  UpdateBelow(frame);
}

}  // namespace

void platform::UpdateFramesAtIdle() {
  std::vector<HWND> now;
  Waiting().clear();
  const CMDIFrameWnd* asked = nullptr;
  const CFrameWnd* active = nullptr;
  for (CFrameWnd* frame : Frames()) {
    if (frame->m_hWnd == nullptr) continue;
    const auto* child = DYNAMIC_DOWNCAST(CMDIChildWnd, frame);
    const CMDIFrameWnd* main = child == nullptr ? nullptr : child->GetMDIFrame();
    if (main != asked && main != nullptr) active = main->MDIGetActive();
    asked = main;
    (main == nullptr || active == child ? now : Waiting()).push_back(frame->m_hWnd);
  }
  for (const HWND frame : now) UpdateFrame(frame);
}

bool platform::UpdateMoreFramesAtIdle() {
  constexpr std::size_t kAtOnce = 8;
  for (std::size_t i = 0; i < kAtOnce && !Waiting().empty(); ++i) {
    const HWND frame = Waiting().back();
    Waiting().pop_back();
    UpdateFrame(frame);
  }
  return !Waiting().empty();
}

void CFrameWnd::RecalcLayout(BOOL) {
  m_layoutDelayed = false;
  AFX_SIZEPARENTPARAMS layout = {{}, {}, TRUE};
  GetClientRect(&layout.rect);
  std::vector<CControlBar*> bars = m_controlBars;
  std::stable_sort(bars.begin(), bars.end(), [](const CControlBar* a, const CControlBar* b) {
    return LayoutOrder(*a) < LayoutOrder(*b);
  });
  for (CControlBar* bar : bars) bar->SendMessage(WM_SIZEPARENT, 0, reinterpret_cast<LPARAM>(&layout));
  const CWnd* pane = GetDlgItem(AFX_IDW_PANE_FIRST);
  if (pane == nullptr) return;
  const CRect rest = layout.rect;
  ::SetWindowPos(pane->m_hWnd, nullptr, rest.left, rest.top, std::max(rest.Width(), 0),
                 std::max(rest.Height(), 0), SWP_NOZORDER | SWP_NOACTIVATE);
}

void CFrameWnd::OnShowWindow(BOOL show, UINT) {
  Default();
  if (show == 0) return;
  if (m_layoutDelayed) RecalcLayout();
  // What can be chosen is seen from the first moment on, not after the first event.
  UpdateBelow(m_hWnd);
}

void CFrameWnd::AddControlBar(CControlBar* bar) {
  m_controlBars.push_back(bar);
  DelayRecalcLayout();
}

void CFrameWnd::RemoveControlBar(CControlBar* bar) {
  m_controlBars.erase(std::remove(m_controlBars.begin(), m_controlBars.end(), bar), m_controlBars.end());
  DelayRecalcLayout();
}

CControlBar* CFrameWnd::GetControlBar(UINT id) const {
  for (CControlBar* bar : m_controlBars)
    if (bar->GetDlgCtrlID() == static_cast<int>(id)) return bar;
  return nullptr;
}

void CFrameWnd::DockControlBar(CControlBar* bar, UINT dockBar, LPCRECT) {
  if (bar == nullptr) return;
  bar->SetBarStyle(StyleAt(bar->m_dwStyle, dockBar));
  RecalcLayout();
}

void CFrameWnd::ShowControlBar(CControlBar* bar, BOOL show, BOOL delay) {
  if (bar == nullptr) return;
  bar->ShowWindow(show != 0 ? SW_SHOWNA : SW_HIDE);
  if (delay != 0)
    DelayRecalcLayout();
  else
    RecalcLayout();
}

BOOL CFrameWnd::OnBarCheck(UINT id) {
  CControlBar* bar = GetControlBar(id);
  if (bar == nullptr) return FALSE;
  ShowControlBar(bar, bar->IsVisible() == 0, FALSE);
  return TRUE;
}

void CFrameWnd::OnUpdateControlBarMenu(CCmdUI* item) {
  if (const CControlBar* bar = GetControlBar(item->m_nID))
    item->SetCheck(bar->IsVisible() != 0 ? 1 : 0);
  else
    item->Enable(FALSE);
}

// Prompts

CWnd* CFrameWnd::GetMessageBar() {
  return GetDlgItem(AFX_IDW_STATUS_BAR);
}

void CFrameWnd::SetMessageText(LPCTSTR text) {
  SendMessage(WM_SETMESSAGESTRING, 0, reinterpret_cast<LPARAM>(text));
}

void CFrameWnd::SetMessageText(UINT id) {
  SendMessage(WM_SETMESSAGESTRING, id);
}

void CFrameWnd::GetMessageString(UINT id, CString& message) const {
  message.LoadString(id);
  const int end = message.Find('\n');
  if (end >= 0) message = message.Left(end);
}

LRESULT CFrameWnd::OnSetMessageString(WPARAM id, LPARAM text) {
  const UINT former = m_nIDLastMessage;
  m_nIDLastMessage = static_cast<UINT>(id);
  m_nIDTracking = m_nIDLastMessage;
  if (CWnd* bar = GetMessageBar()) {
    CString prompt(reinterpret_cast<LPCTSTR>(text));
    if (text == 0 && id != 0) GetMessageString(static_cast<UINT>(id), prompt);
    bar->SetWindowText(prompt);
  }
  return static_cast<LRESULT>(former);
}

LRESULT CFrameWnd::OnPopMessageString(WPARAM id, LPARAM text) {
  return SendMessage(WM_SETMESSAGESTRING, id == 0 && text == 0 ? WPARAM{AFX_IDS_IDLEMESSAGE} : id, text);
}

void CFrameWnd::OnIdleUpdateCmdUI() {
  if (m_layoutDelayed) RecalcLayout();
  if (m_nIDTracking != m_nIDLastMessage) SetMessageText(m_nIDTracking);
  UpdateMenuBar();
}

LRESULT CFrameWnd::OnIdleUpdate(WPARAM, LPARAM) {
  OnIdleUpdateCmdUI();
  return 0;
}
