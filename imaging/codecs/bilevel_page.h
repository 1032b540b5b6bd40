#pragma once

#include <cstring>
#include <memory>
#include <utility>

#include "imaging/codecs/rows.h"

namespace imaging {

/// Puts packed rows of a file into a page.
class BilevelPage {
 public:
  BilevelPage(int width, int height, const BilevelColors& colors = {{0, 0, 0, 0}, {255, 255, 255, 0}})
      : m_pixels(PixelStorage::Create(width, height, 1)) {
    colors.SetPalette(*m_pixels);
  }
  int Height() const { return m_pixels->Height(); }
  std::uint8_t* Row(int y) { return m_pixels->Row(y); }
  void Store(const std::uint8_t* packed, int y, std::uint8_t flip) {
    CopyBits(packed, Row(y), m_pixels->RowBytes(), flip);
  }
  void Repeat(int y) { std::memcpy(Row(y), Row(y - 1), m_pixels->RowBytes()); }
  PixelStorage& Pixels() { return *m_pixels; }
  std::unique_ptr<PixelStorage> Take() { return std::move(m_pixels); }

 private:
  std::unique_ptr<PixelStorage> m_pixels;
};

}  // namespace imaging
