#pragma once

#include "library/export.h"
#include "platform/framework/tool_bar.h"
#include "platform/graphics/image_list.h"

/// A toolbar whose pictures come from one strip of 256 colours; it draws those of its disabled buttons
/// itself.
class TESSAREL_API CToolBar256 : public CToolBar {
 public:
  CToolBar256() = default;
  ~CToolBar256() override = default;

  /// Takes the pictures from a bitmap of the resources, in the order of the buttons, separators left out.
  /// Call it once, after SetSizes and SetButtons. transparent: the strip's colour that shows the bar through.
  void SetBitmap(UINT id, DWORD transparent);

 protected:
  /// Draws a strip in the look of disabled buttons: the dark parts of each picture in shadow colour, with a
  /// highlight one pixel right of and below them, on the bar's face. pictureWidth: of one picture in the
  /// strip.
  void DitherBlt(HDC target, int x, int y, int width, int height, HBITMAP strip, int stripX, int stripY,
                 int pictureWidth);

  CImageList m_ilEnabled;
  CImageList m_ilDisabled;
};
