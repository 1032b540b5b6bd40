#include <QtGui/QPainter>
#include <algorithm>

#include "platform/graphics/detail/dc_record.h"

using platform::DcRecord;
using platform::FindDc;

namespace platform {
namespace {

constexpr unsigned kTableWhite = 0xff;

bool FillPainter(const DcRecord& dc, const QRect& units, unsigned table, std::uint32_t brush) {
  if (dc.painter == nullptr || UsesTarget(table)) return false;
  const std::uint32_t color = UsesBrush(table) ? brush : table == kTableWhite ? kWhite : kBlack;
  for (const QRect& part : ClipOf(dc)) dc.painter->fillRect(part & units, QColor::fromRgb(color));
  return true;
}

void FillRaster(const Raster& target, const QRect& part, unsigned table, std::uint32_t brush) {
  const int count = part.width();
  std::vector<std::uint32_t> row(static_cast<std::size_t>(count));
  RowWriter writer(target);
  // The table doesn't look at the source: any row will do for it.
  if (!UsesTarget(table)) CombineRow(table, brush, row.data(), row.data(), count);
  for (int y = part.top(); y <= part.bottom(); ++y) {
    if (UsesTarget(table)) {
      ReadRow(target, part.x(), y, count, row.data());
      CombineRow(table, brush, row.data(), row.data(), count);
    }
    writer.Write(part.x(), y, count, row.data());
  }
}

}  // namespace

bool FillUntold(DcRecord& dc, const QRect& units, unsigned table, std::uint32_t brush) {
  if (dc.kind == DcKind::Painter) return FillPainter(dc, units, table, brush);
  const auto target = TargetOf(dc);
  if (!target) return false;
  for (const QRect& part : ClippedPixels(dc, *target, PixelsOf(dc, units)))
    FillRaster(*target, part, table, brush);
  return true;
}

bool FillUnits(DcRecord& dc, const QRect& units, unsigned table, std::uint32_t brush) {
  if (!FillUntold(dc, units, table, brush)) return false;
  Drawn(dc, units);
  return true;
}

}  // namespace platform

namespace {

// A theme colour's number plus 1 may stand for the brush.
std::optional<std::uint32_t> FillColor(const DcRecord& dc, HBRUSH brush) {
  if (GetObjectType(brush) == OBJ_BRUSH) return platform::BrushPixel(dc, brush);
  const auto number = reinterpret_cast<std::uintptr_t>(brush);
  if (number == 0 || number > COLOR_INFOBK + 1) return std::nullopt;
  return platform::PixelOf(GetSysColor(static_cast<int>(number) - 1));
}

}  // namespace

BOOL PatBlt(HDC dc, int x, int y, int width, int height, DWORD operation) {
  DcRecord* record = FindDc(dc);
  const unsigned table = platform::TruthTable(operation);
  if (record == nullptr || platform::UsesSource(table)) return FALSE;
  const QRect units = platform::UnitsOf(*record, x, y, width, height);
  if (!platform::UsesBrush(table)) return platform::FillUnits(*record, units, table, 0);
  const auto brush = platform::BrushPixel(*record, record->state.brush);
  // A hollow brush draws nothing, which is no failure.
  return !brush || platform::FillUnits(*record, units, table, *brush);
}

int FillRect(HDC dc, LPCRECT rect, HBRUSH brush) {
  DcRecord* record = FindDc(dc);
  if (record == nullptr || rect == nullptr) return 0;
  const auto color = FillColor(*record, brush);
  if (!color) return GetObjectType(brush) == OBJ_BRUSH;
  if (IsRectEmpty(rect)) return 1;
  const CRect r(*rect);
  return platform::FillUnits(*record, platform::UnitsOf(*record, r.left, r.top, r.Width(), r.Height()),
                             platform::TruthTable(PATCOPY), *color);
}

BOOL InvertRect(HDC dc, LPCRECT rect) {
  if (rect == nullptr) return FALSE;
  const CRect r(*rect);
  return r.IsRectEmpty() || PatBlt(dc, r.left, r.top, r.Width(), r.Height(), DSTINVERT);
}

COLORREF SetPixel(HDC dc, int x, int y, COLORREF color) {
  DcRecord* record = FindDc(dc);
  if (record == nullptr) return CLR_INVALID;
  const QRect units = platform::UnitsOf(*record, x, y, 1, 1);
  if (!platform::ClipOf(*record).contains(units.topLeft())) return CLR_INVALID;
  const std::uint32_t pixel = platform::ResolveColor(*record, color);
  if (!platform::FillUnits(*record, units, platform::TruthTable(PATCOPY), pixel)) return CLR_INVALID;
  const COLORREF set = GetPixel(dc, x, y);
  return set == CLR_INVALID ? platform::ColorOf(pixel) : set;
}

COLORREF GetPixel(HDC dc, int x, int y) {
  const DcRecord* record = FindDc(dc);
  const auto target = record == nullptr ? std::nullopt : platform::TargetOf(*record);
  if (!target) return CLR_INVALID;
  const QRect units = platform::UnitsOf(*record, x, y, 1, 1);
  const QPoint at = platform::PixelsOf(*record, units).topLeft();
  if (!platform::ClipOf(*record).contains(units.topLeft()) ||
      !QRect(0, 0, target->width, target->height).contains(at))
    return CLR_INVALID;
  std::uint32_t pixel = 0;
  platform::ReadRow(*target, at.x(), at.y(), 1, &pixel);
  return platform::ColorOf(pixel);
}
