#include "imaging/pixels/paint.h"

#include <algorithm>
#include <cmath>
#include <cstring>
#include <vector>

#include "imaging/core/exception.h"
#include "imaging/core/limits.h"
#include "imaging/pixels/scaler.h"
#include "imaging/pixels/view_cache.h"

namespace imaging {
namespace {

constexpr std::uint32_t kSourceCopy = 0x00cc0020;

RECT Intersect(const RECT& a, const RECT& b) {
  return {std::max(a.left, b.left), std::max(a.top, b.top), std::min(a.right, b.right),
          std::min(a.bottom, b.bottom)};
}

bool Contains(const RECT& outer, const RECT& inner) {
  return outer.left <= inner.left && outer.top <= inner.top && outer.right >= inner.right &&
         outer.bottom >= inner.bottom;
}

bool IsEmpty(const RECT& rect) {
  return rect.left >= rect.right || rect.top >= rect.bottom;
}

LONG ToDevice(double origin, double scale, double value) {
  constexpr double kFar = 1 << 29;  // sums of two places still fit
  return static_cast<LONG>(std::lround(std::clamp(origin + value * scale, -kFar, kFar)));
}

RECT ToDevice(const platform::SurfaceView& view, const RECT& rect) {
  return {ToDevice(view.originX, view.scale, rect.left), ToDevice(view.originY, view.scale, rect.top),
          ToDevice(view.originX, view.scale, rect.right), ToDevice(view.originY, view.scale, rect.bottom)};
}

/// The destination in device pixels. Its size doesn't depend on its place, so that scrolling by a logical
/// unit moves the same scaled picture even where a unit isn't a whole number of device pixels.
RECT PlaceOf(const platform::SurfaceView& view, const RECT& destination) {
  RECT place = ToDevice(view, destination);
  place.right =
      place.left + ToDevice(0, view.scale, static_cast<double>(destination.right) - destination.left);
  place.bottom =
      place.top + ToDevice(0, view.scale, static_cast<double>(destination.bottom) - destination.top);
  return place;
}

RECT SourceOf(const PixelStorage& pixels, const PaintRects& rects) {
  const RECT whole{0, 0, pixels.Width(), pixels.Height()};
  if (rects.source == nullptr) return whole;
  const RECT source = Intersect(*rects.source, whole);
  if (IsEmpty(source) || source.left != rects.source->left || source.top != rects.source->top ||
      source.right != rects.source->right || source.bottom != rects.source->bottom)
    Fail(kErrorInvalidParameter, "The rectangle (%d, %d, %d, %d) isn't a part of an image of %d by %d pixels",
         rects.source->left, rects.source->top, rects.source->right, rects.source->bottom, pixels.Width(),
         pixels.Height());
  return source;
}

/// The result pixels whose centres lie on source pixels from begin on: (2 d + 1) * length / (2 size) >=
/// begin.
LONG FirstShowing(std::int64_t begin, std::int64_t length, std::int64_t size) {
  const std::int64_t twice = (2 * begin * size + length - 1) / length;  // 2 d + 1 at least
  return static_cast<LONG>(std::clamp<std::int64_t>(twice / 2, 0, size));
}

RECT ShownBy(const RECT& sourceClip, const Scaling& scaling) {
  const std::int64_t left = std::max<std::int64_t>(0, std::int64_t{sourceClip.left} - scaling.sourceLeft);
  const std::int64_t top = std::max<std::int64_t>(0, std::int64_t{sourceClip.top} - scaling.sourceTop);
  const std::int64_t right = std::max<std::int64_t>(0, std::int64_t{sourceClip.right} - scaling.sourceLeft);
  const std::int64_t bottom = std::max<std::int64_t>(0, std::int64_t{sourceClip.bottom} - scaling.sourceTop);
  return {FirstShowing(left, scaling.sourceWidth, scaling.width),
          FirstShowing(top, scaling.sourceHeight, scaling.height),
          FirstShowing(right, scaling.sourceWidth, scaling.width),
          FirstShowing(bottom, scaling.sourceHeight, scaling.height)};
}

/// The operation's code is a truth table over pattern, source and destination bits.
std::uint32_t Combine(unsigned code, std::uint32_t source, std::uint32_t destination) {
  std::uint32_t result = 0;
  for (unsigned i = 0; i < 4; ++i)
    if ((code >> i & 1) != 0)
      result |= ((i & 2) != 0 ? source : ~source) & ((i & 1) != 0 ? destination : ~destination);
  return result | 0xff000000U;
}

unsigned RasterCode(std::uint32_t rasterOperation) {
  const unsigned code = rasterOperation >> 16 & 0xff;
  if ((code & 15) != code >> 4)
    Fail(kErrorUnsupported, "An image can't be painted by the raster operation %06x, which needs a brush",
         rasterOperation);
  return code & 15;
}

RECT Moved(const RECT& rect, LONG dx, LONG dy) {
  return {rect.left + dx, rect.top + dy, rect.right + dx, rect.bottom + dy};
}

/// What of the part, in pixels of the surface, shows the picture at its place already. A scroll repaints all
/// of a window: what it showed is then moved there first, and the surface's pixels stand elsewhere.
RECT BringThere(const platform::SurfaceView& view, const RECT& part, POINT corner, std::uint32_t*& pixels) {
  const platform::SurfaceMark& mark = *view.mark;
  const LONG dx = corner.x - mark.x;
  const LONG dy = corner.y - mark.y;
  if (dx == 0 && dy == 0) return Intersect(mark.shown, part);
  const RECT there = Intersect(Moved(mark.shown, dx, dy), part);
  const bool isWhole =
      part.left == 0 && part.top == 0 && part.right == view.width && part.bottom == view.height;
  if (!isWhole || IsEmpty(there)) return {};
  std::uint32_t* const moved = platform::MoveSurface(view.dc, dx, dy);
  if (moved == nullptr) return {};
  pixels = moved;
  return there;
}

/// Draws a part of a surface that is kept for the next paint, in pixels of the surface.
void PaintKept(const platform::SurfaceView& view, const Picture& picture, const RECT& part, POINT corner) {
  std::uint32_t* pixels = view.pixels;
  RECT there{};
  if (view.mark != nullptr && view.mark->picture != 0 &&
      view.mark->picture == ViewCache::Instance().NumberOf(picture))
    there = BringThere(view, part, corner, pixels);
  if (Contains(there, part)) return;
  if (view.mark != nullptr) *view.mark = {};  // should drawing fail
  const std::uint64_t number = ViewCache::Instance().Draw(
      picture, {Moved(part, -corner.x, -corner.y), Moved(there, -corner.x, -corner.y)},
      pixels + part.top * view.stride + part.left, view.stride);
  if (view.mark != nullptr) *view.mark = {number, corner.x, corner.y, part};
}

/// part: in pixels of the scaled picture; out: where its first pixel goes.
void PaintPart(const Picture& picture, const RECT& part, std::uint32_t* out, std::ptrdiff_t stride,
               std::uint32_t rasterOperation) {
  if (rasterOperation == kSourceCopy) {
    RenderScaled(picture.pixels, picture.order, picture.scaling, part, out, stride);
    return;
  }
  const unsigned code = RasterCode(rasterOperation);
  const auto width = static_cast<std::size_t>(part.right - part.left);
  std::vector<std::uint32_t> rows(width * BoxScaler::kRows);
  for (LONG top = part.top; top < part.bottom; top += BoxScaler::kRows) {
    const RECT band{part.left, top, part.right, std::min<LONG>(part.bottom, top + BoxScaler::kRows)};
    RenderScaled(picture.pixels, picture.order, picture.scaling, band, rows.data(),
                 static_cast<std::ptrdiff_t>(width));
    const std::uint32_t* source = rows.data();
    for (LONG y = band.top; y < band.bottom; ++y, out += stride, source += width)
      for (std::size_t x = 0; x < width; ++x) out[x] = Combine(code, source[x], out[x]);
  }
}

}  // namespace

void PaintOnSurface(const platform::SurfaceView& view, Bitmap* bitmap, const PaintRects& rects,
                    std::uint32_t rasterOperation, PaintUse use) {
  const PixelStorage& pixels = RequirePixels(bitmap, "paint");
  if (rects.destination == nullptr) Fail(kErrorInvalidParameter, "The rectangle to paint into is missing");
  RasterCode(rasterOperation);
  const RECT source = SourceOf(pixels, rects);
  const RECT place = PlaceOf(view, *rects.destination);
  if (IsEmpty(place)) return;
  const Scaling scaling{source.left,
                        source.top,
                        source.right - source.left,
                        source.bottom - source.top,
                        place.right - place.left,
                        place.bottom - place.top};

  RECT shown{0, 0, scaling.width, scaling.height};
  if (rects.sourceClip != nullptr) shown = Intersect(shown, ShownBy(*rects.sourceClip, scaling));
  RECT limit = Intersect(
      {shown.left + place.left, shown.top + place.top, shown.right + place.left, shown.bottom + place.top},
      {0, 0, view.width, view.height});
  if (rects.destinationClip != nullptr) limit = Intersect(limit, ToDevice(view, *rects.destinationClip));
  for (const RECT& clip : view.clip) {
    const RECT part = Intersect(limit, clip);
    if (IsEmpty(part)) continue;
    const Picture picture{pixels, bitmap->Order, scaling};
    if (rasterOperation == kSourceCopy && use == PaintUse::Again) {
      PaintKept(view, picture, part, {place.left, place.top});
      continue;
    }
    if (view.mark != nullptr) *view.mark = {};
    PaintPart(picture, Moved(part, -place.left, -place.top), view.pixels + part.top * view.stride + part.left,
              view.stride, rasterOperation);
  }
}

}  // namespace imaging
