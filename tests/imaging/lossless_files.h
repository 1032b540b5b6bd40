#pragma once

#include "tests/imaging/codec_files.h"

namespace codec_test {

/// A lossless frame (ITU-T T.81, annex H) whose table gives each category a code of five bits.
struct LosslessForm {
  int precision = 8;
  int components = 1;
  int predictor = 1;
  int shift = 0;
  int restartRows = 0;
  bool scans = false;  ///< one for each component
  bool adobeYcc = false;
};

Bytes MakeLosslessJpeg(int width, int height, const LosslessForm& form,
                       const std::function<int(int x, int y, int component)>& sample);

}  // namespace codec_test
