#pragma once

#include <QtCore/QPointF>
#include <functional>
#include <map>
#include <optional>
#include <vector>

#include "platform/graphics/detail/device_context.h"
#include "platform/graphics/detail/objects.h"

// The record behind a device context, and what the drawing functions share. Three kinds of coordinates:
// logical (what programs pass) -> units (logical moved by the origins; 96 to the inch, or a printer's dots)
// -> pixels (units times scale, edges rounded).

class QPainter;

namespace platform {

class WindowSurface;

/// What SaveDC keeps.
struct DcState {
  HGDIOBJ brush = nullptr;
  HGDIOBJ pen = nullptr;
  HGDIOBJ font = nullptr;
  HGDIOBJ palette = nullptr;
  HGDIOBJ bitmap = nullptr;  ///< memory device contexts only
  COLORREF textColor = 0x000000;
  COLORREF bkColor = 0xffffff;
  int bkMode = OPAQUE;
  POINT windowOrg = {};
  POINT viewportOrg = {};
  POINT current = {};           ///< pen position, logical
  std::optional<QRegion> clip;  ///< the program's own, in units; none: not clipped
};

enum class DcKind { Memory, Window, Painter };

struct DcRecord {
  DcKind kind = DcKind::Memory;
  DcState state;
  std::vector<DcState> saved;
  double scale = 1;  ///< pixels per unit; of a memory device context: for the bitmaps made for it

  QImage* image = nullptr;  ///< window: borrowed, may be null
  QRegion visible;          ///< window: units
  DrawnFunction onDrawn;
  WindowSurface* kept = nullptr;  ///< window: borrowed, what image is a part of; null: a plain image

  QPainter* painter = nullptr;  ///< painter: borrowed, null between pages
  ImageDrawer drawImage;        ///< painter: takes images in the painter's place
  std::map<int, int> caps;
  std::function<void()> onDelete;

  std::vector<RECT> lockedClip;  ///< pixels; what LockSurface has handed out
};

HandleTable<DcRecord, HDC>& DeviceContexts();
inline DcRecord* FindDc(HDC dc) {
  return DeviceContexts().Get(dc);
}

/// A new record with the default objects selected.
HDC AddDc(std::unique_ptr<DcRecord> record);
/// Lets the selected objects go and takes the record out.
bool RemoveDc(HDC dc);
/// Exchanges one selected object, keeping count. For handles that are known to fit.
HGDIOBJ ExchangeSelected(HGDIOBJ& place, HGDIOBJ object);

/// Logical corner and extent (which may be negative) as a rectangle in units.
QRect UnitsOf(const DcRecord& dc, std::int64_t x, std::int64_t y, std::int64_t width, std::int64_t height);
QPoint UnitsOf(const DcRecord& dc, int x, int y);
/// The pixels that a rectangle in units covers.
QRect PixelsOf(const DcRecord& dc, const QRect& units);

/// The pixels that a window's or memory device context draws into; none: it has no surface.
std::optional<Raster> TargetOf(const DcRecord& dc);
double ScaleOf(const DcRecord& dc);
/// Where drawing is allowed, in units.
QRegion ClipOf(const DcRecord& dc);
/// The clipped parts of a rectangle of pixels; they don't overlap.
std::vector<QRect> ClippedPixels(const DcRecord& dc, const Raster& target, const QRect& pixels);
/// Tells the window that it has changed there, and what a painter knew about that place is forgotten.
void Drawn(DcRecord& dc, const QRect& units);
/// The same for a painter that keeps the surface's mark itself.
void TellDrawn(DcRecord& dc, const QRect& units);

/// 0xffRRGGBB of a colour value, PALETTEINDEX form included.
std::uint32_t ResolveColor(const DcRecord& dc, COLORREF color);
/// The brush's pixel; none for a hollow or dead one.
std::optional<std::uint32_t> BrushPixel(const DcRecord& dc, HGDIOBJ brush);
/// Fills with a truth table that doesn't use the source.
bool FillUnits(DcRecord& dc, const QRect& units, unsigned table, std::uint32_t brush);
/// The same without telling the window, for shapes of many parts.
bool FillUntold(DcRecord& dc, const QRect& units, unsigned table, std::uint32_t brush);
/// Lets Qt draw within a rectangle in units, clipped, with units as the painter's coordinates. False if there
/// is nothing to draw on.
bool PaintWithQt(DcRecord& dc, const QRect& units, const std::function<void(QPainter&)>& draw);

/// Copies source pixels (of any size) onto a rectangle in units; the workhorse of all blits.
struct BlitSource {
  Raster raster;
  QRect pixels;  ///< the part to take, in the raster's pixels; may reach outside
  bool mirrorX = false;
  bool mirrorY = false;
  std::uint32_t background =
      kWhite;  ///< the source's pixels of this colour become 1 on a bilevel device bitmap
};
bool BlitUnits(DcRecord& dc, const QRect& units, const BlitSource& source, unsigned table);

}  // namespace platform
