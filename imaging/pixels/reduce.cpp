#include "imaging/pixels/reduce.h"

#include <algorithm>
#include <cmath>

#include "imaging/pixels/resize.h"

namespace imaging {
namespace {

/// Set bits among count that begin at a bit of a row.
int CountBits(const std::uint8_t* row, std::size_t firstBit, int count) {
  int set = 0;
  for (int i = 0; i < count; ++i) {
    const std::size_t bit = firstBit + static_cast<std::size_t>(i);
    set += row[bit / 8] >> (7 - bit % 8) & 1;
  }
  return set;
}

int Brightness(const RGBQUAD& color) {
  return color.rgbBlue + color.rgbGreen + color.rgbRed;
}

BYTE Between(BYTE dark, BYTE light, int share) {
  return static_cast<BYTE>((dark * (255 - share) + light * share + 127) / 255);
}

/// The whole number whose reciprocal the factor is, 0 if there is none.
int DivisorOf(double factor) {
  constexpr double kTolerance = 1e-9;
  const double inverse = 1.0 / factor;
  const double whole = std::round(inverse);
  return whole <= 255 && std::abs(inverse - whole) < kTolerance * whole ? static_cast<int>(whole) : 0;
}

std::unique_ptr<PixelStorage> ReducedBits(const PixelStorage& source, int divisor) {
  auto target = PixelStorage::Create(source.Width() / divisor, source.Height() / divisor, 8);
  const RGBQUAD& zero = source.Palette()[0];
  const RGBQUAD& one = source.Palette()[1];
  const bool oneIsLight = Brightness(one) >= Brightness(zero);
  const BitBlocks blocks{source.Row(0),   source.Pitch(),   target->Row(0), target->Pitch(),
                         target->Width(), target->Height(), divisor,        !oneIsLight};
  if (!ReduceBitsFast(blocks)) ReduceBitsPlain(blocks);

  const RGBQUAD& dark = oneIsLight ? zero : one;
  const RGBQUAD& light = oneIsLight ? one : zero;
  int share = 0;
  for (RGBQUAD& color : target->Palette()) {
    color = {Between(dark.rgbBlue, light.rgbBlue, share), Between(dark.rgbGreen, light.rgbGreen, share),
             Between(dark.rgbRed, light.rgbRed, share), 0};
    ++share;
  }
  return target;
}

}  // namespace

void ReduceBitsPlain(const BitBlocks& blocks) {
  const std::int64_t n = blocks.divisor;
  const std::int64_t pixels = n * n;
  for (int y = 0; y < blocks.height; ++y)
    for (int x = 0; x < blocks.width; ++x) {
      const std::uint8_t* row = blocks.source + y * n * blocks.sourcePitch;
      std::int64_t set = 0;
      for (int i = 0; i < blocks.divisor; ++i, row += blocks.sourcePitch)
        set += CountBits(row, static_cast<std::size_t>(x * n), blocks.divisor);
      const std::int64_t counted = blocks.invert ? pixels - set : set;
      blocks.target[y * blocks.targetPitch + x] = static_cast<std::uint8_t>(counted * 255 / pixels);
    }
}

std::unique_ptr<PixelStorage> Reduced(const PixelStorage& source, double factor) {
  const int divisor = DivisorOf(factor);
  if (source.Bits() == 1 && divisor >= 1 && divisor <= std::min(source.Width(), source.Height()))
    return ReducedBits(source, divisor);
  const auto side = [factor](int length) { return std::max(static_cast<int>(length * factor), 1); };
  return SizedByAveraging(source, side(source.Width()), side(source.Height()));
}

}  // namespace imaging
