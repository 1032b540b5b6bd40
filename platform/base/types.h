#pragma once

#include <cstdint>

// The basic types of the classic window interface. Widths are those of that interface on every platform:
// LONG and DWORD hold 32 bits, WPARAM and LPARAM hold a pointer.

using BOOL = int;
using BYTE = std::uint8_t;
using WORD = std::uint16_t;
using DWORD = std::uint32_t;
using UINT = unsigned int;
using LONG = std::int32_t;
using WPARAM = std::uintptr_t;
using LPARAM = std::intptr_t;
using LRESULT = std::intptr_t;
using LPCSTR = const char*;
using LPSTR = char*;
using LPCTSTR = const char*;
using LPTSTR = char*;
using TCHAR = char;
using COLORREF = DWORD;
using ATOM = WORD;
using HANDLE = void*;
using HGLOBAL = void*;
using HGDIOBJ = void*;
using LPVOID = void*;
using SIZE_T = std::size_t;

#ifndef TRUE
#define TRUE 1
#endif
#ifndef FALSE
#define FALSE 0
#endif
#define CALLBACK
#define WINAPI

// Handles are distinct opaque pointer types, so that one kind can't be passed for another. A handle is a
// ticket, never an address: a dead or null one makes every function fail softly.
#define PLATFORM_DECLARE_HANDLE(name) \
  struct name##__;                    \
  using name = name##__*

PLATFORM_DECLARE_HANDLE(HWND);
PLATFORM_DECLARE_HANDLE(HDC);
PLATFORM_DECLARE_HANDLE(HMENU);
PLATFORM_DECLARE_HANDLE(HBITMAP);
PLATFORM_DECLARE_HANDLE(HPALETTE);
PLATFORM_DECLARE_HANDLE(HBRUSH);
PLATFORM_DECLARE_HANDLE(HPEN);
PLATFORM_DECLARE_HANDLE(HFONT);
PLATFORM_DECLARE_HANDLE(HICON);
PLATFORM_DECLARE_HANDLE(HINSTANCE);
PLATFORM_DECLARE_HANDLE(HKEY);
PLATFORM_DECLARE_HANDLE(HDROP);
PLATFORM_DECLARE_HANDLE(HACCEL);
using HCURSOR = HICON;
using HMODULE = HINSTANCE;

struct tagPOINT {
  LONG x;
  LONG y;
};
using POINT = tagPOINT;

struct tagSIZE {
  LONG cx;
  LONG cy;
};
using SIZE = tagSIZE;

/// right and bottom lie just outside the rectangle.
struct tagRECT {
  LONG left;
  LONG top;
  LONG right;
  LONG bottom;
};
using RECT = tagRECT;

struct tagRGBQUAD {
  BYTE rgbBlue;
  BYTE rgbGreen;
  BYTE rgbRed;
  BYTE rgbReserved;
};
using RGBQUAD = tagRGBQUAD;

constexpr COLORREF RGB(int red, int green, int blue) {
  return static_cast<COLORREF>((red & 0xff) | (green & 0xff) << 8 | (blue & 0xff) << 16);
}
constexpr BYTE GetRValue(COLORREF color) {
  return static_cast<BYTE>(color);
}
constexpr BYTE GetGValue(COLORREF color) {
  return static_cast<BYTE>(color >> 8);
}
constexpr BYTE GetBValue(COLORREF color) {
  return static_cast<BYTE>(color >> 16);
}

constexpr WORD LOWORD(std::uintptr_t value) {
  return static_cast<WORD>(value & 0xffff);
}
constexpr WORD HIWORD(std::uintptr_t value) {
  return static_cast<WORD>(value >> 16 & 0xffff);
}
constexpr LONG MAKELONG(int low, int high) {
  return static_cast<LONG>(static_cast<DWORD>(low & 0xffff) | static_cast<DWORD>(high & 0xffff) << 16);
}
constexpr LPARAM MAKELPARAM(int low, int high) {
  return static_cast<DWORD>(MAKELONG(low, high));
}
/// A size for WM_SIZE. What a side has above its 16 bits stands in the upper half, of the width first, so
/// that whoever reads the two words finds what he always did.
constexpr LPARAM MakeSizeParam(int width, int height) {
  const auto upper = static_cast<DWORD>(MAKELONG(width >> 16, height >> 16));
  return static_cast<LPARAM>(static_cast<std::uint64_t>(upper) << 32 |
                             static_cast<DWORD>(MAKELONG(width, height)));
}
constexpr int WidthOfSizeParam(LPARAM value) {
  return static_cast<int>(value & 0xffff) | static_cast<int>(value >> 32 & 0x7fff) << 16;
}
constexpr int HeightOfSizeParam(LPARAM value) {
  return static_cast<int>(value >> 16 & 0xffff) | static_cast<int>(value >> 48 & 0x7fff) << 16;
}
constexpr WPARAM MAKEWPARAM(int low, int high) {
  return static_cast<DWORD>(MAKELONG(low, high));
}
constexpr int GET_X_LPARAM(LPARAM value) {
  return static_cast<std::int16_t>(LOWORD(static_cast<WPARAM>(value)));
}
constexpr int GET_Y_LPARAM(LPARAM value) {
  return static_cast<std::int16_t>(HIWORD(static_cast<WPARAM>(value)));
}

/// A resource number in place of a name.
inline LPCSTR MAKEINTRESOURCE(unsigned id) {
  return reinterpret_cast<LPCSTR>(static_cast<std::uintptr_t>(id & 0xffff));
}
