#include <QtGui/QPainter>
#include <algorithm>

#include "platform/graphics/detail/dc_record.h"

using platform::DcRecord;
using platform::FindDc;
using platform::PenRecord;

namespace {

int WidthOf(const PenRecord& pen) {
  return std::max(pen.width, 1);
}

const PenRecord* VisiblePen(const DcRecord& dc) {
  const auto* pen = platform::ObjectAs<PenRecord>(dc.state.pen);
  return pen == nullptr || pen->style == PS_NULL ? nullptr : pen;
}

bool IsThinSolid(const PenRecord& pen) {
  return (pen.style == PS_SOLID || pen.style == PS_INSIDEFRAME) && WidthOf(pen) == 1;
}

// The truth table that puts the colour.
constexpr unsigned kCopyPen = 0xf0;

QPen ToQPen(const DcRecord& dc, const PenRecord& pen) {
  constexpr Qt::PenStyle kStyles[] = {Qt::SolidLine,      Qt::DashLine, Qt::DotLine,  Qt::DashDotLine,
                                      Qt::DashDotDotLine, Qt::NoPen,    Qt::SolidLine};
  const QColor color = QColor::fromRgb(platform::ResolveColor(dc, pen.color));
  return {color, static_cast<qreal>(WidthOf(pen)), kStyles[pen.style], Qt::FlatCap, Qt::MiterJoin};
}

// Straight along an axis: the same pixels as a thin rectangle, exact at every scale.
bool FillAlongAxis(DcRecord& dc, const PenRecord& pen, QPoint from, QPoint to) {
  const int dx = to.x() - from.x();
  const int dy = to.y() - from.y();
  // The end stays undrawn: going left or up, the start is the last one of the rectangle.
  const QRect units(dx < 0 ? to.x() + 1 : from.x(), dy < 0 ? to.y() + 1 : from.y(),
                    dx == 0 ? 1 : std::abs(dx), dy == 0 ? 1 : std::abs(dy));
  return platform::FillUnits(dc, units, kCopyPen, platform::ResolveColor(dc, pen.color));
}

// One unit a step along the longer axis, each worked out by itself, so that only the steps inside the clip
// count.
bool FillSlanted(DcRecord& dc, const PenRecord& pen, QPoint from, QPoint to) {
  const QRect clip = platform::ClipOf(dc).boundingRect();
  const bool wide = std::abs(to.x() - from.x()) >= std::abs(to.y() - from.y());
  const int start = wide ? from.x() : from.y();
  const int steps = wide ? to.x() - from.x() : to.y() - from.y();
  const std::int64_t count = std::abs(steps);
  const std::int64_t rise = wide ? to.y() - from.y() : to.x() - from.x();
  const int low = wide ? clip.left() : clip.top();
  const int high = wide ? clip.right() : clip.bottom();
  const std::int64_t first = std::max<std::int64_t>(0, steps > 0 ? low - start : start - high);
  const std::int64_t last = std::min<std::int64_t>(count - 1, steps > 0 ? high - start : start - low);
  const std::uint32_t color = platform::ResolveColor(dc, pen.color);
  bool done = platform::TargetOf(dc).has_value();
  for (std::int64_t i = first; i <= last && done; ++i) {
    const auto across =
        static_cast<int>((2 * i * std::abs(rise) + count) / (2 * count)) * (rise < 0 ? -1 : 1);
    const auto along = static_cast<int>(steps > 0 ? i : -i);
    const QPoint at = from + (wide ? QPoint(along, across) : QPoint(across, along));
    done = platform::FillUntold(dc, QRect(at, QSize(1, 1)), kCopyPen, color);
  }
  platform::Drawn(dc, QRect(from, to).normalized());
  return done;
}

bool DrawLine(DcRecord& dc, QPoint from, QPoint to) {
  const PenRecord* pen = VisiblePen(dc);
  if (pen == nullptr || from == to) return true;
  if (IsThinSolid(*pen) && (from.x() == to.x() || from.y() == to.y()))
    return FillAlongAxis(dc, *pen, from, to);
  if (IsThinSolid(*pen) && dc.kind != platform::DcKind::Painter) return FillSlanted(dc, *pen, from, to);
  const int reach = WidthOf(*pen) + 1;
  const QRect units = QRect(from, to).normalized().adjusted(-reach, -reach, reach, reach);
  const QPen line = ToQPen(dc, *pen);
  return platform::PaintWithQt(dc, units, [&](QPainter& painter) {
    painter.setPen(line);
    // Through the middle of the end units; the flat end leaves the last one out where the line is steep
    // enough.
    painter.drawLine(QLineF(from.x() + 0.5, from.y() + 0.5, to.x() + 0.5, to.y() + 0.5));
  });
}

}  // namespace

BOOL MoveToEx(HDC dc, int x, int y, LPPOINT old) {
  DcRecord* record = FindDc(dc);
  if (record == nullptr) return FALSE;
  if (old != nullptr) *old = record->state.current;
  record->state.current = {x, y};
  return TRUE;
}

BOOL LineTo(HDC dc, int x, int y) {
  DcRecord* record = FindDc(dc);
  if (record == nullptr) return FALSE;
  const POINT from = record->state.current;
  record->state.current = {x, y};
  return DrawLine(*record, platform::UnitsOf(*record, from.x, from.y), platform::UnitsOf(*record, x, y));
}

BOOL Polyline(HDC dc, const POINT* points, int count) {
  DcRecord* record = FindDc(dc);
  if (record == nullptr || points == nullptr || count < 2) return FALSE;
  for (int i = 1; i < count; ++i)
    if (!DrawLine(*record, platform::UnitsOf(*record, points[i - 1].x, points[i - 1].y),
                  platform::UnitsOf(*record, points[i].x, points[i].y)))
      return FALSE;
  return TRUE;
}

BOOL Rectangle(HDC dc, int left, int top, int right, int bottom) {
  DcRecord* record = FindDc(dc);
  if (record == nullptr) return FALSE;
  const QRect all =
      platform::UnitsOf(*record, left, top, std::int64_t{right} - left, std::int64_t{bottom} - top);
  if (all.isEmpty()) return TRUE;
  const PenRecord* pen = VisiblePen(*record);
  const int edge =
      pen == nullptr ? 0 : std::min({WidthOf(*pen), (all.width() + 1) / 2, (all.height() + 1) / 2});
  const QRect inner = all.adjusted(edge, edge, -edge, -edge);
  bool done = true;
  if (pen != nullptr) {
    const std::uint32_t color = platform::ResolveColor(*record, pen->color);
    for (const QRect& side : QRegion(all) - inner)
      done = platform::FillUnits(*record, side, kCopyPen, color) && done;
  }
  const auto brush = platform::BrushPixel(*record, record->state.brush);
  if (brush && !inner.isEmpty()) done = platform::FillUnits(*record, inner, kCopyPen, *brush) && done;
  return done;
}

BOOL Ellipse(HDC dc, int left, int top, int right, int bottom) {
  DcRecord* record = FindDc(dc);
  if (record == nullptr) return FALSE;
  const QRect all =
      platform::UnitsOf(*record, left, top, std::int64_t{right} - left, std::int64_t{bottom} - top);
  if (all.isEmpty()) return TRUE;
  const PenRecord* pen = VisiblePen(*record);
  const auto brush = platform::BrushPixel(*record, record->state.brush);
  const double half = pen == nullptr ? 0 : WidthOf(*pen) / 2.0;
  const QPen outline = pen == nullptr ? QPen(Qt::NoPen) : ToQPen(*record, *pen);
  return platform::PaintWithQt(*record, all, [&](QPainter& painter) {
    painter.setPen(outline);
    painter.setBrush(brush ? QBrush(QColor::fromRgb(*brush)) : QBrush(Qt::NoBrush));
    painter.drawEllipse(QRectF(all).adjusted(half, half, -half, -half));
  });
}
