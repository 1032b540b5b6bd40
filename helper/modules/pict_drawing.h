#pragma once

#include "helper/modules/pict_shape.h"

namespace helper {

/// Follows the opcodes that set how is drawn, and makes shapes of those that draw.
class PictDrawing {
 public:
  explicit PictDrawing(PictBytes& bytes) : m_bytes(bytes) {}
  /// Whether the opcode was one of these; its operands are read then.
  bool Follow(int opcode, std::size_t bitmapsBefore);
  const std::vector<PictShape>& Shapes() const { return m_shapes; }
  /// How far the file's coordinates have been moved since its start.
  PictPoint Origin() const { return m_origin; }

 private:
  bool FollowState(int opcode);
  PictPattern ReadPattern();
  std::uint32_t ReadColor();
  std::uint32_t ReadOldColor();
  PictPoint ReadPoint();
  PictPoint ReadOffset();
  void AddLine(int opcode, std::size_t bitmapsBefore);
  void AddFigure(int opcode, std::size_t bitmapsBefore);
  void ReadRegion(PictShape& shape);
  void Add(PictShape shape, std::size_t bitmapsBefore);

  PictBytes& m_bytes;
  PictState m_state;
  PictPoint m_pen;
  PictPoint m_origin;
  std::array<PictRect, 8> m_last{};  ///< by figure
  std::vector<PictShape> m_shapes;
};

}  // namespace helper
