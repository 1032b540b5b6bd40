#pragma once

#include <QMargins>
#include <QPointer>
#include <QRect>
#include <QWidget>
#include <string>
#include <vector>

#include "platform/window/mdi.h"

// The state behind document windows and the steps that several files share.

namespace platform {

class FrameWidget;
struct WindowRecord;

/// What the client window knows.
struct MdiClient {
  HWND frame = nullptr;
  HWND active = nullptr;
  std::vector<HWND> order;  ///< the document windows as they were made; their ids count along
  HMENU windowMenu = nullptr;
  HMENU moreMenu = nullptr;  ///< of the windows behind the ninth, in windowMenu
  UINT firstId = 0;
  std::string title;          ///< the main window's, without a document's
  int made = 0;               ///< windows that were given a place so far
  bool closing = false;       ///< nothing is activated any more
  QPointer<QWidget> buttons;  ///< of the maximised window, in the menu bar
};

/// What a document window knows. Whether it is maximised or minimised is in its style.
struct MdiChild {
  QRect normal;               ///< its place while it is neither maximised nor minimised
  bool wasMaximized = false;  ///< before it was minimised
};

// mdi_client.cpp

void RegisterMdiClient();
/// What a client window knows; null for another window.
MdiClient* FindMdiClient(HWND client);
/// The client of a document window; null for another window or at the end.
MdiClient* MdiClientOf(const WindowRecord& child);
/// A new window with WS_EX_MDICHILD becomes one of its parent's document windows, if that is a client.
void JoinMdi(WindowRecord& window);
/// The end of a document window: the next one becomes the active one.
void LeaveMdi(HWND child);
/// Makes a visible document window the active one, in front and with the keyboard; null: none is.
void ActivateMdiChild(HWND client, HWND child);
/// Activates the document window that a window is or lies in, if any.
void ActivateMdiChildAround(HWND window);
bool IsActiveMdiChild(const WindowRecord& child);
/// The document windows that show, the topmost first.
std::vector<const WindowRecord*> VisibleMdiChildren(HWND client);
/// The active document window if it fills the client; null if it doesn't.
const WindowRecord* MaximizedMdiChild(const MdiClient& client);

// mdi_child.cpp

/// Title bar and border around the client area of a document window; none for others.
QMargins MdiChildMargins(const WindowRecord& window);
/// The place that a window made with CW_USEDEFAULT gets.
QRect NextCascadePlace(const WindowRecord& child);
void ShowMdiChild(HWND child, int command);
void ShowNewMdiChild(HWND child, DWORD style);
enum class MdiState { Normal, Minimized, Maximized };
MdiState MdiStateOf(const WindowRecord& child);
void SetMdiState(HWND child, MdiState state);
/// Places the maximised window and the minimised ones anew.
void FitMdiChildren(HWND client);
void CascadeMdiChildren(HWND client);
void TileMdiChildren(HWND client, bool horizontal);

// mdi_child_widget.cpp

FrameWidget* MakeMdiChildWidget(HWND window, QWidget* parent);

// mdi_menu.cpp

/// Brings the list of windows up to date; whole: with those behind the ninth.
void RefreshMdiList(MdiClient& client, bool whole);
void RemoveMdiList(MdiClient& client);

// mdi_bar.cpp

/// The main window's title and buttons as the active document window says.
void RefreshMdiFrame(const MdiClient& client);
/// Shows or hides the maximised window's buttons in the bar of a main window. True for a change, after which
/// the bar may have another height.
bool ShowMdiButtons(WindowRecord& frame);

}  // namespace platform
