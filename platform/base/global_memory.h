#pragma once

#include <cstddef>

#include "platform/base/export.h"
#include "platform/base/types.h"

// Movable memory behind handles. A handle is not the address: lock it to get that. All functions fail softly
// (null, 0) on a null, freed or foreign handle.

enum : UINT {
  GMEM_MOVEABLE = 0x0002,
  GMEM_ZEROINIT = 0x0040,
  GHND = GMEM_MOVEABLE | GMEM_ZEROINIT,
};

/// Null if there isn't enough memory.
PLATFORM_API HGLOBAL GlobalAlloc(UINT flags, std::size_t bytes);
/// Null on success, the handle itself on failure.
PLATFORM_API HGLOBAL GlobalFree(HGLOBAL memory);
PLATFORM_API void* GlobalLock(HGLOBAL memory);
/// TRUE while the block is still locked after this call.
PLATFORM_API BOOL GlobalUnlock(HGLOBAL memory);
PLATFORM_API std::size_t GlobalSize(HGLOBAL memory);
PLATFORM_API HGLOBAL GlobalReAlloc(HGLOBAL memory, std::size_t bytes, UINT flags);
