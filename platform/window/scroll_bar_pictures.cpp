#include "platform/window/detail/scroll_bar_pictures.h"

#include <QPainter>
#include <algorithm>

namespace platform {
namespace {

constexpr std::size_t kMostPictures = 12;  ///< both bars of a few windows, at rest and under the pointer

QRect ThumbOf(const QStyle& style, const QStyleOptionSlider& bar, const QWidget* widget) {
  return style.subControlRect(QStyle::CC_ScrollBar, &bar, QStyle::SC_ScrollBarSlider, widget);
}

QImage ByStyle(const QStyle& style, const QStyleOptionSlider& bar, double scale, const QWidget* widget) {
  QImage image((QSizeF(bar.rect.size()) * scale).toSize(), QImage::Format_ARGB32_Premultiplied);
  image.setDevicePixelRatio(scale);
  image.fill(Qt::transparent);
  QPainter painter(&image);
  painter.translate(-bar.rect.topLeft());
  style.drawComplexControl(QStyle::CC_ScrollBar, &bar, &painter, widget);
  return image;
}

bool IsOpaque(const QImage& image) {
  for (int y = 0; y < image.height(); ++y) {
    const auto* row = reinterpret_cast<const QRgb*>(image.constScanLine(y));
    if (std::any_of(row, row + image.width(), [](QRgb pixel) { return qAlpha(pixel) != 255; })) return false;
  }
  return true;
}

/// Where two pictures of one size differ, in their pixels.
QRect DifferenceOf(const QImage& a, const QImage& b) {
  QRect difference;
  for (int y = 0; y < a.height(); ++y) {
    const auto* rowA = reinterpret_cast<const QRgb*>(a.constScanLine(y));
    const auto* rowB = reinterpret_cast<const QRgb*>(b.constScanLine(y));
    for (int x = 0; x < a.width(); ++x)
      if (rowA[x] != rowB[x]) difference |= QRect(x, y, 1, 1);
  }
  return difference;
}

/// The bar with its thumb at another place that isn't an end.
QStyleOptionSlider Elsewhere(QStyleOptionSlider bar) {
  const int middle = bar.minimum + (bar.maximum - bar.minimum) / 2;
  bar.sliderPosition = bar.sliderPosition == middle ? (middle + bar.maximum) / 2 : middle;
  bar.sliderValue = bar.sliderPosition;
  return bar;
}

}  // namespace

/// Whether the two pictures make up what the style draws.
bool ScrollBarPictures::MakeUp(const Pictures& pictures, const QStyleOptionSlider& bar,
                               const QWidget* widget) {
  const QStyle& style = *pictures.kind.style;
  QImage both(pictures.ground.size(), QImage::Format_ARGB32_Premultiplied);
  both.setDevicePixelRatio(pictures.kind.scale);
  {
    QPainter painter(&both);
    painter.translate(-bar.rect.topLeft());
    Compose(pictures, bar.rect, ThumbOf(style, bar, widget), painter);
  }
  return both == ByStyle(style, bar, pictures.kind.scale, widget);
}

void ScrollBarPictures::Compose(const Pictures& pictures, const QRect& bar, const QRect& thumb,
                                QPainter& painter) {
  painter.setCompositionMode(QPainter::CompositionMode_Source);
  painter.drawImage(bar.topLeft(), pictures.ground);
  painter.drawImage(QPointF(thumb.topLeft()) + pictures.thumbOffset, pictures.thumb);
}

auto ScrollBarPictures::PicturesOf(const Kind& kind, const QStyleOptionSlider& bar, const QWidget* widget)
    -> const Pictures& {
  const auto found = std::find_if(m_pictures.begin(), m_pictures.end(),
                                  [&](const Pictures& pictures) { return pictures.kind == kind; });
  if (found != m_pictures.end()) return *found;
  if (m_pictures.size() >= kMostPictures) m_pictures.erase(m_pictures.begin());
  QStyleOptionSlider without = bar;
  without.subControls &= ~QStyle::SubControls(QStyle::SC_ScrollBarSlider);
  Pictures made{kind, ByStyle(*kind.style, without, kind.scale, widget), {}, {}};
  const QImage whole = ByStyle(*kind.style, bar, kind.scale, widget);
  // A style may draw around the thumb's place too.
  const QRect drawn = DifferenceOf(whole, made.ground);
  made.thumb = whole.copy(drawn);
  made.thumb.setDevicePixelRatio(kind.scale);
  made.thumbOffset = QPointF(drawn.topLeft()) / kind.scale -
                     QPointF(ThumbOf(*kind.style, bar, widget).topLeft() - bar.rect.topLeft());
  const bool atEnd = kind.atBegin || kind.atEnd;
  const bool sound = !drawn.isEmpty() && IsOpaque(made.ground) && IsOpaque(made.thumb) &&
                     MakeUp(made, bar, widget) && (atEnd || MakeUp(made, Elsewhere(bar), widget));
  // Opaque formats are copied; one with transparency would go through the pool of threads, which takes
  // longer.
  made.ground = sound ? made.ground.convertToFormat(QImage::Format_RGB32) : QImage();
  made.thumb = made.thumb.convertToFormat(QImage::Format_RGB32);
  m_pictures.push_back(std::move(made));
  return m_pictures.back();
}

bool ScrollBarPictures::Draw(const QStyle& style, const QStyleOptionSlider& bar, QPainter& painter,
                             const QWidget* widget) {
  const QRect thumb = ThumbOf(style, bar, widget);
  if (bar.rect.isEmpty() || thumb.isEmpty() || painter.transform().type() > QTransform::TxTranslate)
    return false;
  const Kind kind{&style,
                  bar.rect.size(),
                  thumb.size(),
                  painter.device()->devicePixelRatioF(),
                  bar.state,
                  bar.activeSubControls,
                  bar.orientation,
                  bar.direction,
                  bar.palette.cacheKey(),
                  bar.upsideDown,
                  bar.sliderPosition <= bar.minimum,
                  bar.sliderPosition >= bar.maximum};
  const Pictures& pictures = PicturesOf(kind, bar, widget);
  if (pictures.ground.isNull()) return false;
  painter.save();
  Compose(pictures, bar.rect, thumb, painter);
  painter.restore();
  return true;
}

}  // namespace platform
