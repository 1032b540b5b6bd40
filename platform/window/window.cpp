#include "platform/window/window.h"

#include <QIcon>
#include <algorithm>
#include <map>

#include "platform/window/detail/cursors.h"
#include "platform/window/detail/mdi_windows.h"
#include "platform/window/detail/menu_widgets.h"
#include "platform/window/detail/queue.h"
#include "platform/window/detail/widgets.h"
#include "platform/window/detail/window_record.h"

using platform::FindWindowRecord;
using platform::WindowRecord;

namespace platform {
namespace {

CreateHook g_createHook = nullptr;

std::vector<HWND>& TopLevels() {
  static std::vector<HWND> windows;
  return windows;
}

std::vector<HWND>& SiblingsOf(const WindowRecord& window) {
  WindowRecord* parent = FindWindowRecord(window.parent);
  return parent == nullptr ? TopLevels() : parent->children;
}

Qt::WindowFlags FlagsFor(DWORD style) {
  if ((style & WS_CHILD) != 0) return Qt::Widget;
  if ((style & WS_CAPTION) != WS_CAPTION) return Qt::Window | Qt::FramelessWindowHint;
  if ((style & WS_POPUP) != 0 && (style & WS_THICKFRAME) == 0) {
    Qt::WindowFlags flags = Qt::Dialog | Qt::CustomizeWindowHint | Qt::WindowTitleHint;
    if ((style & WS_SYSMENU) != 0) flags |= Qt::WindowSystemMenuHint | Qt::WindowCloseButtonHint;
    return flags;
  }
  return Qt::Window;
}

void MakeWidgets(WindowRecord& window, QWidget* hostParent) {
  QWidget* parent = hostParent;
  Qt::WindowFlags flags = hostParent != nullptr ? Qt::Widget : FlagsFor(window.style);
  if (const WindowRecord* parentRecord = FindWindowRecord(window.parent)) {
    parent = parentRecord->client;
  } else if (const WindowRecord* owner = FindWindowRecord(window.owner)) {
    parent = owner->frame;
    flags |= Qt::Window;
  }
  window.frame = window.mdiChild ? MakeMdiChildWidget(window.handle, parent)
                                 : new FrameWidget(window.handle, parent, flags);
  // Qt would show it together with its parent, whether the program has shown it or not.
  if (window.IsChild() && hostParent == nullptr && !window.mdiChild) window.frame->hide();
  window.frame->setWindowTitle(QString::fromStdString(window.text));
  if (window.windowClass->icon != nullptr) window.frame->setWindowIcon(IconOf(window.windowClass->icon));
  window.client = new ClientWidget(window.handle, window.frame);
}

struct Place {
  int x, y, width, height;
};

void PlaceInitially(WindowRecord& window, Place place) {
  constexpr int kDefaultWidth = 800;
  constexpr int kDefaultHeight = 600;
  if (window.mdiChild && (place.x == CW_USEDEFAULT || place.width == CW_USEDEFAULT)) {
    const QRect proposed = NextCascadePlace(window);
    if (place.x == CW_USEDEFAULT) place = {proposed.x(), proposed.y(), place.width, place.height};
    if (place.width == CW_USEDEFAULT || place.width == 0)
      place = {place.x, place.y, proposed.width(), proposed.height()};
  }
  if (place.width == CW_USEDEFAULT) {
    place.width = kDefaultWidth;
    place.height = kDefaultHeight;
  }
  const bool anywhere = place.x == CW_USEDEFAULT;
  const int width = std::max(place.width, 0);
  const int height = std::max(place.height, 0);
  if (!anywhere || window.IsChild()) window.frame->move(anywhere ? 0 : place.x, anywhere ? 0 : place.y);
  SizeFrame(window, {width, height});
}

/// Takes the window out of everything that knows it. Its procedure has been told.
void Forget(HWND handle) {
  WindowRecord* window = FindWindowRecord(handle);
  if (window == nullptr) return;
  ForgetMenus(*window);
  ForgetWindowDCs(handle);
  ForgetInputWindow(handle);
  Queue::Instance().PurgeWindow(handle);
  auto& siblings = SiblingsOf(*window);
  siblings.erase(std::remove(siblings.begin(), siblings.end(), handle), siblings.end());
  if (window->client) window->client->Detach();
  for (const auto& bar : window->bars)
    if (bar) bar->Detach();
  if (window->frame) {
    window->frame->Detach();
    window->frame->hide();
    window->frame->deleteLater();  // we may stand in a handler of this very widget
  }
  Windows().Remove(handle);
}

HWND CreateWindowRecord(const CREATESTRUCT& wanted, QWidget* hostParent) {
  EnsureApplication();
  RegisterControls();
  RegisterMdiClient();
  WindowClass* windowClass = FindWindowClass(wanted.lpszClass);
  const bool child = (wanted.style & WS_CHILD) != 0;
  if (windowClass == nullptr) return nullptr;
  if (wanted.hwndParent != nullptr && FindWindowRecord(wanted.hwndParent) == nullptr) return nullptr;
  if (child && wanted.hwndParent == nullptr && hostParent == nullptr) return nullptr;

  const HWND handle = Windows().Add(std::make_unique<WindowRecord>());
  WindowRecord& window = *FindWindowRecord(handle);
  window.handle = handle;
  window.windowClass = windowClass;
  window.procedure = windowClass->procedure;
  window.style = wanted.style & ~static_cast<DWORD>(WS_VISIBLE);
  window.exStyle = wanted.dwExStyle;
  window.instance = wanted.hInstance;
  window.text = wanted.lpszName == nullptr ? "" : wanted.lpszName;
  if (child) {
    window.id = reinterpret_cast<std::intptr_t>(wanted.hMenu);
    window.parent = wanted.hwndParent;
  } else {
    window.owner = GetTopLevelWindow(wanted.hwndParent);
    if (IsMenu(wanted.hMenu) != 0) window.menu = wanted.hMenu;
  }
  JoinMdi(window);
  auto& siblings = SiblingsOf(window);
  siblings.insert(child ? siblings.end() : siblings.begin(), handle);
  MakeWidgets(window, hostParent);
  if ((wanted.style & WS_DISABLED) != 0) window.style |= WS_DISABLED;
  PlaceInitially(window, {wanted.x, wanted.y, wanted.cx, wanted.cy});
  RefreshMenuBar(window);
  window.sentClientSize = QSize(-1, -1);
  if (g_createHook != nullptr) g_createHook(handle);
  return handle;
}

/// Runs the messages of creation; false if the program refused or destroyed the window.
bool TellCreated(HWND handle, CREATESTRUCT& wanted) {
  const auto param = reinterpret_cast<LPARAM>(&wanted);
  if (SendMessage(handle, WM_NCCREATE, 0, param) == 0 || !IsWindow(handle)) {
    Forget(handle);
    return false;
  }
  if (SendMessage(handle, WM_CREATE, 0, param) == -1) {
    DestroyWindow(handle);
    return false;
  }
  WindowRecord* window = FindWindowRecord(handle);
  if (window == nullptr) return false;
  const QPoint place = window->frame->pos();
  LayoutWindow(*window);
  if (IsWindow(handle)) SendMessage(handle, WM_MOVE, 0, MAKELPARAM(place.x(), place.y()));
  return IsWindow(handle) != FALSE;
}

}  // namespace

void SetCreateHook(CreateHook hook) {
  g_createHook = hook;
}

HandleTable<WindowRecord, HWND>& Windows() {
  static auto* table = new HandleTable<WindowRecord, HWND>;  // never torn down: widgets may outlive statics
  return *table;
}

HWND CreateWindowIn(CREATESTRUCT wanted, QWidget* hostParent) {
  const HWND handle = CreateWindowRecord(wanted, hostParent);
  if (handle == nullptr || !TellCreated(handle, wanted)) return nullptr;
  if ((wanted.dwExStyle & WS_EX_MDICHILD) != 0)
    ShowNewMdiChild(handle, wanted.style);
  else if ((wanted.style & WS_VISIBLE) != 0)
    ShowWindow(handle, (wanted.style & WS_MAXIMIZE) != 0 ? SW_SHOWMAXIMIZED : SW_SHOW);
  return handle;
}

LRESULT SendGuarded(HWND window, UINT message, WPARAM wParam, LPARAM lParam) {
  try {
    return SendMessage(window, message, wParam, lParam);
  } catch (...) {
    Queue::Instance().Keep(std::current_exception());
    return 0;
  }
}

/// The Qt widget of a window has been deleted by its Qt parent.
void FrameWidgetGone(HWND window) {
  if (FindWindowRecord(window) != nullptr) DestroyWindow(window);
}

}  // namespace platform

HWND CreateWindowEx(DWORD exStyle, LPCSTR className, LPCSTR text, DWORD style, int x, int y, int width,
                    int height, HWND parent, HMENU menuOrId, HINSTANCE instance, LPVOID params) {
  return platform::CreateWindowIn(
      {params, instance, menuOrId, parent, height, width, y, x, style, text, className, exStyle}, nullptr);
}

namespace {

void DestroyTree(HWND handle) {
  SendMessage(handle, WM_DESTROY);
  for (;;) {
    const WindowRecord* window = FindWindowRecord(handle);
    if (window == nullptr || window->children.empty()) break;
    const HWND child = window->children.back();
    DestroyTree(child);
  }
  if (FindWindowRecord(handle) == nullptr) return;
  SendMessage(handle, WM_NCDESTROY);
  platform::Forget(handle);
}

}  // namespace

BOOL DestroyWindow(HWND handle) {
  WindowRecord* window = FindWindowRecord(handle);
  if (window == nullptr || window->destroying) return FALSE;
  window->destroying = true;
  if (window->mdiChild) {
    platform::LeaveMdi(handle);  // another becomes the active one while this one is still whole
    window = FindWindowRecord(handle);
    if (window == nullptr) return TRUE;
  }
  if (GetCapture() == handle || IsChild(handle, GetCapture())) ReleaseCapture();
  if (window->frame) window->frame->hide();
  // Windows that this one owns go first.
  std::vector<HWND> owned;
  platform::Windows().ForEach([&](HWND other, const WindowRecord& record) {
    if (record.owner == handle) owned.push_back(other);
  });
  for (const HWND other : owned) DestroyWindow(other);
  DestroyTree(handle);
  return TRUE;
}

BOOL IsWindow(HWND window) {
  return FindWindowRecord(window) != nullptr;
}

LRESULT SendMessage(HWND handle, UINT message, WPARAM wParam, LPARAM lParam) {
  const WindowRecord* window = FindWindowRecord(handle);
  return window == nullptr ? 0 : window->procedure(handle, message, wParam, lParam);
}

UINT RegisterWindowMessageA(LPCSTR text) {
  if (text == nullptr || *text == 0) return 0;
  static std::map<std::string, UINT> numbers;
  const auto number = static_cast<UINT>(0xC000 + numbers.size());
  return numbers.emplace(text, number).first->second;
}

std::intptr_t GetWindowLong(HWND handle, int index) {
  const WindowRecord* window = FindWindowRecord(handle);
  if (window == nullptr) return 0;
  switch (index) {
    case GWL_WNDPROC:
      return reinterpret_cast<std::intptr_t>(window->procedure);
    case GWL_ID:
      return window->id;
    case GWL_STYLE:
      return static_cast<std::intptr_t>(window->style);
    case GWL_EXSTYLE:
      return static_cast<std::intptr_t>(window->exStyle);
    case GWL_USERDATA:
      return window->userData;
    default:
      return 0;
  }
}

std::intptr_t SetWindowLong(HWND handle, int index, std::intptr_t value) {
  WindowRecord* window = FindWindowRecord(handle);
  if (window == nullptr) return 0;
  const std::intptr_t former = GetWindowLong(handle, index);
  switch (index) {
    case GWL_WNDPROC:
      window->procedure = reinterpret_cast<WNDPROC>(value);
      break;
    case GWL_ID:
      window->id = value;
      break;
    case GWL_STYLE:
      window->style = static_cast<DWORD>(value);
      if (window->control) SendMessage(handle, WM_STYLECHANGED, static_cast<WPARAM>(index));
      break;
    case GWL_EXSTYLE:
      window->exStyle = static_cast<DWORD>(value);
      break;
    case GWL_USERDATA:
      window->userData = value;
      break;
    default:
      break;
  }
  return former;
}

BOOL SetWindowText(HWND window, LPCSTR text) {
  return SendMessage(window, WM_SETTEXT, 0, reinterpret_cast<LPARAM>(text)) != 0;
}

CString GetWindowText(HWND handle) {
  const auto length = SendMessage(handle, WM_GETTEXTLENGTH);
  if (length <= 0) return {};
  CString text;
  char* buffer = text.GetBuffer(static_cast<int>(length) + 1);
  SendMessage(handle, WM_GETTEXT, static_cast<WPARAM>(length) + 1, reinterpret_cast<LPARAM>(buffer));
  text.ReleaseBuffer();
  return text;
}

int GetDlgCtrlID(HWND window) {
  return static_cast<int>(GetWindowLong(window, GWL_ID));
}

HWND GetDlgItem(HWND parent, int id) {
  const WindowRecord* window = FindWindowRecord(parent);
  if (window == nullptr) return nullptr;
  for (const HWND child : window->children)
    if (GetDlgCtrlID(child) == id) return child;
  return nullptr;
}

HWND GetParent(HWND handle) {
  const WindowRecord* window = FindWindowRecord(handle);
  if (window == nullptr) return nullptr;
  return window->IsChild() ? window->parent : window->owner;
}

HWND GetTopLevelWindow(HWND handle) {
  WindowRecord* top = platform::TopLevelOf(FindWindowRecord(handle));
  return top == nullptr ? nullptr : top->handle;
}

BOOL IsChild(HWND parent, HWND handle) {
  if (parent == nullptr) return FALSE;
  for (const WindowRecord* window = FindWindowRecord(handle); window != nullptr && window->IsChild();
       window = FindWindowRecord(window->parent))
    if (window->parent == parent) return TRUE;
  return FALSE;
}

HWND GetWindow(HWND handle, UINT which) {
  const WindowRecord* window = FindWindowRecord(handle);
  if (window == nullptr) return nullptr;
  if (which == GW_OWNER) return window->owner;
  if (which == GW_CHILD) return window->children.empty() ? nullptr : window->children.front();
  const std::vector<HWND>& siblings = platform::SiblingsOf(*window);
  const auto at = std::find(siblings.begin(), siblings.end(), handle);
  switch (which) {
    case GW_HWNDFIRST:
      return siblings.front();
    case GW_HWNDLAST:
      return siblings.back();
    case GW_HWNDNEXT:
      return at == siblings.end() || at + 1 == siblings.end() ? nullptr : *(at + 1);
    case GW_HWNDPREV:
      return at == siblings.end() || at == siblings.begin() ? nullptr : *(at - 1);
    default:
      return nullptr;
  }
}

HWND FindWindowA(LPCSTR className, LPCSTR title) {
  for (const HWND handle : platform::TopLevels()) {
    const WindowRecord* window = FindWindowRecord(handle);
    if (window == nullptr) continue;
    if (className != nullptr && platform::FindWindowClass(className) != window->windowClass) continue;
    if (title == nullptr || window->text == title) return handle;
  }
  return nullptr;
}
