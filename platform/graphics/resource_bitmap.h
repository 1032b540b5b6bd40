#pragma once

#include <cstdint>

#include "platform/graphics/gdi.h"

// Bitmaps out of the resources of linked modules.

struct tagCOLORMAP {
  COLORREF from;
  COLORREF to;
};
using COLORMAP = tagCOLORMAP;

/// A bitmap of 8 bits per pixel with its pictures side by side, the caller's to delete. Null if there is no
/// such resource, or its pictures differ in height or have more than 256 colours together.
PLATFORM_API HBITMAP LoadBitmapA(HINSTANCE module, LPCSTR name);
inline HBITMAP LoadBitmap(HINSTANCE module, LPCSTR name) {
  return LoadBitmapA(module, name);
}
/// The same with colours exchanged. A null map stands for the usual one: black, the two greys and white
/// become the theme's button text, shadow, face and highlight. flags must be 0.
PLATFORM_API HBITMAP CreateMappedBitmap(HINSTANCE module, std::intptr_t id, UINT flags, const COLORMAP* map,
                                        int count);
