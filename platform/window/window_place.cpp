#include <QApplication>
#include <QScreen>
#include <QWindow>
#include <algorithm>

#include "platform/window/detail/mdi_windows.h"
#include "platform/window/detail/menu_widgets.h"
#include "platform/window/detail/widgets.h"
#include "platform/window/detail/window_record.h"
#include "platform/window/detail/window_sizing.h"
#include "platform/window/pump.h"

using platform::FindWindowRecord;
using platform::WindowRecord;

namespace platform {
namespace {

int EdgeOf(const WindowRecord& window) {
  if (window.control) return 0;
  if ((window.exStyle & WS_EX_CLIENTEDGE) != 0) return GetSystemMetrics(SM_CXEDGE);
  return window.IsChild() && !window.mdiChild && (window.style & WS_BORDER) != 0
             ? GetSystemMetrics(SM_CXBORDER)
             : 0;
}

int BarExtent(const WindowRecord& window, int bar) {
  if (window.control) return 0;
  const DWORD style = bar == SB_HORZ ? WS_HSCROLL : WS_VSCROLL;
  if ((window.style & style) == 0) return 0;
  return GetSystemMetrics(bar == SB_HORZ ? SM_CYHSCROLL : SM_CXVSCROLL);
}

void PlaceBar(WindowRecord& window, int bar, const QRect& place) {
  QPointer<WindowScrollBar>& widget = window.bars[static_cast<std::size_t>(bar)];
  if (place.isEmpty()) {
    if (widget) widget->hide();
    return;
  }
  if (!widget) widget = new WindowScrollBar(window.handle, bar, window.frame);
  widget->setGeometry(place);
  widget->show();
}

}  // namespace

static void BringToFront(QWidget& window) {
  if (!IsOffscreen()) window.raise();  // windows have no order there
  window.activateWindow();
}

void SizeFrame(WindowRecord& window, QSize size) {
  constexpr DWORD kSizes = WS_CHILD | WS_THICKFRAME | WS_MAXIMIZEBOX;
  const bool dialog = (window.style & WS_POPUP) != 0 && (window.style & WS_CAPTION) == WS_CAPTION;
  if (dialog && (window.style & kSizes) == 0 && window.frame->isWindow())
    window.frame->setFixedSize(size);
  else
    window.frame->resize(size);
}

QRect ClientRectOf(const WindowRecord& window) {
  const int edge = EdgeOf(window);
  QRect client = window.frame->rect()
                     .marginsRemoved(MdiChildMargins(window))
                     .adjusted(edge, edge + MenuBarHeight(window), -edge, -edge);
  client.setWidth(std::max(0, client.width() - BarExtent(window, SB_VERT)));
  client.setHeight(std::max(0, client.height() - BarExtent(window, SB_HORZ)));
  return client;
}

void LayoutWindow(WindowRecord& window) {
  if (!window.frame || !window.client) return;
  const QRect client = ClientRectOf(window);
  const int right = BarExtent(window, SB_VERT);
  const int bottom = BarExtent(window, SB_HORZ);
  PlaceBar(window, SB_VERT, QRect(client.right() + 1, client.top(), right, client.height()));
  PlaceBar(window, SB_HORZ, QRect(client.left(), client.bottom() + 1, client.width(), bottom));
  PlaceMenuBar(window);
  window.client->setGeometry(client);
  window.frame->update();
  if (client.size() == window.sentClientSize) return;
  window.sentClientSize = client.size();
  ResizeSurface(window);
  const bool maximized = window.mdiChild ? (window.style & WS_MAXIMIZE) != 0 : window.frame->isMaximized();
  const bool minimized = window.mdiChild && (window.style & WS_MINIMIZE) != 0;
  const UINT type = maximized ? SIZE_MAXIMIZED : minimized ? SIZE_MINIMIZED : SIZE_RESTORED;
  SendGuarded(window.handle, WM_SIZE, type, MakeSizeParam(client.width(), client.height()));
}

WindowRecord* TopLevelOf(WindowRecord* window) {
  while (window != nullptr && window->IsChild()) {
    WindowRecord* parent = FindWindowRecord(window->parent);
    if (parent == nullptr) break;
    window = parent;
  }
  return window;
}

bool IsMaximized(HWND handle) {
  const WindowRecord* window = FindWindowRecord(handle);
  return window != nullptr && window->frame && window->frame->isMaximized();
}

void StartSizing(HWND handle) {
  const WindowRecord* window = FindWindowRecord(handle);
  if (window == nullptr || !window->frame || window->frame->windowHandle() == nullptr) return;
  window->frame->windowHandle()->startSystemResize(Qt::RightEdge | Qt::BottomEdge);
}

bool IsEnabledChain(HWND handle) {
  for (const WindowRecord* window = FindWindowRecord(handle); window != nullptr;
       window = window->IsChild() ? FindWindowRecord(window->parent) : nullptr)
    if ((window->style & WS_DISABLED) != 0) return false;
  return true;
}

}  // namespace platform

BOOL ShowWindow(HWND handle, int command) {
  WindowRecord* window = FindWindowRecord(handle);
  if (window == nullptr || !window->frame) return FALSE;
  const bool wasVisible = (window->style & WS_VISIBLE) != 0;
  const bool show = command != SW_HIDE;
  if (show != wasVisible) SendMessage(handle, WM_SHOWWINDOW, show ? 1 : 0, 0);
  window = FindWindowRecord(handle);
  if (window == nullptr) return wasVisible;
  window->style = show ? window->style | WS_VISIBLE : window->style & ~static_cast<DWORD>(WS_VISIBLE);
  const QPointer<platform::FrameWidget> frame = window->frame;
  if (window->mdiChild) {
    platform::ShowMdiChild(handle, command);
    return wasVisible;
  }
  switch (command) {
    case SW_HIDE:
      frame->hide();
      break;
    case SW_SHOWMAXIMIZED:
      frame->showMaximized();
      break;
    case SW_SHOWMINIMIZED:
      frame->showMinimized();
      break;
    case SW_RESTORE:
    case SW_SHOWNORMAL:
      frame->showNormal();
      break;
    default:
      frame->show();
      break;
  }
  if (show && frame && frame->isWindow() && command != SW_SHOWMINIMIZED) platform::BringToFront(*frame);
  return wasVisible;
}

BOOL IsWindowVisible(HWND handle) {
  const WindowRecord* window = FindWindowRecord(handle);
  for (; window != nullptr; window = FindWindowRecord(window->parent)) {
    if ((window->style & WS_VISIBLE) == 0) return FALSE;
    if (!window->IsChild() || window->parent == nullptr) return TRUE;
  }
  return FALSE;
}

namespace {

/// Puts a child into its place among its siblings, and its widget too.
void Reorder(WindowRecord& window, HWND after) {
  WindowRecord* parent = FindWindowRecord(window.parent);
  if (parent == nullptr || after == window.handle) return;
  auto& order = parent->children;
  order.erase(std::remove(order.begin(), order.end(), window.handle), order.end());
  const auto behind = std::find(order.begin(), order.end(), after);
  if (after == HWND_TOP) {
    order.insert(order.begin(), window.handle);
    window.frame->raise();
  } else if (after == HWND_BOTTOM || behind == order.end()) {
    order.push_back(window.handle);
    window.frame->lower();
  } else {
    const WindowRecord* above = FindWindowRecord(after);
    order.insert(behind + 1, window.handle);
    if (above != nullptr && above->frame) window.frame->stackUnder(above->frame);
  }
}

}  // namespace

BOOL SetWindowPos(HWND handle, HWND after, int x, int y, int width, int height, UINT flags) {
  WindowRecord* window = FindWindowRecord(handle);
  if (window == nullptr || !window->frame) return FALSE;
  const QPoint formerPlace = window->frame->pos();
  // Each step is told to the program, which may end the window.
  const auto there = [&] { return (window = FindWindowRecord(handle)) != nullptr && window->frame; };
  if ((flags & SWP_NOMOVE) == 0) window->frame->move(x, y);
  if ((flags & SWP_NOSIZE) == 0 && there())
    platform::SizeFrame(*window, {std::max(width, 0), std::max(height, 0)});
  if ((flags & SWP_NOZORDER) == 0 && there() && window->IsChild()) Reorder(*window, after);
  // Qt tells a hidden window its new size only when it is shown; the program hears of it now.
  if (there()) platform::LayoutWindow(*window);
  if (there() && !window->frame->isVisible() && window->frame->pos() != formerPlace)
    SendMessage(handle, WM_MOVE, 0, MAKELPARAM(window->frame->x(), window->frame->y()));
  if ((flags & SWP_SHOWWINDOW) != 0) ShowWindow(handle, SW_SHOW);
  if ((flags & SWP_HIDEWINDOW) != 0) ShowWindow(handle, SW_HIDE);
  return TRUE;
}

BOOL MoveWindow(HWND window, int x, int y, int width, int height, BOOL repaint) {
  const BOOL moved = SetWindowPos(window, nullptr, x, y, width, height, SWP_NOZORDER | SWP_NOACTIVATE);
  if (repaint != 0) UpdateWindow(window);
  return moved;
}

BOOL GetWindowRect(HWND handle, RECT* rect) {
  const WindowRecord* window = FindWindowRecord(handle);
  if (window == nullptr || rect == nullptr || !window->frame) return FALSE;
  const QPoint origin = window->frame->mapToGlobal(QPoint(0, 0));
  *rect = {origin.x(), origin.y(), origin.x() + window->frame->width(), origin.y() + window->frame->height()};
  return TRUE;
}

BOOL GetClientRect(HWND handle, RECT* rect) {
  const WindowRecord* window = FindWindowRecord(handle);
  if (window == nullptr || rect == nullptr || !window->client) return FALSE;
  *rect = {0, 0, window->client->width(), window->client->height()};
  return TRUE;
}

BOOL ClientToScreen(HWND handle, POINT* point) {
  const WindowRecord* window = FindWindowRecord(handle);
  if (window == nullptr || point == nullptr || !window->client) return FALSE;
  const QPoint global = window->client->mapToGlobal(QPoint(point->x, point->y));
  *point = {global.x(), global.y()};
  return TRUE;
}

BOOL ScreenToClient(HWND handle, POINT* point) {
  const WindowRecord* window = FindWindowRecord(handle);
  if (window == nullptr || point == nullptr || !window->client) return FALSE;
  const QPoint local = window->client->mapFromGlobal(QPoint(point->x, point->y));
  *point = {local.x(), local.y()};
  return TRUE;
}

HWND WindowFromPoint(POINT point) {
  for (QWidget* widget = QApplication::widgetAt(point.x, point.y); widget != nullptr;
       widget = widget->parentWidget()) {
    if (const auto* client = dynamic_cast<platform::ClientWidget*>(widget)) return client->Window();
    if (const auto* frame = dynamic_cast<platform::FrameWidget*>(widget)) return frame->Window();
  }
  return nullptr;
}

HWND GetActiveWindow() {
  const auto* frame = dynamic_cast<platform::FrameWidget*>(QApplication::activeWindow());
  return frame == nullptr ? nullptr : frame->Window();
}

BOOL SetForegroundWindow(HWND handle) {
  const WindowRecord* window = FindWindowRecord(handle);
  if (window == nullptr || !window->frame) return FALSE;
  platform::BringToFront(*window->frame->window());
  return TRUE;
}

BOOL EnableWindow(HWND handle, BOOL enable) {
  WindowRecord* window = FindWindowRecord(handle);
  if (window == nullptr) return FALSE;
  const bool wasDisabled = (window->style & WS_DISABLED) != 0;
  if (wasDisabled == (enable == 0)) return wasDisabled;
  // Input is held back where it comes in; the widget stays enabled for Qt, which would grey all it holds.
  if (enable == 0) {
    window->style |= WS_DISABLED;
    if (GetCapture() == handle || IsChild(handle, GetCapture())) ReleaseCapture();
  } else {
    window->style &= ~static_cast<DWORD>(WS_DISABLED);
  }
  SendMessage(handle, WM_ENABLE, enable != 0 ? 1 : 0, 0);
  return wasDisabled;
}

BOOL IsWindowEnabled(HWND handle) {
  const WindowRecord* window = FindWindowRecord(handle);
  return window != nullptr && (window->style & WS_DISABLED) == 0;
}
