#pragma once

#include <gtest/gtest.h>

#include <cstdint>
#include <memory>
#include <random>
#include <string>
#include <vector>

#include "imaging/ltwrap.h"
#include "imaging/pixels/storage.h"

// What the tests of pixel operations share: pictures made on the spot and exact comparison.

namespace pixel_test {

/// A record that frees what it holds.
struct OwnedBitmap : struct_LEAD_Bitmap {
  OwnedBitmap() : struct_LEAD_Bitmap{} { LEADTOOLS::InitBitmap(this, 0, 0, 1); }
  OwnedBitmap(int width, int height, int bits) : struct_LEAD_Bitmap{} {
    LEADTOOLS::InitBitmap(this, width, height, bits);
    LEADTOOLS::AllocateBitmap(this, 1);
  }
  ~OwnedBitmap() { LEADTOOLS::FreeBitmap(this); }
  OwnedBitmap(const OwnedBitmap&) = delete;
  OwnedBitmap& operator=(const OwnedBitmap&) = delete;
};

inline void SetPixel(imaging::PixelStorage& pixels, int x, int y, std::uint32_t value) {
  std::uint8_t* row = pixels.Row(y);
  const int bits = pixels.Bits();
  if (bits >= 8) {
    for (int i = 0; i < bits / 8; ++i) row[x * (bits / 8) + i] = static_cast<std::uint8_t>(value >> (8 * i));
    return;
  }
  const int shift = 8 - bits - x % (8 / bits) * bits;
  std::uint8_t& byte = row[x / (8 / bits)];
  byte = static_cast<std::uint8_t>((byte & ~(((1U << bits) - 1) << shift)) | value << shift);
}

inline std::uint32_t GetPixel(const imaging::PixelStorage& pixels, int x, int y) {
  const std::uint8_t* row = pixels.Row(y);
  const int bits = pixels.Bits();
  std::uint32_t value = 0;
  if (bits >= 8) {
    for (int i = 0; i < bits / 8; ++i)
      value |= static_cast<std::uint32_t>(row[x * (bits / 8) + i]) << (8 * i);
    return value;
  }
  return row[x / (8 / bits)] >> (8 - bits - x % (8 / bits) * bits) & ((1U << bits) - 1);
}

inline std::uint32_t GetPixel(const struct_LEAD_Bitmap& bitmap, int x, int y) {
  return GetPixel(*bitmap.pStorage, x, y);
}

/// Random pixels; seeded, so that a failure comes back.
inline void FillNoise(imaging::PixelStorage& pixels, unsigned seed) {
  std::mt19937 random(seed);
  for (int y = 0; y < pixels.Height(); ++y)
    for (int x = 0; x < pixels.Width(); ++x)
      SetPixel(pixels, x, y, pixels.Bits() == 32 ? random() : random() & ((1U << pixels.Bits()) - 1));
}

inline void SetColorTable(imaging::PixelStorage& pixels, unsigned seed) {
  std::mt19937 random(seed);
  for (RGBQUAD& color : pixels.Palette())
    color = {static_cast<BYTE>(random()), static_cast<BYTE>(random()), static_cast<BYTE>(random()), 0};
}

inline std::vector<std::uint32_t> AllPixels(const struct_LEAD_Bitmap& bitmap) {
  std::vector<std::uint32_t> all;
  for (int y = 0; y < bitmap.Height; ++y)
    for (int x = 0; x < bitmap.Width; ++x) all.push_back(GetPixel(bitmap, x, y));
  return all;
}

/// Code of the exception that the call throws, 0 if none; an empty text counts as a failure.
template <typename Call>
int ErrorOf(Call call) {
  try {
    call();
  } catch (CLeadtoolsException* error) {
    const int code = error->GetLastError();
    error->Delete();
    EXPECT_FALSE(CLeadtoolsException::GetErrorMessage(code).IsEmpty());
    return code;
  }
  return 0;
}

}  // namespace pixel_test
