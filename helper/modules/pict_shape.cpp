#include "helper/modules/pict_shape.h"

#include <algorithm>
#include <cmath>
#include <cstdlib>
#include <iterator>
#include <numbers>

namespace helper {
namespace {

/// Whether the centre of a pixel lies in an ellipse around a centre; in half pixels.
bool InEllipse(double x, double y, double width, double height) {
  if (width <= 0 || height <= 0) return false;
  const double dx = 2 * x / width;
  const double dy = 2 * y / height;
  return dx * dx + dy * dy <= 1;
}

bool InAngle(const PictShape& shape, const PictRect& rect, double x, double y) {
  // Angles are those of the rectangle made square: 45 degrees go through its corner.
  const double angle = std::atan2(x / rect.Width(), -y / rect.Height()) * 180 / std::numbers::pi;
  const int first = shape.arcAngle < 0 ? shape.startAngle + shape.arcAngle : shape.startAngle;
  const double turned = std::fmod(std::fmod(angle - first, 360) + 360, 360);
  return turned <= std::abs(shape.arcAngle);
}

/// The pattern covers the plane from the origin on.
std::uint32_t PixelOf(const PictBitmap& pixels, int x, int y) {
  const auto within = [](int place, int count) { return (place % count + count) % count; };
  return pixels.ColorOf(pixels.At(within(x, pixels.bounds.Width()), within(y, pixels.bounds.Height())));
}

void SetColor(std::uint8_t* pixel, std::uint32_t color) {
  for (int i = 0; i < 3; ++i) pixel[i] = static_cast<std::uint8_t>(color >> (16 - 8 * i));
}

const PictPattern& PatternOf(const PictShape& shape) {
  if (shape.verb == PictVerb::kErase) return shape.state.back;
  return shape.verb == PictVerb::kFill ? shape.state.fill : shape.state.pen;
}

}  // namespace

void PictPainter::Draw(const PictShape& shape) {
  const bool frames = shape.verb == PictVerb::kFrame;
  const bool isRegion = shape.figure == PictFigure::kRegion && !shape.region.empty();
  if (shape.figure == PictFigure::kLine || (shape.figure == PictFigure::kPolygon && frames))
    DrawLines(shape);
  else if (shape.figure == PictFigure::kPolygon)
    FillPolygon(shape);
  else if (isRegion && !frames)  // the frame of one that is no rectangle isn't drawn
    FillRegion(shape);
  else if (!isRegion)
    DrawArea(shape);
}

PictRect PictPainter::Visible(const PictShape& shape, const PictRect& rect) const {
  const PictRect& clip = shape.state.clip;
  return {std::max({rect.top, clip.top, m_frame.top}), std::max({rect.left, clip.left, m_frame.left}),
          std::min({rect.bottom, clip.bottom, m_frame.bottom}),
          std::min({rect.right, clip.right, m_frame.right})};
}

bool PictPainter::IsInside(const PictShape& shape, const PictRect& rect, int x, int y) {
  if (x < rect.left || x >= rect.right || y < rect.top || y >= rect.bottom) return false;
  const double fromX = x + 0.5 - (rect.left + rect.right) / 2.0;
  const double fromY = y + 0.5 - (rect.top + rect.bottom) / 2.0;
  if (shape.figure == PictFigure::kRect || shape.figure == PictFigure::kRegion) return true;
  if (shape.figure != PictFigure::kRound) return InEllipse(fromX, fromY, rect.Width(), rect.Height());
  const int width = std::min(shape.state.ovalWidth, rect.Width());
  const int height = std::min(shape.state.ovalHeight, rect.Height());
  const double cornerX = std::abs(fromX) - (rect.Width() - width) / 2.0;
  const double cornerY = std::abs(fromY) - (rect.Height() - height) / 2.0;
  return cornerX <= 0 || cornerY <= 0 || InEllipse(cornerX, cornerY, width, height);
}

void PictPainter::DrawArea(const PictShape& shape) {
  const PictRect& rect = shape.rect;
  const PictState& state = shape.state;
  const PictRect inner = {rect.top + state.penHeight, rect.left + state.penWidth,
                          rect.bottom - state.penHeight, rect.right - state.penWidth};
  const PictRect visible = Visible(shape, rect);
  for (int y = visible.top; y < visible.bottom; ++y)
    for (int x = visible.left; x < visible.right && m_left-- > 0; ++x) {
      if (!IsInside(shape, rect, x, y)) continue;
      if (shape.verb == PictVerb::kFrame && IsInside(shape, inner, x, y)) continue;
      if (shape.figure == PictFigure::kArc && !InAngle(shape, rect, x + 0.5 - (rect.left + rect.right) / 2.0,
                                                       y + 0.5 - (rect.top + rect.bottom) / 2.0))
        continue;
      Put(shape, x, y);
    }
}

/// By the even-odd rule.
void PictPainter::FillPolygon(const PictShape& shape) {
  const PictRect visible = Visible(shape, shape.rect);
  std::vector<double> crossings;
  for (int y = visible.top; y < visible.bottom && m_left > 0; ++y) {
    crossings.clear();
    const double middle = y + 0.5;
    m_left -= std::ssize(shape.points);
    for (std::size_t i = 0; i < shape.points.size(); ++i) {
      const PictPoint& from = shape.points[i];
      const PictPoint& to = shape.points[(i + 1) % shape.points.size()];
      if ((from.y > middle) == (to.y > middle)) continue;
      crossings.push_back(from.x + (middle - from.y) * (to.x - from.x) / (to.y - from.y));
    }
    std::sort(crossings.begin(), crossings.end());
    for (std::size_t i = 0; i + 1 < crossings.size(); i += 2) {
      const int end = std::min(visible.right, static_cast<int>(std::lround(crossings[i + 1])));
      const int first = std::max(visible.left, static_cast<int>(std::lround(crossings[i])));
      for (int x = first; x < end && m_left-- > 0; ++x) Put(shape, x, y);
    }
  }
}

/// Rows at which something changes, each with the columns where inside and outside change their places
/// against the row above.
void PictPainter::FillRegion(const PictShape& shape) {
  const PictRect visible = Visible(shape, shape.rect);
  std::vector<int> edges;
  std::vector<int> changed;
  for (std::size_t at = 0; at < shape.region.size() && m_left > 0;) {
    const auto next =
        std::find(shape.region.begin() + static_cast<std::ptrdiff_t>(at), shape.region.end(), kRegionEnd);
    const int y = shape.region[at];
    const auto columns = shape.region.begin() + static_cast<std::ptrdiff_t>(at) + 1;
    if (next == shape.region.end() || columns > next) return;
    changed.clear();
    std::set_symmetric_difference(edges.begin(), edges.end(), columns, next, std::back_inserter(changed));
    edges.swap(changed);
    m_left -= std::ssize(edges) + 1;
    at = static_cast<std::size_t>(next - shape.region.begin()) + 1;
    const int end = at < shape.region.size() && shape.region[at] != kRegionEnd ? shape.region[at] : y;
    for (int row = std::max(y, visible.top); row < std::min(end, visible.bottom); ++row)
      for (std::size_t i = 0; i + 1 < edges.size(); i += 2) {
        const int right = std::min(edges[i + 1], visible.right);
        for (int x = std::max(edges[i], visible.left); x < right && m_left-- > 0; ++x) Put(shape, x, row);
      }
  }
}

void PictPainter::DrawLines(const PictShape& shape) {
  for (std::size_t i = 0; i + 1 < shape.points.size(); ++i) {
    const PictPoint& from = shape.points[i];
    const PictPoint& to = shape.points[i + 1];
    const int steps = std::max(std::abs(to.x - from.x), std::abs(to.y - from.y));
    for (int step = 0; step <= steps && m_left > 0; ++step) {
      const double part = steps == 0 ? 0 : static_cast<double>(step) / steps;
      Stamp(shape, {from.x + static_cast<int>(std::lround((to.x - from.x) * part)),
                    from.y + static_cast<int>(std::lround((to.y - from.y) * part))});
    }
  }
}

/// The pen hangs to the right of and below its place.
void PictPainter::Stamp(const PictShape& shape, const PictPoint& at) {
  const PictState& state = shape.state;
  const PictRect visible = Visible(shape, {at.y, at.x, at.y + state.penHeight, at.x + state.penWidth});
  --m_left;
  for (int y = visible.top; y < visible.bottom; ++y)
    for (int x = visible.left; x < visible.right && m_left-- > 0; ++x) Put(shape, x, y);
}

void PictPainter::Put(const PictShape& shape, int x, int y) {
  constexpr int kOr = 1;  // of the modes of patterns, which begin at 8
  constexpr int kXor = 2;
  const PictState& state = shape.state;
  std::uint8_t* pixel = m_canvas.Row(y - m_frame.top) + static_cast<std::ptrdiff_t>(x - m_frame.left) * 3;
  const PictPattern& pattern = PatternOf(shape);
  const bool isInk = pattern.isColor || pattern.pixels != nullptr ||
                     (pattern.bits[static_cast<std::size_t>(y & 7)] >> (7 - (x & 7)) & 1) != 0;
  const bool byPen = shape.verb == PictVerb::kFrame || shape.verb == PictVerb::kPaint;
  const int mode = byPen ? state.penMode & 7 : 0;
  if ((mode == kOr || mode == kXor) && !isInk) return;
  if (shape.verb == PictVerb::kInvert && state.highlights) {
    const std::uint32_t there = static_cast<std::uint32_t>(pixel[0] << 16 | pixel[1] << 8 | pixel[2]);
    if (there == state.backColor) return SetColor(pixel, state.highlight);
    if (there == state.highlight) SetColor(pixel, state.backColor);
    return;
  }
  if (shape.verb == PictVerb::kInvert || mode == kXor) {
    for (int i = 0; i < 3; ++i) pixel[i] = static_cast<std::uint8_t>(~pixel[i]);
    return;
  }
  std::uint32_t color = isInk ? state.foreColor : state.backColor;
  if (pattern.isColor) color = pattern.color;
  if (pattern.pixels != nullptr) color = PixelOf(*pattern.pixels, x, y);
  SetColor(pixel, color);
}

}  // namespace helper
