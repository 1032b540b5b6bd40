#pragma once

#include <cstddef>
#include <cstdint>

namespace imaging {

/// Pixels to be read or written; a negative stride walks the rows from the bottom.
struct PixelPlane {
  std::uint8_t* pixels;
  std::ptrdiff_t stride;  ///< bytes
};
struct ConstPixelPlane {
  const std::uint8_t* pixels;
  std::ptrdiff_t stride;
};

/// Makes target row c of column c of the source, for all depths of PixelStorage. columns and rows are the
/// source's. Reads up to one byte past a source row's pixels.
void Transpose(PixelPlane target, ConstPixelPlane source, int columns, int rows, int bits);
/// The same, pixel by pixel: what the block-wise form must agree with.
void TransposePlain(PixelPlane target, ConstPixelPlane source, int columns, int rows, int bits);

}  // namespace imaging
