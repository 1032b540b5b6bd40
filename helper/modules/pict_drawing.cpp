#include "helper/modules/pict_drawing.h"

#include <algorithm>
#include <utility>

namespace helper {
namespace {

constexpr std::size_t kMostShapes = 200'000;

PictRect Moved(PictRect rect, const PictPoint& origin) {
  rect.left -= origin.x;
  rect.right -= origin.x;
  rect.top -= origin.y;
  rect.bottom -= origin.y;
  return rect;
}

}  // namespace

bool PictDrawing::Follow(int opcode, std::size_t bitmapsBefore) {
  if (FollowState(opcode)) return true;
  if (opcode >= 0x20 && opcode <= 0x23)
    AddLine(opcode, bitmapsBefore);
  else if (opcode >= 0x30 && opcode < 0x88 && (opcode & 7) <= 4)
    AddFigure(opcode, bitmapsBefore);
  else
    return false;
  return true;
}

bool PictDrawing::FollowState(int opcode) {
  switch (opcode) {
    case 0x01:
      m_state.clip = Moved(m_bytes.SkipRegion(), m_origin);
      return true;
    case 0x02:
      m_state.back = ReadPattern();
      return true;
    case 0x07: {
      const PictPoint size = ReadPoint();
      m_state.penWidth = std::max(0, size.x);
      m_state.penHeight = std::max(0, size.y);
      return true;
    }
    case 0x08:
      m_state.penMode = m_bytes.Word();
      return true;
    case 0x09:
      m_state.pen = ReadPattern();
      return true;
    case 0x0a:
      m_state.fill = ReadPattern();
      return true;
    case 0x0b: {
      const PictPoint size = ReadPoint();
      m_state.ovalWidth = size.x;
      m_state.ovalHeight = size.y;
      return true;
    }
    case 0x0c:
      m_origin.x += m_bytes.Short();
      m_origin.y += m_bytes.Short();
      return true;
    case 0x0e:
      m_state.foreColor = ReadOldColor();
      return true;
    case 0x0f:
      m_state.backColor = ReadOldColor();
      return true;
    case 0x1a:
      m_state.foreColor = ReadColor();
      return true;
    case 0x1b:
      m_state.backColor = ReadColor();
      return true;
    case 0x1c:
      m_state.highlights = true;
      return true;
    case 0x1d:
      m_state.highlight = ReadColor();
      return true;
    case 0x1e:
      m_state.highlight = kHighlight;
      return true;
    case 0x12:
    case 0x13:
    case 0x14: {
      constexpr int kDithered = 2;
      const bool dithered = m_bytes.Word() == kDithered;
      PictPattern pattern = ReadPattern();
      pattern.isColor = dithered;
      if (dithered)
        pattern.color = ReadColor();
      else
        pattern.pixels = std::make_shared<PictBitmap>(ReadPictPixels(m_bytes));
      (opcode == 0x12 ? m_state.back : opcode == 0x13 ? m_state.pen : m_state.fill) = pattern;
      return true;
    }
    default:
      return false;
  }
}

PictPattern PictDrawing::ReadPattern() {
  PictPattern pattern;
  const auto bits = m_bytes.Take(pattern.bits.size());
  std::copy(bits.begin(), bits.end(), pattern.bits.begin());
  return pattern;
}

std::uint32_t PictDrawing::ReadColor() {
  std::uint32_t color = 0;
  for (int channel = 0; channel < 3; ++channel) color = color << 8 | m_bytes.Unsigned(2) >> 8;
  return color;
}

/// The eight colours of the first version.
std::uint32_t PictDrawing::ReadOldColor() {
  constexpr std::pair<std::uint32_t, std::uint32_t> kColors[] = {
      {30, 0xffffff},  {69, 0xffff00},  {137, 0xff00ff}, {205, 0xff0000},
      {273, 0x00ffff}, {341, 0x00ff00}, {409, 0x0000ff}};
  const std::uint32_t code = m_bytes.Unsigned(4);
  for (const auto& [known, color] : kColors)
    if (known == code) return color;
  return 0;
}

PictPoint PictDrawing::ReadPoint() {
  const int y = m_bytes.Short();
  return {m_bytes.Short(), y};
}

PictPoint PictDrawing::ReadOffset() {
  const auto offset = [this] {  // of a signed byte
    const int byte = m_bytes.Byte();
    return byte < 128 ? byte : byte - 256;
  };
  const int x = m_pen.x + offset();
  return {x, m_pen.y + offset()};
}

void PictDrawing::AddLine(int opcode, std::size_t bitmapsBefore) {
  if (opcode == 0x20 || opcode == 0x22) m_pen = ReadPoint();
  PictShape shape;
  shape.figure = PictFigure::kLine;
  shape.points = {m_pen, opcode <= 0x21 ? ReadPoint() : ReadOffset()};
  m_pen = shape.points[1];
  Add(std::move(shape), bitmapsBefore);
}

/// From 8 on the opcodes of a figure mean the same rectangle again.
void PictDrawing::AddFigure(int opcode, std::size_t bitmapsBefore) {
  constexpr std::size_t kPolygonHead = 10;
  PictShape shape;
  shape.figure = static_cast<PictFigure>(opcode >> 4);
  shape.verb = static_cast<PictVerb>(opcode & 7);
  if (shape.figure == PictFigure::kRegion) {
    ReadRegion(shape);
    return Add(std::move(shape), bitmapsBefore);
  }
  PictRect& last = m_last[static_cast<std::size_t>(opcode >> 4)];
  if (shape.figure == PictFigure::kPolygon) {
    const std::size_t length = m_bytes.Unsigned(2);
    shape.rect = m_bytes.Rect();
    for (std::size_t at = kPolygonHead; at + 4 <= length; at += 4) shape.points.push_back(ReadPoint());
  } else {
    if ((opcode & 8) == 0) last = m_bytes.Rect();
    shape.rect = last;
  }
  if (shape.figure == PictFigure::kArc) {
    shape.startAngle = m_bytes.Short();
    shape.arcAngle = m_bytes.Short();
  }
  Add(std::move(shape), bitmapsBefore);
}

void PictDrawing::ReadRegion(PictShape& shape) {
  constexpr std::size_t kHead = 10;
  const std::size_t length = m_bytes.Unsigned(2);
  shape.rect = m_bytes.Rect();
  if (length < kHead) throw EndOfPict();
  bool isRow = true;  // else a column
  for (std::size_t at = kHead; at + 2 <= length; at += 2) {
    const int word = m_bytes.Short();
    const bool ends = word == kRegionEnd;
    shape.region.push_back(ends ? word : word - (isRow ? m_origin.y : m_origin.x));
    isRow = ends;
  }
  if (length % 2 != 0) m_bytes.Skip(1);
}

/// The one place where the file's coordinates become those of its frame, but for regions, whose words are of
/// two kinds.
void PictDrawing::Add(PictShape shape, std::size_t bitmapsBefore) {
  if (m_shapes.size() == kMostShapes) throw Failure(Status::kTooLarge, "the picture has too many shapes");
  shape.rect = Moved(shape.rect, m_origin);
  for (PictPoint& point : shape.points) point = {point.x - m_origin.x, point.y - m_origin.y};
  shape.state = m_state;
  shape.bitmapsBefore = bitmapsBefore;
  m_shapes.push_back(std::move(shape));
  m_state.highlights = false;  // counts for one shape
}

}  // namespace helper
