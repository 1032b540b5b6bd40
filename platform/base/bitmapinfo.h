#pragma once

#include "platform/base/types.h"

// The head of a device-independent bitmap in memory.

#pragma pack(push, 2)
struct tagBITMAPINFOHEADER {
  DWORD biSize;
  LONG biWidth;
  LONG biHeight;  ///< above 0: the rows stand bottom-up
  WORD biPlanes;
  WORD biBitCount;
  DWORD biCompression;
  DWORD biSizeImage;
  LONG biXPelsPerMeter;
  LONG biYPelsPerMeter;
  DWORD biClrUsed;
  DWORD biClrImportant;
};
#pragma pack(pop)
using BITMAPINFOHEADER = tagBITMAPINFOHEADER;
static_assert(sizeof(BITMAPINFOHEADER) == 40);

struct tagBITMAPINFO {
  BITMAPINFOHEADER bmiHeader;
  RGBQUAD bmiColors[1];
};
using BITMAPINFO = tagBITMAPINFO;

enum : DWORD { BI_RGB = 0, BI_RLE8 = 1, BI_BITFIELDS = 3 };
