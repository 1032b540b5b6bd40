#include "viewing/square_pixels.h"

#include "platform/graphics/dc.h"

namespace square_pixels {

Resolution OfScreen() {
  CDC screen;
  screen.CreateCompatibleDC(nullptr);
  return {screen.GetDeviceCaps(LOGPIXELSX), screen.GetDeviceCaps(LOGPIXELSY)};
}

bool Resize(struct_LEAD_Bitmap* bitmap, SIZE size) {
  try {
    LEADTOOLS::SizeBitmap(bitmap, size.cx, size.cy);
  } catch (CLeadtoolsException* exception) {
    if (exception->m_nError != imaging::kErrorLimit) throw;
    exception->Delete();
    return false;
  }
  return true;
}

}  // namespace square_pixels
