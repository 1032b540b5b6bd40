#pragma once

#include <cstddef>

#include "platform/base/types.h"

namespace imaging {
class PixelStorage;
}

/// The imaging library's records: plain data, copied by assignment. A uStructSize is a mark, not a checked
/// size.
namespace leadtools12 {

/// Header of a bitmap with a reference to its pixels. A copied header refers to the same pixels; exactly one
/// record owns them and frees them with LEADTOOLS::FreeBitmap.
struct struct_LEAD_Bitmap {
  UINT uStructSize;
  int Width;         ///< pixels
  int Height;        ///< pixels
  int BitsPerPixel;  ///< in memory: 1, 4, 8, 24 or 32
  DWORD Flags;       ///< bit 0: Allocated, the record holds pixels
  HPALETTE hPalette;
  int ViewPerspective;              ///< 0 normal, else the orientation number 2 to 8 of TIFF and Exif
  int Order;                        ///< of 24 and 32 bits: 0 red first, 1 blue first
  int XResolution;                  ///< dots per inch, 0 unknown
  int YResolution;                  ///< dots per inch, 0 unknown
  imaging::PixelStorage* pStorage;  ///< owned by the record for which Allocated counts
};

/// Bit of SizeBitmapExt's flags: the nearest pixels are taken, in the bitmap's own depth.
inline constexpr unsigned long kSizeByDropping = 0x1000;

/// Bit 0 of struct_LEAD_Bitmap::Flags.
inline constexpr DWORD kAllocated = 1;

/// What a file says of one page.
struct struct_file_information {
  UINT uStructSize;
  int Format;  ///< file format code; 0 for a kind that has no code of its own
  int Width;   ///< pixels, as stored
  int Height;
  int BitsPerPixel;  ///< as stored, all samples together
  int SizeDisk;      ///< bytes; at most INT_MAX
  char Compression[32];
  int ViewPerspective;  ///< as in struct_LEAD_Bitmap
  int Order;
  int TotalPages;   ///< filled only if the call was asked to count pages
  int XResolution;  ///< dots per inch, 0 unknown
  int YResolution;
  int InfoFlags;   ///< kInfoIsFilled or 0
  int PageNumber;  ///< the page described, from 1
  /// Rows of a fax page that couldn't be decoded and show the row above or nothing. A load always tells it;
  /// an information call only for a kind whose pages have to be decoded for it anyway, as raw fax.
  int DamagedRows;
};

/// Flag of FileInfo and FileInfoMemory: TotalPages is to be filled.
inline constexpr UINT kInfoCountsPages = 1;

/// Bit of InfoFlags: the record describes the page already, and LoadFile and LoadMemory leave it as it is.
inline constexpr int kInfoIsFilled = 8192;

/// Told of each row of a page that LoadFile or LoadMemory decoded: the file's information, the page's header
/// without pixels, the row's bytes at the page's depth, the load's flags, the row's number from 0, how many
/// rows follow each other in the bytes (1), what the caller gave. Result 0 ends the load. Where rows are long
/// in coming it is called without any in between, with 0 for how many there are, so that the load can be
/// ended.
using LoadRowCallback = int (*)(struct_file_information* info, struct_LEAD_Bitmap* bitmap, BYTE* bytes,
                                UINT flags, int row, int lines, void* userData);

/// What becomes of each page of a list that was loaded from a file, as it is decoded.
struct PagePreparation {
  /// The pages are wanted for pictures with sides of at most so many pixels: where that saves time they are
  /// decoded or drawn at twice that size instead of their own. 0: at their own.
  int side;
  /// Changes the decoded page in place, and may throw as the service does. Null: it stays as it is, and one
  /// that can't be decoded makes its item throw.
  void (*prepare)(struct_LEAD_Bitmap* page);
  /// Fills an empty record, for a page that can't be decoded or prepared.
  void (*replace)(struct_LEAD_Bitmap* page);
};

/// A transformation of region coordinates. There is none but the null pointer.
struct _RGNXFORM;

struct _LOADFILEOPTION {
  UINT uStructSize;
  int PassCount;
  int PageNumber;  ///< from 1
};

struct _SAVEFILEOPTION {
  UINT uStructSize;
  int PageNumber;  ///< from 1
};

/// A two-level page with a byte for each pixel, 0 or any other, and room for its reduction to grey. Rows as
/// they stand in memory, in either direction.
struct TwoLevelRows {
  const BYTE* source;
  std::size_t sourcePitch;  ///< bytes
  BYTE* target;
  std::size_t targetPitch;  ///< bytes
  int width;                ///< of the target, at least 1; the source has `divisor` times as many, or more
  int height;
  int divisor;       ///< at least 1
  bool zeroIsLight;  ///< light pixels are those with the byte 0, else those with any other
};

/// One item of the image list.
struct _LILITEM {
  UINT uStructSize;
  UINT uMask;                   ///< which fields count: bit 0 pBitmap, bit 1 pszText, bit 3 bSelected
  struct_LEAD_Bitmap* pBitmap;  ///< the picture
  char* pszText;                ///< caption under it
  int bSelected;
};

/// What happens to the selection when the user picks an item by mouse or key.
struct _LILSELOPTION {
  UINT uStructSize;
  int bSelectPicked;  ///< 1: the picked item becomes selected; 0: the selection is the program's alone
  int bSingle;        ///< 1: every other item loses its selection; 0: a pick turns the item's selection over
  int nReserved;
};

/// Size of the cells, pictures and captions included.
struct _LILITEMOPTION {
  UINT uStructSize;
  int ItemWidth;  ///< logical units
  int ItemHeight;
};

/// What the image list's WM_COMMAND points to.
struct _LILPICKED {
  UINT uStructSize;
  UINT uCode;  ///< 1024, as in the message
  int nIndex;  ///< of the picked item, from 0
};

}  // namespace leadtools12
