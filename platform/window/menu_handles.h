#pragma once

#include "platform/base/export.h"
#include "platform/base/types.h"

// Menus: lists of items behind handles. What is on the screen is made from the lists each time it shows, so a
// handle tells the truth at any time. An item is named by its command (MF_BYCOMMAND, looked for in the
// sub-menus too) or by its place from 0 (MF_BYPOSITION). A dead or null handle makes every function fail
// softly.

/// State and kind of an item, and how it is named.
enum : UINT {
  MF_BYCOMMAND = 0x0000,
  MF_ENABLED = 0x0000,
  MF_UNCHECKED = 0x0000,
  MF_STRING = 0x0000,
  MF_GRAYED = 0x0001,
  MF_DISABLED = 0x0002,
  MF_CHECKED = 0x0008,
  MF_POPUP = 0x0010,  ///< the id is the handle of a sub-menu
  MFT_RADIOCHECK = 0x0200,
  MF_BYPOSITION = 0x0400,
  MF_SEPARATOR = 0x0800,
  MF_MOUSESELECT = 0x8000,
};

/// Of TrackPopupMenu. The point is the left upper corner unless told otherwise.
enum : UINT {
  TPM_LEFTBUTTON = 0x000,
  TPM_LEFTALIGN = 0x000,
  TPM_TOPALIGN = 0x000,
  TPM_RIGHTBUTTON = 0x002,  ///< either button chooses, here as without it
  TPM_CENTERALIGN = 0x004,
  TPM_RIGHTALIGN = 0x008,
  TPM_VCENTERALIGN = 0x010,
  TPM_BOTTOMALIGN = 0x020,
  TPM_RETURNCMD = 0x100,
};

// Life. Who creates or loads a menu destroys it, unless it is in a window or in another menu, which then do.

PLATFORM_API HMENU CreateMenu();
PLATFORM_API HMENU CreatePopupMenu();
/// A menu of a module's resources, with its sub-menus. Null if there is none.
PLATFORM_API HMENU LoadMenuA(HINSTANCE module, LPCSTR name);
inline HMENU LoadMenu(HINSTANCE module, LPCSTR name) {
  return LoadMenuA(module, name);
}
/// Its sub-menus too.
PLATFORM_API BOOL DestroyMenu(HMENU menu);
PLATFORM_API BOOL IsMenu(HMENU menu);

// Items. "&" in a text marks the access key; what follows a tab is shown at the right and does nothing.

PLATFORM_API BOOL AppendMenuA(HMENU menu, UINT flags, std::uintptr_t idOrMenu, LPCSTR text);
/// Before the item; at the end if there is none at that place.
PLATFORM_API BOOL InsertMenuA(HMENU menu, UINT item, UINT flags, std::uintptr_t idOrMenu, LPCSTR text);
/// In the place of the item. A sub-menu that it held is destroyed unless it stays.
PLATFORM_API BOOL ModifyMenuA(HMENU menu, UINT item, UINT flags, std::uintptr_t idOrMenu, LPCSTR text);
/// Takes an item out and destroys its sub-menu.
PLATFORM_API BOOL DeleteMenu(HMENU menu, UINT item, UINT flags);
/// Takes an item out; its sub-menu lives on.
PLATFORM_API BOOL RemoveMenu(HMENU menu, UINT item, UINT flags);

PLATFORM_API HMENU GetSubMenu(HMENU menu, int position);
/// -1 for a dead handle.
PLATFORM_API int GetMenuItemCount(HMENU menu);
/// 0 for a separator, -1 for a sub-menu and for a place without item.
PLATFORM_API UINT GetMenuItemID(HMENU menu, int position);
/// MF_ flags; of a sub-menu the flags in the low byte and its count of items in the next. -1: no such item.
PLATFORM_API UINT GetMenuState(HMENU menu, UINT item, UINT flags);
/// Copies the text, cut to fit; its length. With a null buffer the length that it has.
PLATFORM_API int GetMenuStringA(HMENU menu, UINT item, LPSTR buffer, int bufferSize, UINT flags);
/// MF_ENABLED, MF_GRAYED or MF_DISABLED with MF_BYPOSITION or not. The former state, -1 if there is no item.
PLATFORM_API int EnableMenuItem(HMENU menu, UINT item, UINT enable);
/// MF_CHECKED or MF_UNCHECKED likewise. The former state, -1 if there is no item.
PLATFORM_API DWORD CheckMenuItem(HMENU menu, UINT item, UINT check);
/// Gives the mark, a dot, to one item and takes it from the others between first and last.
PLATFORM_API BOOL CheckMenuRadioItem(HMENU menu, UINT first, UINT last, UINT checked, UINT flags);

// Menus of windows and on the screen. A menu that is about to show sends WM_INITMENUPOPUP (the menu, its
// place in the menu above) to its owner, and what the handler sets shows. While the user walks over items the
// owner gets WM_MENUSELECT (id or place of the sub-menu, flags in the high word, menu), at the end one with
// the flags 0xffff and no menu. The item chosen is posted as WM_COMMAND.

/// The bar of a top-level window, null for none. It lies above the client area. The window destroys the menu
/// that it has at its end; the one that it had before is the caller's.
PLATFORM_API BOOL SetMenu(HWND window, HMENU menu);
/// Null for a child.
PLATFORM_API HMENU GetMenu(HWND window);
/// Brings the bar in line with its menu after items of the bar itself have changed.
PLATFORM_API BOOL DrawMenuBar(HWND window);
/// Shows a pop-up at a point of the screen until an item is chosen or the user gives up. TRUE, or with
/// TPM_RETURNCMD the item chosen (0: none) in the place of a WM_COMMAND. 0 if it can't be shown.
PLATFORM_API BOOL TrackPopupMenu(HMENU menu, UINT flags, int x, int y, int reserved, HWND owner,
                                 const RECT* rect);
