#include "platform/framework/control_bar.h"

#include <algorithm>
#include <utility>

#include "platform/base/translation.h"
#include "platform/framework/detail/item_text.h"
#include "platform/framework/frame_wnd.h"
#include "platform/framework/object_hold.h"
#include "platform/window/detail/tool_tips.h"

IMPLEMENT_DYNAMIC(CControlBar, CWnd)

BEGIN_MESSAGE_MAP(CControlBar, CWnd)
ON_WM_CREATE()
ON_WM_DESTROY()
ON_WM_MOUSEMOVE()
ON_WM_LBUTTONDOWN()
ON_WM_LBUTTONUP()
ON_WM_CAPTURECHANGED()
ON_MESSAGE(WM_SIZEPARENT, OnSizeParent)
ON_MESSAGE(WM_IDLEUPDATECMDUI, OnIdleUpdate)
ON_MESSAGE(WM_MOUSELEAVE, OnMouseLeave)
END_MESSAGE_MAP()

namespace {

constexpr int kGripperExtent = 10;
constexpr int kLineExtent = 1;

CString ToolTipOf(HWND window, POINT point, RECT* area) {
  const auto* bar = dynamic_cast<CControlBar*>(CWnd::FromHandlePermanent(window));
  if (bar == nullptr || (bar->m_dwStyle & CBRS_TOOLTIPS) == 0) return {};
  return platform::ItemText(bar->OnItemHitTest(point, area), true);
}

}  // namespace

CString platform::ItemText(UINT id, bool tip) {
  CString text;
  if (id == kChevronItem) return Localized("Altri comandi");
  if (id == 0 || text.LoadString(id) == 0) return {};
  const int end = text.Find('\n');
  if (!tip) return end < 0 ? text : text.Left(end);
  return end < 0 ? CString() : text.Mid(end + 1);
}

CControlBar::~CControlBar() {
  m_bAutoDelete = FALSE;
  CWnd::DestroyWindow();  // while the frame can still be told; ours are the last handlers
}

BOOL CControlBar::PreCreateWindow(CREATESTRUCT& cs) {
  if (CWnd::PreCreateWindow(cs) == 0) return FALSE;
  cs.style |= WS_CLIPSIBLINGS;
  return TRUE;
}

int CControlBar::OnCreate(LPCREATESTRUCT) {
  if (Default() == -1) return -1;
  if (CFrameWnd* frame = GetDockingFrame()) frame->AddControlBar(this);
  platform::SetToolTipSource(m_hWnd, &ToolTipOf);
  return 0;
}

void CControlBar::OnDestroy() {
  if (CFrameWnd* frame = GetDockingFrame()) frame->RemoveControlBar(this);
  Default();
}

void CControlBar::PostNcDestroy() {
  if (m_bAutoDelete != 0) platform::DeleteWhenFree(this);
}

void CControlBar::SetBarStyle(DWORD style) {
  const DWORD former = std::exchange(m_dwStyle, style & CBRS_ALL);
  if (former != m_dwStyle) OnBarStyleChange(former, m_dwStyle);
}

void CControlBar::EnableDocking(DWORD dockStyle) {
  m_dwDockStyle = dockStyle & CBRS_ALIGN_ANY;
}

void CControlBar::SetBorders(int left, int top, int right, int bottom) {
  m_rcBorders = CRect(left, top, right, bottom);
}

CRect CControlBar::InsideMargins(BOOL horizontal) const {
  CRect margins = m_rcBorders;
  const bool gripper = (m_dwStyle & CBRS_GRIPPER) != 0;
  if (gripper && horizontal != 0) margins.left += kGripperExtent;
  if (gripper && horizontal == 0) margins.top += kGripperExtent;
  if ((m_dwStyle & CBRS_BORDER_LEFT) != 0) margins.left += kLineExtent;
  if ((m_dwStyle & CBRS_BORDER_TOP) != 0) margins.top += kLineExtent;
  if ((m_dwStyle & CBRS_BORDER_RIGHT) != 0) margins.right += kLineExtent;
  if ((m_dwStyle & CBRS_BORDER_BOTTOM) != 0) margins.bottom += kLineExtent;
  return margins;
}

// Layout

CSize CControlBar::CalcFixedLayout(BOOL stretch, BOOL horizontal) {
  constexpr int kWhole = 32767;
  return {stretch != 0 && horizontal != 0 ? kWhole : 0, stretch != 0 && horizontal == 0 ? kWhole : 0};
}

CSize CControlBar::CalcDynamicLayout(int, DWORD mode) {
  return CalcFixedLayout((mode & LM_STRETCH) != 0, (mode & (LM_HORZ | LM_HORZDOCK)) != 0);
}

LRESULT CControlBar::OnSizeParent(WPARAM, LPARAM lParam) {
  auto& layout = *reinterpret_cast<AFX_SIZEPARENTPARAMS*>(lParam);
  if (IsVisible() == 0 || (m_dwStyle & CBRS_ALIGN_ANY) == 0) return 0;
  const bool horizontal = (m_dwStyle & CBRS_ORIENT_HORZ) != 0;
  CRect place = layout.rect;
  CSize size = CalcDynamicLayout(-1, LM_STRETCH | (horizontal ? LM_HORZ | LM_HORZDOCK : LM_VERTDOCK));
  size.cx = std::clamp<LONG>(size.cx, 0, std::max(place.Width(), 0));
  size.cy = std::clamp<LONG>(size.cy, 0, std::max(place.Height(), 0));
  if ((m_dwStyle & CBRS_ALIGN_TOP) != 0) {
    layout.rect.top += size.cy;
  } else if ((m_dwStyle & CBRS_ALIGN_BOTTOM) != 0) {
    layout.rect.bottom -= size.cy;
    place.top = layout.rect.bottom;
  } else if ((m_dwStyle & CBRS_ALIGN_LEFT) != 0) {
    layout.rect.left += size.cx;
  } else {
    layout.rect.right -= size.cx;
    place.left = layout.rect.right;
  }
  (horizontal ? layout.sizeTotal.cy : layout.sizeTotal.cx) += horizontal ? size.cy : size.cx;
  ::SetWindowPos(m_hWnd, nullptr, place.left, place.top, size.cx, size.cy, SWP_NOZORDER | SWP_NOACTIVATE);
  return 0;
}

// Commands

BOOL CControlBar::OnCommand(WPARAM wParam, LPARAM lParam) {
  if (CWnd::OnCommand(wParam, lParam) != 0) return TRUE;
  CWnd* owner = GetOwner();
  return owner != nullptr && owner->SendMessage(WM_COMMAND, wParam, lParam) != 0;
}

LRESULT CControlBar::OnIdleUpdate(WPARAM disableIfNoHandler, LPARAM) {
  if (IsVisible() == 0) return 0;
  auto* target = DYNAMIC_DOWNCAST(CFrameWnd, GetOwner());
  if (target == nullptr) target = GetParentFrame();
  if (target != nullptr) OnUpdateCmdUI(target, static_cast<BOOL>(disableIfNoHandler));
  return 0;
}

// Tips and prompts

UINT CControlBar::OnItemHitTest(CPoint point, LPRECT area) const {
  for (HWND child = GetWindow(m_hWnd, GW_CHILD); child != nullptr; child = GetWindow(child, GW_HWNDNEXT)) {
    CRect rect;
    ::GetWindowRect(child, rect);
    ScreenToClient(rect);
    if (::IsWindowVisible(child) == 0 || rect.PtInRect(point) == 0) continue;
    if (area != nullptr) *area = rect;
    return static_cast<UINT>(::GetDlgCtrlID(child));
  }
  return 0;
}

BOOL CControlBar::PreTranslateMessage(MSG* message) {
  // The messages of child controls come by here too.
  if (message->message == WM_MOUSEMOVE && (m_dwStyle & CBRS_FLYBY) != 0) {
    CPoint point(message->lParam);
    if (message->hwnd != m_hWnd) {
      ::ClientToScreen(message->hwnd, &point);
      ScreenToClient(&point);
    }
    ShowFlyBy(OnItemHitTest(point, nullptr));
  }
  return CWnd::PreTranslateMessage(message);
}

void CControlBar::ShowFlyBy(UINT item) {
  if (item == m_flyBy) return;
  m_flyBy = item;
  CWnd* owner = GetOwner();
  if (owner == nullptr) return;
  const UINT text = platform::ItemText(item, false).IsEmpty() != 0 ? AFX_IDS_IDLEMESSAGE : item;
  owner->SendMessage(WM_SETMESSAGESTRING, text);
}

LRESULT CControlBar::OnMouseLeave(WPARAM, LPARAM) {
  CPoint pointer;
  GetCursorPos(&pointer);
  const HWND under = WindowFromPoint(pointer);
  // On a child control that stands on the bar the prompt is the child's.
  if (under == m_hWnd || IsChild(m_hWnd, under) == 0) {
    ShowFlyBy(0);
  } else {
    TRACKMOUSEEVENT track = {sizeof track, TME_LEAVE, m_hWnd, 0};
    TrackMouseEvent(&track);  // until it leaves the child
  }
  return Default();
}

// Moving the bar by its empty places

void CControlBar::OnLButtonDown(UINT, CPoint point) {
  const CFrameWnd* frame = GetDockingFrame();
  if (OnItemHitTest(point, nullptr) == 0 && frame != nullptr && (m_dwDockStyle & frame->m_dwDockStyle) != 0) {
    m_dragging = true;
    SetCapture();
    return;
  }
  Default();
}

void CControlBar::OnMouseMove(UINT, CPoint point) {
  if (m_dragging)
    DragTo(point);
  else
    Default();
}

void CControlBar::OnLButtonUp(UINT, CPoint) {
  if (m_dragging)
    ReleaseCapture();
  else
    Default();
}

void CControlBar::OnCaptureChanged(CWnd*) {
  m_dragging = false;
  Default();
}

/// Moves the bar to the edge that the pointer is near to.
void CControlBar::DragTo(CPoint point) {
  constexpr int kNear = 24;
  CFrameWnd* frame = GetDockingFrame();
  if (frame == nullptr) return;
  ClientToScreen(&point);
  frame->ScreenToClient(&point);
  CRect client;
  frame->GetClientRect(client);
  const struct {
    DWORD align;
    LONG distance;
    UINT dock;
  } edges[] = {{CBRS_ALIGN_TOP, point.y, AFX_IDW_DOCKBAR_TOP},
               {CBRS_ALIGN_BOTTOM, client.bottom - point.y, AFX_IDW_DOCKBAR_BOTTOM},
               {CBRS_ALIGN_LEFT, point.x, AFX_IDW_DOCKBAR_LEFT},
               {CBRS_ALIGN_RIGHT, client.right - point.x, AFX_IDW_DOCKBAR_RIGHT}};
  // In a corner the bar stays where it is.
  for (const auto& edge : edges)
    if (edge.distance < kNear && (m_dwStyle & edge.align) != 0) return;
  for (const auto& edge : edges) {
    if (edge.distance >= kNear || (m_dwDockStyle & frame->m_dwDockStyle & edge.align) == 0) continue;
    frame->DockControlBar(this, edge.dock);
    return;
  }
}
