#pragma once

#include <functional>
#include <span>
#include <string>

#include "platform/base/seams.h"

namespace platform {

/// A queue that stands in for one of the print service. Jobs arrive as the files job-1.pdf and so on.
struct TestPrinter {
  std::string name;
  std::string folder;  ///< where the jobs go
  bool isDefault = false;
  bool accepting = true;  ///< else jobs are refused
  bool gone = false;      ///< listed, but there is no such queue any more when a job is sent
  int dpi = 300;
  int paperWidth = 21000;  ///< hundredths of a millimetre, of the upright sheet
  int paperLength = 29700;
  int margin = 420;  ///< on all four sides
  std::string comment;
  std::string location;
  std::string model = "PDF";
  unsigned status = 0;  ///< PRINTER_STATUS_...
};

}  // namespace platform

// For the tests of a host, and for programs without a user: boxes answered by a function, time that goes by
// at once, real input of the desktop, pictures of windows. They stand in a library of their own, to be linked
// as Tessarel12::Testing.
namespace platform::testing {

/// Takes the place of the box on the screen: text and MB_ flags in, the button out. Null brings the real box
/// back.
using MessageBoxAnswer = int (*)(const CString& text, UINT type);
/// From now on, for all boxes; null: real boxes.
PLATFORM_API void SetMessageBoxAnswer(MessageBoxAnswer answer);
/// Of the box that was answered last.
PLATFORM_API CString LastMessageBoxTitle();

/// Takes the place of file dialogs: changes path and filter index and returns true, or false to give up. The
/// path is looked at as a typed one, with the same questions; what the dialog would refuse counts as given
/// up.
using FileDialogAnswer = bool (*)(FileDialogRequest& request);
/// From now on; null: real dialogs.
PLATFORM_API void SetFileDialogAnswer(FileDialogAnswer answer);
/// Takes the place of print dialogs: changes the request and returns true, or false to give up. What the
/// dialog would refuse counts as given up. The hook procedure isn't called.
using PrintDialogAnswer = bool (*)(PrintDialogRequest& request);
/// From now on; null: real dialogs.
PLATFORM_API void SetPrintDialogAnswer(PrintDialogAnswer answer);
/// Takes the place of the print service, with these queues only.
PLATFORM_API void SetTestPrinters(std::span<const TestPrinter> printers);
/// Takes the place of a tracked pop-up on the screen, after WM_INITMENUPOPUP for it and each sub-menu: the
/// command that is chosen, 0 for none. One that isn't there or is grey counts as none. Null brings the real
/// one back.
using MenuAnswer = int (*)(HMENU menu, HWND owner);
/// From now on; null: real pop-ups.
PLATFORM_API void SetMenuAnswer(MenuAnswer answer);
/// Opens the menus of a window's bar that lead to a command (WM_INITMENUPOPUP) and chooses it, which posts
/// WM_COMMAND. False if it isn't there, is grey, or the window is disabled.
PLATFORM_API bool ChooseMenuItem(HWND topLevel, UINT id);

/// Runs once, as soon as the next modal dialog is on the screen: queue its input there, or end it.
PLATFORM_API void OnNextDialog(std::function<void(HWND dialog)> action);

/// Timers whose period lies within that time become due.
PLATFORM_API void AdvanceTimers(UINT milliseconds);
/// Dispatches what is queued and paints what is invalid, until nothing is left; at most so long.
PLATFORM_API void PumpUntilIdle(int milliseconds = 2000);
/// While true, only a pump of the program takes messages from the queue, no event loop of the desktop.
PLATFORM_API void HoldQueue(bool hold);

enum class Button { Left, Right, Middle };
// Input as the desktop would send it to a shown window, in client coordinates. The messages are queued. Of a
// document window, points around the client area hit the title bar and the border.
/// virtualKey: VK_... or a capital letter or digit. The key stays down until ReleaseKey, if that is asked
/// for.
PLATFORM_API void PressKey(HWND window, int virtualKey, bool shift = false, bool control = false,
                           bool alt = false);
/// The end of PressKey; needed only where a program looks for it.
PLATFORM_API void ReleaseKey(HWND window, int virtualKey, bool shift = false, bool control = false,
                             bool alt = false);
/// Each character as a key that types it.
PLATFORM_API void TypeText(HWND window, const char* text);
/// The text as an input method hands it over, without keys.
PLATFORM_API void ComposeText(HWND window, const char* text);
/// A second press at the same place soon after is a double click.
PLATFORM_API void PressMouse(HWND window, POINT point, Button button = Button::Left, bool shift = false);
/// The end of PressMouse.
PLATFORM_API void ReleaseMouse(HWND window, POINT point, Button button = Button::Left);
/// leftDown: as in a drag.
PLATFORM_API void MoveMouse(HWND window, POINT point, bool leftDown = false);
/// The pointer goes out of the window.
PLATFORM_API void LeaveWindow(HWND window);
/// The tool tip that appears when the pointer rests there; empty for none.
PLATFORM_API CString ToolTipAt(HWND window, POINT point);
/// right: turned sideways as well, as touchpads are.
PLATFORM_API void TurnWheel(HWND window, POINT point, int delta, bool shift = false, bool control = false,
                            bool alt = false, int right = 0);
/// Drops files on a window, as another program's user does; false if the window takes none.
PLATFORM_API bool DropFiles(HWND window, POINT point, std::span<const char* const> paths);
/// Drags the thumb of a scroll bar to a position: tracking at it, and letting go if asked.
PLATFORM_API void DragThumb(HWND window, int bar, int position, bool release);
/// Clicks an arrow (page false) or the trough of a scroll bar.
PLATFORM_API void ClickScrollBar(HWND window, int bar, bool forward, bool page);

/// Clicks a button (SC_...) that a maximised document window has in the menu bar; false if it isn't shown.
PLATFORM_API bool ClickMaximizedButton(HWND frame, UINT command);

/// Number of the resource or of the system's cursor (32512 and up); 0 for a dead handle.
PLATFORM_API UINT CursorId(HCURSOR cursor);

/// What a screen reader finds: a line for each part that shows, indented below the part that holds it, as in
/// "EditableText 'Page' = '3' by 'Page:' focused": role (QAccessible::Role), name, value, names of the labels
/// tied to it, states. Null: the dialog or box in front. Empty for a dead handle.
PLATFORM_API std::string AccessibleTree(HWND window);
/// Writes what a window shows, bars and children included, as a PNG in device pixels. False if it can't.
PLATFORM_API bool SaveWindowPicture(HWND window, const char* path);
/// 0xffRRGGBB of one device pixel of what a window shows, counted from its top left corner; 0 outside.
PLATFORM_API std::uint32_t WindowPixel(HWND window, int x, int y);

}  // namespace platform::testing
