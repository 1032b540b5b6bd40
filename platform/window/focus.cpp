#include <QApplication>
#include <utility>

#include "platform/window/detail/widgets.h"
#include "platform/window/detail/window_record.h"
#include "platform/window/pump.h"

using platform::FindWindowRecord;
using platform::WindowRecord;

namespace {

HWND g_focus = nullptr;      // the program's idea of it, which Qt follows when the window is active
HWND g_lastFocus = nullptr;  // who had it last, or the window that this one stood in
HWND g_capture = nullptr;

/// Moves the focus and tells both windows.
void MoveFocus(HWND window) {
  const HWND former = std::exchange(g_focus, window);
  if (window != nullptr) g_lastFocus = window;
  if (former == window) return;
  if (former != nullptr) platform::SendGuarded(former, WM_KILLFOCUS, reinterpret_cast<WPARAM>(window), 0);
  if (window != nullptr && g_focus == window)
    platform::SendGuarded(window, WM_SETFOCUS, reinterpret_cast<WPARAM>(former), 0);
}

}  // namespace

namespace platform {

void FocusGained(HWND window) {
  // The desktop may bring a window to the front that waits for the end of a dialog.
  if (IsEnabledChain(window)) MoveFocus(window);
}

void FocusLost(HWND window) {
  if (g_focus == window) MoveFocus(nullptr);
}

void ForgetInputWindow(HWND window) {
  if (g_focus == window) g_focus = nullptr;
  if (g_lastFocus == window) g_lastFocus = GetParent(window);
  if (g_capture == window) g_capture = nullptr;
}

QWidget* WindowInUse() {
  if (QWidget* active = QApplication::activeWindow()) return active;
  // Between two windows, as when a dialog of the toolkit has just gone, or while the user is in the program
  // from which he drops a file, none is active.
  const WindowRecord* top = FindWindowRecord(GetTopLevelWindow(g_lastFocus));
  return top == nullptr || !top->frame || !top->frame->isVisible() ? nullptr : top->frame.data();
}

}  // namespace platform

HWND SetFocus(HWND handle) {
  const HWND former = g_focus;
  WindowRecord* window = FindWindowRecord(handle);
  if (handle != nullptr && (window == nullptr || !platform::IsEnabledChain(handle))) return nullptr;
  MoveFocus(handle);
  window = FindWindowRecord(handle);
  if (g_focus == handle && window != nullptr && window->client)
    window->client->setFocus(Qt::OtherFocusReason);
  return former;
}

HWND GetFocus() {
  return g_focus;
}

HWND SetCapture(HWND handle) {
  WindowRecord* window = FindWindowRecord(handle);
  const HWND former = g_capture;
  if (window == nullptr || former == handle) return former;
  g_capture = handle;
  if (window->client && window->client->isVisible() && platform::GrabsMouse()) window->client->grabMouse();
  if (former != nullptr) SendMessage(former, WM_CAPTURECHANGED, 0, reinterpret_cast<LPARAM>(handle));
  return former;
}

BOOL ReleaseCapture() {
  const HWND former = std::exchange(g_capture, nullptr);
  if (former == nullptr) return TRUE;
  const WindowRecord* window = FindWindowRecord(former);
  if (window != nullptr && window->client && platform::GrabsMouse()) window->client->releaseMouse();
  platform::SendGuarded(former, WM_CAPTURECHANGED, 0, 0);
  return TRUE;
}

HWND GetCapture() {
  return g_capture;
}
