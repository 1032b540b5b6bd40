#pragma once

#include "platform/base/export.h"
#include "platform/base/types.h"

// Settings of the current user: keys that hold named, typed values and further keys. Names are compared
// without regard to the case of ASCII letters; '\' separates keys. All of it stands in one INI file below the
// user's configuration folder. Other processes' changes are seen; a change is on the disk when the call
// returns, unless another process holds the lock for longer than 200 ms: then it follows as soon as it can,
// at the latest when the process ends. Results are error codes. Safe from any thread.

using REGSAM = DWORD;
using LSTATUS = LONG;

/// The root. Needs no opening and no closing.
inline const HKEY HKEY_CURRENT_USER = reinterpret_cast<HKEY>(std::uintptr_t{0x80000001});

enum : REGSAM {
  KEY_QUERY_VALUE = 0x0001,
  KEY_SET_VALUE = 0x0002,
  KEY_CREATE_SUB_KEY = 0x0004,
  KEY_READ = 0x20019,
  KEY_WRITE = 0x20006,
  KEY_ALL_ACCESS = 0xF003F,
};
enum : DWORD { REG_NONE = 0, REG_SZ = 1, REG_BINARY = 3, REG_DWORD = 4 };
enum : DWORD { REG_OPTION_NON_VOLATILE = 0 };
enum : DWORD { REG_CREATED_NEW_KEY = 1, REG_OPENED_EXISTING_KEY = 2 };
enum : LSTATUS {
  ERROR_SUCCESS = 0,
  ERROR_FILE_NOT_FOUND = 2,
  ERROR_ACCESS_DENIED = 5,
  ERROR_INVALID_HANDLE = 6,
  ERROR_WRITE_FAULT = 29,
  ERROR_LOCK_VIOLATION = 33,
  ERROR_INVALID_PARAMETER = 87,
  ERROR_BAD_PATHNAME = 161,
  ERROR_MORE_DATA = 234,
};

/// Opens an existing key; an empty or null name opens the same one again. "software" below the root is there
/// from the first use on. Access that writes is denied while the storage can't be written.
PLATFORM_API LSTATUS RegOpenKeyExA(HKEY key, LPCSTR subKey, DWORD options, REGSAM access, HKEY* result);
/// Opens the key, making what is missing on the way. disposition (may be null) tells which.
PLATFORM_API LSTATUS RegCreateKeyExA(HKEY key, LPCSTR subKey, DWORD reserved, LPSTR className, DWORD options,
                                     REGSAM access, const void* securityAttributes, HKEY* result,
                                     DWORD* disposition);
PLATFORM_API LSTATUS RegCloseKey(HKEY key);
/// size: in, the buffer's bytes; out, the value's. Without a buffer only the size is told. ERROR_MORE_DATA,
/// and the size needed, if the buffer is too small. A null or empty name is the key's unnamed value.
PLATFORM_API LSTATUS RegQueryValueExA(HKEY key, LPCSTR name, DWORD* reserved, DWORD* type, BYTE* data,
                                      DWORD* size);
/// The size of a text includes its closing 0.
PLATFORM_API LSTATUS RegSetValueExA(HKEY key, LPCSTR name, DWORD reserved, DWORD type, const BYTE* data,
                                    DWORD size);
