#pragma once

#include "platform/base/export.h"
#include "platform/spooler/print_records.h"

// Printers and printing. A printer is a queue of the desktop's print service. What a document draws is kept
// in a temporary PDF and handed over by EndDoc alone: a job that ends in any other way leaves nothing behind.
// Printing device contexts take images (StretchDIBits, BitBlt and platform/spooler/page_images.h); text,
// lines and fills fail softly on them. Their unit is the printer's dot, counted from the corner of the
// printable area.

/// Writes PRINTER_INFO_2 records and what they point to; level is 2. flags: PRINTER_ENUM_LOCAL and
/// PRINTER_ENUM_CONNECTIONS, both of which give every queue. FALSE with GetLastError
/// ERROR_INSUFFICIENT_BUFFER and the bytes needed if the buffer is too small, RPC_S_SERVER_UNAVAILABLE
/// without a print service, ERROR_INVALID_NAME for the name of another server.
PLATFORM_API BOOL EnumPrintersA(DWORD flags, LPCSTR server, DWORD level, BYTE* buffer, DWORD size,
                                DWORD* needed, DWORD* count);
inline BOOL EnumPrinters(DWORD flags, LPCSTR server, DWORD level, BYTE* buffer, DWORD size, DWORD* needed,
                         DWORD* count) {
  return EnumPrintersA(flags, server, level, buffer, size, needed, count);
}
/// The default queue's name. size: bytes of the buffer in, those needed out (the closing 0 counted). FALSE if
/// there is none or the buffer is too small.
PLATFORM_API BOOL GetDefaultPrinterA(LPSTR name, DWORD* size);

/// A printing device context: device names the queue, output a file to print to instead (PDF) or null, mode
/// the sheet or null for the queue's own. The driver isn't looked at. Null if there is no such queue. An
/// empty device with an output needs no queue. DeleteDC ends it, and a document with it.
PLATFORM_API HDC CreateDCA(LPCSTR driver, LPCSTR device, LPCSTR output, const DEVMODEA* mode);
inline HDC CreateDC(LPCSTR driver, LPCSTR device, LPCSTR output, const DEVMODEA* mode) {
  return CreateDCA(driver, device, output, mode);
}
/// Changes the sheet for the next pages. The device context; null while a page is open.
PLATFORM_API HDC ResetDCA(HDC dc, const DEVMODEA* mode);
inline HDC ResetDC(HDC dc, const DEVMODEA* mode) {
  return ResetDCA(dc, mode);
}

/// The job's number. Below 0 (SP_...): no document was begun.
PLATFORM_API int StartDocA(HDC dc, const DOCINFOA* info);
inline int StartDoc(HDC dc, const DOCINFOA* info) {
  return StartDocA(dc, info);
}
/// A failed write, a queue that is gone, or an abort procedure that answers 0 ends the document, and each of
/// these functions tells why from then on, until the next StartDoc.
PLATFORM_API int StartPage(HDC dc);
PLATFORM_API int EndPage(HDC dc);
/// Hands the document over. A document without pages ends well and prints nothing.
PLATFORM_API int EndDoc(HDC dc);
PLATFORM_API int AbortDoc(HDC dc);
/// Called between pages and while the document is sent; 0 from it ends the document with SP_APPABORT. Null
/// takes it away.
PLATFORM_API int SetAbortProc(HDC dc, ABORTPROC procedure);
