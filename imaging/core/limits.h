#pragma once

#include <cstdint>

// The one place that says how large things may get. Generous for real documents, small against the
// memory of a desktop machine.
namespace imaging::limits {

inline constexpr int kMaxSide = 200'000;                        ///< pixels of a side
inline constexpr std::int64_t kMaxPixels = 1'000'000'000;       ///< pixels of a page
inline constexpr std::int64_t kMaxBitmapBytes = 2'000'000'000;  ///< memory of one bitmap
inline constexpr int kMaxPages = 100'000;                       ///< pages of a file
inline constexpr std::int64_t kMaxCodecBytes = 512'000'000;     ///< one allocation inside a codec library

}  // namespace imaging::limits
