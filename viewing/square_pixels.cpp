#include "viewing/square_pixels.h"

#include "platform/graphics/dc.h"

namespace square_pixels {

Resolution OfScreen() {
  CDC screen;
  screen.CreateCompatibleDC(nullptr);
  return {screen.GetDeviceCaps(LOGPIXELSX), screen.GetDeviceCaps(LOGPIXELSY)};
}

}  // namespace square_pixels
