#pragma once

#include <QtGui/QRegion>
#include <cstdint>
#include <memory>
#include <variant>
#include <vector>

#include "platform/base/detail/handle_table.h"
#include "platform/graphics/detail/raster.h"
#include "platform/graphics/gdi.h"

// The records behind drawing objects.

namespace platform {

struct BrushRecord {
  COLORREF color = 0;
  bool hollow = false;
  int themeColor = -1;  ///< COLOR_..., looked up at each use; -1: color counts
};
struct PenRecord {
  int style = PS_SOLID;
  int width = 1;  ///< units; 0 is drawn as 1
  COLORREF color = 0;
};
struct PaletteRecord {
  std::vector<PALETTEENTRY> entries;
};
struct FontRecord {
  LOGFONTA log = {};
};
struct BitmapRecord {
  int width = 0;  ///< units; the raster has scale times as many pixels
  int height = 0;
  double scale = 1;
  Raster raster;                     ///< points into words and colors
  std::vector<std::uint32_t> words;  ///< whole rows, each padded to 32 bits
  std::vector<std::uint32_t> colors;
  bool section = false;  ///< made by CreateDIBSection: the program sees the pixels
  HDC inside = nullptr;  ///< the memory device context that it is selected in
};

struct GdiRecord {
  std::variant<BrushRecord, PenRecord, PaletteRecord, FontRecord, BitmapRecord> what;
  bool permanent = false;  ///< stock objects and theme brushes
  int selected = 0;        ///< device contexts that hold it just now
};

HandleTable<GdiRecord, HGDIOBJ>& Objects();

/// The record if the handle is alive and of that kind, or null.
template <typename Kind>
Kind* ObjectAs(HGDIOBJ handle) {
  GdiRecord* record = Objects().Get(handle);
  return record == nullptr ? nullptr : std::get_if<Kind>(&record->what);
}

template <typename Handle, typename Kind>
Handle AddObject(Kind kind, bool permanent = false) {
  auto record = std::make_unique<GdiRecord>();
  record->what = std::move(kind);
  record->permanent = permanent;
  return static_cast<Handle>(Objects().Add(std::move(record)));
}

/// Memory for a bitmap of zeros, its raster set up. False if it is empty, too large, or there is no memory.
bool AllocateBitmap(BitmapRecord& bitmap, int width, int height, int bits, double scale = 1);
/// The one-pixel bilevel bitmap that a new memory device context holds.
HBITMAP StockBitmap();
int RegionKind(const QRegion& region);
inline QRect ToQRect(const RECT& rect) {
  return {QPoint(rect.left, rect.top), QPoint(rect.right - 1, rect.bottom - 1)};
}
inline RECT ToRect(const QRect& rect) {
  return {rect.x(), rect.y(), rect.x() + rect.width(), rect.y() + rect.height()};
}

}  // namespace platform
