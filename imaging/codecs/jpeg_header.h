#pragma once

#include <array>
#include <cstdint>
#include <optional>

#include "imaging/codecs/exif.h"
#include "imaging/core/source.h"

namespace imaging {

/// The process of a frame, by its marker SOF n (ITU-T T.81, table B.1).
enum class JpegProcess { kNone, kBaseline, kExtended, kProgressive, kLossless, kOther };

/// What stands in front of the first scan of a JPEG stream.
struct JpegHeader {
  JpegProcess process = JpegProcess::kNone;
  bool arithmetic = false;
  int precision = 0;
  int width = 0;
  int height = 0;  ///< of the DNL segment if the frame leaves it open
  int components = 0;
  std::array<int, 4> ids{};
  std::array<int, 4> horizontal{};  ///< sampling factors
  std::array<int, 4> vertical{};
  std::int64_t heightAt = 0;  ///< offset of the frame's height field
  std::int64_t scanData = 0;  ///< offset of the first scan's coded bytes, 0 if there is no scan
  bool heightFromDnl = false;
  bool jfif = false;
  int densityUnit = 0;  ///< JFIF: 0 aspect only, 1 inch, 2 centimetre
  int xDensity = 0;
  int yDensity = 0;
  std::optional<ExifData> exif;
  std::optional<int> adobeTransform;

  bool ColorsAreYcc() const;
};

JpegHeader ReadJpegHeader(const Source& source);

}  // namespace imaging
