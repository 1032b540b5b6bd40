#pragma once

#include <algorithm>
#include <cmath>
#include <string_view>

#include "helper/module.h"

// How large a page is drawn that has no pixels of its own.
namespace helper {

struct DrawnSize {
  int width;
  int height;
  int dotsPerInch;
};

inline constexpr double kPointsPerInch = 72;
inline constexpr double kMostDrawnPixels = 64e6;  // A2 at 300 dots per inch has half of it

/// At a resolution, 0 being 200 dots per inch. A sheet that would be too large is drawn coarser.
inline DrawnSize SizeOfDrawing(double widthPoints, double heightPoints, int resolution) {
  constexpr int kUsualDotsPerInch = 200;
  constexpr int kMostDotsPerInch = 2400;
  double dots = std::clamp(resolution > 0 ? resolution : kUsualDotsPerInch, 1, kMostDotsPerInch);
  const double squareInches = widthPoints * heightPoints / (kPointsPerInch * kPointsPerInch);
  dots = std::max(1.0, std::min(dots, std::floor(std::sqrt(kMostDrawnPixels / squareInches))));
  const auto side = [dots](double points) {
    return std::max(1, static_cast<int>(std::lround(points * dots / kPointsPerInch)));
  };
  return {side(widthPoints), side(heightPoints), static_cast<int>(dots)};
}

/// What is told of such a page. format is its code, name that of its coding.
inline PageRecord DrawnPage(const DrawnSize& size, int format, std::string_view name) {
  PageRecord record;
  record.format = format;
  record.width = size.width;
  record.height = size.height;
  record.bits = record.memoryBits = 24;
  record.xResolution = record.yResolution = size.dotsPerInch;
  SetCompression(record, name);
  return record;
}

}  // namespace helper
