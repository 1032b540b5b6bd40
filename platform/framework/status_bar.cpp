#include "platform/framework/status_bar.h"

#include <algorithm>
#include <cstring>

#include "platform/framework/detail/bar_items.h"
#include "platform/framework/frame_wnd.h"
#include "platform/window/detail/theme.h"
#include "platform/window/detail/window_sizing.h"

IMPLEMENT_DYNAMIC(CStatusBar, CControlBar)

BEGIN_MESSAGE_MAP(CStatusBar, CControlBar)
ON_WM_PAINT()
ON_WM_ERASEBKGND()
ON_WM_SIZE()
ON_WM_LBUTTONDOWN()
ON_WM_SETCURSOR()
ON_MESSAGE(WM_SETTEXT, OnSetText)
ON_MESSAGE(WM_GETTEXT, OnGetText)
ON_MESSAGE(WM_GETTEXTLENGTH, OnGetTextLength)
END_MESSAGE_MAP()

namespace {

constexpr int kAround = 2;      // from the bar's edge to the panes
constexpr int kPaneMargin = 4;  // from a pane's edge to its text, at the left and at the right
constexpr int kPaneLine = 2;    // above and below the text
constexpr int kGap = 2;         // between panes
constexpr int kGripExtent = 16;

}  // namespace

BOOL CStatusBar::Create(CWnd* parent, DWORD style, UINT id) {
  m_dwStyle = style & CBRS_ALL;
  const LPCTSTR windowClass =
      AfxRegisterWndClass(CS_DBLCLKS, LoadCursor(nullptr, IDC_ARROW), GetSysColorBrush(COLOR_BTNFACE));
  if (CWnd::Create(windowClass, nullptr, style & ~DWORD{CBRS_ALL}, CRect(0, 0, 0, 0), parent, id) == 0)
    return FALSE;
  platform::SetAccessible(m_hWnd, platform::AccessibleRole::StatusBar, platform::PanesOf(*this));
  return TRUE;
}

BOOL CStatusBar::SetIndicators(const UINT* ids, int count) {
  if (m_hWnd == nullptr || count < 1) return FALSE;
  m_panes.assign(static_cast<std::size_t>(count), Pane());
  CClientDC dc(this);
  for (int i = 0; i < count && ids != nullptr; ++i) {
    Pane& pane = m_panes[static_cast<std::size_t>(i)];
    pane.id = ids[i];
    if (pane.id != ID_SEPARATOR) {
      pane.text.LoadString(pane.id);
      pane.width = dc.GetTextExtent(pane.text).cx;
    } else if (i == 0) {
      pane.style = SBPS_STRETCH | SBPS_NOBORDERS;
    }
  }
  Invalidate();
  return TRUE;
}

// Panes

const CStatusBar::Pane* CStatusBar::PaneAt(int index) const {
  return index >= 0 && index < static_cast<int>(m_panes.size()) ? &m_panes[static_cast<std::size_t>(index)]
                                                                : nullptr;
}

int CStatusBar::CommandToIndex(UINT id) const {
  for (std::size_t i = 0; i < m_panes.size(); ++i)
    if (m_panes[i].id == id) return static_cast<int>(i);
  return -1;
}

UINT CStatusBar::GetItemID(int index) const {
  const Pane* pane = PaneAt(index);
  return pane == nullptr ? 0 : pane->id;
}

UINT CStatusBar::GetPaneStyle(int index) const {
  const Pane* pane = PaneAt(index);
  return pane == nullptr ? 0 : pane->style;
}

void CStatusBar::SetPaneStyle(int index, UINT style) {
  const Pane* pane = PaneAt(index);
  if (pane != nullptr) SetPaneInfo(index, pane->id, style, pane->width);
}

void CStatusBar::SetPaneInfo(int index, UINT id, UINT style, int width) {
  if (PaneAt(index) == nullptr) return;
  Pane& pane = m_panes[static_cast<std::size_t>(index)];
  if (pane.id == id && pane.style == style && pane.width == width) return;
  const bool moves = pane.width != width || ((pane.style ^ style) & SBPS_STRETCH) != 0;
  pane.id = id;
  pane.style = style;
  pane.width = width;
  if (moves)
    Invalidate();
  else
    InvalidatePane(index);
}

CString CStatusBar::GetPaneText(int index) const {
  const Pane* pane = PaneAt(index);
  return pane == nullptr ? CString() : pane->text;
}

BOOL CStatusBar::SetPaneText(int index, LPCTSTR text, BOOL /*update*/) {
  if (PaneAt(index) == nullptr) return FALSE;
  Pane& pane = m_panes[static_cast<std::size_t>(index)];
  const CString wanted(text);
  if (pane.text == wanted) return TRUE;
  pane.text = wanted;
  // Whoever asks for no update has it painted with the next one; a text that is never painted serves nobody.
  InvalidatePane(index);
  return TRUE;
}

void CStatusBar::InvalidatePane(int index) {
  const RECT place = Places()[static_cast<std::size_t>(index)];
  InvalidateRect(&place, TRUE);
}

// The window's text is that of the message pane.

LRESULT CStatusBar::OnSetText(WPARAM, LPARAM text) {
  const int message = m_panes.empty() ? -1 : std::max(CommandToIndex(ID_SEPARATOR), 0);
  return SetPaneText(message, reinterpret_cast<LPCTSTR>(text));
}

LRESULT CStatusBar::OnGetText(WPARAM room, LPARAM buffer) {
  if (room == 0 || buffer == 0) return 0;
  const CString text = GetPaneText(std::max(CommandToIndex(ID_SEPARATOR), 0));
  const std::size_t length = std::min(static_cast<std::size_t>(text.GetLength()), std::size_t{room} - 1);
  auto* place = reinterpret_cast<char*>(buffer);
  std::memcpy(place, static_cast<const char*>(text), length);
  place[length] = 0;
  return static_cast<LRESULT>(length);
}

LRESULT CStatusBar::OnGetTextLength(WPARAM, LPARAM) {
  return GetPaneText(std::max(CommandToIndex(ID_SEPARATOR), 0)).GetLength();
}

// Layout

CSize CStatusBar::CalcFixedLayout(BOOL stretch, BOOL horizontal) {
  CClientDC dc(this);
  TEXTMETRIC metrics = {};
  dc.GetTextMetrics(&metrics);
  const CRect margins = InsideMargins(TRUE);
  const int text = static_cast<int>(metrics.tmHeight) + 2 * (kPaneLine + 1);
  return {CControlBar::CalcFixedLayout(stretch, horizontal).cx,
          text + 2 * kAround + margins.top + margins.bottom};
}

CRect CStatusBar::GripPlace() const {
  const HWND top = GetTopLevelWindow(m_hWnd);
  const auto style = static_cast<DWORD>(GetWindowLong(top, GWL_STYLE));
  CRect client;
  GetClientRect(client);
  if (GetParent() == nullptr || ::GetParent(m_hWnd) != top || (style & WS_THICKFRAME) == 0 ||
      platform::IsMaximized(top))
    return {0, 0, 0, 0};
  return {client.right - kGripExtent, client.bottom - kGripExtent, client.right, client.bottom};
}

std::vector<RECT> CStatusBar::Places() const {
  CRect inside;
  GetClientRect(inside);
  inside.DeflateRect(InsideMargins(TRUE));
  inside.DeflateRect(kAround, kAround);
  inside.right -= GripPlace().Width();
  LONG fixed = 0;
  for (const Pane& pane : m_panes) {
    fixed += kGap;
    if ((pane.style & SBPS_STRETCH) == 0) fixed += pane.width + 2 * (kPaneMargin + 1);
  }
  std::vector<RECT> places;
  LONG at = inside.left;
  for (const Pane& pane : m_panes) {
    const bool stretch = (pane.style & SBPS_STRETCH) != 0;
    const LONG width =
        stretch ? std::max(inside.Width() - (fixed - kGap), LONG{0}) : pane.width + 2 * (kPaneMargin + 1);
    places.push_back({at, inside.top, at + width, inside.bottom});
    at += width + kGap;
  }
  return places;
}

void CStatusBar::GetItemRect(int index, LPRECT rect) const {
  const auto places = Places();
  if (PaneAt(index) == nullptr)
    SetRectEmpty(rect);
  else
    *rect = places[static_cast<std::size_t>(index)];
}

void CStatusBar::OnSize(UINT, int, int) {
  Default();
  Invalidate();  // the panes hang at the right edge
}

// Painting

void CStatusBar::DrawPane(CDC& dc, const Pane& pane, CRect place) const {
  if ((pane.style & SBPS_NOBORDERS) == 0) {
    const COLORREF dark = GetSysColor(COLOR_3DSHADOW);
    const COLORREF light = GetSysColor(COLOR_3DHILIGHT);
    const bool raised = (pane.style & SBPS_POPOUT) != 0;
    dc.Draw3dRect(place, raised ? light : dark, raised ? dark : light);
  }
  if ((pane.style & SBPS_DISABLED) != 0) return;
  place.DeflateRect(kPaneMargin + 1, 1);
  dc.DrawText(pane.text, place, DT_SINGLELINE | DT_VCENTER | DT_LEFT | DT_NOPREFIX);
}

void CStatusBar::OnPaint() {
  CPaintDC dc(this);
  CRect client;
  GetClientRect(client);
  dc.FillSolidRect(client, GetSysColor(COLOR_BTNFACE));
  if ((m_dwStyle & CBRS_BORDER_TOP) != 0)
    dc.FillSolidRect(0, 0, client.right, 1, GetSysColor(COLOR_3DSHADOW));
  dc.SetBkMode(TRANSPARENT);
  dc.SetTextColor(GetSysColor(COLOR_BTNTEXT));
  const auto places = Places();
  for (std::size_t i = 0; i < places.size(); ++i) DrawPane(dc, m_panes[i], places[i]);
  const CRect grip = GripPlace();
  if (grip.IsRectEmpty() == 0) platform::DrawSizeGrip(dc, grip);
}

void CStatusBar::OnLButtonDown(UINT flags, CPoint point) {
  if (GripPlace().PtInRect(point) != 0)
    platform::StartSizing(GetTopLevelWindow(m_hWnd));
  else
    CControlBar::OnLButtonDown(flags, point);
}

BOOL CStatusBar::OnSetCursor(CWnd* window, UINT hit, UINT message) {
  CPoint pointer;
  GetCursorPos(&pointer);
  ScreenToClient(&pointer);
  if (hit == HTCLIENT && GripPlace().PtInRect(pointer) != 0) {
    ::SetCursor(LoadCursor(nullptr, IDC_SIZENWSE));
    return TRUE;
  }
  return CControlBar::OnSetCursor(window, hit, message);
}

// Update

namespace {

/// Applies a command's state to its pane.
class CStatusCmdUI : public CCmdUI {
 public:
  void Enable(BOOL on) override {
    CCmdUI::Enable(on);
    Change(SBPS_DISABLED, on == 0);
  }
  void SetCheck(int check) override {
    CCmdUI::SetCheck(check);
    Change(SBPS_POPOUT, check != 0);
  }
  void SetText(LPCTSTR text) override { Bar().SetPaneText(static_cast<int>(m_nIndex), text); }

 private:
  CStatusBar& Bar() const { return *static_cast<CStatusBar*>(m_pOther); }
  void Change(UINT style, bool on) {
    const int index = static_cast<int>(m_nIndex);
    const UINT former = Bar().GetPaneStyle(index);
    Bar().SetPaneStyle(index, on ? former | style : former & ~style);
  }
};

}  // namespace

void CStatusBar::OnUpdateCmdUI(CFrameWnd* target, BOOL) {
  CStatusCmdUI state;
  state.m_pOther = this;
  state.m_nIndexMax = static_cast<UINT>(m_panes.size());
  for (state.m_nIndex = 0; state.m_nIndex < state.m_nIndexMax; ++state.m_nIndex) {
    state.m_nID = GetItemID(static_cast<int>(state.m_nIndex));
    if (state.m_nID == ID_SEPARATOR) continue;
    if (CWnd::OnCmdMsg(state.m_nID, CN_UPDATE_COMMAND_UI, &state, nullptr) != 0) continue;
    state.DoUpdate(target, FALSE);  // a pane is no command: it stays without a handler
  }
}
