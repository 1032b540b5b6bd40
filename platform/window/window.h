#pragma once

#include "platform/base/export.h"
#include "platform/base/geometry.h"
#include "platform/base/string.h"
#include "platform/base/types.h"
#include "platform/window/messages.h"

// The window system: windows behind handles, each with a class, a procedure, a style and a place. All calls
// come from the user-interface thread, except PostMessage. A dead or null handle makes every function fail
// softly. Coordinates are logical, 96 to the inch, whatever the scale of the display.

/// Window styles.
enum : DWORD {
  WS_OVERLAPPED = 0x00000000,
  WS_TABSTOP = 0x00010000,
  WS_MAXIMIZEBOX = 0x00010000,
  WS_GROUP = 0x00020000,
  WS_MINIMIZEBOX = 0x00020000,
  WS_THICKFRAME = 0x00040000,
  WS_SYSMENU = 0x00080000,
  WS_HSCROLL = 0x00100000,
  WS_VSCROLL = 0x00200000,
  WS_DLGFRAME = 0x00400000,
  WS_BORDER = 0x00800000,
  WS_CAPTION = WS_BORDER | WS_DLGFRAME,
  WS_MAXIMIZE = 0x01000000,
  WS_CLIPCHILDREN = 0x02000000,
  WS_CLIPSIBLINGS = 0x04000000,
  WS_DISABLED = 0x08000000,
  WS_VISIBLE = 0x10000000,
  WS_MINIMIZE = 0x20000000,
  WS_CHILD = 0x40000000,
  WS_POPUP = 0x80000000,
  WS_OVERLAPPEDWINDOW = WS_CAPTION | WS_SYSMENU | WS_THICKFRAME | WS_MINIMIZEBOX | WS_MAXIMIZEBOX,
};
enum : DWORD { WS_EX_CLIENTEDGE = 0x00000200, WS_EX_ACCEPTFILES = 0x00000010, WS_EX_MDICHILD = 0x00000040 };

/// Class styles.
enum : UINT { CS_VREDRAW = 1, CS_HREDRAW = 2, CS_DBLCLKS = 8, CS_BYTEALIGNCLIENT = 0x1000 };

enum : int { CW_USEDEFAULT = static_cast<int>(0x80000000U) };
enum : int {
  SW_HIDE = 0,
  SW_SHOWNORMAL = 1,
  SW_SHOWMINIMIZED = 2,
  SW_SHOWMAXIMIZED = 3,
  SW_SHOWNOACTIVATE = 4,
  SW_SHOW = 5,
  SW_SHOWNA = 8,
  SW_RESTORE = 9
};
enum : UINT {
  SWP_NOSIZE = 1,
  SWP_NOMOVE = 2,
  SWP_NOZORDER = 4,
  SWP_NOREDRAW = 8,
  SWP_NOACTIVATE = 16,
  SWP_FRAMECHANGED = 32,
  SWP_SHOWWINDOW = 64,
  SWP_HIDEWINDOW = 128,
};
/// For SetWindowPos in the place of a window: before and behind all others of the parent.
inline const auto HWND_TOP = static_cast<HWND>(nullptr);
inline const auto HWND_BOTTOM = reinterpret_cast<HWND>(~std::uintptr_t{0});  // no handle that is given out
enum : int { GWL_WNDPROC = -4, GWL_ID = -12, GWL_STYLE = -16, GWL_EXSTYLE = -20, GWL_USERDATA = -21 };
enum : int { GCL_HBRBACKGROUND = -10, GCL_HCURSOR = -12, GCL_HICON = -14, GCL_STYLE = -26 };
enum : UINT {
  GW_HWNDFIRST = 0,
  GW_HWNDLAST = 1,
  GW_HWNDNEXT = 2,
  GW_HWNDPREV = 3,
  GW_OWNER = 4,
  GW_CHILD = 5
};

struct tagWNDCLASS {
  UINT style;
  WNDPROC lpfnWndProc;
  int cbClsExtra;
  int cbWndExtra;
  HINSTANCE hInstance;
  HICON hIcon;
  HCURSOR hCursor;       ///< shown over the client area by default processing; null: the program sets it
  HBRUSH hbrBackground;  ///< a brush, or a system colour number plus 1; null: nothing is erased
  LPCSTR lpszMenuName;
  LPCSTR lpszClassName;
};
using WNDCLASS = tagWNDCLASS;

struct tagCREATESTRUCT {
  LPVOID lpCreateParams;
  HINSTANCE hInstance;
  HMENU hMenu;  ///< of a child its id
  HWND hwndParent;
  int cy;
  int cx;
  int y;
  int x;
  DWORD style;
  LPCSTR lpszName;
  LPCSTR lpszClass;
  DWORD dwExStyle;
};
using CREATESTRUCT = tagCREATESTRUCT;
using LPCREATESTRUCT = CREATESTRUCT*;

struct tagPAINTSTRUCT {
  HDC hdc;
  BOOL fErase;  ///< the background still has to be erased
  RECT rcPaint;
};
using PAINTSTRUCT = tagPAINTSTRUCT;

// Classes

/// The class's atom, 0 if the name is taken or missing.
PLATFORM_API ATOM RegisterClassA(const WNDCLASS* windowClass);
PLATFORM_API BOOL GetClassInfoA(HINSTANCE instance, LPCSTR className, WNDCLASS* windowClass);
/// A class with its size in front and a small icon at the end.
struct tagWNDCLASSEX {
  UINT cbSize;
  UINT style;
  WNDPROC lpfnWndProc;
  int cbClsExtra;
  int cbWndExtra;
  HINSTANCE hInstance;
  HICON hIcon;
  HCURSOR hCursor;
  HBRUSH hbrBackground;
  LPCSTR lpszMenuName;
  LPCSTR lpszClassName;
  HICON hIconSm;
};
using WNDCLASSEX = tagWNDCLASSEX;
/// FALSE for an unknown class.
PLATFORM_API BOOL GetClassInfoExA(HINSTANCE instance, LPCSTR className, WNDCLASSEX* windowClass);
inline BOOL GetClassInfoEx(HINSTANCE instance, LPCSTR className, WNDCLASSEX* windowClass) {
  return GetClassInfoExA(instance, className, windowClass);
}
PLATFORM_API int GetClassNameA(HWND window, LPSTR buffer, int bufferSize);
PLATFORM_API std::intptr_t SetClassLong(HWND window, int index, std::intptr_t value);
PLATFORM_API std::intptr_t GetClassLong(HWND window, int index);

// Life

/// Null if the class is unknown, the parent dead, or WM_NCCREATE or WM_CREATE refused.
PLATFORM_API HWND CreateWindowEx(DWORD exStyle, LPCSTR className, LPCSTR text, DWORD style, int x, int y,
                                 int width, int height, HWND parent, HMENU menuOrId, HINSTANCE instance,
                                 LPVOID params);
PLATFORM_API BOOL DestroyWindow(HWND window);
PLATFORM_API BOOL IsWindow(HWND window);

// Messages

PLATFORM_API LRESULT SendMessage(HWND window, UINT message, WPARAM wParam = 0, LPARAM lParam = 0);
/// Queues. May be called from any thread.
PLATFORM_API BOOL PostMessage(HWND window, UINT message, WPARAM wParam = 0, LPARAM lParam = 0);
PLATFORM_API LRESULT DefWindowProc(HWND window, UINT message, WPARAM wParam, LPARAM lParam);
/// The same number for the same text in the process; 0 for none.
PLATFORM_API UINT RegisterWindowMessageA(LPCSTR text);

// Properties

PLATFORM_API std::intptr_t GetWindowLong(HWND window, int index);
PLATFORM_API std::intptr_t SetWindowLong(HWND window, int index, std::intptr_t value);
PLATFORM_API BOOL SetWindowText(HWND window, LPCSTR text);
PLATFORM_API CString GetWindowText(HWND window);
PLATFORM_API int GetDlgCtrlID(HWND window);
PLATFORM_API HWND GetDlgItem(HWND parent, int id);
PLATFORM_API HWND GetParent(HWND window);
PLATFORM_API HWND GetWindow(HWND window, UINT which);
PLATFORM_API HWND GetTopLevelWindow(HWND window);
PLATFORM_API BOOL IsChild(HWND parent, HWND window);
/// The first top-level window with this class and title; null stands for any.
PLATFORM_API HWND FindWindowA(LPCSTR className, LPCSTR title);
PLATFORM_API BOOL EnableWindow(HWND window, BOOL enable);
PLATFORM_API BOOL IsWindowEnabled(HWND window);

// Place

PLATFORM_API BOOL ShowWindow(HWND window, int command);
PLATFORM_API BOOL IsWindowVisible(HWND window);
PLATFORM_API BOOL SetWindowPos(HWND window, HWND after, int x, int y, int width, int height, UINT flags);
PLATFORM_API BOOL MoveWindow(HWND window, int x, int y, int width, int height, BOOL repaint);
/// In screen coordinates, the desktop's own title bar and borders not counted.
PLATFORM_API BOOL GetWindowRect(HWND window, RECT* rect);
PLATFORM_API BOOL GetClientRect(HWND window, RECT* rect);
PLATFORM_API BOOL ClientToScreen(HWND window, POINT* point);
PLATFORM_API BOOL ScreenToClient(HWND window, POINT* point);
PLATFORM_API HWND WindowFromPoint(POINT point);
PLATFORM_API HWND GetActiveWindow();
PLATFORM_API BOOL SetForegroundWindow(HWND window);

// Painting

PLATFORM_API BOOL InvalidateRect(HWND window, const RECT* rect, BOOL erase);
PLATFORM_API BOOL ValidateRect(HWND window, const RECT* rect);
PLATFORM_API BOOL GetUpdateRect(HWND window, RECT* rect, BOOL erase);
/// Sends WM_PAINT now if anything is invalid, and brings the screen up to date.
PLATFORM_API BOOL UpdateWindow(HWND window);
PLATFORM_API HDC BeginPaint(HWND window, PAINTSTRUCT* paint);
PLATFORM_API BOOL EndPaint(HWND window, const PAINTSTRUCT* paint);
PLATFORM_API HDC GetDC(HWND window);
PLATFORM_API int ReleaseDC(HWND window, HDC dc);

// Scroll bars of a window. A bar is hidden while nPage covers its range; a change without redraw is only
// stored, and the bar appears or goes at the next call with redraw, which may change the client size and send
// WM_SIZE.

PLATFORM_API int SetScrollInfo(HWND window, int bar, const SCROLLINFO* info, BOOL redraw);
PLATFORM_API BOOL GetScrollInfo(HWND window, int bar, SCROLLINFO* info);
PLATFORM_API int SetScrollPos(HWND window, int bar, int position, BOOL redraw);
PLATFORM_API int GetScrollPos(HWND window, int bar);
PLATFORM_API BOOL ShowScrollBar(HWND window, int bar, BOOL show);

// Focus, capture, keys, pointer

PLATFORM_API HWND SetFocus(HWND window);
PLATFORM_API HWND GetFocus();
PLATFORM_API HWND SetCapture(HWND window);
PLATFORM_API BOOL ReleaseCapture();
PLATFORM_API HWND GetCapture();
/// As of the last input message taken: negative while the key is down.
PLATFORM_API short GetKeyState(int key);
PLATFORM_API BOOL GetCursorPos(POINT* point);

enum : DWORD { TME_LEAVE = 2 };
struct tagTRACKMOUSEEVENT {
  DWORD cbSize;
  DWORD dwFlags;
  HWND hwndTrack;
  DWORD dwHoverTime;
};
using TRACKMOUSEEVENT = tagTRACKMOUSEEVENT;
/// Asks for one WM_MOUSELEAVE, when the pointer leaves the client area or enters a child there. TME_LEAVE
/// only.
PLATFORM_API BOOL TrackMouseEvent(TRACKMOUSEEVENT* event);

// Cursors and icons. A window's icon is that of its class.

/// A cursor of a module's resources, or with a null instance one of the system's (IDC_...). The same handle
/// each time; nobody has to delete it. Null if there is none.
PLATFORM_API HCURSOR LoadCursor(HINSTANCE instance, LPCSTR name);
inline HCURSOR LoadCursorA(HINSTANCE instance, LPCSTR name) {
  return LoadCursor(instance, name);
}
/// An icon of a module's resources, under the same rules; there are none of the system.
PLATFORM_API HICON LoadIconA(HINSTANCE instance, LPCSTR name);
inline HICON LoadIcon(HINSTANCE instance, LPCSTR name) {
  return LoadIconA(instance, name);
}
/// Shows the cursor over the window that holds the capture or lies under the pointer; the former one is
/// returned.
PLATFORM_API HCURSOR SetCursor(HCURSOR cursor);
PLATFORM_API HCURSOR GetCursor();
#define IDC_ARROW MAKEINTRESOURCE(32512)
#define IDC_IBEAM MAKEINTRESOURCE(32513)
#define IDC_WAIT MAKEINTRESOURCE(32514)
#define IDC_CROSS MAKEINTRESOURCE(32515)
#define IDC_SIZEWE MAKEINTRESOURCE(32644)
#define IDC_SIZENWSE MAKEINTRESOURCE(32642)
#define IDC_SIZEALL MAKEINTRESOURCE(32646)
#define IDC_SIZENS MAKEINTRESOURCE(32645)

// Timers

PLATFORM_API std::uintptr_t SetTimer(HWND window, std::uintptr_t id, UINT milliseconds, TIMERPROC procedure);
PLATFORM_API BOOL KillTimer(HWND window, std::uintptr_t id);

// Metrics

enum : int {
  SM_CXSCREEN = 0,
  SM_CYSCREEN = 1,
  SM_CXVSCROLL = 2,
  SM_CYHSCROLL = 3,
  SM_CYCAPTION = 4,
  SM_CXBORDER = 5,
  SM_CYBORDER = 6,
  SM_CXICON = 11,
  SM_CYICON = 12,
  SM_DBCSENABLED = 42,
  SM_CXEDGE = 45,
  SM_CYEDGE = 46,
  SM_CXSMICON = 49,
  SM_CYSMICON = 50,
  SM_CXDRAG = 68,
  SM_CYDRAG = 69,
  SM_MOUSEWHEELPRESENT = 75,
};
PLATFORM_API int GetSystemMetrics(int index);
enum : UINT { SPI_GETWHEELSCROLLLINES = 104 };
PLATFORM_API BOOL SystemParametersInfoA(UINT action, UINT param, void* data, UINT flags);
