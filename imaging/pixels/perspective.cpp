#include "imaging/pixels/perspective.h"

#include <utility>

#include "imaging/pixels/orient.h"

namespace imaging {

std::unique_ptr<PixelStorage> TurnedBetween(const PixelStorage& pixels, int from, int to) {
  const Turn first = TurnToNormal(from);
  const Turn second = Inverse(TurnToNormal(to));
  std::unique_ptr<PixelStorage> turned;
  if (!first.IsNone()) turned = Turned(pixels, first);
  if (!second.IsNone()) turned = Turned(turned ? *turned : pixels, second);
  return turned;
}

Bitmap HeaderInPerspective(const Bitmap& source, int viewPerspective) {
  Bitmap result = source;
  result.ViewPerspective = viewPerspective == 1 ? 0 : viewPerspective;
  if (TurnToNormal(source.ViewPerspective).transpose != TurnToNormal(viewPerspective).transpose)
    std::swap(result.XResolution, result.YResolution);
  return result;
}

Bitmap CopyInPerspective(const Bitmap& source, const PixelStorage& pixels, int viewPerspective) {
  auto turned = TurnedBetween(pixels, source.ViewPerspective, viewPerspective);
  Bitmap result = HeaderInPerspective(source, viewPerspective);
  Adopt(result, turned ? std::move(turned) : Clone(pixels));
  return result;
}

}  // namespace imaging
