#pragma once

#include <algorithm>
#include <array>
#include <cstdint>
#include <limits>
#include <optional>

#include "imaging/ltwrap.h"
#include "platform/base/types.h"
#include "print/print_format.h"
#include "viewing/square_pixels.h"

// How large a page comes out on the sheet, and when the paper turns for it. Sizes are in device pixels unless
// a name says inches.
namespace sheet {

enum class Orientation : int { Portrait = 1, Landscape = 2 };  // as in a DEVMODE

/// The printable area and its resolution.
struct Measures {
  int width;
  int height;
  square_pixels::Resolution dpi;
};

/// The paper of a job between two pages.
class Paper {
 public:
  virtual ~Paper() = default;
  /// Printable area and resolution of the sheet as it lies now.
  virtual Measures Measure() const = 0;
  /// True if the paper has turned, so that it must be measured again.
  virtual bool TurnTo(Orientation orientation) = 0;
};

/// A page in its own pixels. A resolution of 0 is unknown.
struct Page {
  int width;
  int height;
  square_pixels::Resolution dpi;
};

/// A page as it is drawn: one that is stored on its side stands up.
inline Page UprightPage(const struct_LEAD_Bitmap& stored) {
  constexpr int kFirstOnItsSide = 5;  // TIFF 6.0, tag 274
  const Page page{stored.Width, stored.Height, {stored.XResolution, stored.YResolution}};
  if (stored.ViewPerspective < kFirstOnItsSide) return page;
  return {page.height, page.width, {page.dpi.y, page.dpi.x}};
}

/// The fraction is cut off. What no int holds becomes the nearest one, and no number at all becomes 0.
inline int CutOff(double value) {
  constexpr int kLargest = std::numeric_limits<int>::max();
  if (!(value > -static_cast<double>(kLargest))) return value <= 0 ? -kLargest : 0;
  return value >= kLargest ? kLargest : static_cast<int>(value);
}

/// Whether either side does.
inline bool Exceeds(SIZE size, SIZE limit) {
  return size.cx > limit.cx || size.cy > limit.cy;
}

/// The printable area in dots.
inline SIZE Area(const Measures& paper) {
  return {paper.width, paper.height};
}

/// Squares and upright shapes are printed upright.
inline Orientation WantedFor(SIZE size) {
  return static_cast<double>(size.cx) / size.cy <= 1.0 ? Orientation::Portrait : Orientation::Landscape;
}

/// The paper that a page's first look asks for, by its shape in inches. Here a square lies down.
inline Orientation PresetFor(const Page& page) {
  const double across = static_cast<double>(page.width) / page.dpi.x;
  const double down = static_cast<double>(page.height) / page.dpi.y;
  return down > across ? Orientation::Portrait : Orientation::Landscape;
}

/// Shrinks a size that is too large, keeping its shape, first to the width and then to the height.
inline void FitInto(SIZE& size, SIZE limit) {
  if (size.cx > limit.cx) {
    size.cy = CutOff(static_cast<double>(size.cy) * limit.cx / size.cx);
    size.cx = limit.cx;
  }
  if (size.cy > limit.cy) {
    size.cx = CutOff(static_cast<double>(size.cx) * limit.cy / size.cy);
    size.cy = limit.cy;
  }
}

/// The factor that makes the page largest on the paper, lying or standing. The first of two equal ones wins.
inline double BestFactor(double width, double height, const Measures& paper) {
  const double across = paper.width;
  const double down = paper.height;
  double best = across / width;
  double bestArea = 0;
  for (const double factor : std::array{across / width, down / width, across / height, down / height}) {
    const double a = width * factor;
    const double b = height * factor;
    const bool fits = (a <= across && b <= down) || (a <= down && b <= across);
    if (!fits || !(a * b > bestArea)) continue;
    best = factor;
    bestArea = a * b;
  }
  return best;
}

/// What a job does with a page whose resolutions differ: borrowed bitmaps are corrected by the screen's
/// resolution, since they were made square for it.
using Correction = std::optional<square_pixels::Resolution>;

/// Whether both resolutions say something.
inline bool IsKnown(square_pixels::Resolution dpi) {
  return dpi.x != 0 && dpi.y != 0;
}

/// A page in its true size. The resolution must be known.
inline SIZE ActualSize(const Page& page, const Correction& correction, square_pixels::Resolution device) {
  SIZE pixels{page.width, page.height};
  if (correction) pixels = square_pixels::Narrowed(pixels, page.dpi, *correction);
  const double inchesAcross = static_cast<double>(pixels.cx) / page.dpi.x;
  const double inchesDown = static_cast<double>(pixels.cy) / page.dpi.y;
  return {CutOff(inchesAcross * device.x), CutOff(inchesDown * device.y)};
}

/// Enlarges or shrinks to the paper, which turns if the page is larger on it then. A paper that can't turn
/// shrinks the page again.
inline SIZE FitToPaper(SIZE size, Paper& paper) {
  Measures measures = paper.Measure();
  const double factor = BestFactor(size.cx, size.cy, measures);
  SIZE fitted{CutOff(factor * size.cx), CutOff(factor * size.cy)};
  if (!Exceeds(fitted, Area(measures))) return fitted;
  if (paper.TurnTo(WantedFor(fitted))) measures = paper.Measure();
  FitInto(fitted, Area(measures));
  return fitted;
}

/// Pixel to pixel: what doesn't fit is cut off by the device.
inline SIZE PlacePixels(const Page& page, Paper& paper) {
  const SIZE size{page.width, page.height};
  if (Exceeds(size, Area(paper.Measure()))) paper.TurnTo(WantedFor(size));
  return size;
}

/// Actual size: what doesn't fit is cut off by the device. The resolution must be known.
inline SIZE PlaceActualSize(const Page& page, const Correction& correction, Paper& paper) {
  const Measures measures = paper.Measure();
  const SIZE size = ActualSize(page, correction, measures.dpi);
  if (!Exceeds(size, Area(measures)) || !paper.TurnTo(WantedFor(size))) return size;
  return ActualSize(page, correction, paper.Measure().dpi);
}

/// Size in dots of a page that fills the sheet as far as its shape allows; the paper is turned for it.
inline SIZE PlaceFitted(const Page& page, const Correction& correction, Paper& paper) {
  if (!IsKnown(page.dpi)) return FitToPaper({page.width, page.height}, paper);
  return FitToPaper(ActualSize(page, correction, paper.Measure().dpi), paper);
}

/// The size of a page in a format, at least a device pixel each way: a line thinner than that is still seen.
/// Nothing for a value that is no format.
inline std::optional<SIZE> Place(int format, const Page& page, const Correction& correction, Paper& paper) {
  SIZE size{};
  switch (format) {
    case PrintFormatFitToPage:
      size = PlaceFitted(page, correction, paper);
      break;
    case PrintFormatActualSize:
      size = IsKnown(page.dpi) ? PlaceActualSize(page, correction, paper)
                               : FitToPaper({page.width, page.height}, paper);
      break;
    case PrintFormatPixelToPixel:
      size = PlacePixels(page, paper);
      break;
    default:
      return std::nullopt;
  }
  return SIZE{std::max(size.cx, 1), std::max(size.cy, 1)};
}

/// A page whose pixels are repeated until they are square on the printer, and which then has one resolution,
/// the higher. Nothing if the resolutions tell nothing.
inline std::optional<Page> MadeSquare(const Page& page, square_pixels::Resolution printer) {
  const square_pixels::Correction correction = square_pixels::WholeFactor(page.dpi, printer);
  if (!correction.known) return std::nullopt;
  const bool wider =
      square_pixels::Product(page.dpi.x, printer.x) < square_pixels::Product(page.dpi.y, printer.y);
  const int dpi = wider ? page.dpi.y : page.dpi.x;
  return Page{square_pixels::Stretched(page.width, correction.stretch.across),
              square_pixels::Stretched(page.height, correction.stretch.down),
              {dpi, dpi}};
}

}  // namespace sheet
