#pragma once

#include <cstddef>
#include <cstdint>
#include <vector>

inline constexpr int kWidth = 2480;  // A4 at 300 dots per inch
inline constexpr int kHeight = 3508;
inline constexpr std::size_t kRowBytes = kWidth / 8;

/// A page of text-like black strokes in lines and words; 1 is black.
inline std::vector<std::uint8_t> TextPage() {
  std::vector<std::uint8_t> page(kRowBytes * kHeight);
  unsigned seed = 1;
  const auto next = [&seed](unsigned limit) {
    seed = seed * 1664525U + 1013904223U;
    return (seed >> 8) % limit;
  };
  const auto blacken = [&page](int x, int y) {
    page[static_cast<std::size_t>(y) * kRowBytes + static_cast<std::size_t>(x / 8)] |=
        static_cast<std::uint8_t>(0x80U >> x % 8);
  };
  for (int top = 200; top < kHeight - 200; top += 60)
    for (int left = 200; left < kWidth - 200; left += 26) {
      if (next(6) == 0) continue;  // a gap between words
      for (int stroke = 0; stroke < 3; ++stroke) {
        const int x = left + static_cast<int>(next(16));
        const int slant = static_cast<int>(next(5)) - 2;
        const int length = 12 + static_cast<int>(next(24));
        for (int dy = 0; dy < length; ++dy)
          for (int dx = 0; dx < 4; ++dx) blacken(x + dx + slant * dy / 8, top + dy);
      }
    }
  return page;
}
