#pragma once

#include <cstdint>

// The one place that says how large things may get. Generous for real documents, small against the
// memory of a desktop machine.
namespace imaging::limits {

inline constexpr int kMaxSide = 200'000;                        ///< pixels of a side
inline constexpr std::int64_t kMaxPixels = 1'000'000'000;       ///< pixels of a page
inline constexpr std::int64_t kMaxBitmapBytes = 2'000'000'000;  ///< memory of one bitmap
inline constexpr int kMaxPages = 100'000;                       ///< pages of a file
// The work that one decode may take, so that a small file that was made to cost much is given up with a text.
// It grows with the page, and pixels also with the file: real files stay far below.
inline constexpr std::int64_t kWorkBytes = 64'000'000;   ///< read of the file
inline constexpr std::int64_t kWorkBytesPerPixel = 8;    ///< of the page, beside those
inline constexpr std::int64_t kWorkPixels = 60'000'000;  ///< visited
inline constexpr std::int64_t kWorkPixelsPerPixel = 50;  ///< of the page, beside those
inline constexpr std::int64_t kWorkPixelsPerByte = 50;   ///< of the file, beside those
inline constexpr std::int64_t kMostWorkPixels = 4'000'000'000;
// How long the sandboxed helper may take to open a file or to describe a page, and to decode one.
inline constexpr int kHelperOpenMs = 10'000;
inline constexpr int kHelperDecodeMs = 60'000;
inline constexpr std::int64_t kMaxCodecBytes = 512'000'000;  ///< one allocation inside a codec library

}  // namespace imaging::limits
