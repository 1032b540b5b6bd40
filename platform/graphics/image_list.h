#pragma once

#include "platform/base/object.h"
#include "platform/graphics/dc.h"
#include "platform/graphics/gdi_object.h"

// Lists of pictures of one size, cut out of bitmap strips, as bars and trees show them.

PLATFORM_DECLARE_HANDLE(HIMAGELIST);

/// Flags of a list. The depth is told for the sake of the interface: pictures keep the colours they come
/// with.
enum : UINT { ILC_MASK = 1, ILC_COLOR24 = 24, ILC_COLOR32 = 32 };
enum : UINT { ILD_NORMAL = 0, ILD_TRANSPARENT = 1 };

/// Null unless width and height are above 0. The creator ends it with ImageList_Destroy.
PLATFORM_API HIMAGELIST ImageList_Create(int width, int height, UINT flags, int initial, int grow);
PLATFORM_API BOOL ImageList_Destroy(HIMAGELIST list);
PLATFORM_API int ImageList_GetImageCount(HIMAGELIST list);
/// Copies a strip, cut into pictures of the list's width. In a list with a mask the pixels of the given
/// colour become transparent. Index of the first new picture, -1 on failure.
PLATFORM_API int ImageList_AddMasked(HIMAGELIST list, HBITMAP strip, COLORREF mask);
PLATFORM_API BOOL ImageList_Draw(HIMAGELIST list, int index, HDC dc, int x, int y, UINT style);

/// Owner of a list.
class PLATFORM_API CImageList : public CObject {
  DECLARE_DYNCREATE(CImageList)
 public:
  HIMAGELIST m_hImageList = nullptr;

  CImageList() = default;
  CImageList(const CImageList&) = delete;
  CImageList& operator=(const CImageList&) = delete;
  ~CImageList() override { DeleteImageList(); }
  operator HIMAGELIST() const { return m_hImageList; }  // NOLINT: passed wherever the handle is wanted
  HIMAGELIST GetSafeHandle() const { return m_hImageList; }

  BOOL Create(int width, int height, UINT flags, int initial, int grow) {
    return Attach(ImageList_Create(width, height, flags, initial, grow));
  }
  /// FALSE if a list is held already.
  BOOL Attach(HIMAGELIST list);
  HIMAGELIST Detach();
  BOOL DeleteImageList();
  int GetImageCount() const { return ImageList_GetImageCount(m_hImageList); }
};
