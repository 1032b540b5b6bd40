#pragma once

#include "helper/module.h"

namespace helper {

/// What a JPEG 2000 container tells around the codestream and the library shows late or not at all.
struct Jp2Header {
  int xResolution = 0;  ///< dots per inch, 0 unknown
  int yResolution = 0;
  int paletteColumns = 0;  ///< components that a palette makes of the one; 0 without one
  bool alpha = false;      ///< one of the channels
  enum class Space { kUntold, kRgb, kGray, kYcc, kCmyk } space = Space::kUntold;
};
Jp2Header ReadJp2Header(const Input& input);

}  // namespace helper
