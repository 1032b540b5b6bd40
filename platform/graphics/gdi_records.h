#pragma once

#include "platform/base/types.h"
#include "platform/graphics/gdi_constants.h"

// Records of the drawing interface.

struct tagPALETTEENTRY {
  BYTE peRed;
  BYTE peGreen;
  BYTE peBlue;
  BYTE peFlags;
};
using PALETTEENTRY = tagPALETTEENTRY;

struct tagLOGPALETTE {
  WORD palVersion;  ///< 0x300
  WORD palNumEntries;
  PALETTEENTRY palPalEntry[1];  ///< really palNumEntries of them
};
using LOGPALETTE = tagLOGPALETTE;

struct tagBITMAP {
  LONG bmType;  ///< 0
  LONG bmWidth;
  LONG bmHeight;
  LONG bmWidthBytes;
  WORD bmPlanes;
  WORD bmBitsPixel;
  LPVOID bmBits;  ///< null unless the bitmap is a DIB section
};
using BITMAP = tagBITMAP;

struct tagLOGBRUSH {
  UINT lbStyle;
  COLORREF lbColor;
  std::uintptr_t lbHatch;
};
using LOGBRUSH = tagLOGBRUSH;

struct tagLOGPEN {
  UINT lopnStyle;
  POINT lopnWidth;
  COLORREF lopnColor;
};
using LOGPEN = tagLOGPEN;

struct tagLOGFONTA {
  LONG lfHeight;  ///< below 0: height of the characters; above: of the line; 0: the default
  LONG lfWidth;
  LONG lfEscapement;
  LONG lfOrientation;
  LONG lfWeight;
  BYTE lfItalic;
  BYTE lfUnderline;
  BYTE lfStrikeOut;
  BYTE lfCharSet;
  BYTE lfOutPrecision;
  BYTE lfClipPrecision;
  BYTE lfQuality;
  BYTE lfPitchAndFamily;
  char lfFaceName[LF_FACESIZE];  ///< empty: the theme's font
};
using LOGFONTA = tagLOGFONTA;
using LOGFONT = LOGFONTA;

struct tagTEXTMETRICA {
  LONG tmHeight;
  LONG tmAscent;
  LONG tmDescent;
  LONG tmInternalLeading;
  LONG tmExternalLeading;
  LONG tmAveCharWidth;
  LONG tmMaxCharWidth;
  LONG tmWeight;
  BYTE tmItalic;
  BYTE tmUnderlined;
  BYTE tmStruckOut;
  BYTE tmPitchAndFamily;
};
using TEXTMETRICA = tagTEXTMETRICA;
using TEXTMETRIC = TEXTMETRICA;
