#include "imagewindow/smart_resize.h"

#include <gtest/gtest.h>

#include <cstring>
#include <random>
#include <vector>

#include "platform/base/global_memory.h"

// The reduction against a plain reading of the rule, byte for byte, and what it refuses.

namespace {

constexpr std::uint8_t kUntouched = 0xA5;

struct Page {
  int width;
  int height;
  std::size_t pitch;
  std::vector<std::uint8_t> bytes;  // exactly as long as the rows, so that a read past the end is caught
};

/// Mostly 0 and 255, with other bytes between, which count as not zero.
Page RandomPage(int width, int height, unsigned seed) {
  Page page{width, height, static_cast<std::size_t>((width + 3) / 4 * 4), {}};
  page.bytes.resize(page.pitch * static_cast<std::size_t>(height));
  std::mt19937 random(seed);
  for (auto& byte : page.bytes) {
    const unsigned value = random();
    byte = value % 5 == 0 ? static_cast<std::uint8_t>(value >> 8) : (value & 16) != 0 ? 255 : 0;
  }
  return page;
}

std::vector<std::uint8_t> Reference(const Page& page, int n, bool zeroIsLight, std::size_t pitch) {
  const int width = page.width / n;
  const int height = page.height / n;
  std::vector<std::uint8_t> result(pitch * static_cast<std::size_t>(height), kUntouched);
  for (int r = 0; r < height; ++r)
    for (int c = 0; c < width; ++c) {
      int light = 0;
      for (int y = r * n; y < r * n + n; ++y)
        for (int x = c * n; x < c * n + n; ++x)
          light += (page.bytes[static_cast<std::size_t>(y) * page.pitch + static_cast<std::size_t>(x)] ==
                    0) == zeroIsLight;
      result[static_cast<std::size_t>(r) * pitch + static_cast<std::size_t>(c)] =
          static_cast<std::uint8_t>(light * 255 / (n * n));
    }
  return result;
}

std::vector<std::uint8_t> Reduced(const Page& page, int n, bool zeroIsLight, std::size_t pitch) {
  std::vector<std::uint8_t> result(pitch * static_cast<std::size_t>(page.height / n), kUntouched);
  LEADTOOLS::ReduceToGray(
      {page.bytes.data(), page.pitch, result.data(), pitch, page.width / n, page.height / n, n, zeroIsLight});
  return result;
}

void ExpectSame(const std::vector<std::uint8_t>& got, const std::vector<std::uint8_t>& wanted,
                std::size_t pitch, const std::string& what) {
  const auto [a, b] = std::mismatch(got.begin(), got.end(), wanted.begin());
  if (a == got.end()) return;
  const auto at = static_cast<std::size_t>(a - got.begin());
  FAIL() << what << ": row " << at / pitch << ", column " << at % pitch << " is " << int{*a} << ", not "
         << int{*b};
}

TEST(SmartResize, EveryDivisorAndWidthEqualsTheRule) {
  for (int n : {1, 2, 3, 4, 5, 6, 7, 8, 9, 10, 11, 13, 15, 16, 17, 32, 100, 254, 255, 256, 300})
    for (int width : {n, n + 1, 2 * n + 1, 7 * n, 8 * n + n / 2, 31 * n + 1, 32 * n, 33 * n, 129 * n - 1}) {
      if (n > 100 && width > 9 * n) continue;
      const Page page = RandomPage(width, 2 * n + n / 2, static_cast<unsigned>(n * 1000 + width));
      const auto pitch = static_cast<std::size_t>((width / n + 3) / 4 * 4);
      for (bool zeroIsLight : {false, true})
        ExpectSame(Reduced(page, n, zeroIsLight, pitch), Reference(page, n, zeroIsLight, pitch), pitch,
                   "n " + std::to_string(n) + ", width " + std::to_string(width) +
                       (zeroIsLight ? ", zero light" : ""));
    }
}

TEST(SmartResize, EveryCountGivesItsTruncatedShare) {
  // One block per count: pixels lighten one by one, so that each quotient of the division is met.
  for (int n : {2, 3, 4, 5, 6, 7, 8, 9, 10, 12, 14, 15, 16}) {
    const int blocks = n * n + 1;
    Page page{blocks * n, n, static_cast<std::size_t>((blocks * n + 3) / 4 * 4), {}};
    page.bytes.assign(page.pitch * static_cast<std::size_t>(n), 0);
    for (int count = 0; count < blocks; ++count)
      for (int i = 0; i < count; ++i)
        page.bytes[static_cast<std::size_t>(i / n) * page.pitch +
                   static_cast<std::size_t>(count * n + i % n)] = 1;
    const auto pitch = static_cast<std::size_t>((blocks + 3) / 4 * 4);
    const auto gray = Reduced(page, n, false, pitch);
    for (int count = 0; count < blocks; ++count)
      ASSERT_EQ(gray[static_cast<std::size_t>(count)], count * 255 / (n * n))
          << "n " << n << ", count " << count;
  }
}

/// A block as the imaging service gives it.
std::vector<std::uint8_t> Block(int width, int height, int bits, RGBQUAD zero, RGBQUAD one) {
  BITMAPINFOHEADER head{40, width, height, 1, static_cast<WORD>(bits), BI_RGB, 0, 3937, 3937, 256, 7};
  const std::size_t rows =
      static_cast<std::size_t>((width + 3) / 4 * 4) * static_cast<std::size_t>(std::abs(height));
  std::vector<std::uint8_t> block(smart_resize::kRowsOffset + rows);
  std::memcpy(block.data(), &head, sizeof head);
  std::memcpy(block.data() + 40, &zero, sizeof zero);
  std::memcpy(block.data() + 44, &one, sizeof one);
  return block;
}

constexpr RGBQUAD kWhite{255, 255, 255, 0};
constexpr RGBQUAD kBlack{0, 0, 0, 0};

TEST(SmartResize, PlansTheReducedBlock) {
  const auto block = Block(1001, 30, 8, kWhite, kBlack);
  smart_resize::Job job;
  ASSERT_TRUE(smart_resize::Plan(block.data(), block.size(), 4, &job));
  EXPECT_EQ(job.head.biWidth, 250);
  EXPECT_EQ(job.head.biHeight, 7);
  EXPECT_EQ(job.head.biXPelsPerMeter, 3937);
  EXPECT_EQ(job.head.biClrImportant, 7U);
  EXPECT_EQ(job.targetBytes, 1064U + 252 * 7);
  EXPECT_EQ(job.head.biSizeImage, job.targetBytes);
  EXPECT_EQ(job.rows.sourcePitch, 1004U);
  EXPECT_TRUE(job.rows.zeroIsLight);
}

TEST(SmartResize, LightIsTheBrighterOfTheTwoColours) {
  const struct {
    RGBQUAD zero, one;
    bool zeroIsLight;
  } kCases[] = {{kWhite, kBlack, true},
                {kBlack, kWhite, false},
                {kWhite, kWhite, false},
                {{0, 0, 9, 0}, {8, 0, 0, 255}, true}};
  for (const auto& c : kCases) {
    const auto block = Block(8, 8, 8, c.zero, c.one);
    smart_resize::Job job;
    ASSERT_TRUE(smart_resize::Plan(block.data(), block.size(), 2, &job));
    EXPECT_EQ(job.rows.zeroIsLight, c.zeroIsLight);
  }
}

TEST(SmartResize, RefusesWhatItCantReduce) {
  const struct {
    const char* name;
    int width, height, bits, divisor;
    std::size_t missing;
  } kCases[] = {{"narrower than the divisor", 10, 1000, 8, 16, 0},
                {"lower than the divisor", 1000, 10, 8, 16, 0},
                {"other depth", 100, 100, 24, 2, 0},
                {"top-down", 100, -100, 8, 2, 0},
                {"divisor 0", 100, 100, 8, 0, 0},
                {"enlargement", 100, 100, 8, -2, 0},
                {"cut short", 100, 100, 8, 2, 1}};
  for (const auto& c : kCases) {
    const auto block = Block(c.width, c.height, c.bits, kWhite, kBlack);
    smart_resize::Job job;
    EXPECT_FALSE(smart_resize::Plan(block.data(), block.size() - c.missing, c.divisor, &job)) << c.name;
  }
  smart_resize::Job job;
  EXPECT_FALSE(smart_resize::Plan(nullptr, 0, 2, &job));
}

}  // namespace
