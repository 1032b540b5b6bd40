#include <QtGui/QPainter>

#include "platform/graphics/detail/dc_record.h"

namespace platform {
namespace {

void DrawClipped(QPainter& painter, const QRegion& clip, QPoint origin, double scale,
                 const std::function<void(QPainter&)>& draw) {
  painter.setClipRegion(clip.translated(-origin));
  painter.translate(-origin);
  painter.scale(scale, scale);
  draw(painter);
}

}  // namespace

bool PaintWithQt(DcRecord& dc, const QRect& units, const std::function<void(QPainter&)>& draw) {
  if (dc.kind == DcKind::Painter) {
    if (dc.painter == nullptr) return false;
    dc.painter->save();
    dc.painter->setClipRegion(ClipOf(dc), Qt::IntersectClip);
    draw(*dc.painter);
    dc.painter->restore();
    return true;
  }
  const auto target = TargetOf(dc);
  if (!target) return false;
  const auto parts = ClippedPixels(dc, *target, PixelsOf(dc, units));
  QRegion clip;
  for (const QRect& part : parts) clip += part;
  if (clip.isEmpty()) return true;
  if (target->IsPlain32() && target->stride > 0) {
    QImage image(target->top, target->width, target->height, target->stride, QImage::Format_RGB32);
    QPainter painter(&image);
    DrawClipped(painter, clip, {}, ScaleOf(dc), draw);
  } else {
    // Qt can't draw on other layouts: it draws on a copy of the part, which is then written back.
    const QRect box = clip.boundingRect();
    QImage image(box.size(), QImage::Format_RGB32);
    if (image.isNull()) return false;
    const auto row = [&](int y) { return reinterpret_cast<std::uint32_t*>(image.scanLine(y - box.y())); };
    for (int y = box.top(); y <= box.bottom(); ++y) ReadRow(*target, box.x(), y, box.width(), row(y));
    {
      QPainter painter(&image);
      DrawClipped(painter, clip, box.topLeft(), ScaleOf(dc), draw);
    }
    RowWriter writer(*target);
    for (const QRect& part : parts)
      for (int y = part.top(); y <= part.bottom(); ++y)
        writer.Write(part.x(), y, part.width(), row(y) + (part.x() - box.x()));
  }
  Drawn(dc, units);
  return true;
}

}  // namespace platform
