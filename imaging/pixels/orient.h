#pragma once

#include <memory>

#include "imaging/pixels/storage.h"

namespace imaging {

/// One of the eight ways to lay a picture down. The pixel at (x, y) of the result is the source pixel
/// (column, row) = (x, y), or (y, x) when transposed; then the column counts from the right when mirrored
/// in columns, and the row from the bottom when mirrored in rows.
struct Turn {
  bool transpose = false;
  bool mirrorColumns = false;
  bool mirrorRows = false;
  bool IsNone() const { return !transpose && !mirrorColumns && !mirrorRows; }
};

inline constexpr Turn kQuarterClockwise{true, false, true};
inline constexpr Turn kQuarterCounterclockwise{true, true, false};
inline constexpr Turn kHalf{false, true, true};

/// What makes a picture upright that is stored in an orientation of TIFF 6.0, tag 274 (0 counts as 1).
/// Throws for other numbers.
Turn TurnToNormal(int orientation);
Turn Inverse(Turn turn);
/// A new bitmap of the same depth and colours.
std::unique_ptr<PixelStorage> Turned(const PixelStorage& source, Turn turn);

}  // namespace imaging
