#include "platform/graphics/detail/dc_record.h"

#include <algorithm>
#include <cmath>
#include <utility>

#include "platform/graphics/detail/window_surface.h"

namespace platform {
namespace {

// Far beyond any surface, and small enough that sums and the scaling of positions stay within 32 bits.
constexpr int kFar = 1 << 26;

int Near(std::int64_t position) {
  return static_cast<int>(std::clamp<std::int64_t>(position, -kFar, kFar));
}

int RoundEdge(int units, double scale) {
  return static_cast<int>(std::floor(units * scale + 0.5));
}

const BitmapRecord* SelectedBitmap(const DcRecord& dc) {
  return ObjectAs<BitmapRecord>(dc.state.bitmap);
}

// Unbounded where the caps don't tell: the painter's device clips for itself.
QRect PrintableArea(const DcRecord& dc) {
  const auto width = dc.caps.find(HORZRES);
  const auto height = dc.caps.find(VERTRES);
  if (width == dc.caps.end() || height == dc.caps.end()) return {-kFar, -kFar, 2 * kFar, 2 * kFar};
  return {0, 0, width->second, height->second};
}

void ForgetMark(DcRecord& dc, const QRect& units) {
  const QRect shown = ToQRect(dc.kept->mark.shown);
  const QRegion drawn = ClipOf(dc) & units.adjusted(-1, -1, 1, 1);  // lines tell a pixel less
  if (std::any_of(drawn.begin(), drawn.end(),
                  [&](const QRect& part) { return PixelsOf(dc, part).intersects(shown); }))
    dc.kept->mark = {};
}

}  // namespace

// Never destroyed: wrappers with static storage may still use it while the process ends.
HandleTable<DcRecord, HDC>& DeviceContexts() {
  static auto& table = *new HandleTable<DcRecord, HDC>;
  return table;
}

HDC AddDc(std::unique_ptr<DcRecord> record) {
  DcState& state = record->state;
  ExchangeSelected(state.brush, GetStockObject(WHITE_BRUSH));
  ExchangeSelected(state.pen, GetStockObject(BLACK_PEN));
  ExchangeSelected(state.font, GetStockObject(SYSTEM_FONT));
  ExchangeSelected(state.palette, GetStockObject(DEFAULT_PALETTE));
  if (record->kind == DcKind::Memory) ExchangeSelected(state.bitmap, StockBitmap());
  return DeviceContexts().Add(std::move(record));
}

bool RemoveDc(HDC dc) {
  const auto record = DeviceContexts().Remove(dc);
  if (!record) return false;
  if (auto* bitmap = ObjectAs<BitmapRecord>(record->state.bitmap)) bitmap->inside = nullptr;
  DcState& state = record->state;
  for (HGDIOBJ* place : {&state.brush, &state.pen, &state.font, &state.palette, &state.bitmap})
    ExchangeSelected(*place, nullptr);
  if (record->onDelete) record->onDelete();
  return true;
}

HGDIOBJ ExchangeSelected(HGDIOBJ& place, HGDIOBJ object) {
  if (GdiRecord* record = Objects().Get(object)) ++record->selected;
  if (GdiRecord* record = Objects().Get(place)) --record->selected;
  return std::exchange(place, object);
}

QPoint UnitsOf(const DcRecord& dc, int x, int y) {
  return {Near(std::int64_t{x} - dc.state.windowOrg.x + dc.state.viewportOrg.x),
          Near(std::int64_t{y} - dc.state.windowOrg.y + dc.state.viewportOrg.y)};
}

QRect UnitsOf(const DcRecord& dc, std::int64_t x, std::int64_t y, std::int64_t width, std::int64_t height) {
  x += std::int64_t{dc.state.viewportOrg.x} - dc.state.windowOrg.x;
  y += std::int64_t{dc.state.viewportOrg.y} - dc.state.windowOrg.y;
  const int left = Near(std::min(x, x + width));
  const int top = Near(std::min(y, y + height));
  return {left, top, Near(std::max(x, x + width)) - left, Near(std::max(y, y + height)) - top};
}

QRect PixelsOf(const DcRecord& dc, const QRect& units) {
  const double scale = ScaleOf(dc);
  const int left = RoundEdge(units.x(), scale);
  const int top = RoundEdge(units.y(), scale);
  return {left, top, RoundEdge(units.x() + units.width(), scale) - left,
          RoundEdge(units.y() + units.height(), scale) - top};
}

std::optional<Raster> TargetOf(const DcRecord& dc) {
  if (dc.kind == DcKind::Memory) {
    const BitmapRecord* bitmap = SelectedBitmap(dc);
    return bitmap == nullptr ? std::nullopt : std::optional(bitmap->raster);
  }
  if (dc.kind == DcKind::Painter || dc.image == nullptr || dc.image->depth() != 32) return std::nullopt;
  return Raster{.top = dc.image->bits(),
                .stride = static_cast<std::ptrdiff_t>(dc.image->bytesPerLine()),
                .width = dc.image->width(),
                .height = dc.image->height(),
                .bits = 32};
}

double ScaleOf(const DcRecord& dc) {
  const BitmapRecord* bitmap = SelectedBitmap(dc);
  // The stock bitmap stands for "nothing selected": what is made for the device context takes its own scale.
  if (bitmap == nullptr || dc.state.bitmap == StockBitmap()) return dc.scale;
  return bitmap->scale;
}

QRegion ClipOf(const DcRecord& dc) {
  QRegion clip = dc.visible;
  if (const BitmapRecord* bitmap = SelectedBitmap(dc)) clip = QRect(0, 0, bitmap->width, bitmap->height);
  if (dc.kind == DcKind::Painter) clip = PrintableArea(dc);
  return dc.state.clip ? clip & *dc.state.clip : clip;
}

std::vector<QRect> ClippedPixels(const DcRecord& dc, const Raster& target, const QRect& pixels) {
  const QRect inside = pixels & QRect(0, 0, target.width, target.height);
  std::vector<QRect> parts;
  for (const QRect& rect : ClipOf(dc)) {
    const QRect part = PixelsOf(dc, rect) & inside;
    if (!part.isEmpty()) parts.push_back(part);
  }
  return parts;
}

void Drawn(DcRecord& dc, const QRect& units) {
  if (dc.kept != nullptr && dc.kept->mark.picture != 0) ForgetMark(dc, units);
  TellDrawn(dc, units);
}

void TellDrawn(DcRecord& dc, const QRect& units) {
  if (!dc.onDrawn) return;
  const QRect changed = units & ClipOf(dc).boundingRect();
  // A copy: the window may drop the device context while it is being told.
  const DrawnFunction tell = dc.onDrawn;
  if (!changed.isEmpty()) tell(changed);
}

std::uint32_t ResolveColor(const DcRecord& dc, COLORREF color) {
  constexpr COLORREF kPaletteIndex = 1;
  if (color >> 24 != kPaletteIndex) return PixelOf(color);
  const auto* palette = ObjectAs<PaletteRecord>(dc.state.palette);
  const std::size_t index = color & 0xffff;
  if (palette == nullptr || index >= palette->entries.size()) return kBlack;
  const PALETTEENTRY& entry = palette->entries[index];
  return PixelOf(RGB(entry.peRed, entry.peGreen, entry.peBlue));
}

std::optional<std::uint32_t> BrushPixel(const DcRecord& dc, HGDIOBJ handle) {
  const auto* brush = ObjectAs<BrushRecord>(handle);
  if (brush == nullptr || brush->hollow) return std::nullopt;
  return ResolveColor(dc, brush->themeColor >= 0 ? GetSysColor(brush->themeColor) : brush->color);
}

}  // namespace platform
