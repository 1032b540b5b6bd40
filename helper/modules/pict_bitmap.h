#pragma once

#include <array>
#include <cstdint>
#include <vector>

#include "helper/modules/pict_bytes.h"

namespace helper {

/// A bitmap or pixmap of a picture: an index a byte up to 8 bits, else red, green, blue.
struct PictBitmap {
  PictRect bounds;
  PictRect source;
  PictRect target;
  int bits = 1;  ///< of a pixel in the file
  int rows = 0;  ///< that are there
  int transferMode = 0;
  bool packed = false;
  std::array<std::uint32_t, 256> colors{};
  std::vector<std::uint8_t> pixels;

  std::size_t PixelBytes() const { return bits <= 8 ? 1 : 3; }
  const std::uint8_t* At(int x, int y) const {
    return &pixels[(static_cast<std::size_t>(y) * static_cast<std::size_t>(bounds.Width()) +
                    static_cast<std::size_t>(x)) *
                   PixelBytes()];
  }
  /// 0xrrggbb of a pixel that lies there.
  std::uint32_t ColorOf(const std::uint8_t* pixel) const {
    if (bits <= 8) return colors[*pixel];
    return static_cast<std::uint32_t>(pixel[0] << 16 | pixel[1] << 8 | pixel[2]);
  }
};

/// The operands of the opcodes 90 to 9B, as far as the file goes.
PictBitmap ReadPictBitmap(PictBytes& bytes, int opcode);
/// The pixels of a pattern, which must be whole.
PictBitmap ReadPictPixels(PictBytes& bytes);

}  // namespace helper
