#pragma once

#include <gtest/gtest.h>

#include "tests/imaging/codec_files.h"

namespace codec_test {

/// Which part of a file is damaged, and how densely.
struct Damage {
  std::size_t cutStep;
  std::size_t firstBit;
  std::size_t endBit;
  std::size_t bitStep;
};

/// Whatever is cut off or turned over in a file, the host gets a page or an error; height, if it isn't 0, is
/// that of the pages of cut files.
inline void ExpectPageOrError(const Bytes& whole, const Damage& damage, int height = 0) {
  for (std::size_t size = 1; size < whole.size(); size += damage.cutStep) {
    const Loaded page = LoadMemory(Bytes(whole.begin(), whole.begin() + static_cast<std::ptrdiff_t>(size)));
    const bool shown = page.pixels != nullptr && (height == 0 || page.record.Height == height);
    EXPECT_TRUE(!page.error.empty() || shown) << "cut to " << size;
  }
  for (std::size_t bit = damage.firstBit; bit < damage.endBit; bit += damage.bitStep) {
    Bytes bad = whole;
    bad[bit / 8] ^= static_cast<std::uint8_t>(1 << bit % 8);
    const Loaded page = LoadMemory(bad);
    EXPECT_TRUE(!page.error.empty() || page.pixels != nullptr) << "bit " << bit;
  }
}

}  // namespace codec_test
