#include "imaging/pixels/reduce.h"

#include <algorithm>
#include <cmath>

#include "imaging/pixels/resize.h"

namespace imaging {
namespace {

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
  target->ReduceFrom(source, divisor, !oneIsLight);

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

std::unique_ptr<PixelStorage> ReducedLevels(const PixelStorage& source, int divisor) {
  auto target = PixelStorage::Create(source.Width() / divisor, source.Height() / divisor, 8);
  const bool zeroIsLight = Brightness(source.Palette()[0]) > Brightness(source.Palette()[1]);
  target->ReduceFrom(source, divisor, zeroIsLight);
  return target;
}

void ReduceBlocks(const TwoLevelBlocks& blocks) {
  if (!ReduceBlocksFast(blocks)) ReduceBlocksPlain(blocks);
}

std::unique_ptr<PixelStorage> Reduced(const PixelStorage& source, double factor) {
  const int divisor = DivisorOf(factor);
  if (source.Bits() == 1 && divisor >= 1 && divisor <= std::min(source.Width(), source.Height()))
    return ReducedBits(source, divisor);
  const auto side = [factor](int length) { return std::max(static_cast<int>(length * factor), 1); };
  return SizedByAveraging(source, side(source.Width()), side(source.Height()));
}

}  // namespace imaging
