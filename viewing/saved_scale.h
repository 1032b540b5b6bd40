#pragma once

#include "library/settings.h"
#include "viewing/zoom_steps.h"

// The scale that is kept for the user: every window that shows pages starts with it, and every viewer's frame
// writes it.
namespace saved_scale {

inline constexpr char kSection[] = "";
inline constexpr char kValue[] = "Scale";  ///< percent
inline constexpr int kDefaultPercent = 100;
inline constexpr double kDefaultFactor = kDefaultPercent / 100.0;
inline constexpr UINT kDelay = 1000;  ///< ms from the last change of scale to its write

/// As it stands in the settings, legal or not: the first page puts the default in the place of one that
/// isn't.
inline double Factor() {
  return zoom::FactorOfPercent(SettingsReadInt(kSection, kValue, kDefaultPercent));
}

/// Keeps it for the user; 1 to 1000.
inline void Write(int percent) {
  SettingsWriteInt(kSection, kValue, static_cast<UINT>(percent));
}

/// Looked at in whole percent, cut off towards zero: looser than zoom::IsLegalFactor, so that 10.005 passes.
inline bool IsLegal(double factor) {
  const int percent = zoom::TruncateToInt(factor * 100.0);
  return percent >= zoom::kLowestPercent && percent <= zoom::kHighestPercent;
}

}  // namespace saved_scale
