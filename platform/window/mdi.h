#pragma once

#include "platform/base/export.h"
#include "platform/window/window.h"

// Document windows inside a main window. A window of class "MDICLIENT" fills the main window's client area;
// its children, made with the style WS_EX_MDICHILD, have a title bar and move inside it. One
// of them is active. A maximised one fills the client: its title joins the main window's, and its buttons
// stand in the main window's menu bar.

/// lpCreateParams of the client.
struct tagCLIENTCREATESTRUCT {
  HMENU hWindowMenu;  ///< the sub-menu of the bar at whose end the windows are listed; null: none
  UINT idFirstChild;  ///< number of the first document window and of its command in the list
};
using CLIENTCREATESTRUCT = tagCLIENTCREATESTRUCT;

/// lpCreateParams of a document window.
struct tagMDICREATESTRUCT {
  LPCSTR szClass;
  LPCSTR szTitle;
  HINSTANCE hOwner;
  int x;  ///< CW_USEDEFAULT: behind and below the one before
  int y;
  int cx;
  int cy;
  DWORD style;
  LPARAM lParam;  ///< the program's
};
using MDICREATESTRUCT = tagMDICREATESTRUCT;

/// wParam of WM_MDITILE: beside each other, or one above the other.
enum : UINT { MDITILE_VERTICAL = 0, MDITILE_HORIZONTAL = 1 };

/// Commands of a title bar, wParam of WM_SYSCOMMAND to a document window.
enum : UINT {
  SC_MINIMIZE = 0xF020,
  SC_MAXIMIZE = 0xF030,
  SC_NEXTWINDOW = 0xF040,
  SC_PREVWINDOW = 0xF050,
  SC_CLOSE = 0xF060,
  SC_RESTORE = 0xF120,
};

/// The default processing of a main window with such a client (null while there is none): the list's
/// commands, the focus and the title.
PLATFORM_API LRESULT DefFrameProc(HWND frame, HWND client, UINT message, WPARAM wParam, LPARAM lParam);
/// The default processing of a document window.
PLATFORM_API LRESULT DefMDIChildProc(HWND child, UINT message, WPARAM wParam, LPARAM lParam);
/// Ctrl+F4 closes the active document window, Ctrl+F6 and Ctrl+Tab go to the next one, with Shift to the one
/// before. TRUE if the key was one of them.
PLATFORM_API BOOL TranslateMDISysAccel(HWND client, const MSG* message);
