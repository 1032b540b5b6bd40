#pragma once

#include <cstdint>
#include <cstdlib>

// How far a load has come, as a progress bar shows it.
namespace load_progress {

inline constexpr int kStep = 5;  ///< percent that the bar moves at least
inline constexpr int kDone = 100;

/// Of a row counted from 0; the last one is all. The only row of a page is its last.
inline int Percent(int row, int height) {
  if (height <= 1) return kDone;
  return static_cast<int>(std::int64_t{row} * kDone / (std::int64_t{height} - 1));
}

/// Whether a bar that stands at a position is worth moving. The end always is.
inline bool IsWorthShowing(int percent, int position) {
  return percent == kDone || std::abs(std::int64_t{percent} - position) >= kStep;
}

}  // namespace load_progress
