#pragma once

#include "platform/base/export.h"
#include "platform/base/types.h"

// Odds and ends of the system interface.

/// Major version in the low byte, minor in the next. The top bit is clear: a system of the family that keeps
/// its settings where SystemParametersInfo finds them.
PLATFORM_API DWORD GetVersion();
/// number * numerator / denominator, multiplied in 64 bits and rounded to the nearest, halves away from zero.
/// -1 if the denominator is 0 or the result doesn't fit.
PLATFORM_API int MulDiv(int number, int numerator, int denominator);
/// Copies contents and permissions. The target appears whole or not at all. FALSE if the source can't be
/// read, the target not be written, both are the same file, or the target exists and failIfExists is set.
PLATFORM_API BOOL CopyFileA(LPCSTR existing, LPCSTR target, BOOL failIfExists);
inline BOOL CopyFile(LPCSTR existing, LPCSTR target, BOOL failIfExists) {
  return CopyFileA(existing, target, failIfExists);
}
