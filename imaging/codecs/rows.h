#pragma once

#include <bit>
#include <cstdint>
#include <memory>
#include <span>
#include <vector>

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

/// Makes a 1-bit page one of 8 bits, whose bits stay what is held.
void ShowBilevelPageAsBytes(PixelStorage& page);

/// Fills a table from colours; entries past them repeat the last, so that a stray index finds a colour.
void SetPalette(PixelStorage& pixels, std::span<const RGBQUAD> colors);

/// The colour 0xrrggbb as an entry of a table.
inline constexpr RGBQUAD ColorOf(std::uint32_t rgb) {
  return {static_cast<BYTE>(rgb), static_cast<BYTE>(rgb >> 8), static_cast<BYTE>(rgb >> 16), 0};
}
/// The table of a bilevel page whose ones are black; storage starts with the other one.
inline std::vector<RGBQUAD> OneIsBlack() {
  return {ColorOf(0xffffff), ColorOf(0)};
}

/// Scales a level to 0 .. 255.
inline std::uint8_t ScaleLevel(std::uint64_t level, std::uint64_t most) {
  return level >= most ? 255 : static_cast<std::uint8_t>((level * 255 + most / 2) / most);
}

/// One channel of pixels with bit fields, scaled to 8 bits.
class BitField {
 public:
  BitField() = default;
  explicit BitField(std::uint32_t mask)
      : m_mask(mask), m_shift(mask == 0 ? 0 : std::countr_zero(mask)), m_most(mask >> m_shift) {}

  bool Present() const { return m_mask != 0; }
  std::uint8_t Level(std::uint32_t pixel) const {
    return m_most == 0 ? 0 : ScaleLevel((pixel & m_mask) >> m_shift, m_most);
  }

 private:
  std::uint32_t m_mask = 0;
  int m_shift = 0;
  std::uint32_t m_most = 0;
};

/// Spreads packed samples of 1, 2, 4 or 8 bits, most significant first, to a byte each.
void SpreadSamples(const std::uint8_t* packed, int bits, std::uint8_t* samples, int count);
/// Adds the bits of a plane, most significant first, to samples of a byte each.
void AddPlane(const std::uint8_t* packed, int plane, std::uint8_t* samples, int count);
/// Packs samples of a byte each to a row of 1, 4 or 8 bits.
void PackSamples(const std::uint8_t* samples, int bits, std::uint8_t* row, int count);
/// Exchanges the bits of a byte, first for last; in steps that the compiler does for many bytes at once.
inline std::uint8_t ReverseBits(std::uint8_t byte) {
  unsigned bits = (byte & 0xf0U) >> 4 | (byte & 0x0fU) << 4;
  bits = (bits & 0xccU) >> 2 | (bits & 0x33U) << 2;
  return static_cast<std::uint8_t>((bits & 0xaaU) >> 1 | (bits & 0x55U) << 1);
}

/// Writers that know nothing of alpha leave it 0 everywhere; such rows of 32 bits, of all that a file has,
/// are opaque.
void MakeOpaqueIfClear(PixelStorage& pixels, int firstRow, int endRow);

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
