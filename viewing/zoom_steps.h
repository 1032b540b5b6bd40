#pragma once

#include <algorithm>
#include <cmath>
#include <limits>

#include "platform/base/geometry.h"

// How large a page is drawn: the limits of the scale factor, the chain of zoom steps and the rounding. A
// factor of 1.0 is one page pixel per screen pixel. A divisor d is a step of the chain: 2 and above a
// reduction 1 : d, 1 and -1 actual size, -2 and below an enlargement -d : 1. Pure arithmetic, shared by every
// window that shows pages; nothing here overflows, whatever the factor.
namespace zoom {

inline constexpr int kLowestPercent = 1;
inline constexpr int kHighestPercent = 1000;
inline constexpr double kHighestFactor = kHighestPercent / 100.0;
inline constexpr double kSmallestSide = 5.0;       ///< pixels that a side of a page keeps on the screen
inline constexpr double kLargestActualSize = 1.5;  ///< factors from 1.0 up to this one belong to divisor 1

/// Towards zero; a value that no int holds becomes the nearest one, no number 0.
inline int TruncateToInt(double value) {
  if (std::isnan(value)) return 0;
  return static_cast<int>(std::clamp(value, static_cast<double>(std::numeric_limits<int>::min()),
                                     static_cast<double>(std::numeric_limits<int>::max())));
}

/// To the nearest whole number; a fraction of exactly 0.5 goes down. For values that are not negative.
inline int RoundHalfDown(double value) {
  double whole = 0;
  const double fraction = std::modf(value, &whole);
  return TruncateToInt(std::abs(fraction) > 0.5 ? whole + 1 : whole);
}

/// Of a factor; rounded, exactly half downwards.
inline int Percent(double factor) {
  return RoundHalfDown(factor * 100.0);
}

/// 100 percent is 1.0.
inline double FactorOfPercent(double percent) {
  return percent * 0.01;
}

/// Both limits are legal themselves. Infinities and what is no number are not.
inline bool IsLegalFactor(double factor) {
  return factor * 100.0 <= kHighestPercent && factor * 100.0 >= kLowestPercent;
}

/// Pulls the factor up until neither side of the page is shown shorter than kSmallestSide, width first. Sides
/// are at least 1.
inline double KeepSmallestSide(double factor, SIZE page) {
  if (page.cx * factor < kSmallestSide) factor = kSmallestSide / page.cx;
  if (page.cy * factor < kSmallestSide) factor = kSmallestSide / page.cy;
  return factor;
}

/// A scale that is multiplied, but not beyond the highest.
struct Multiplied {
  double multiplier;  ///< that was used
  double factor;      ///< the new scale
};

/// The product, at most the highest scale. A multiplier that is no finite number changes nothing.
inline Multiplied MultiplyFactor(double factor, double multiplier) {
  if (!std::isfinite(multiplier)) return {1.0, factor};
  const double product = multiplier * factor;
  if (product * 100.0 <= kHighestPercent) return {multiplier, product};
  return {kHighestFactor / factor, kHighestFactor};
}

/// Of a zoom step: 1/n for a positive n, n for -n.
inline double FactorOfDivisor(int divisor) {
  return divisor > 0 ? 1.0 / divisor : -static_cast<double>(divisor);
}

/// The step nearest to a legal factor.
inline int DivisorOfFactor(double factor) {
  if (factor < 1.0) return RoundHalfDown(1.0 / factor);
  return factor <= kLargestActualSize ? 1 : -RoundHalfDown(factor);
}

/// One step in: 4, 2, 1, -2, -3 ... There is no step 0, and none between 1 and -2.
inline int NextDivisorIn(int divisor) {
  const int next = divisor < 0 ? divisor - 1 : divisor / 2;
  return next == 0 ? -2 : next;
}

/// One step out: -3, -2, -1, 2, 4, 8 ...
inline int NextDivisorOut(int divisor) {
  const int next = divisor < 0 ? divisor + 1 : divisor * 2;
  return next == 0 ? 2 : next;
}

/// Whether there is a larger step.
inline bool CanStepIn(int divisor) {
  return FactorOfDivisor(NextDivisorIn(divisor)) * 100.0 <= kHighestPercent;
}
/// Whether there is a smaller one.
inline bool CanStepOut(int divisor) {
  return FactorOfDivisor(NextDivisorOut(divisor)) * 100.0 >= kLowestPercent;
}
/// The same for steps that leave kSmallestSide of both sides.
inline bool CanStepOut(int divisor, SIZE page) {
  const double factor = FactorOfDivisor(NextDivisorOut(divisor));
  return CanStepOut(divisor) && page.cx * factor >= kSmallestSide && page.cy * factor >= kSmallestSide;
}

/// Whether a page is shown by a reduced copy.
inline bool IsReduced(int divisor, bool bilevel) {
  return divisor > 1 && bilevel;
}

}  // namespace zoom
