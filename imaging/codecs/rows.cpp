#include "imaging/codecs/rows.h"

#include <algorithm>
#include <array>
#include <cstring>

#include "imaging/pixels/kernels.h"

namespace imaging {
namespace {

bool Same(const RGBQUAD& color, int level) {
  return color.rgbRed == level && color.rgbGreen == level && color.rgbBlue == level;
}

/// For each byte of packed bits its eight pixels as a mask of 0x00 and 0xff.
const std::array<std::uint64_t, 256>& Masks() {
  static const auto table = [] {
    std::array<std::uint64_t, 256> masks{};
    for (unsigned value = 0; value < 256; ++value) {
      std::array<std::uint8_t, 8> pixels{};
      for (unsigned bit = 0; bit < 8; ++bit) pixels[bit] = (value >> (7 - bit) & 1) != 0 ? 0xff : 0;
      std::memcpy(&masks[value], pixels.data(), pixels.size());
    }
    return masks;
  }();
  return table;
}

}  // namespace

void ExpandBits(const std::uint8_t* packed, std::uint8_t* row, int width, std::uint8_t zero,
                std::uint8_t one) {
  const auto& masks = Masks();
  const std::uint64_t base = 0x0101010101010101U * zero;
  const std::uint64_t change = 0x0101010101010101U * static_cast<std::uint8_t>(zero ^ one);
  const int bytes = (width + 7) / 8;
  // The kernel may read on behind its last byte, which nobody has promised here.
  constexpr int kReadAhead = 8;
  const int whole = std::max(bytes - kReadAhead, 0);
  FastKernels().expandBits(row, packed, 0, static_cast<std::size_t>(whole) * 8, zero, one);
  for (int i = whole; i < bytes; ++i) {
    const std::uint64_t pixels = base ^ (masks[packed[i]] & change);
    std::memcpy(row + static_cast<std::ptrdiff_t>(i) * 8, &pixels, sizeof pixels);
  }
}

void CopyBits(const std::uint8_t* packed, std::uint8_t* row, std::size_t bytes, std::uint8_t flip) {
  if (flip == 0) {
    std::memcpy(row, packed, bytes);
    return;
  }
  for (std::size_t i = 0; i < bytes; ++i) row[i] = packed[i] ^ flip;
}

bool BilevelColors::BlackAndWhite() const {
  return (Same(zero, 0) && Same(one, 255)) || (Same(zero, 255) && Same(one, 0));
}

std::uint8_t BilevelColors::ByteOfZero() const {
  return BlackAndWhite() ? zero.rgbRed : 0;
}

std::uint8_t BilevelColors::ByteOfOne() const {
  return BlackAndWhite() ? one.rgbRed : 1;
}

void BilevelColors::SetPalette(PixelStorage& pixels) const {
  if (pixels.Bits() == 8 && BlackAndWhite()) return pixels.SetLinearGray();
  const std::array colors = {zero, one};
  imaging::SetPalette(pixels, colors);
}

void ShowBilevelPageAsBytes(PixelStorage& page) {
  const BilevelColors colors{page.Palette()[0], page.Palette()[1]};
  page.ShowAsBytes(colors.ByteOfZero(), colors.ByteOfOne());
  colors.SetPalette(page);
}

void SetPalette(PixelStorage& pixels, std::span<const RGBQUAD> colors) {
  if (colors.empty()) return;
  for (std::size_t i = 0; i < pixels.Palette().size(); ++i)
    pixels.Palette()[i] = colors[std::min(i, colors.size() - 1)];
}

void SpreadSamples(const std::uint8_t* packed, int bits, std::uint8_t* samples, int count) {
  const int most = (1 << bits) - 1;
  for (int i = 0, bit = 0; i < count; ++i, bit += bits)
    samples[i] = static_cast<std::uint8_t>(packed[bit / 8] >> (8 - bits - bit % 8) & most);
}

void AddPlane(const std::uint8_t* packed, int plane, std::uint8_t* samples, int count) {
  for (int i = 0; i < count; ++i)
    samples[i] = static_cast<std::uint8_t>(samples[i] | (packed[i / 8] >> (7 - i % 8) & 1) << plane);
}

void PackSamples(const std::uint8_t* samples, int bits, std::uint8_t* row, int count) {
  if (bits == 8) {
    std::memcpy(row, samples, static_cast<std::size_t>(count));
    return;
  }
  std::memset(row, 0, (static_cast<std::size_t>(count) * static_cast<std::size_t>(bits) + 7) / 8);
  for (int i = 0, bit = 0; i < count; ++i, bit += bits)
    row[bit / 8] = static_cast<std::uint8_t>(row[bit / 8] | samples[i] << (8 - bits - bit % 8));
}

void MakeOpaqueIfClear(PixelStorage& pixels, int firstRow, int endRow) {
  const PixelStorage& seen = pixels;
  for (int y = firstRow; y < endRow; ++y)
    for (std::size_t i = 3; i < pixels.RowBytes(); i += 4)
      if (seen.Row(y)[i] != 0) return;
  for (int y = firstRow; y < endRow; ++y) {
    std::uint8_t* row = pixels.Row(y);
    for (std::size_t i = 3; i < pixels.RowBytes(); i += 4) row[i] = 0xff;
  }
}

}  // namespace imaging
