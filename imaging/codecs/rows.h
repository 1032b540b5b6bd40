#pragma once

#include <cstdint>
#include <memory>
#include <span>

#include "imaging/pixels/storage.h"

namespace imaging {

/// Expands packed bits, most significant first, to a byte each. The row must have room for width rounded up
/// to 8, which rows of a PixelStorage have.
void ExpandBits(const std::uint8_t* packed, std::uint8_t* row, int width, std::uint8_t zero,
                std::uint8_t one);

/// Copies packed bits and turns them over where flip is 0xff.
void CopyBits(const std::uint8_t* packed, std::uint8_t* row, std::size_t bytes, std::uint8_t flip);

/// How the two colours of a bilevel page become bytes: grey levels 0 and 255 if they are black and white,
/// else the indices 0 and 1 with the colours in the table.
struct BilevelColors {
  RGBQUAD zero;
  RGBQUAD one;

  bool BlackAndWhite() const;
  std::uint8_t ByteOfZero() const;
  std::uint8_t ByteOfOne() const;
  /// Writes the table of the 1-bit or 8-bit storage.
  void SetPalette(PixelStorage& pixels) const;
};

/// A 1-bit page as 8 bits.
std::unique_ptr<PixelStorage> ExpandBilevelPage(const PixelStorage& page);

/// Fills a table from colours; entries past them repeat the last, so that a stray index finds a colour.
void SetPalette(PixelStorage& pixels, std::span<const RGBQUAD> colors);

/// Ink amounts to red, green, blue; 255 is full ink.
struct Rgb {
  std::uint8_t red;
  std::uint8_t green;
  std::uint8_t blue;
};
inline std::uint8_t Product255(unsigned a, unsigned b) {
  const unsigned product = a * b + 128;
  return static_cast<std::uint8_t>((product + (product >> 8)) >> 8);
}
inline Rgb InkToRgb(unsigned cyan, unsigned magenta, unsigned yellow, unsigned black) {
  return {Product255(255 - cyan, 255 - black), Product255(255 - magenta, 255 - black),
          Product255(255 - yellow, 255 - black)};
}

/// Undoes the multiplication of a colour by its alpha.
inline std::uint8_t Unassociate(unsigned value, unsigned alpha) {
  if (alpha == 0) return 0;
  const unsigned straight = (value * 255 + alpha / 2) / alpha;
  return static_cast<std::uint8_t>(straight > 255 ? 255 : straight);
}

}  // namespace imaging
