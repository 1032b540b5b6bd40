#include "imaging/core/limits.h"

#include <algorithm>

namespace leadtools12 {
namespace {

// Factors beyond it would overflow when they meet the size of a page.
constexpr std::int64_t kMostPerUnit = 1'000'000;
constexpr std::int64_t kMostWork = std::int64_t{1} << 60;

Limits& Kept() {
  static Limits limits;
  return limits;
}

template <typename Number>
void Keep(Number& number, Number most) {
  number = std::clamp(number, Number{1}, most);
}

}  // namespace

void SetLimits(const Limits& limits) {
  constexpr Limits kDefault;
  constexpr int kMostCount = 1'000'000;
  constexpr int kMostMs = 24 * 60 * 60 * 1000;
  Limits kept = limits;
  Keep(kept.side, kDefault.side);
  Keep(kept.pagePixels, kDefault.pagePixels);
  Keep(kept.bitmapBytes, kDefault.bitmapBytes);
  Keep(kept.unprovenBytes, kDefault.bitmapBytes);
  Keep(kept.codecBytes, kDefault.bitmapBytes);
  Keep(kept.workBytes, kMostWork);
  Keep(kept.workPixels, kMostWork);
  for (std::int64_t* factor : {&kept.workBytesPerPixel, &kept.workPixelsPerPixel, &kept.workPixelsPerByte})
    Keep(*factor, kMostPerUnit);
  for (int* count : {&kept.pages, &kept.scans}) Keep(*count, kMostCount);
  for (int* time : {&kept.helperOpenMs, &kept.helperDecodeMs}) Keep(*time, kMostMs);
  Kept() = kept;
}

const Limits& CurrentLimits() {
  return Kept();
}

}  // namespace leadtools12
