#pragma once

#include "imaging/ltwrap.h"
#include "platform/base/string.h"

// What a strip asks of its control, a list of the imaging service. The functions throw what the service
// throws. Items are counted from 0, and one for each page.
namespace thumbs {

/// A new control: a pick of the user selects that item alone, and the room between the cells has the strip's
/// colour.
void PrepareStrip(HWND strip);
/// The control's cells become a size of the strip's own.
void SetCells(HWND strip, SIZE cell);
/// Appends a picture, not selected. The control copies both.
void Append(HWND strip, struct_LEAD_Bitmap* picture, CString caption);
/// Changes the picture of an item, and nothing else.
void SetPicture(HWND strip, int item, struct_LEAD_Bitmap* picture);
/// One item, and no other, is selected; with a number that is none of an item nothing is. Whether it was one.
bool SelectAlone(HWND strip, int item);

}  // namespace thumbs
