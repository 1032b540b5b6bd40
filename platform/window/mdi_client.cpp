// The client window: which document window is the active one, and the WM_MDI messages.

#include <algorithm>

#include "platform/graphics/gdi.h"
#include "platform/window/detail/mdi_windows.h"
#include "platform/window/detail/widgets.h"
#include "platform/window/detail/window_record.h"
#include "platform/window/menu_handles.h"

namespace platform {
namespace {

void TellActivation(HWND to, HWND former, HWND now) {
  if (FindWindowRecord(to) == nullptr) return;
  SendGuarded(to, WM_MDIACTIVATE, reinterpret_cast<WPARAM>(former), reinterpret_cast<LPARAM>(now));
  const WindowRecord* record = FindWindowRecord(to);
  if (record != nullptr && record->frame) record->frame->update();  // its title bar
}

/// The keyboard goes to a document window, or to the client after the last, unless another main window or a
/// dialog has it.
void GiveFocus(HWND window) {
  const HWND focus = GetFocus();
  if (focus == nullptr || GetTopLevelWindow(focus) == GetTopLevelWindow(window)) SetFocus(window);
}

void BringToTop(HWND child) {
  SetWindowPos(child, HWND_TOP, 0, 0, 0, 0, SWP_NOMOVE | SWP_NOSIZE | SWP_NOACTIVATE);
}

/// The next one down from the top, or up from the bottom, that the user can go to; null if there is none.
HWND OtherThan(HWND child, HWND client, bool fromBottom = false) {
  std::vector<const WindowRecord*> others = VisibleMdiChildren(client);
  if (fromBottom) std::reverse(others.begin(), others.end());
  const auto found = std::find_if(others.begin(), others.end(), [child](const WindowRecord* other) {
    return other->handle != child && (other->style & WS_DISABLED) == 0 && !other->destroying;
  });
  return found == others.end() ? nullptr : (*found)->handle;
}

/// The maximised look goes from one window to the next.
void HandOnMaximized(HWND former, HWND now) {
  if (now != nullptr) SetMdiState(now, MdiState::Maximized);
  const WindowRecord* record = FindWindowRecord(former);
  if (record != nullptr && !record->destroying) SetMdiState(former, MdiState::Normal);
}

}  // namespace

MdiClient* FindMdiClient(HWND client) {
  const WindowRecord* record = FindWindowRecord(client);
  return record == nullptr ? nullptr : record->mdiClient.get();
}

MdiClient* MdiClientOf(const WindowRecord& child) {
  return child.mdiChild ? FindMdiClient(child.parent) : nullptr;
}

std::vector<const WindowRecord*> VisibleMdiChildren(HWND client) {
  std::vector<const WindowRecord*> found;
  const WindowRecord* record = FindWindowRecord(client);
  if (record == nullptr) return found;
  for (const HWND child : record->children) {
    const WindowRecord* window = FindWindowRecord(child);
    if (window->mdiChild && (window->style & WS_VISIBLE) != 0) found.push_back(window);
  }
  return found;
}

const WindowRecord* MaximizedMdiChild(const MdiClient& client) {
  const WindowRecord* active = FindWindowRecord(client.active);
  return active != nullptr && MdiStateOf(*active) == MdiState::Maximized ? active : nullptr;
}

bool IsActiveMdiChild(const WindowRecord& child) {
  const MdiClient* client = MdiClientOf(child);
  return client != nullptr && client->active == child.handle;
}

void ActivateMdiChild(HWND clientHandle, HWND child) {
  MdiClient* client = FindMdiClient(clientHandle);
  const WindowRecord* record = FindWindowRecord(child);
  if (client == nullptr || client->closing) return;
  if (child != nullptr && (record == nullptr || !record->mdiChild || record->parent != clientHandle ||
                           (record->style & WS_VISIBLE) == 0))
    return;
  const HWND former = client->active;
  if (former == child) {
    if (child != nullptr) BringToTop(child);
    return;
  }
  const bool maximized = MaximizedMdiChild(*client) != nullptr;
  client->active = child;
  // A handler may activate another window, or end this one.
  const auto outdated = [&] {
    client = FindMdiClient(clientHandle);
    return client == nullptr || client->active != child;
  };
  TellActivation(former, former, child);
  if (outdated()) return;
  if (child != nullptr) BringToTop(child);
  if (maximized) HandOnMaximized(former, child);
  if (outdated()) return;
  if (child != nullptr) TellActivation(child, former, child);
  if (outdated()) return;
  GiveFocus(child != nullptr ? child : clientHandle);
  if (outdated()) return;
  RefreshMdiList(*client, false);
  RefreshMdiFrame(*client);
}

void ActivateMdiChildAround(HWND window) {
  for (const WindowRecord* record = FindWindowRecord(window); record != nullptr && record->IsChild();
       record = FindWindowRecord(record->parent)) {
    if (!record->mdiChild) continue;
    if (IsEnabledChain(record->handle) && !IsActiveMdiChild(*record))
      ActivateMdiChild(record->parent, record->handle);
    return;
  }
}

void JoinMdi(WindowRecord& window) {
  MdiClient* client = FindMdiClient(window.parent);
  if (client == nullptr || (window.exStyle & WS_EX_MDICHILD) == 0 || !window.IsChild()) return;
  window.mdiChild = std::make_shared<MdiChild>();
  window.style &= ~DWORD{WS_MAXIMIZE | WS_MINIMIZE};  // not before it shows
  window.style |= WS_CLIPSIBLINGS;
  window.id = static_cast<std::intptr_t>(client->firstId + client->order.size());
  client->order.push_back(window.handle);
}

void LeaveMdi(HWND child) {
  const WindowRecord* record = FindWindowRecord(child);
  MdiClient* client = record == nullptr ? nullptr : MdiClientOf(*record);
  if (client == nullptr || client->closing) return;
  const HWND clientHandle = record->parent;
  auto& order = client->order;
  order.erase(std::remove(order.begin(), order.end(), child), order.end());
  for (std::size_t i = 0; i < order.size(); ++i)
    SetWindowLong(order[i], GWL_ID, static_cast<std::intptr_t>(client->firstId + i));
  if (client->active == child) {
    ActivateMdiChild(clientHandle, OtherThan(child, clientHandle));
  } else {
    RefreshMdiList(*client, false);
  }
}

namespace {

LRESULT SetFrameMenu(MdiClient& client, HMENU menu, HMENU windowMenu) {
  const HWND frame = client.frame;
  const HMENU former = GetMenu(frame);
  if (client.windowMenu != windowMenu) {
    RemoveMdiList(client);
    client.windowMenu = windowMenu;
    RefreshMdiList(client, false);
  }
  if (menu != nullptr && menu != former) SetMenu(frame, menu);
  return reinterpret_cast<LRESULT>(former);
}

/// Forward: the next one down comes to the front and this one goes behind all. Back: the lowest comes up.
void GoToNext(HWND clientHandle, HWND from, bool back) {
  if (from == nullptr) from = FindMdiClient(clientHandle)->active;
  const HWND to = OtherThan(from, clientHandle, back);
  if (to == nullptr) return;
  ActivateMdiChild(clientHandle, to);
  if (!back) SetWindowPos(from, HWND_BOTTOM, 0, 0, 0, 0, SWP_NOMOVE | SWP_NOSIZE | SWP_NOACTIVATE);
}

LRESULT Begin(HWND handle, LPARAM param) {
  WindowRecord* record = FindWindowRecord(handle);
  const auto& cs = *reinterpret_cast<const CREATESTRUCT*>(param);
  WindowRecord* frame = FindWindowRecord(record->parent);
  if (frame == nullptr) return FALSE;
  record->mdiClient = std::make_shared<MdiClient>();
  record->mdiClient->frame = frame->handle;
  record->mdiClient->title = frame->text;
  frame->mdiClientOfFrame = handle;
  if (const auto* wanted = static_cast<const CLIENTCREATESTRUCT*>(cs.lpCreateParams)) {
    record->mdiClient->windowMenu = wanted->hWindowMenu;
    record->mdiClient->firstId = wanted->idFirstChild;
  }
  return TRUE;
}

LRESULT GetActive(const MdiClient& client, LPARAM maximized) {
  if (maximized != 0)
    *reinterpret_cast<BOOL*>(maximized) = MaximizedMdiChild(client) != nullptr ? TRUE : FALSE;
  return reinterpret_cast<LRESULT>(client.active);
}

LRESULT ClientProc(HWND handle, UINT message, WPARAM wParam, LPARAM lParam) {
  if (message == WM_NCCREATE) return Begin(handle, lParam);
  MdiClient* client = FindMdiClient(handle);
  if (client == nullptr) return DefWindowProc(handle, message, wParam, lParam);
  const auto child = reinterpret_cast<HWND>(wParam);
  switch (message) {
    case WM_MDIACTIVATE:
      ActivateMdiChild(handle, child);
      return 0;
    case WM_MDIMAXIMIZE:
      ShowMdiChild(child, SW_SHOWMAXIMIZED);
      return 0;
    case WM_MDINEXT:
      GoToNext(handle, child, lParam != 0);
      return 0;
    case WM_MDITILE:
      TileMdiChildren(handle, (wParam & MDITILE_HORIZONTAL) != 0);
      return TRUE;
    case WM_MDICASCADE:
      CascadeMdiChildren(handle);
      return TRUE;
    case WM_MDIICONARRANGE:
      FitMdiChildren(handle);
      return 0;
    case WM_MDIGETACTIVE:
      return GetActive(*client, lParam);
    case WM_MDISETMENU:
      return SetFrameMenu(*client, reinterpret_cast<HMENU>(wParam), reinterpret_cast<HMENU>(lParam));
    case WM_SIZE:
      FitMdiChildren(handle);
      return 0;
    case WM_SETFOCUS:
      if (client->active != nullptr) SetFocus(client->active);
      return 0;
    case WM_DESTROY:
      client->closing = true;
      client->active = nullptr;
      return 0;
    default:
      return DefWindowProc(handle, message, wParam, lParam);
  }
}

}  // namespace

void RegisterMdiClient() {
  if (FindWindowClass("MDICLIENT") != nullptr) return;
  const WNDCLASS windowClass = {CS_DBLCLKS,
                                &ClientProc,
                                0,
                                0,
                                nullptr,
                                nullptr,
                                LoadCursor(nullptr, IDC_ARROW),
                                GetSysColorBrush(COLOR_APPWORKSPACE),
                                nullptr,
                                "MDICLIENT"};
  RegisterClassA(&windowClass);
}

}  // namespace platform
