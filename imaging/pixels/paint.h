#pragma once

#include <cstdint>

#include "imaging/pixels/record.h"
#include "platform/graphics/surface.h"

namespace imaging {

/// The four rectangles of LEADTOOLS::PaintDC; null as there.
struct PaintRects {
  const RECT* source = nullptr;           ///< bitmap pixels
  const RECT* sourceClip = nullptr;       ///< bitmap pixels
  const RECT* destination = nullptr;      ///< logical units
  const RECT* destinationClip = nullptr;  ///< logical units
};

/// Whether the scaled pixels are kept for a repaint of the same surface.
enum class PaintUse { Again, Once };

/// Draws a bitmap on a surface, straight in device pixels. Throws if a rectangle is missing or lies outside
/// the bitmap, or the operation needs a brush.
void PaintOnSurface(const platform::SurfaceView& view, Bitmap* bitmap, const PaintRects& rects,
                    std::uint32_t rasterOperation, PaintUse use = PaintUse::Again);

}  // namespace imaging
