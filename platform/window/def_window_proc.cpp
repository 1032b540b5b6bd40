#include <algorithm>
#include <cstring>

#include "platform/graphics/gdi.h"
#include "platform/window/detail/menu_widgets.h"
#include "platform/window/detail/queue.h"
#include "platform/window/detail/widgets.h"
#include "platform/window/detail/window_record.h"
#include "platform/window/drop_files.h"

using platform::FindWindowRecord;
using platform::WindowRecord;

namespace {

LRESULT SetText(WindowRecord& window, LPARAM text) {
  window.text = text == 0 ? "" : reinterpret_cast<const char*>(text);
  if (window.frame) window.frame->setWindowTitle(QString::fromStdString(window.text));
  return TRUE;
}

LRESULT GetText(const WindowRecord& window, WPARAM room, LPARAM buffer) {
  if (room == 0 || buffer == 0) return 0;
  const std::size_t length = std::min(window.text.size(), static_cast<std::size_t>(room) - 1);
  auto* text = reinterpret_cast<char*>(buffer);
  std::memcpy(text, window.text.data(), length);
  text[length] = 0;
  return static_cast<LRESULT>(length);
}

LRESULT EraseBackground(HWND handle, const WindowRecord& window, HDC dc) {
  const HBRUSH brush = window.windowClass->background;
  if (brush == nullptr) return 0;
  RECT client;
  GetClientRect(handle, &client);
  FillRect(dc, &client, brush);
  return 1;
}

LRESULT SetClassCursor(HWND handle, const WindowRecord& window, WPARAM under, LPARAM hit) {
  // A parent may set the cursor for its children; the class's own cursor comes last.
  if (window.IsChild() && window.parent != nullptr &&
      SendMessage(window.parent, WM_SETCURSOR, under, hit) != 0)
    return TRUE;
  if (reinterpret_cast<HWND>(under) != handle) return FALSE;
  const WindowRecord* alive = FindWindowRecord(handle);
  if (alive == nullptr || alive->windowClass->cursor == nullptr) return FALSE;
  SetCursor(alive->windowClass->cursor);
  return TRUE;
}

LRESULT ContextMenuFor(HWND handle, WPARAM source, LPARAM place) {
  const HWND parent = GetParent(handle);
  const WindowRecord* window = FindWindowRecord(handle);
  return window->IsChild() ? SendMessage(parent, WM_CONTEXTMENU, source, place) : 0;
}

/// Opens the menu bar; with Shift the context menu.
LRESULT F10(HWND handle) {
  if (GetKeyState(VK_SHIFT) < 0)
    return SendMessage(handle, WM_CONTEXTMENU, reinterpret_cast<WPARAM>(handle),
                       platform::MenuPlaceWithoutPointer(handle));
  platform::OpenMenuBar(GetTopLevelWindow(handle), 0);
  return 0;
}

}  // namespace

LRESULT DefWindowProc(HWND handle, UINT message, WPARAM wParam, LPARAM lParam) {
  WindowRecord* window = FindWindowRecord(handle);
  if (window == nullptr) return 0;
  switch (message) {
    case WM_NCCREATE:
      return TRUE;
    case WM_SETTEXT:
      return SetText(*window, lParam);
    case WM_GETTEXT:
      return GetText(*window, wParam, lParam);
    case WM_GETTEXTLENGTH:
      return static_cast<LRESULT>(window->text.size());
    case WM_CLOSE:
      DestroyWindow(handle);
      return 0;
    case WM_ERASEBKGND:
      return EraseBackground(handle, *window, reinterpret_cast<HDC>(wParam));
    case WM_PAINT: {
      PAINTSTRUCT paint;
      BeginPaint(handle, &paint);
      EndPaint(handle, &paint);
      return 0;
    }
    case WM_ACTIVATE:
      // The keyboard goes to the window itself unless something in it had it before.
      if (wParam != 0 && window->frame && window->frame->focusWidget() == nullptr) SetFocus(handle);
      return 0;
    case WM_SETCURSOR:
      return SetClassCursor(handle, *window, wParam, lParam);
    case WM_RBUTTONUP: {
      POINT point = {GET_X_LPARAM(lParam), GET_Y_LPARAM(lParam)};
      ClientToScreen(handle, &point);
      return SendMessage(handle, WM_CONTEXTMENU, reinterpret_cast<WPARAM>(handle),
                         MAKELPARAM(point.x, point.y));
    }
    case WM_CONTEXTMENU:
      return ContextMenuFor(handle, wParam, lParam);
    case WM_MOUSEWHEEL:
    case WM_MOUSEHWHEEL:
      return window->IsChild() && window->parent != nullptr
                 ? SendMessage(window->parent, message, wParam, lParam)
                 : 0;
    case WM_DROPFILES:
      DragFinish(reinterpret_cast<HDROP>(wParam));
      return 0;
    case WM_SYSKEYDOWN:
      if (wParam == VK_F10) return F10(handle);
      return 0;
    case WM_SYSCHAR:
      platform::OpenMenuBar(GetTopLevelWindow(handle), static_cast<char32_t>(wParam));
      return 0;
    case WM_CANCELMODE:
      platform::CloseTrackedMenu(handle);
      if (GetCapture() == handle) ReleaseCapture();
      return 0;
    default:
      return 0;
  }
}
