#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <vector>

#include "platform/base/types.h"

// Pixels of any depth as rows of 0xffRRGGBB. No Qt in here.

namespace platform {

/// A view of somebody's pixels.
struct Raster {
  BYTE* top = nullptr;        ///< first byte of the topmost row
  std::ptrdiff_t stride = 0;  ///< bytes from a row to the one below it; below 0 in bottom-up blocks
  int width = 0;
  int height = 0;
  int bits = 0;  ///< 1, 4, 8 (colour numbers, first pixel in the high bits), 16, 24, 32
  const std::uint32_t* colors = nullptr;  ///< table of 0xffRRGGBB for 1, 4 and 8 bits
  int colorCount = 0;
  std::array<std::uint32_t, 3> masks = {};  ///< red, green, blue in 16 and 32 bits; all 0: the usual layout
  bool bilevelDevice =
      false;  ///< a bilevel bitmap without colours of its own: 0 and 1 take those of the target

  bool IsPlain32() const { return bits == 32 && masks[0] == 0; }
  BYTE* Row(int y) const { return top + y * stride; }
};

constexpr std::uint32_t kOpaque = 0xff000000;
constexpr std::uint32_t kBlack = 0xff000000;
constexpr std::uint32_t kWhite = 0xffffffff;

/// 0xffRRGGBB of a colour value without a palette index.
constexpr std::uint32_t PixelOf(COLORREF color) {
  return kOpaque | GetRValue(color) << 16U | GetGValue(color) << 8U | GetBValue(color);
}
constexpr COLORREF ColorOf(std::uint32_t pixel) {
  return RGB(static_cast<int>(pixel >> 16), static_cast<int>(pixel >> 8), static_cast<int>(pixel));
}

/// Row length in bytes of rows padded to 32 bits.
constexpr std::int64_t RowBytes(std::int64_t width, int bits) {
  return (width * bits + 31) / 32 * 4;
}

void ReadRow(const Raster& raster, int x, int y, int count, std::uint32_t* pixels);

/// Writes rows, matching each colour with the nearest of the table where there is one. Keeps what it has
/// matched, so one writer should serve a whole operation.
class RowWriter {
 public:
  explicit RowWriter(const Raster& raster) : m_raster(raster) {}
  void Write(int x, int y, int count, const std::uint32_t* pixels);

 private:
  int Match(std::uint32_t pixel);
  void WriteNumbers(BYTE* row, int x, int count, const std::uint32_t* pixels);
  void WriteMasked(BYTE* row, int x, int count, const std::uint32_t* pixels) const;

  static constexpr std::size_t kMemory = 1024;
  struct Matched {
    std::uint32_t pixel = 0;  ///< 0 is no opaque pixel, so it marks an unused place
    int number = 0;
  };
  Raster m_raster;
  std::vector<Matched> m_matched;
};

/// target = truth table (bits 16 to 23 of a ternary operation) over brush, source and target, pixel by pixel.
void CombineRow(unsigned table, std::uint32_t brush, const std::uint32_t* source, std::uint32_t* target,
                int count);
constexpr unsigned TruthTable(DWORD operation) {
  return operation >> 16 & 0xff;
}
constexpr bool UsesSource(unsigned table) {
  return (table >> 2 & 0x33) != (table & 0x33);
}
constexpr bool UsesTarget(unsigned table) {
  return (table >> 1 & 0x55) != (table & 0x55);
}
constexpr bool UsesBrush(unsigned table) {
  return table >> 4 != (table & 0x0f);
}

}  // namespace platform
