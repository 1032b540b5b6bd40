#include "platform/framework/tool_bar.h"

#include "platform/framework/detail/bar_items.h"
#include "platform/framework/detail/item_text.h"
#include "platform/framework/frame_wnd.h"
#include "platform/window/detail/tool_bar_record.h"

IMPLEMENT_DYNAMIC(CToolBar, CControlBar)

BEGIN_MESSAGE_MAP(CToolBar, CControlBar)
END_MESSAGE_MAP()

namespace {

// Room around the buttons, so that neither their faces nor a control among them touch the bar's edge.
constexpr int kAround = 2;

/// The upper word of a style is the state, with the meaning of "enabled" turned round.
BYTE StateOf(UINT style) {
  return static_cast<BYTE>(HIWORD(style) ^ TBSTATE_ENABLED);
}

}  // namespace

BOOL CToolBar::Create(CWnd* parent, DWORD style, UINT id) {
  return CreateEx(parent, 0, style, m_rcBorders, id);
}

BOOL CToolBar::CreateEx(CWnd* parent, DWORD controlStyle, DWORD style, CRect borders, UINT id) {
  platform::RegisterToolbarClass();
  SetBorders(borders.left, borders.top, borders.right, borders.bottom);
  m_dwStyle = style & CBRS_ALL;
  m_bDelayedButtonLayout = TRUE;
  const DWORD windowStyle = (style & ~DWORD{CBRS_ALL}) | controlStyle;
  if (CWnd::Create(TOOLBARCLASSNAME, nullptr, windowStyle, CRect(0, 0, 0, 0), parent, id) == 0) return FALSE;
  platform::SetAccessible(m_hWnd, platform::AccessibleRole::ToolBar, platform::ButtonsOf(*this));
  SetSizes(m_sizeButton, m_sizeImage);
  return TRUE;
}

void CToolBar::SetSizes(SIZE button, SIZE image) {
  m_sizeButton = button;
  m_sizeImage = image;
  if (m_hWnd == nullptr) return;
  SendMessage(TB_SETBITMAPSIZE, 0, MAKELPARAM(image.cx, image.cy));
  SendMessage(TB_SETBUTTONSIZE, 0, MAKELPARAM(button.cx, button.cy));
  m_bDelayedButtonLayout = TRUE;
}

// Buttons

BOOL CToolBar::SetButtons(const UINT* ids, int count) {
  if (m_hWnd == nullptr || count < 1) return FALSE;
  for (int left = GetCount(); left > 0; --left) SendMessage(TB_DELETEBUTTON, 0);
  int image = 0;
  for (int i = 0; i < count; ++i) {
    TBBUTTON button = {0, 0, TBSTATE_ENABLED, TBSTYLE_BUTTON};
    if (ids != nullptr && ids[i] == ID_SEPARATOR) {
      button.fsStyle = TBSTYLE_SEP;
    } else if (ids != nullptr) {
      button.idCommand = static_cast<int>(ids[i]);
      button.iBitmap = image++;
    }
    if (SendMessage(TB_ADDBUTTONS, 1, reinterpret_cast<LPARAM>(&button)) == 0) return FALSE;
  }
  m_bDelayedButtonLayout = TRUE;
  return TRUE;
}

int CToolBar::GetCount() const {
  return static_cast<int>(::SendMessage(m_hWnd, TB_BUTTONCOUNT));
}

bool CToolBar::GetButton(int index, TBBUTTON& button) const {
  button = {};
  return index >= 0 && ::SendMessage(m_hWnd, TB_GETBUTTON, static_cast<WPARAM>(index),
                                     reinterpret_cast<LPARAM>(&button)) != 0;
}

void CToolBar::ReplaceButton(int index, const TBBUTTON& button) {
  platform::ToolbarRecord* toolbar = platform::FindToolbar(m_hWnd);
  TBBUTTON& place = toolbar->buttons[static_cast<std::size_t>(index)];
  const bool moves = place.iBitmap != button.iBitmap ||
                     ((place.fsStyle ^ button.fsStyle) & TBSTYLE_SEP) != 0 ||
                     ((place.fsState ^ button.fsState) & TBSTATE_HIDDEN) != 0;
  const bool same = !moves && place.fsState == button.fsState && place.idCommand == button.idCommand;
  place = button;
  if (same) return;
  m_bDelayedButtonLayout = m_bDelayedButtonLayout != 0 || moves;
  const RECT at = toolbar->Places()[static_cast<std::size_t>(index)];
  InvalidateRect(moves ? nullptr : &at, TRUE);
}

int CToolBar::CommandToIndex(UINT id) const {
  return static_cast<int>(::SendMessage(m_hWnd, TB_COMMANDTOINDEX, id));
}

UINT CToolBar::GetItemID(int index) const {
  TBBUTTON button;
  return GetButton(index, button) ? static_cast<UINT>(button.idCommand) : 0;
}

void CToolBar::GetItemRect(int index, LPRECT rect) const {
  LayoutIfDelayed();
  if (index < 0 ||
      ::SendMessage(m_hWnd, TB_GETITEMRECT, static_cast<WPARAM>(index), reinterpret_cast<LPARAM>(rect)) == 0)
    SetRectEmpty(rect);
}

UINT CToolBar::GetButtonStyle(int index) const {
  TBBUTTON button;
  if (!GetButton(index, button)) return 0;
  return static_cast<UINT>(MAKELONG(button.fsStyle, button.fsState ^ TBSTATE_ENABLED));
}

void CToolBar::SetButtonStyle(int index, UINT style) {
  TBBUTTON button;
  if (!GetButton(index, button)) return;
  button.fsStyle = static_cast<BYTE>(LOWORD(style));
  button.fsState = StateOf(style);
  ReplaceButton(index, button);
}

void CToolBar::GetButtonInfo(int index, UINT& id, UINT& style, int& imageOrWidth) const {
  TBBUTTON button;
  GetButton(index, button);
  id = static_cast<UINT>(button.idCommand);
  style = GetButtonStyle(index);
  imageOrWidth = button.iBitmap;
}

void CToolBar::SetButtonInfo(int index, UINT id, UINT style, int imageOrWidth) {
  TBBUTTON button;
  if (!GetButton(index, button)) return;
  button.idCommand = static_cast<int>(id);
  button.iBitmap = imageOrWidth;
  button.fsStyle = static_cast<BYTE>(LOWORD(style));
  button.fsState = StateOf(style);
  ReplaceButton(index, button);
}

CToolBarCtrl& CToolBar::GetToolBarCtrl() const {
  m_control.m_hWnd = m_hWnd;
  return m_control;
}

// Layout

void CToolBar::EnableChevron(BOOL on) {
  platform::ToolbarRecord* toolbar = platform::FindToolbar(m_hWnd);
  if (toolbar == nullptr) return;
  toolbar->hasChevron = on != 0;
  platform::FitToolbar(m_hWnd);
}

void CToolBar::OnBarStyleChange(DWORD, DWORD) {
  m_bDelayedButtonLayout = TRUE;
}

void CToolBar::LayoutIfDelayed() const {
  // Being out of date isn't part of what the bar is.
  if (m_bDelayedButtonLayout != 0) const_cast<CToolBar*>(this)->Layout();
}

void CToolBar::Layout() {
  m_bDelayedButtonLayout = FALSE;
  platform::ToolbarRecord* toolbar = platform::FindToolbar(m_hWnd);
  if (toolbar == nullptr) return;
  const bool vertical = (m_dwStyle & CBRS_ORIENT_VERT) != 0;
  const CRect margins = InsideMargins(vertical ? FALSE : TRUE);
  toolbar->margins = {margins.left + kAround, margins.top + kAround, margins.right + kAround,
                      margins.bottom + kAround};
  toolbar->gripper = (m_dwStyle & CBRS_GRIPPER) != 0;
  toolbar->borders = m_dwStyle & CBRS_BORDER_ANY;
  if (toolbar->vertical != vertical) ShowChildren(!vertical);
  toolbar->vertical = vertical;
  if (!vertical) {
    MoveChildren(toolbar->margins.left - m_childCorner.x, toolbar->margins.top - m_childCorner.y);
    m_childCorner = {toolbar->margins.left, toolbar->margins.top};
  }
  platform::FitToolbar(m_hWnd);
  Invalidate();
}

void CToolBar::ShowChildren(bool show) {
  for (HWND child = GetWindow(m_hWnd, GW_CHILD); child != nullptr; child = GetWindow(child, GW_HWNDNEXT))
    ::ShowWindow(child, show ? SW_SHOWNA : SW_HIDE);
}

void CToolBar::MoveChildren(int dx, int dy) {
  if (dx == 0 && dy == 0) return;
  for (HWND child = GetWindow(m_hWnd, GW_CHILD); child != nullptr; child = GetWindow(child, GW_HWNDNEXT)) {
    CRect place;
    ::GetWindowRect(child, place);
    ScreenToClient(place);
    ::SetWindowPos(child, nullptr, place.left + dx, place.top + dy, 0, 0,
                   SWP_NOSIZE | SWP_NOZORDER | SWP_NOACTIVATE);
  }
}

CSize CToolBar::CalcFixedLayout(BOOL stretch, BOOL horizontal) {
  LayoutIfDelayed();
  const CSize whole = CControlBar::CalcFixedLayout(stretch, horizontal);
  const platform::ToolbarRecord* toolbar = platform::FindToolbar(m_hWnd);
  if (toolbar == nullptr) return whole;
  const CSize size = toolbar->Extent();
  return {std::max(size.cx, whole.cx), std::max(size.cy, whole.cy)};
}

UINT CToolBar::OnItemHitTest(CPoint point, LPRECT area) const {
  const platform::ToolbarRecord* toolbar = platform::FindToolbar(m_hWnd);
  const int index = toolbar == nullptr ? -1 : platform::ToolbarButtonAt(*toolbar, point);
  if (index < 0) return CControlBar::OnItemHitTest(point, area);
  if (toolbar->IsChevron(index)) {
    if (area != nullptr) *area = toolbar->chevron;
    return platform::kChevronItem;
  }
  if (area != nullptr) GetItemRect(index, area);
  return GetItemID(index);
}

// Update

namespace {

/// Applies a command's state to its button.
class CToolCmdUI : public CCmdUI {
 public:
  void Enable(BOOL on) override {
    CCmdUI::Enable(on);
    // A button that is disabled while it is held down would stay down.
    Change(TBBS_DISABLED | (on == 0 ? UINT{TBBS_PRESSED} : 0), on == 0 ? UINT{TBBS_DISABLED} : 0);
  }
  void SetCheck(int check) override {
    CCmdUI::SetCheck(check);
    UINT state = TBBS_CHECKBOX;
    if (check == 1) state |= TBBS_CHECKED;
    if (check == 2) state |= TBBS_INDETERMINATE;
    Change(TBBS_CHECKED | TBBS_INDETERMINATE, state);
  }

 private:
  void Change(UINT remove, UINT add) {
    auto* bar = static_cast<CToolBar*>(m_pOther);
    const int index = static_cast<int>(m_nIndex);
    bar->SetButtonStyle(index, (bar->GetButtonStyle(index) & ~remove) | add);
  }
};

}  // namespace

void CToolBar::OnUpdateCmdUI(CFrameWnd* target, BOOL disableIfNoHandler) {
  CToolCmdUI state;
  state.m_pOther = this;
  state.m_nIndexMax = static_cast<UINT>(GetCount());
  for (state.m_nIndex = 0; state.m_nIndex < state.m_nIndexMax; ++state.m_nIndex) {
    const int index = static_cast<int>(state.m_nIndex);
    if ((GetButtonStyle(index) & TBBS_SEPARATOR) != 0) continue;
    state.m_nID = GetItemID(index);
    // A bar of a derived class may know its own buttons.
    if (CWnd::OnCmdMsg(state.m_nID, CN_UPDATE_COMMAND_UI, &state, nullptr) != 0) continue;
    state.DoUpdate(target, disableIfNoHandler);
  }
}
