#pragma once

#include <cstddef>
#include <cstdint>
#include <span>

#include "platform/base/export.h"
#include "platform/base/types.h"

namespace platform {

/// What a painter left on a surface, so that its next paint knows what stands there already.
struct SurfaceMark {
  std::uint64_t picture = 0;  ///< the painter's number for it; 0: nothing is known
  LONG x = 0;                 ///< where the picture's corner lies, pixels
  LONG y = 0;
  RECT shown{};  ///< the pixels that show it
};

/// The pixels behind a device context, for code that draws them itself: 32 bits each, 0xffRRGGBB, rows top
/// down. Everything here is in device pixels; a logical point (x, y) of the device context lies at
/// (originX + x * scale, originY + y * scale).
struct SurfaceView {
  std::uint32_t* pixels = nullptr;
  int width = 0;
  int height = 0;
  std::ptrdiff_t stride = 0;  ///< pixels from one row to the next
  double scale = 1.0;         ///< device pixels per logical unit, above 1 on a scaled display
  double originX = 0;
  double originY = 0;
  std::span<const RECT> clip;  ///< where drawing is allowed, rectangles that don't overlap; none: nowhere
  HDC dc = nullptr;
  /// Of a window, else null. Whoever draws on the locked pixels keeps it true; all other drawing forgets it.
  SurfaceMark* mark = nullptr;
};

/// Gives direct access to a device context that draws into 32-bit pixels (a window, a memory bitmap). False
/// for any other (a bilevel bitmap, a printer, a dead handle). Valid until the next call on the device
/// context.
PLATFORM_API bool LockSurface(HDC dc, SurfaceView& view);
/// Moves all that a window's surface shows, without copying it as a rule, and gives where its pixels are now.
/// What comes in at an edge is anything. Null: it stays where it is.
PLATFORM_API std::uint32_t* MoveSurface(HDC dc, int dx, int dy);
/// Device pixels per logical unit of a device context; 1 for one without a surface.
PLATFORM_API double DeviceScale(HDC dc);
/// Tells that the given logical rectangle has been drawn, so that the screen is brought up to date.
PLATFORM_API void UnlockSurface(HDC dc, const RECT& drawn);

}  // namespace platform
