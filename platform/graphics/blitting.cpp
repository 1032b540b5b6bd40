#include <QtGui/QPainter>
#include <algorithm>
#include <array>
#include <cstring>

#include "platform/graphics/detail/dc_record.h"
#include "platform/graphics/printer_image.h"

using platform::BlitSource;
using platform::DcRecord;
using platform::FindDc;

namespace platform {
namespace {

// Which source column (or row) each target column of a span comes from.
struct Axis {
  int first = 0;             ///< target position of the first entry
  std::vector<int> sources;  ///< in the source raster, all inside it
  bool Steps() const { return sources.back() - sources.front() + 1 == static_cast<int>(sources.size()); }
};

// Takes the source pixel under the target pixel's centre. Target pixels without one are left out at both
// ends.
Axis MapAxis(int from, int count, int targetStart, int targetSize, int sourceStart, int sourceSize,
             bool mirror, int sourceLimit) {
  Axis axis;
  axis.sources.reserve(static_cast<std::size_t>(count));
  for (int at = from; at < from + count; ++at) {
    const std::int64_t i = mirror ? targetStart + targetSize - 1 - at : at - targetStart;
    const std::int64_t source = sourceStart + (2 * i + 1) * sourceSize / (2 * std::int64_t{targetSize});
    if (source < 0 || source >= sourceLimit) continue;
    if (axis.sources.empty()) axis.first = at;
    axis.sources.push_back(static_cast<int>(source));
  }
  return axis;
}

// One row of the source at a time, brought to the target's columns and colours.
class SourceRows {
 public:
  SourceRows(const BlitSource& source, const Axis& columns, bool toBilevel)
      : m_source(source),
        m_columns(columns),
        m_compare(toBilevel && !source.raster.bilevelDevice),
        m_row(columns.sources.size()) {
    const auto [least, most] = std::minmax_element(columns.sources.begin(), columns.sources.end());
    m_left = *least;
    m_whole.resize(columns.Steps() ? 0 : static_cast<std::size_t>(*most - *least + 1));
  }

  const std::uint32_t* Read(int y) {
    if (m_whole.empty()) {
      ReadRow(m_source.raster, m_left, y, static_cast<int>(m_row.size()), m_row.data());
    } else {
      ReadRow(m_source.raster, m_left, y, static_cast<int>(m_whole.size()), m_whole.data());
      for (std::size_t i = 0; i < m_row.size(); ++i)
        m_row[i] = m_whole[static_cast<std::size_t>(m_columns.sources[i] - m_left)];
    }
    // Colour onto a bilevel device bitmap: what has the source's background colour is white, all else black.
    if (m_compare)
      for (std::uint32_t& pixel : m_row) pixel = pixel == m_source.background ? kWhite : kBlack;
    return m_row.data();
  }

 private:
  const BlitSource& m_source;
  const Axis& m_columns;
  bool m_compare;
  int m_left = 0;
  std::vector<std::uint32_t> m_row;
  std::vector<std::uint32_t> m_whole;  ///< empty if the columns simply follow each other
};

// The common case: pixels follow each other and need no more than being read into their place.
bool IsPlainCopy(const Raster& target, const BlitSource& source, const Axis& columns, unsigned table) {
  return table == TruthTable(SRCCOPY) && target.IsPlain32() && columns.Steps() &&
         source.raster.top != target.top;
}

void BlitPart(const Raster& target, const QRect& all, const QRect& part, const BlitSource& source,
              unsigned table, std::uint32_t brush) {
  const QRect& from = source.pixels;
  const Axis columns = MapAxis(part.x(), part.width(), all.x(), all.width(), from.x(), from.width(),
                               source.mirrorX, source.raster.width);
  const Axis rows = MapAxis(part.y(), part.height(), all.y(), all.height(), from.y(), from.height(),
                            source.mirrorY, source.raster.height);
  if (columns.sources.empty() || rows.sources.empty()) return;
  if (IsPlainCopy(target, source, columns, table)) {
    for (std::size_t i = 0; i < rows.sources.size(); ++i)
      ReadRow(source.raster, columns.sources.front(), rows.sources[i],
              static_cast<int>(columns.sources.size()),
              reinterpret_cast<std::uint32_t*>(target.Row(rows.first + static_cast<int>(i))) + columns.first);
    return;
  }
  SourceRows reader(source, columns, target.bilevelDevice);
  RowWriter writer(target);
  const int count = static_cast<int>(columns.sources.size());
  std::vector<std::uint32_t> mixed(columns.sources.size());
  const int height = static_cast<int>(rows.sources.size());
  // Downward moves within one bitmap go from the bottom, so that no row is read after it was overwritten.
  const bool fromBottom = rows.sources.front() < rows.first;
  for (int i = 0; i < height; ++i) {
    const int index = fromBottom ? height - 1 - i : i;
    const std::uint32_t* pixels = reader.Read(rows.sources[static_cast<std::size_t>(index)]);
    if (table != TruthTable(SRCCOPY)) {
      if (UsesTarget(table)) ReadRow(target, columns.first, rows.first + index, count, mixed.data());
      CombineRow(table, brush, pixels, mixed.data(), count);
      pixels = mixed.data();
    }
    writer.Write(columns.first, rows.first + index, count, pixels);
  }
}

QImage ImageOf(const Raster& raster, const QRect& part) {
  const bool bilevel = raster.bits == 1 && raster.colorCount == 2 && raster.colors[0] == kBlack &&
                       raster.colors[1] == kWhite && part.x() % 8 == 0;
  QImage image(part.size(), bilevel ? QImage::Format_Mono : QImage::Format_RGB32);
  // Bilevel pictures stay bilevel on their way to a printer; black before white is what PDF writers look for.
  if (bilevel) image.setColorTable({kBlack, kWhite});
  for (int y = 0; y < image.height(); ++y) {
    if (bilevel)
      std::memcpy(image.scanLine(y), raster.Row(part.y() + y) + part.x() / 8,
                  static_cast<std::size_t>((part.width() + 7) / 8));
    else
      ReadRow(raster, part.x(), part.y() + y, part.width(),
              reinterpret_cast<std::uint32_t*>(image.scanLine(y)));
  }
  return image;
}

// What of the source part exists.
QRect Existing(const BlitSource& source) {
  return source.pixels & QRect(0, 0, source.raster.width, source.raster.height);
}

/// The raster as a printer takes it; colours and pixels hold what had to be brought into another form.
PrinterImage PrinterImageOf(const Raster& raster, std::vector<RGBQUAD>& colors, QImage& pixels) {
  PrinterImage image{raster.top, raster.stride, raster.width, raster.height, raster.bits, {}, true};
  if (raster.bits == 16 || raster.masks[0] != 0) {
    pixels = ImageOf(raster, QRect(0, 0, raster.width, raster.height));
    image = {pixels.constBits(), pixels.bytesPerLine(), pixels.width(), pixels.height(), 32, {}, true};
  }
  for (int i = 0; raster.bits <= 8 && i < raster.colorCount; ++i) {
    const COLORREF color = ColorOf(raster.colors[i]);
    colors.push_back({GetBValue(color), GetGValue(color), GetRValue(color), 0});
  }
  image.colors = colors;
  return image;
}

bool BlitToPrinter(const DcRecord& dc, const QRect& units, const BlitSource& source, unsigned table) {
  if (table != TruthTable(SRCCOPY)) return false;
  Raster raster = source.raster;
  // A bilevel device bitmap takes the colours of its target.
  const std::array<std::uint32_t, 2> own = {ResolveColor(dc, dc.state.textColor),
                                            ResolveColor(dc, dc.state.bkColor)};
  if (raster.bilevelDevice) {
    raster.colors = own.data();
    raster.colorCount = 2;
  }
  std::vector<RGBQUAD> colors;
  QImage pixels;
  const PrinterImage image = PrinterImageOf(raster, colors, pixels);
  RECT place = ToRect(units);
  if (source.mirrorX) std::swap(place.left, place.right);
  if (source.mirrorY) std::swap(place.top, place.bottom);
  return dc.drawImage(image, ToRect(source.pixels), place, ToRect(ClipOf(dc).boundingRect()));
}

bool BlitToPainter(const DcRecord& dc, const QRect& units, const BlitSource& source, unsigned table) {
  if (dc.painter == nullptr || table != TruthTable(SRCCOPY)) return false;
  const QRect part = Existing(source);
  if (part.isEmpty()) return true;
  QImage image = ImageOf(source.raster, part);
  if (image.isNull()) return false;
  image = image.mirrored(source.mirrorX, source.mirrorY);
  const double stepX = static_cast<double>(units.width()) / source.pixels.width();
  const double stepY = static_cast<double>(units.height()) / source.pixels.height();
  const int skipX = source.mirrorX ? source.pixels.x() + source.pixels.width() - part.x() - part.width()
                                   : part.x() - source.pixels.x();
  const int skipY = source.mirrorY ? source.pixels.y() + source.pixels.height() - part.y() - part.height()
                                   : part.y() - source.pixels.y();
  dc.painter->save();
  dc.painter->setClipRegion(ClipOf(dc), Qt::IntersectClip);
  dc.painter->drawImage(QRectF(units.x() + skipX * stepX, units.y() + skipY * stepY, part.width() * stepX,
                               part.height() * stepY),
                        image);
  dc.painter->restore();
  return true;
}

Raster RasterOfImage(QImage& image) {
  return {.top = image.bits(),
          .stride = static_cast<std::ptrdiff_t>(image.bytesPerLine()),
          .width = image.width(),
          .height = image.height(),
          .bits = 32};
}

// Sets the source's pixels aside where writing would change them before they are read.
void SetAside(BlitSource& source, const Raster& target, const QRect& pixels, std::size_t parts,
              QImage& image) {
  if (source.raster.top != target.top || !pixels.intersects(source.pixels)) return;
  const bool plainMove =
      pixels.size() == source.pixels.size() && !source.mirrorX && !source.mirrorY && parts == 1;
  const QRect part = Existing(source);
  if (plainMove || part.isEmpty()) return;
  QImage copy(part.size(), QImage::Format_RGB32);
  for (int y = 0; y < copy.height(); ++y)
    ReadRow(source.raster, part.x(), part.y() + y, part.width(),
            reinterpret_cast<std::uint32_t*>(copy.scanLine(y)));
  if (copy.isNull()) return;
  image = std::move(copy);
  const bool bilevel = source.raster.bilevelDevice;
  source.raster = RasterOfImage(image);
  source.raster.bilevelDevice = bilevel;
  source.pixels.translate(-part.topLeft());
}

}  // namespace

bool BlitUnits(DcRecord& dc, const QRect& units, const BlitSource& given, unsigned table) {
  if (units.isEmpty() || given.pixels.isEmpty()) return true;
  BlitSource source = given;
  if (dc.drawImage) return BlitToPrinter(dc, units, source, table);
  if (dc.kind == DcKind::Painter) return BlitToPainter(dc, units, source, table);
  const auto target = TargetOf(dc);
  if (!target) return false;
  std::uint32_t brush = 0;
  if (UsesBrush(table)) {
    const auto pixel = BrushPixel(dc, dc.state.brush);
    if (!pixel) return true;
    brush = *pixel;
  }
  // A bilevel device bitmap has no colours of its own: on a coloured target 0 and 1 take the target's
  // colours.
  const std::array<std::uint32_t, 2> colors = {ResolveColor(dc, dc.state.textColor),
                                               ResolveColor(dc, dc.state.bkColor)};
  if (source.raster.bilevelDevice && !target->bilevelDevice) source.raster.colors = colors.data();

  const QRect pixels = PixelsOf(dc, units);
  const auto parts = ClippedPixels(dc, *target, pixels);
  QImage holder;
  SetAside(source, *target, pixels, parts.size(), holder);
  for (const QRect& part : parts) BlitPart(*target, pixels, part, source, table, brush);
  Drawn(dc, units);
  return true;
}

}  // namespace platform

BOOL BitBlt(HDC dc, int x, int y, int width, int height, HDC source, int sourceX, int sourceY,
            DWORD operation) {
  return StretchBlt(dc, x, y, width, height, source, sourceX, sourceY, width, height, operation);
}

BOOL StretchBlt(HDC dc, int x, int y, int width, int height, HDC source, int sourceX, int sourceY,
                int sourceWidth, int sourceHeight, DWORD operation) {
  const unsigned table = platform::TruthTable(operation);
  if (!platform::UsesSource(table)) return PatBlt(dc, x, y, width, height, operation);
  DcRecord* target = FindDc(dc);
  const DcRecord* from = FindDc(source);
  const auto raster = from == nullptr ? std::nullopt : platform::TargetOf(*from);
  if (target == nullptr || !raster) return FALSE;
  BlitSource what;
  what.raster = *raster;
  what.pixels =
      platform::PixelsOf(*from, platform::UnitsOf(*from, sourceX, sourceY, sourceWidth, sourceHeight));
  what.mirrorX = (width < 0) != (sourceWidth < 0);
  what.mirrorY = (height < 0) != (sourceHeight < 0);
  what.background = platform::ResolveColor(*from, from->state.bkColor);
  return platform::BlitUnits(*target, platform::UnitsOf(*target, x, y, width, height), what, table);
}
