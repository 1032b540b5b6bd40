#pragma once

#include <QtCore/QRect>
#include <functional>

#include "platform/base/types.h"

class QPainter;

// Parts of bars and splitters drawn in the desktop's style onto a device context. All places are logical.
namespace platform {

struct ToolButtonLook {
  bool enabled = true;
  bool hot = false;
  bool pressed = false;
  bool checked = false;
};

/// Lets Qt draw on a picture in device pixels, which is then put in the place.
void PaintTheme(HDC dc, const RECT& place, const std::function<void(QPainter&, const QRect&)>& draw);
/// The raised or sunken face behind a flat button's picture; nothing for one at rest.
void DrawToolButtonFace(HDC dc, const RECT& place, const ToolButtonLook& look);
/// Shows that the keyboard is here, in any style and palette.
void DrawFocusFrame(HDC dc, const RECT& place);
/// The handle by which a bar is moved. vertical: of a bar that stands at a side.
void DrawGripper(HDC dc, const RECT& place, bool vertical);
/// A line through the middle of the place. vertical: the line stands upright.
void DrawSeparatorLine(HDC dc, const RECT& place, bool vertical);
void DrawSizeGrip(HDC dc, const RECT& place);
/// The bar between two panes. vertical: it stands upright.
void DrawSplitterBar(HDC dc, const RECT& place, bool vertical);

}  // namespace platform
