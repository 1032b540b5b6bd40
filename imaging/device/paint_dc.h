#pragma once

#include <cstdint>

#include "imaging/pixels/paint.h"
#include "platform/base/types.h"

namespace imaging {

/// Draws a bitmap on any device context as LEADTOOLS::PaintDC does: straight on the pixels where they can be
/// reached, by the printer's own means on paper, else by bands.
void PaintOnDC(HDC dc, Bitmap* bitmap, const PaintRects& rects, std::uint32_t rasterOperation,
               PaintUse use = PaintUse::Again);

}  // namespace imaging
