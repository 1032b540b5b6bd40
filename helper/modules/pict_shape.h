#pragma once

#include <array>
#include <cstdint>
#include <memory>
#include <vector>

#include "helper/modules/pict_bitmap.h"
#include "helper/modules/pict_bytes.h"

namespace helper {

struct PictPoint {
  int x = 0;
  int y = 0;
};

/// 8 by 8 pixels in two colours, one colour that the file describes as dithered, or pixels of any.
struct PictPattern {
  std::array<std::uint8_t, 8> bits{};
  bool isColor = false;
  std::uint32_t color = 0;
  std::shared_ptr<const PictBitmap> pixels = nullptr;
};

/// What users of that system chose is in no file; this is a pale blue.
inline constexpr std::uint32_t kHighlight = 0xccccff;

struct PictState {
  PictRect clip{-32768, -32768, 32767, 32767};
  PictPattern pen{{0xff, 0xff, 0xff, 0xff, 0xff, 0xff, 0xff, 0xff}};
  PictPattern fill = pen;
  PictPattern back;
  std::uint32_t foreColor = 0;
  std::uint32_t backColor = 0xffffff;
  std::uint32_t highlight = kHighlight;
  bool highlights = false;  ///< an inversion exchanges the colours of background and highlight alone
  int penWidth = 1;
  int penHeight = 1;
  int penMode = 8;
  int ovalWidth = 0;
  int ovalHeight = 0;
};

/// As the opcodes number them.
enum class PictFigure { kRect = 3, kRound, kOval, kArc, kPolygon, kRegion, kLine };
enum class PictVerb { kFrame, kPaint, kErase, kInvert, kFill };

/// Ends a row of a region, and the region.
inline constexpr int kRegionEnd = 0x7fff;

struct PictShape {
  PictFigure figure = PictFigure::kRect;
  PictVerb verb = PictVerb::kFrame;
  PictRect rect;
  int startAngle = 0;  ///< degrees from the top, clockwise
  int arcAngle = 0;
  std::vector<PictPoint> points;
  std::vector<int> region;  ///< the words behind its bounds; none: all of these
  PictState state;
  std::size_t bitmapsBefore = 0;
};

/// Draws shapes on rows of red, green, blue; what costs too much is left out.
class PictPainter {
 public:
  PictPainter(const Canvas& canvas, const PictRect& frame) : m_canvas(canvas), m_frame(frame) {}
  void Draw(const PictShape& shape);

 private:
  static bool IsInside(const PictShape& shape, const PictRect& rect, int x, int y);
  PictRect Visible(const PictShape& shape, const PictRect& rect) const;
  void DrawArea(const PictShape& shape);
  void FillPolygon(const PictShape& shape);
  void FillRegion(const PictShape& shape);
  void DrawLines(const PictShape& shape);
  void Stamp(const PictShape& shape, const PictPoint& at);
  void Put(const PictShape& shape, int x, int y);

  const Canvas& m_canvas;
  PictRect m_frame;
  std::int64_t m_left = 2'000'000'000;
};

}  // namespace helper
