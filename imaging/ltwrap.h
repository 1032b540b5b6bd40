#pragma once

#include <memory>

#include "imaging/core/exception.h"
#include "imaging/core/export.h"
#include "imaging/core/limits.h"
#include "imaging/core/records.h"
#include "platform/base/types.h"

using leadtools12::_LILITEM;
using leadtools12::_LILITEMOPTION;
using leadtools12::_LILPICKED;
using leadtools12::_LILSELOPTION;
using leadtools12::_LOADFILEOPTION;
using leadtools12::_RGNXFORM;
using leadtools12::_SAVEFILEOPTION;
using leadtools12::struct_file_information;
using leadtools12::struct_LEAD_Bitmap;

namespace imaging {
class SaveSession;
class WaitScope;
}  // namespace imaging

namespace leadtools12 {

/// While it lives, what SaveBitmap writes to the path goes into one new file, page after page. The file takes
/// the path's place with Complete, whole and on the disk; without it what was there stays. Throws as the
/// service does.
class LTWRAP_API NewFile {
 public:
  explicit NewFile(const char* path);
  ~NewFile();
  NewFile(const NewFile&) = delete;
  NewFile& operator=(const NewFile&) = delete;
  /// Puts the file into its place. Throws if that fails; what was there stays then. Once.
  void Complete();

 private:
  std::unique_ptr<imaging::SaveSession> m_session;
};

/// 0: what keeps its caller waiting is to end. May throw, which ends it as well.
using WaitCallback = int (*)(void* userData);

/// While it lives, every call of the service that waits for the helper or decodes asks the callback every
/// 50 ms; if it gives 0 the helper's process is ended and the call throws kErrorUserAbort. Ends before what
/// it was made in.
class LTWRAP_API Waiting {
 public:
  Waiting(WaitCallback callback, void* userData);
  ~Waiting();
  Waiting(const Waiting&) = delete;
  Waiting& operator=(const Waiting&) = delete;

 private:
  std::unique_ptr<imaging::WaitScope> m_scope;
};

}  // namespace leadtools12

/// The imaging service. Every failure is a thrown CLeadtoolsException*; the int results are 1. All calls come
/// from one thread. Pages are counted from 1; options may be null and then stand for the defaults.
class LTWRAP_API LEADTOOLS {
 public:
  // Files and information (leadtools_files.cpp)

  /// Fills the record: page 1, the service's own way of decoding.
  static int GetDefaultLoadFileOption(_LOADFILEOPTION* options);
  /// Describes one page. flags bit 0: count the pages too. Throws if the file can't be shown.
  static int FileInfo(const char* path, struct_file_information* info, unsigned int flags,
                      _LOADFILEOPTION* options);
  /// FileInfo of a file's image in memory; size in bytes. The block stays the caller's.
  static int FileInfoMemory(char* buffer, struct_file_information* info, long size, unsigned int flags,
                            _LOADFILEOPTION* options);
  /// Decodes one page into a record, whose former contents are not freed. bits 0 keeps the page's own depth;
  /// 8 expands a bilevel page; other depths are the file's own, held in the nearest depth in memory. order is
  /// a wish: the record's Order tells what was delivered. info, if given, is filled.
  static int LoadBitmapA(const char* path, struct_LEAD_Bitmap* bitmap, int bits, int order,
                         _LOADFILEOPTION* options, struct_file_information* info);
  /// LoadBitmapA of a file's image in memory, which isn't needed after the call.
  static int LoadBitmapMemory(char* buffer, struct_LEAD_Bitmap* bitmap, int bits, int order, long size,
                              _LOADFILEOPTION* options, struct_file_information* info);
  /// The same, with a callback (null: none) that is told of each row once the page is decoded. If it gives 0
  /// the load throws kErrorUserAbort, and the record stays as it was. While the helper opens, describes or
  /// decodes, it is asked every 50 ms, with no rows, and until the page is described with an empty record.
  /// flags is 3. info, if given, is filled, unless its InfoFlags have kInfoIsFilled.
  static int LoadFile(const char* path, struct_LEAD_Bitmap* bitmap, int bits, int order, unsigned int flags,
                      leadtools12::LoadRowCallback callback, void* userData, _LOADFILEOPTION* options,
                      struct_file_information* info);
  /// LoadFile of a file's image in memory, which isn't needed after the call.
  static int LoadMemory(char* buffer, struct_LEAD_Bitmap* bitmap, int bits, int order, unsigned int flags,
                        leadtools12::LoadRowCallback callback, void* userData, long size,
                        _LOADFILEOPTION* options, struct_file_information* info);

  /// Loads all pages of a file's image in memory one after another for pictures with sides of at most so many
  /// pixels, as PagePreparation has it; take gets each, in its own depth and blue first, and owns its pixels.
  static int LoadSmallPagesMemory(char* buffer, long size, int side,
                                  void (*take)(struct_LEAD_Bitmap* page, void* userData), void* userData);

  /// Tells of each kind of files that can be read: its name, the module of the helper that reads it (null:
  /// none is needed), and whether it is installed.
  static int ListFormats(void (*tell)(const char* name, const char* module, int installed, void* userData),
                         void* userData);

  /// Dots per inch at which pages without pixels of their own, as most of PDF, are drawn from now on: 36 to
  /// 1200; 0, as at first, takes the renderer's own choice, 200. Throws for others.
  static int SetDrawnResolution(int dotsPerInch);

  // Bitmap life (leadtools_bitmap.cpp)

  /// Sets up an empty record; pixels that it held are not freed.
  static int InitBitmap(struct_LEAD_Bitmap* bitmap, int width, int height, int bits);
  /// Gives an initialised record pixels, all zero. memoryType is 1.
  static int AllocateBitmap(struct_LEAD_Bitmap* bitmap, int memoryType);
  /// InitBitmap and AllocateBitmap in one. bits 0: true colour, 24 bits. palette: the colours of up to 8 bits
  /// (2^bits of them), null for grey. data is null and dataSize 0.
  static int CreateBitmap(struct_LEAD_Bitmap* bitmap, unsigned int memoryType, unsigned int width,
                          unsigned int height, unsigned int bits, unsigned int order, tagRGBQUAD* palette,
                          unsigned int viewPerspective, unsigned char* data, unsigned long dataSize);
  /// Releases the pixels and clears Allocated. An empty record is left alone.
  static void FreeBitmap(struct_LEAD_Bitmap* bitmap);
  /// Gives the target pixels of its own. What it held before is not freed.
  static int CopyBitmap(struct_LEAD_Bitmap* target, struct_LEAD_Bitmap* source);
  /// A second header of the source's pixels, which stay the source's: only one of the two may be freed.
  static void CopyBitmapHandle(struct_LEAD_Bitmap* target, struct_LEAD_Bitmap* source);
  /// Copies a part, in pixels of the source, which has to lie within it. What the target held is not freed.
  static int CopyBitmapRect(struct_LEAD_Bitmap* target, struct_LEAD_Bitmap* source, unsigned int column,
                            unsigned int row, unsigned int width, unsigned int height);
  /// Turns the pixels so that ViewPerspective becomes viewPerspective; target null: in place.
  static int ChangeBitmapViewPerspective(struct_LEAD_Bitmap* target, struct_LEAD_Bitmap* source,
                                         int viewPerspective);

  /// Selects a part of the image; null: none. The region belongs to the pixels, and goes when they are scaled
  /// or turned; a copy has none. Throws if the part doesn't lie within the image.
  static int SetBitmapRgnRect(struct_LEAD_Bitmap* bitmap, const tagRECT* rect);
  /// Non-zero if a part is selected. A null pointer and an empty record have none.
  static unsigned int BitmapHasRgn(struct_LEAD_Bitmap* bitmap);
  /// The bounds of the selected part in pixels of the image. transformation is null. Throws if nothing is
  /// selected.
  static int GetBitmapRgnBounds(struct_LEAD_Bitmap* bitmap, _RGNXFORM* transformation, tagRECT* bounds);

  // List of bitmaps (leadtools_list.cpp). A list is a handle that DestroyBitmapList ends; a dead or null one
  // makes every other call throw. Indices count from 0.

  /// An empty list, which the caller ends by DestroyBitmapList.
  static int CreateBitmapList(void** list);
  /// A list with one item for each page of the file; the path is kept. A page is decoded when its item is
  /// first asked for, so that a damaged one throws there. bits and order as in LoadBitmapA; PageNumber isn't
  /// looked at; info, if given, describes page 1.
  static int LoadBitmapList(char* path, void** list, int bits, int order, _LOADFILEOPTION* options,
                            struct_file_information* info);
  /// From now on each page of such a list is prepared when its item is first asked for, and an item doesn't
  /// throw. Of many prepared pages those made first are given up, which ends their pixels, and made again
  /// when they are asked for again.
  static int PrepareBitmapListPages(void* list, const leadtools12::PagePreparation& preparation);
  /// How many items the list has.
  static int GetBitmapListCount(void* list, unsigned int* count);
  /// A header of the item's pixels, which stay the list's: the caller frees nothing. They may be changed in
  /// place. Throws if the page can't be decoded, or the file isn't the one that the list was made of.
  static int GetBitmapListItem(void* list, unsigned int index, struct_LEAD_Bitmap* bitmap);
  /// Takes a changed header back. One that refers to other pixels than the item's gives these to the list,
  /// and the item's own are freed.
  static int SetBitmapListItem(void* list, unsigned int index, struct_LEAD_Bitmap* bitmap);
  /// Inserts before the item at index; the count, or all bits set, appends. The list takes the pixels over,
  /// unless it throws.
  static int InsertBitmapListItem(void* list, unsigned int index, struct_LEAD_Bitmap* bitmap);
  /// Frees the list and its pixels. A null or dead handle is left alone.
  static int DestroyBitmapList(void* list);

  // Transform (leadtools_transform.cpp)

  /// Scales in place by repeating pixels, or averaging them where a side becomes shorter. Averages of up to 8
  /// bits with a colour table have 24, others 8.
  static int SizeBitmap(struct_LEAD_Bitmap* bitmap, int width, int height);
  /// The same whatever the flags, unless kSizeByDropping is among them: then pixels are repeated or dropped.
  static int SizeBitmapExt(struct_LEAD_Bitmap* bitmap, int width, int height, unsigned long flags);
  /// Writes the source, scaled, into the allocated target at the target's size.
  static int ResizeBitmap(struct_LEAD_Bitmap* source, struct_LEAD_Bitmap* target);
  /// Makes the target a new bitmap, the source averaged down by a factor of at most 1.0, at least a pixel
  /// wide and high. A 1-bit source gives shades between its two colours; if the factor is the reciprocal of a
  /// whole number n, of whole blocks of n by n pixels only. What the target held is not freed.
  static int SmartResize(struct_LEAD_Bitmap* source, struct_LEAD_Bitmap* target, double factor);
  /// Every block of divisor by divisor pixels becomes the share of light pixels in it, 0 to 255, fractions
  /// cut off. Nothing but width bytes in each of height target rows is written.
  static int ReduceToGray(const leadtools12::TwoLevelRows& rows);
  /// The same of a bitmap of 8 bits in which only the first two colours of its table occur, or black and
  /// white: makes the target a new bitmap with these 256 colours. What it held is not freed. The result is 0,
  /// and the target as it was, if the source isn't of 8 bits or smaller than the divisor, or memory is short.
  static int ReduceToGray(struct_LEAD_Bitmap* source, struct_LEAD_Bitmap* target, int divisor,
                          const tagRGBQUAD* colors);
  /// In place; angle in hundredths of a degree, clockwise, a multiple of 9000.
  static int RotateBitmap(struct_LEAD_Bitmap* bitmap, int angle, unsigned int flags, unsigned long fillColor);
  /// Turns a bitmap of any depth into 8-bit grey in place; bits is 8.
  static int GrayScaleBitmap(struct_LEAD_Bitmap* bitmap, int bits);
  /// A global memory handle, owned by the caller, with header, colour table and rows bottom-up.
  static void* ConvertToDIB(struct_LEAD_Bitmap* bitmap);
  /// Fills the record from such a handle and takes the handle over. If it throws, the handle stays the
  /// caller's.
  static int ChangeFromDIB(struct_LEAD_Bitmap* target, void* dib);

  // Paint (leadtools_paint.cpp), print (leadtools_print.cpp)

  /// A palette with the bitmap's colours; the caller deletes it.
  static HPALETTE CreatePaintPalette(HDC dc, struct_LEAD_Bitmap* bitmap);
  /// Draws the source rectangle (null: the whole bitmap) scaled into the destination rectangle, limited to
  /// the destination clip (null: none): averaged on reduction, exact pixels on enlargement.
  static int PaintDC(HDC dc, struct_LEAD_Bitmap* bitmap, tagRECT* source, tagRECT* sourceClip,
                     tagRECT* destination, tagRECT* destinationClip, unsigned long rasterOperation);
  /// A copy of a palette, which the caller deletes; null of null.
  static HPALETTE DupPalette(HPALETTE palette);

  // Drawing into a bitmap (leadtools_dc.cpp)

  /// A device context that shows the bitmap's pixels as they are stored. What is drawn is in the bitmap once
  /// the device context is ended, which the caller does by DeleteLeadDC. Colours that the bitmap's table
  /// lacks become the nearest ones.
  static HDC CreateLeadDC(struct_LEAD_Bitmap* bitmap);
  /// Also of a bitmap that was freed, or given another size or depth, meanwhile: the drawing is lost then.
  /// 0, and nothing done, if this is no device context of CreateLeadDC.
  static unsigned int DeleteLeadDC(HDC dc);

  /// Prints the bitmap at (x, y) of the open page, in the printer's dots, scaled to width and height; both 0:
  /// as large as the page allows, with square pixels unless both resolutions are known. What doesn't fit is
  /// cut off. flags is 0. The device context; null if it can't print the bitmap.
  static HDC PrintBitmapExt(HDC dc, struct_LEAD_Bitmap* bitmap, int x, int y, int width, int height,
                            unsigned int flags);

  // Save (leadtools_files.cpp)

  /// Fills the record: page 1.
  static int GetDefaultSaveFileOption(_SAVEFILEOPTION* options);
  /// Writes the bitmap as it is held, its orientation as a tag where the format has one. Formats: 27 (TIFF
  /// with group 3 coding, 1 bit), 75 (PNG), 84 (Windows bitmap, RLE for 4 and 8 bits), 87 (TIFF with
  /// PackBits), 98 (Exif JPEG 4:2:2). bits is 0 or the bitmap's own depth; quality of JPEG 1 to 100, else a
  /// high one. Page 1 makes a new file, which takes the place of an old one when it is whole; in TIFF the
  /// next page is added, and an attempt that fails leaves the pages before it.
  static int SaveBitmap(const char* path, struct_LEAD_Bitmap* bitmap, int format, int bits, int quality,
                        _SAVEFILEOPTION* options);

  // Image-list control (leadtools_imagelist.cpp): a window of class LEADIMGLIST32. Indices count from 0. A
  // window that is none and an index that isn't there make a call throw.
  //
  // Messages to it: WM_USER + 21 with a colour as lParam sets the background, WM_USER + 17 with an index as
  // wParam brings that item into view. When the user picks an item, by mouse or key, the parent gets
  // WM_COMMAND: low word the control's id, high word 1024, lParam a _LILPICKED. The parent may clear the list
  // or destroy the control meanwhile.

  /// Registers the window class. Called before such a window is made, as often as one likes.
  static void UseImageListControl();
  /// Appends. The control keeps copies of picture and caption.
  static int ImgListInsert(HWND window, _LILITEM* item);
  /// Appends an item for each bitmap of a list to a control without items. Picture and caption are asked for
  /// when they are first looked at; the caption gets the number of the bitmap, from 1. The list lives as long
  /// as the items; without it they have no pictures.
  static int ImgListInsertList(HWND window, void* list, CString (*caption)(int number));
  /// Fills the record. Picture and caption stay the control's, until the item changes.
  static int ImgListGetItem(HWND window, unsigned int index, _LILITEM* item);
  /// Changes the fields that uMask names; copies them as ImgListInsert does.
  static int ImgListSetItem(HWND window, unsigned int index, _LILITEM* item);
  /// Takes all items out, with their pictures.
  static int ImgListClear(HWND window);
  /// How many items there are.
  static int ImgListGetItemCount(HWND window);
  /// Screenfuls of items; 0 if nothing needs scrolling.
  static int ImgListGetPagesCount(HWND window);
  /// The screenful in view, from 1. The s-th of ImgListGetPagesCount equal shares of the items is then wholly
  /// in view; 0 where none is.
  static int ImgListGetPage(HWND window);
  /// Scrolls as little as is needed.
  static int ImgListEnsureVisible(HWND window, int index);
  /// Fills the record: how items are selected.
  static int ImgListGetSelOptions(HWND window, _LILSELOPTION* options);
  /// Sets how items are selected.
  static int ImgListSetSelOptions(HWND window, _LILSELOPTION* options);
  /// Fills the record: size of items in pixels, and what is shown of them.
  static int ImgListGetItemOptions(HWND window, _LILITEMOPTION* options);
  /// Sets size of items in pixels, and what is shown of them; lays out anew.
  static int ImgListSetItemOptions(HWND window, _LILITEMOPTION* options);
};
