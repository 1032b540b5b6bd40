#include <algorithm>
#include <unordered_map>
#include <utility>

#include "imaging/core/exception.h"
#include "imaging/imagelist/control.h"

namespace imaging {
namespace {

constexpr const char* kClassName = "LEADIMGLIST32";
constexpr UINT kEnsureVisible = WM_USER + 17;
constexpr UINT kSetBackground = WM_USER + 21;
constexpr UINT kPick = WM_USER + 900;  // our own: what a click on an item does
constexpr WORD kItemPicked = 1024;
constexpr int kLinesARow = 3;  // so that a step of a common wheel is a row

/// The controls by window. Shared, since a message may destroy the window that is handling it.
std::unordered_map<HWND, std::shared_ptr<ImageListControl>>& Controls() {
  static auto& controls = *new std::unordered_map<HWND, std::shared_ptr<ImageListControl>>;
  return controls;
}

}  // namespace

class ImageListControl::AccessibleCells : public platform::AccessibleItems {
 public:
  /// The control ends after its window, and the window has these.
  explicit AccessibleCells(ImageListControl& control) : m_control(control) {}
  int Count() const override { return m_control.Count(); }
  platform::AccessibleItem Item(int index) const override {
    platform::AccessibleItem item;
    item.role = platform::AccessibleRole::ListItem;
    item.name = m_control.CaptionOf(index);
    item.place = m_control.m_layout.CellAt(index, m_control.m_scroll);
    item.selected = m_control.m_items[static_cast<std::size_t>(index)].isSelected;
    item.current = index == m_control.m_focus;
    return item;
  }
  void Press(int index) override { PostMessage(m_control.m_window, kPick, static_cast<WPARAM>(index)); }

 private:
  ImageListControl& m_control;
};

void ImageListControl::RegisterWindowClass() {
  WNDCLASS windowClass{};
  if (GetClassInfoA(nullptr, kClassName, &windowClass) != 0) return;
  windowClass.lpfnWndProc = &Procedure;
  windowClass.hCursor = LoadCursor(nullptr, IDC_ARROW);
  windowClass.lpszClassName = kClassName;
  RegisterClassA(&windowClass);
}

ImageListControl& ImageListControl::Find(HWND window) {
  const auto found = Controls().find(window);
  if (found == Controls().end()) Fail(kErrorInvalidParameter, "The window is no image list");
  return *found->second;
}

LRESULT ImageListControl::Procedure(HWND window, UINT message, WPARAM wParam, LPARAM lParam) {
  if (message == WM_NCCREATE) Controls().emplace(window, std::make_shared<ImageListControl>(window));
  const auto found = Controls().find(window);
  if (found == Controls().end()) return DefWindowProc(window, message, wParam, lParam);
  const std::shared_ptr<ImageListControl> control = found->second;
  if (message == WM_NCDESTROY) {
    control->m_window = nullptr;
    Controls().erase(window);
    return DefWindowProc(window, message, wParam, lParam);
  }
  return control->Handle(message, wParam, lParam);
}

LRESULT ImageListControl::Handle(UINT message, WPARAM wParam, LPARAM lParam) {
  switch (message) {
    case WM_CREATE:
      platform::SetAccessible(m_window, platform::AccessibleRole::List,
                              std::make_shared<AccessibleCells>(*this));
      break;
    case kPick:
      if (wParam < static_cast<WPARAM>(Count())) Pick(static_cast<int>(wParam));
      return 0;
    case WM_SIZE:
      Relayout();
      return 0;
    case WM_ERASEBKGND:
      return 1;  // painted together with the cells
    case WM_PAINT:
      Paint();
      return 0;
    case WM_SETFOCUS:
    case WM_KILLFOCUS:
      InvalidateCell(m_focus);
      break;
    case WM_SYSCOLORCHANGE:
      InvalidateRect(m_window, nullptr, FALSE);
      break;
    case WM_VSCROLL:
      OnScroll(LOWORD(wParam));
      return 0;
    case WM_MOUSEWHEEL:
      OnWheel(static_cast<short>(HIWORD(wParam)));
      return 0;
    case WM_KEYDOWN:
      if (OnKey(static_cast<int>(wParam))) return 0;
      break;
    case WM_LBUTTONDOWN:
      OnPress({GET_X_LPARAM(lParam), GET_Y_LPARAM(lParam)});
      return 0;
    case kEnsureVisible:
      EnsureVisible(static_cast<int>(wParam));
      return 0;
    case kSetBackground:
      InvalidateRect(m_window, nullptr, FALSE);
      return static_cast<LRESULT>(std::exchange(m_background, static_cast<COLORREF>(lParam)));
    default:
      break;
  }
  return DefWindowProc(m_window, message, wParam, lParam);
}

/// Works the cells out anew. The bar is counted in before it shows, so that columns don't come and go with
/// it.
void ImageListControl::Relayout() {
  RECT client{};
  GetClientRect(m_window, &client);
  const int barWidth = GetSystemMetrics(SM_CXVSCROLL);
  const bool hasBar = (GetWindowLong(m_window, GWL_STYLE) & WS_VSCROLL) != 0;
  const int whole = client.right + (hasBar ? barWidth : 0);
  ImageListLayout layout = ImageListLayout::Make(Count(), m_itemSize, {whole, client.bottom});
  if (layout.NeedsScrolling())
    layout = ImageListLayout::Make(Count(), m_itemSize, {whole - barWidth, client.bottom});

  // The item at the top stays there when the columns change.
  const int top = m_layout.Top(m_scroll);
  const bool isRearranged = layout.columns != m_layout.columns || layout.cell != m_layout.cell;
  const bool isMoved = layout.client.cx != m_layout.client.cx;
  if (isRearranged && m_scroll > 0) m_scroll = top / layout.columns * layout.RowPitch();
  m_layout = layout;
  const int scroll = m_layout.ClampScroll(m_scroll);
  if (std::exchange(m_scroll, scroll) != scroll || isRearranged || isMoved)
    InvalidateRect(m_window, nullptr, FALSE);
  UpdateScrollBar();
}

/// The call may show or hide the bar and so lead back to Relayout, which then finds nothing changed.
void ImageListControl::UpdateScrollBar() {
  SCROLLINFO now{sizeof now, SIF_ALL, 0, 0, 0, 0, 0};
  GetScrollInfo(m_window, SB_VERT, &now);
  const int maximum = std::max(0, m_layout.ContentHeight() - 1);
  const auto page = static_cast<UINT>(std::min<int>(m_layout.client.cy, maximum + 1));
  if (now.nMax == maximum && now.nPage == page && now.nPos == m_scroll) return;
  const SCROLLINFO info{sizeof info, SIF_RANGE | SIF_PAGE | SIF_POS, 0, maximum, page, m_scroll, 0};
  SetScrollInfo(m_window, SB_VERT, &info, TRUE);
}

void ImageListControl::ScrollTo(int scroll) {
  const int clamped = m_layout.ClampScroll(scroll);
  if (std::exchange(m_scroll, clamped) == clamped) return;
  InvalidateRect(m_window, nullptr, FALSE);
  UpdateScrollBar();
}

void ImageListControl::OnScroll(int code) {
  const int row = m_layout.RowPitch();
  const int page = std::max(row, m_layout.client.cy / row * row);
  switch (code) {
    case SB_LINEUP:
      return ScrollTo(m_scroll - row / kLinesARow);
    case SB_LINEDOWN:
      return ScrollTo(m_scroll + row / kLinesARow);
    case SB_PAGEUP:
      return ScrollTo(m_scroll - page);
    case SB_PAGEDOWN:
      return ScrollTo(m_scroll + page);
    case SB_TOP:
      return ScrollTo(0);
    case SB_BOTTOM:
      return ScrollTo(m_layout.ContentHeight());
    case SB_THUMBTRACK:
    case SB_THUMBPOSITION: {
      SCROLLINFO info{sizeof info, SIF_TRACKPOS, 0, 0, 0, 0, 0};
      GetScrollInfo(m_window, SB_VERT, &info);
      return ScrollTo(info.nTrackPos);
    }
    default:
      return;
  }
}

void ImageListControl::OnWheel(int delta) {
  UINT lines = kLinesARow;
  SystemParametersInfoA(SPI_GETWHEELSCROLLLINES, 0, &lines, 0);
  // A count beyond a screenful stands for a screenful.
  const int most = std::max(1, m_layout.client.cy * kLinesARow / m_layout.RowPitch());
  const int step = static_cast<int>(std::min<UINT>(lines, static_cast<UINT>(most)));
  const int units = step * m_layout.RowPitch() / kLinesARow;
  m_wheel += delta;
  const int distance = m_wheel * units / WHEEL_DELTA;
  if (distance == 0) return;
  m_wheel -= distance * WHEEL_DELTA / units;
  ScrollTo(m_scroll - distance);
}

bool ImageListControl::OnKey(int key) {
  if (Count() == 0 || GetKeyState(VK_CONTROL) < 0 || GetKeyState(VK_MENU) < 0) return false;
  const int last = Count() - 1;
  const int columns = m_layout.columns;
  int target = m_focus;
  switch (key) {
    case VK_LEFT:
      target -= 1;
      break;
    case VK_RIGHT:
      target += 1;
      break;
    case VK_UP:
      target -= m_focus >= columns ? columns : 0;
      break;
    case VK_DOWN:
      target += m_focus / columns < last / columns ? columns : 0;
      break;
    case VK_PRIOR:
      target -= m_layout.ItemsPerScreen();
      break;
    case VK_NEXT:
      target += m_layout.ItemsPerScreen();
      break;
    case VK_HOME:
      target = 0;
      break;
    case VK_END:
      target = last;
      break;
    default:
      return false;
  }
  target = m_focus < 0 && key != VK_END ? 0 : std::clamp(target, 0, last);
  if (target != m_focus) Pick(target);
  return true;
}

void ImageListControl::OnPress(POINT point) {
  SetFocus(m_window);
  if (m_window == nullptr) return;  // who lost the focus destroyed it
  const int index = m_layout.HitTest(point, m_scroll);
  if (index >= 0) Pick(index);
}

void ImageListControl::Pick(int index) {
  if (index != m_focus) InvalidateCell(std::exchange(m_focus, index));
  InvalidateCell(index);
  if (m_selectionOptions.bSelectPicked != 0) {
    const bool isSingle = m_selectionOptions.bSingle != 0;
    for (int i = 0; isSingle && i < Count(); ++i)
      if (i != index) Select(i, false);
    Select(index, isSingle || !m_items[static_cast<std::size_t>(index)].isSelected);
  }
  EnsureVisible(index);
  platform::AnnounceAccessibleItem(m_window, index);
  leadtools12::_LILPICKED picked{sizeof picked, kItemPicked, index};
  SendMessage(GetParent(m_window), WM_COMMAND,
              MAKEWPARAM(static_cast<WORD>(GetDlgCtrlID(m_window)), kItemPicked),
              reinterpret_cast<LPARAM>(&picked));
}

}  // namespace imaging
