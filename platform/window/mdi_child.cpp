// A document window: its states and places.

#include <algorithm>

#include "platform/window/detail/mdi_layout.h"
#include "platform/window/detail/mdi_windows.h"
#include "platform/window/detail/widgets.h"
#include "platform/window/detail/window_record.h"

namespace platform {
namespace {

constexpr int kBorder = 4;
constexpr int kIconWidth = 200;
constexpr DWORD kStates = WS_MAXIMIZE | WS_MINIMIZE;

QSize ClientSize(HWND client) {
  RECT rect = {};
  GetClientRect(client, &rect);
  return {static_cast<int>(rect.right), static_cast<int>(rect.bottom)};
}

int CaptionHeight() {
  return GetSystemMetrics(SM_CYCAPTION);
}

QSize IconSize() {
  return {kIconWidth, CaptionHeight() + kBorder};
}

void Place(HWND child, const QRect& place) {
  SetWindowPos(child, nullptr, place.x(), place.y(), place.width(), place.height(),
               SWP_NOZORDER | SWP_NOACTIVATE);
}

/// Visible windows, the minimised ones or the others, the topmost first.
std::vector<HWND> ChildrenIn(HWND client, bool minimized) {
  std::vector<HWND> found;
  for (const WindowRecord* window : VisibleMdiChildren(client))
    if ((MdiStateOf(*window) == MdiState::Minimized) == minimized) found.push_back(window->handle);
  return found;
}

/// Those that are arranged: minimised ones stay so, a maximised one is restored.
std::vector<HWND> ChildrenToArrange(HWND client) {
  if (const WindowRecord* maximized = MaximizedMdiChild(*FindMdiClient(client)))
    SetMdiState(maximized->handle, MdiState::Normal);
  return ChildrenIn(client, false);
}

void FitIcons(HWND client) {
  std::vector<HWND> icons = ChildrenIn(client, true);
  std::sort(icons.begin(), icons.end(), [](HWND a, HWND b) { return GetDlgCtrlID(a) < GetDlgCtrlID(b); });
  for (std::size_t i = 0; i < icons.size(); ++i)
    Place(icons[i], IconPlace(static_cast<int>(i), ClientSize(client), IconSize()));
}

}  // namespace

QMargins MdiChildMargins(const WindowRecord& window) {
  if (!window.mdiChild || (window.style & WS_MAXIMIZE) != 0) return {};
  const int caption = (window.style & WS_CAPTION) == WS_CAPTION ? CaptionHeight() : kBorder;
  return {kBorder, caption, kBorder, kBorder};
}

QRect NextCascadePlace(const WindowRecord& child) {
  MdiClient* client = MdiClientOf(child);
  return CascadePlace(client->made++, ClientSize(child.parent), CaptionHeight());
}

MdiState MdiStateOf(const WindowRecord& child) {
  if ((child.style & WS_MAXIMIZE) != 0) return MdiState::Maximized;
  return (child.style & WS_MINIMIZE) != 0 ? MdiState::Minimized : MdiState::Normal;
}

void SetMdiState(HWND child, MdiState state) {
  WindowRecord* window = FindWindowRecord(child);
  const MdiClient* client = window == nullptr ? nullptr : MdiClientOf(*window);
  if (client == nullptr || !window->frame || MdiStateOf(*window) == state) return;
  const HWND clientHandle = window->parent;
  const MdiState former = MdiStateOf(*window);
  if (former == MdiState::Normal) window->mdiChild->normal = window->frame->geometry();
  window->mdiChild->wasMaximized = state == MdiState::Minimized && former == MdiState::Maximized;
  window->style &= ~kStates;
  if (state == MdiState::Maximized) window->style |= WS_MAXIMIZE;
  if (state == MdiState::Minimized) window->style |= WS_MINIMIZE;
  window->sentClientSize = QSize(-1, -1);  // the kind of size is news of its own
  if (state == MdiState::Minimized) {
    FitIcons(clientHandle);
  } else {
    Place(child, state == MdiState::Maximized ? QRect(QPoint(0, 0), ClientSize(clientHandle))
                                              : window->mdiChild->normal);
  }
  window = FindWindowRecord(child);
  client = window == nullptr ? nullptr : MdiClientOf(*window);
  if (client != nullptr && client->active == child) RefreshMdiFrame(*client);
}

void ShowMdiChild(HWND child, int command) {
  WindowRecord* window = FindWindowRecord(child);
  if (window == nullptr || !window->mdiChild || !window->frame) return;
  const HWND client = window->parent;
  const QPointer<FrameWidget> frame = window->frame;
  if (command == SW_HIDE) {
    window->style &= ~DWORD{WS_VISIBLE};
    frame->hide();
    // A window that can't be seen isn't the one that takes the commands.
    if (IsActiveMdiChild(*window)) {
      SendMessage(client, WM_MDINEXT, reinterpret_cast<WPARAM>(child), 0);
      window = FindWindowRecord(child);
      if (window != nullptr && IsActiveMdiChild(*window)) ActivateMdiChild(client, nullptr);
    }
    return;
  }
  window->style |= WS_VISIBLE;
  const bool toMaximized =
      command == SW_SHOWMAXIMIZED || (command == SW_RESTORE && window->mdiChild->wasMaximized);
  if (toMaximized) {
    // The one that is maximised hands it on when it stops being the active one.
    ActivateMdiChild(client, child);
    SetMdiState(child, MdiState::Maximized);
  } else if (command == SW_SHOWMINIMIZED) {
    SetMdiState(child, MdiState::Minimized);
  } else if (command == SW_RESTORE || command == SW_SHOWNORMAL) {
    SetMdiState(child, MdiState::Normal);
  }
  if (frame) frame->show();
  if (!toMaximized && (command == SW_RESTORE || command == SW_SHOWNORMAL)) ActivateMdiChild(client, child);
}

void ShowNewMdiChild(HWND child, DWORD style) {
  const WindowRecord* window = FindWindowRecord(child);
  const MdiClient* client = window == nullptr ? nullptr : MdiClientOf(*window);
  if (client == nullptr) {
    if ((style & WS_VISIBLE) != 0) ShowWindow(child, SW_SHOW);
    return;
  }
  if ((style & WS_VISIBLE) == 0) return;
  const bool maximized = MaximizedMdiChild(*client) != nullptr;
  int command = SW_SHOWNORMAL;
  if ((style & WS_MINIMIZE) != 0) command = SW_SHOWMINIMIZED;
  if (maximized || (style & WS_MAXIMIZE) != 0) command = SW_SHOWMAXIMIZED;
  ShowWindow(child, command);
  window = FindWindowRecord(child);
  if (window != nullptr) ActivateMdiChild(window->parent, child);
}

void FitMdiChildren(HWND client) {
  if (const WindowRecord* maximized = MaximizedMdiChild(*FindMdiClient(client)))
    Place(maximized->handle, QRect(QPoint(0, 0), ClientSize(client)));
  FitIcons(client);
}

void CascadeMdiChildren(HWND client) {
  const std::vector<HWND> children = ChildrenToArrange(client);
  // The topmost comes last, in front of all others.
  const int count = static_cast<int>(children.size());
  for (int i = 0; i < count; ++i)
    Place(children[static_cast<std::size_t>(count - 1 - i)],
          CascadePlace(i, ClientSize(client), CaptionHeight()));
  if (MdiClient* record = FindMdiClient(client)) record->made = count;
}

void TileMdiChildren(HWND client, bool horizontal) {
  const std::vector<HWND> children = ChildrenToArrange(client);
  QSize room = ClientSize(client);
  if (!ChildrenIn(client, true).empty()) room.rheight() -= IconSize().height();  // they stay in sight
  const std::vector<QRect> places = TilePlaces(static_cast<int>(children.size()), room, horizontal);
  for (std::size_t i = 0; i < children.size(); ++i) Place(children[i], places[i]);
}

}  // namespace platform

using platform::FindWindowRecord;
using platform::WindowRecord;

namespace {

void Obey(HWND child, HWND client, UINT command) {
  switch (command & 0xfff0) {
    case SC_CLOSE:
      SendMessage(child, WM_CLOSE);
      break;
    case SC_MAXIMIZE:
      ShowWindow(child, SW_SHOWMAXIMIZED);
      break;
    case SC_MINIMIZE:
      ShowWindow(child, SW_SHOWMINIMIZED);
      break;
    case SC_RESTORE:
      ShowWindow(child, SW_RESTORE);
      break;
    case SC_NEXTWINDOW:
    case SC_PREVWINDOW:
      SendMessage(client, WM_MDINEXT, reinterpret_cast<WPARAM>(child), command == SC_PREVWINDOW ? 1 : 0);
      break;
    default:
      break;
  }
}

}  // namespace

LRESULT DefMDIChildProc(HWND child, UINT message, WPARAM wParam, LPARAM lParam) {
  const WindowRecord* window = FindWindowRecord(child);
  platform::MdiClient* client = window == nullptr ? nullptr : platform::MdiClientOf(*window);
  if (client == nullptr) return DefWindowProc(child, message, wParam, lParam);
  switch (message) {
    case WM_SETTEXT:
      DefWindowProc(child, message, wParam, lParam);
      if (window->frame) window->frame->update();
      platform::RefreshMdiList(*client, false);
      if (client->active == child) platform::RefreshMdiFrame(*client);
      return TRUE;
    case WM_SYSCOMMAND:
      Obey(child, window->parent, static_cast<UINT>(wParam));
      return 0;
    case WM_SETFOCUS:
      platform::ActivateMdiChild(window->parent, child);
      return 0;
    default:
      return DefWindowProc(child, message, wParam, lParam);
  }
}

BOOL TranslateMDISysAccel(HWND clientHandle, const MSG* message) {
  const platform::MdiClient* client = platform::FindMdiClient(clientHandle);
  if (client == nullptr || message == nullptr) return FALSE;
  const HWND active = client->active;
  const bool key = message->message == WM_KEYDOWN || message->message == WM_SYSKEYDOWN;
  const bool alt = (message->lParam >> 29 & 1) != 0;
  if (active == nullptr || !platform::TakesInput(active) || !key || alt || GetKeyState(VK_CONTROL) >= 0)
    return FALSE;
  UINT command = GetKeyState(VK_SHIFT) < 0 ? SC_PREVWINDOW : SC_NEXTWINDOW;
  if (message->wParam == VK_F1 + 3)
    command = SC_CLOSE;
  else if (message->wParam != VK_F1 + 5 && message->wParam != VK_TAB)
    return FALSE;
  PostMessage(active, WM_SYSCOMMAND, command);
  return TRUE;
}
