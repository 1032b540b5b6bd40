#pragma once

#include <cstring>
#include <memory>
#include <utility>

#include "imaging/codecs/rows.h"

namespace imaging {

/// Puts packed rows of a file into a page, as they are or a byte a pixel.
class BilevelPage {
 public:
  BilevelPage(int width, int height, int bits,
              const BilevelColors& colors = {{0, 0, 0, 0}, {255, 255, 255, 0}})
      : m_pixels(PixelStorage::Create(width, height, bits == 8 ? 8 : 1)),
        m_zero(colors.ByteOfZero()),
        m_one(colors.ByteOfOne()) {
    colors.SetPalette(*m_pixels);
  }
  bool Packed() const { return m_pixels->Bits() == 1; }
  int Height() const { return m_pixels->Height(); }
  std::uint8_t* Row(int y) { return m_pixels->Row(y); }
  void Expand(const std::uint8_t* packed, int y) {
    ExpandBits(packed, m_pixels->Row(y), m_pixels->Width(), m_zero, m_one);
  }
  void Store(const std::uint8_t* packed, int y, std::uint8_t flip) {
    if (Packed()) {
      CopyBits(packed, Row(y), m_pixels->RowBytes(), flip);
    } else {
      ExpandBits(packed, Row(y), m_pixels->Width(), flip != 0 ? m_one : m_zero, flip != 0 ? m_zero : m_one);
    }
  }
  void Repeat(int y) { std::memcpy(Row(y), Row(y - 1), m_pixels->RowBytes()); }
  PixelStorage& Pixels() { return *m_pixels; }
  std::unique_ptr<PixelStorage> Take() { return std::move(m_pixels); }

 private:
  std::unique_ptr<PixelStorage> m_pixels;
  std::uint8_t m_zero;
  std::uint8_t m_one;
};

}  // namespace imaging
