#pragma once

#include <cstdint>

#include "imaging/core/export.h"

namespace leadtools12 {

/// How large things may get before they are given up with kErrorLimit: generous for real documents, small
/// against the memory of a desktop machine.
struct Limits {
  /// Of a page: pixels of a side, all pixels, and the bytes of a bitmap in memory. What the arithmetic is
  /// made for; a host can lower them only.
  int side = 200'000;
  std::int64_t pagePixels = 1'000'000'000;
  std::int64_t bitmapBytes = 2'000'000'000;
  /// Bytes that a page may unpack to though its file is too small to hold them by any packing.
  std::int64_t unprovenBytes = 64'000'000;
  /// Pages of a file, frames of an animation, scans of a JPEG picture.
  int pages = 100'000;
  int scans = 500;
  /// One allocation inside a codec library.
  std::int64_t codecBytes = 512'000'000;
  /// The work that one decode may take, so that a small file that was made to cost much is given up: bytes
  /// read, chunks of a PNG or segments of a JPEG among them, and pixels visited. It grows with the page, and
  /// pixels also with the file: real files stay far below.
  std::int64_t workBytes = 64'000'000;
  std::int64_t workBytesPerPixel = 8;
  std::int64_t workPixels = 60'000'000;
  std::int64_t workPixelsPerPixel = 50;
  std::int64_t workPixelsPerByte = 50;
  /// How long the helper may take to open a file or to describe a page, and to decode one.
  int helperOpenMs = 10'000;
  int helperDecodeMs = 60'000;
};

/// For what is opened or decoded from now on, from the thread that does so. Values below 1 count as 1.
LTWRAP_API void SetLimits(const Limits& limits);
LTWRAP_API const Limits& CurrentLimits();

}  // namespace leadtools12

namespace imaging {

inline const leadtools12::Limits& Limit() {
  return leadtools12::CurrentLimits();
}

}  // namespace imaging
