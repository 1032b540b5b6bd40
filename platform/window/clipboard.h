#pragma once

#include "platform/base/export.h"
#include "platform/base/types.h"

// The desktop's clipboard. What a program puts on it between OpenClipboard and CloseClipboard is there for
// all others from the close on, and as long as the program runs.

enum : UINT {
  CF_TEXT = 1,  ///< a text, UTF-8, closed by a 0
  CF_DIB = 8,   ///< a device-independent bitmap: header, colour table, rows; its resolution goes along
};

/// Opens it for the one who calls; the window isn't looked at. FALSE while it is open already.
PLATFORM_API BOOL OpenClipboard(HWND owner);
/// What is put on it afterwards takes the place of everything that was there.
PLATFORM_API BOOL EmptyClipboard();
/// Puts a global memory block on the clipboard, which takes it over; the block. Null, and the block stays the
/// caller's, if the clipboard isn't open and emptied, for another format, or a bitmap of a broken, compressed
/// or 16-bit kind.
PLATFORM_API HANDLE SetClipboardData(UINT format, HANDLE block);
PLATFORM_API BOOL IsClipboardFormatAvailable(UINT format);
/// A block that stays the clipboard's, until the next call of this or of CloseClipboard. Bitmaps of up to 8
/// bits with a colour table keep it, others have 32 bits. Null if there is nothing of that format.
PLATFORM_API HANDLE GetClipboardData(UINT format);
/// Shows to the others what was put on it. FALSE if it isn't open.
PLATFORM_API BOOL CloseClipboard();
