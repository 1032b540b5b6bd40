#pragma once

#include "imaging/pixels/record.h"
#include "platform/base/types.h"

namespace imaging {

/// The rectangle that PrintBitmapExt fills, in the printer's dots: as asked, or with width and height 0 the
/// largest of the bitmap's shape between (x, y) and the far edges of the page. The shape is that of the
/// pixels as they are shown, square, whatever the resolutions are.
RECT PrintedRect(const Bitmap& bitmap, const RECT& asked, const SIZE& page, const SIZE& dotsPerInch);

/// Draws a part of the bitmap on a printing device context, at its own depth; the printer scales. False
/// without an open page; why a page was closed shows in the results of the document. stored: what the bitmap
/// is an upright copy of, whose coded form is passed on; null: the bitmap itself.
bool DrawOnPrinter(HDC dc, Bitmap* bitmap, const RECT& source, const RECT& destination,
                   Bitmap* stored = nullptr);

}  // namespace imaging
