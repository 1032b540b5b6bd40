#pragma once

#include <QPointer>
#include <QRegion>
#include <array>
#include <cstdint>
#include <map>
#include <memory>
#include <string>
#include <vector>

#include "platform/base/detail/handle_table.h"
#include "platform/graphics/detail/window_surface.h"
#include "platform/window/accessible.h"
#include "platform/window/detail/tool_tips.h"
#include "platform/window/window.h"

namespace platform {

class FrameWidget;
class ClientWidget;
class WindowScrollBar;
class MenuBar;
class Control;
struct MdiClient;
struct MdiChild;
struct ToolbarRecord;

struct WindowClass {
  std::string name;
  UINT style = 0;
  WNDPROC procedure = nullptr;
  HINSTANCE instance = nullptr;
  HICON icon = nullptr;
  HCURSOR cursor = nullptr;
  HBRUSH background = nullptr;
};

/// One of a window's own scroll bars. The values are the program's, clamped; whether the bar shows is the
/// window's WS_HSCROLL or WS_VSCROLL style.
struct ScrollBarState {
  int minimum = 0;
  int maximum = 0;
  UINT page = 0;
  int position = 0;
  int track = 0;  ///< while the thumb is dragged
  bool tracking = false;
};

struct WindowRecord {
  HWND handle = nullptr;
  WindowClass* windowClass = nullptr;
  WNDPROC procedure = nullptr;
  DWORD style = 0;
  DWORD exStyle = 0;
  std::intptr_t id = 0;
  std::intptr_t userData = 0;
  HINSTANCE instance = nullptr;
  HWND parent = nullptr;       ///< of a child
  HWND owner = nullptr;        ///< of a top-level window
  std::vector<HWND> children;  ///< top of the z-order first
  HMENU menu = nullptr;        ///< of a top-level window
  std::string text;
  bool destroying = false;

  QPointer<FrameWidget> frame;
  QPointer<ClientWidget> client;
  QPointer<MenuBar> menuBar;
  std::array<QPointer<WindowScrollBar>, 2> bars;  ///< by SB_HORZ, SB_VERT
  std::array<ScrollBarState, 2> scroll;

  /// What the client area shows, in device pixels. It follows surfaceSize only when somebody draws on it or
  /// looks at it: most windows change their size some times before they are seen, and many never are.
  WindowSurface surface;
  QSize surfaceSize;
  double surfaceScale = 1;
  QRegion invalid;  ///< client coordinates
  bool eraseInvalid = false;
  int paintDepth = 0;  ///< inside BeginPaint
  bool paintBegun = false;
  bool inQtPaint = false;
  bool trackLeave = false;  ///< a WM_MOUSELEAVE was asked for
  ToolTipSource toolTip = nullptr;
  AccessibleRole accessibleRole = AccessibleRole::None;
  HWND accessibleLabel = nullptr;                    ///< of a field in a dialog: the text that names it
  std::shared_ptr<AccessibleItems> accessibleItems;  ///< null without parts of its own
  QSize sentClientSize{-1, -1};

  std::shared_ptr<Control> control;  ///< of a standard control; it has no edge, bars or surface

  std::shared_ptr<ToolbarRecord> toolbar;  ///< of a control of class ToolbarWindow32

  std::shared_ptr<MdiClient> mdiClient;  ///< of the window that holds document windows (detail/mdi_windows.h)
  std::shared_ptr<MdiChild> mdiChild;    ///< of a document window
  HWND mdiClientOfFrame = nullptr;       ///< of a main window that has such a client

  bool IsChild() const { return (style & WS_CHILD) != 0; }
};

HandleTable<WindowRecord, HWND>& Windows();
/// Null for a dead handle.
inline WindowRecord* FindWindowRecord(HWND window) {
  return Windows().Get(window);
}

/// By name; null if it isn't registered.
WindowClass* FindWindowClass(const char* name);
/// Registers the window classes of the standard controls, once (controls/classes.cpp).
void RegisterControls();

// Layout (window_place.cpp)

/// Places bars and client area inside the frame and sends WM_SIZE if the client size has changed.
void LayoutWindow(WindowRecord& window);
/// A dialog without a sizing border keeps the size it is given; the desktop then offers no other.
void SizeFrame(WindowRecord& window, QSize size);
QRect ClientRectOf(const WindowRecord& window);  ///< in the frame's coordinates
/// The first window up the parent chain that isn't a child.
WindowRecord* TopLevelOf(WindowRecord* window);
bool IsEnabledChain(HWND window);

// Painting (paint.cpp)

/// Notes the client area's size and invalidates what is uncovered.
void ResizeSurface(WindowRecord& window);
/// Makes the surface as large as noted.
void RefreshSurface(WindowRecord& window);
/// Sends WM_PAINT for what is invalid.
void PaintInvalid(HWND window);
void InvalidateRegion(WindowRecord& window, const QRegion& region, bool erase);
void ForgetWindowDCs(HWND window);
/// True while a WM_PAINT runs inside Qt's own painting, where no event loop may run.
bool InsideQtPaint();

// Scroll bars (scroll_bars.cpp)

/// Brings the visible bar in line with the stored values; true if it appeared or went.
void RefreshScrollBar(WindowRecord& window, int bar);

// Focus and capture (focus.cpp)

void FocusGained(HWND window);  ///< the desktop gave it the keyboard
void FocusLost(HWND window);    ///< the desktop took it away
void ForgetInputWindow(HWND window);
/// The desktop's active window, or the main window in which the keyboard was last; null if that has gone.
QWidget* WindowInUse();

// Messages

/// Calls the window's procedure and keeps an exception for the pump, for calls that come from Qt.
LRESULT SendGuarded(HWND window, UINT message, WPARAM wParam, LPARAM lParam);

}  // namespace platform
