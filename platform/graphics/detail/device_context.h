#pragma once

#include <QtCore/QRect>
#include <QtGui/QImage>
#include <QtGui/QRegion>
#include <functional>
#include <map>

#include "platform/graphics/gdi.h"

// Device contexts for the layers that own a surface: windows and printers. Positions are client units (96 to
// the inch, from the surface's top left corner), not device pixels and not logical ones.

class QPainter;
class QFont;

namespace platform {

struct PrinterImage;
class WindowSurface;

using DrawnFunction = std::function<void(const QRect& clientUnits)>;

/// A device context on a window's image. The image is borrowed: 32 bits (Format_RGB32 or premultiplied ARGB),
/// scale pixels to a unit, its own device pixel ratio isn't looked at. A null image makes a device context
/// that answers everything and draws nothing (the screen, a window without an area). onDrawn may be empty; it
/// is called after every call that drew, with the rectangle that may have changed.
HDC CreateWindowSurfaceDC(QImage* image, double scale, const QRegion& clip, DrawnFunction onDrawn);
/// Exchanges image and clip of a living device context (resize, end of the window: null). Selected objects
/// stay.
bool SetWindowSurface(HDC dc, QImage* image, double scale, const QRegion& clip);
/// Names the surface whose image the device context draws into.
void SetKeptSurface(HDC dc, WindowSurface* surface);
/// Ends a device context of either function here; objects selected in it are let go. False for any other.
bool DestroySurfaceDC(HDC dc);

/// A device context on a painter, which is borrowed and may be exchanged between pages. One unit is one of
/// the painter's. caps answers GetDeviceCaps, 0 for what it doesn't hold. Operations that read the target
/// (other than the source and pattern copies) fail. DeleteDC ends it and calls onDelete.
HDC CreatePainterDC(QPainter* painter, std::map<int, int> caps, std::function<void()> onDelete = {});
/// Null between pages: drawing then fails softly, measuring goes on.
bool SetPainter(HDC dc, QPainter* painter);
bool SetPainterCaps(HDC dc, std::map<int, int> caps);
/// Draws a part of an image (image pixels, may reach outside) at a place; place and clip are units, and a
/// place whose right or bottom edge comes first mirrors.
using ImageDrawer =
    std::function<bool(const PrinterImage& image, const RECT& source, const RECT& place, const RECT& clip)>;
/// Images then go to the function and not to the painter. False for a device context of another kind.
bool SetImageDrawer(HDC dc, ImageDrawer drawer);
/// The painter of such a device context, or null.
QPainter* PainterOf(HDC dc);

/// True for a handle of a living device context.
bool IsDeviceContext(HDC dc);
/// The pixels as an image of its own, 32 bits, or Format_Mono for a bilevel bitmap; a null image if dead.
QImage ImageOfBitmap(HBITMAP bitmap);
/// A bitmap of 32 bits with the image's pixels; transparent ones become the given colour.
HBITMAP BitmapFromImage(const QImage& image, COLORREF background);
/// The font as Qt's, its size in units (pixels at scale 1). The theme's font for a dead handle.
QFont FontOf(HFONT font);

}  // namespace platform
