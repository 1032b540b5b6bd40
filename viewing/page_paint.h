#pragma once

#include "imaging/ltwrap.h"
#include "platform/base/geometry.h"

class CDC;
class CWnd;

/// Paints a bitmap of a page, stretched to the page's scaled size, so that the pixel at `position` of the
/// scaled page comes to the client area's top left corner. clip (null: none) limits what is painted. Throws
/// as the imaging service does.
void PaintPage(HDC dc, const struct_LEAD_Bitmap& page, POINT position, SIZE scaled, RECT* clip);

/// Whether a reduced copy is of use on this device context. On a scaled display the copy has fewer pixels
/// than the screen; the page itself is then scaled straight to the screen's pixels.
bool ShowsReducedCopy(HDC dc, const struct_LEAD_Bitmap& copy);

/// The client area of a window without a page.
void FillGray(CWnd& window, CDC& dc);
