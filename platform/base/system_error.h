#pragma once

#include <cstddef>

#include "platform/base/export.h"
#include "platform/base/types.h"

// The last error of a call, its text, and the fixed memory in which the text comes.

enum : DWORD {
  ERROR_SUCCESS = 0,
  ERROR_FILE_NOT_FOUND = 2,
  ERROR_ACCESS_DENIED = 5,
  ERROR_INVALID_HANDLE = 6,
  ERROR_NOT_ENOUGH_MEMORY = 8,
  ERROR_INVALID_PARAMETER = 87,
  ERROR_DISK_FULL = 112,
  ERROR_INSUFFICIENT_BUFFER = 122,
  ERROR_INVALID_NAME = 123,
  ERROR_INVALID_LEVEL = 124,
  RPC_S_SERVER_UNAVAILABLE = 1722,
  ERROR_INVALID_PRINTER_NAME = 1801,
};

/// Of the calling thread. Only the calls that say so set it.
PLATFORM_API DWORD GetLastError();
PLATFORM_API void SetLastError(DWORD code);

enum : UINT { LMEM_FIXED = 0x0000, LMEM_ZEROINIT = 0x0040, LPTR = LMEM_FIXED | LMEM_ZEROINIT };
using HLOCAL = void*;
/// Memory at a fixed address, which is also its handle. Null if there isn't enough.
PLATFORM_API HLOCAL LocalAlloc(UINT flags, std::size_t bytes);
/// Null. A null handle is left alone; no other than LocalAlloc's and FormatMessage's may be given.
PLATFORM_API HLOCAL LocalFree(HLOCAL memory);

enum : DWORD {
  FORMAT_MESSAGE_ALLOCATE_BUFFER = 0x0100,
  FORMAT_MESSAGE_IGNORE_INSERTS = 0x0200,
  FORMAT_MESSAGE_FROM_SYSTEM = 0x1000,
};
/// The Italian text of an error code: FORMAT_MESSAGE_FROM_SYSTEM is the only source there is, the language
/// isn't looked at. With FORMAT_MESSAGE_ALLOCATE_BUFFER buffer points to a char* that takes the text, which
/// the caller frees with LocalFree. Its length; 0 and no buffer for wrong flags or too small a buffer.
PLATFORM_API DWORD FormatMessageA(DWORD flags, const void* source, DWORD code, DWORD language, LPSTR buffer,
                                  DWORD size, void* arguments);
