#include <cstring>

#include "imaging/pixels/axis.h"
#include "imaging/pixels/kernels.h"
#include "imaging/pixels/resize.h"
#include "imaging/pixels/scaler.h"
#include "tests/imaging/pixel_support.h"

using pixel_test::AllPixels;
using pixel_test::ErrorOf;
using pixel_test::GetPixel;
using pixel_test::OwnedBitmap;

namespace {

class Size : public testing::TestWithParam<int> {};

// Fax pages are made square by whole factors of one axis; any other factor takes the pixel below the centre.
TEST_P(Size, RepeatsAndDropsExactly) {
  for (const auto& [width, height] : {std::pair{38, 33}, {19, 22}, {57, 11}, {30, 25}, {7, 5}, {19, 3}}) {
    OwnedBitmap source(19, 11, GetParam());
    pixel_test::FillNoise(*source.pStorage, 21);
    source.XResolution = 204;
    OwnedBitmap sized;
    LEADTOOLS::CopyBitmap(&sized, &source);
    LEADTOOLS::SizeBitmapExt(&sized, width, height, leadtools12::kSizeByDropping);
    ASSERT_EQ(sized.Width, width);
    ASSERT_EQ(sized.BitsPerPixel, GetParam());
    ASSERT_EQ(sized.XResolution, 204);
    for (int y = 0; y < height; ++y)
      for (int x = 0; x < width; ++x)
        ASSERT_EQ(GetPixel(sized, x, y),
                  GetPixel(source, (2 * x + 1) * 19 / (2 * width), (2 * y + 1) * 11 / (2 * height)))
            << x << ", " << y << " of " << width << " x " << height;
  }
}

TEST_P(Size, OwnSizeIsLeftAlone) {
  OwnedBitmap bitmap(19, 11, GetParam());
  const imaging::PixelStorage* const pixels = bitmap.pStorage;
  LEADTOOLS::SizeBitmap(&bitmap, 19, 11);
  EXPECT_EQ(bitmap.pStorage, pixels);
  EXPECT_EQ(ErrorOf([&] { LEADTOOLS::SizeBitmap(&bitmap, 0, 11); }), imaging::kErrorInvalidParameter);
  EXPECT_EQ(bitmap.pStorage, pixels) << "a failure leaves the bitmap as it was";
}

INSTANTIATE_TEST_SUITE_P(Depths, Size, testing::Values(1, 4, 8, 24, 32), testing::PrintToStringParamName());

// A checkerboard of two by two blocks: halved it is the average of whole blocks, in the depth told.
TEST(SizeAveraged, DepthsAndValues) {
  const struct {
    int bits;
    int resultBits;
    std::uint32_t dark, light, average;
  } rows[] = {{1, 8, 0, 1, 128},
              {4, 8, 0, 15, 128},
              {8, 8, 10, 20, 15},
              {24, 24, 0x102030, 0x304050, 0x203040},
              {32, 32, 0x80102030, 0xa0304050, 0x90203040}};
  for (const auto& row : rows) {
    for (const unsigned long flags : {0UL, 2UL}) {
      OwnedBitmap bitmap(6, 4, row.bits);
      bitmap.Order = 0;
      for (int y = 0; y < 4; ++y)
        for (int x = 0; x < 6; ++x)
          pixel_test::SetPixel(*bitmap.pStorage, x, y, (x + y) % 2 != 0 ? row.light : row.dark);
      LEADTOOLS::SizeBitmapExt(&bitmap, 3, 2, flags);
      EXPECT_EQ(bitmap.BitsPerPixel, row.resultBits);
      EXPECT_EQ(AllPixels(bitmap), std::vector<std::uint32_t>(6, row.average)) << row.bits << flags;
      EXPECT_EQ(bitmap.Order, row.bits >= 24 ? 0 : 1);
    }
  }
}

// The longest sides the limits allow must not overflow the sums: white stays white, half stays half.
TEST(SizeAveraged, ExtremeReductions) {
  const struct {
    int width, height, toWidth, toHeight;
  } rows[] = {
      {200'000, 3, 1, 1}, {3, 200'000, 2, 1}, {200'000, 2, 7, 2}, {2, 200'000, 2, 300}, {2000, 2000, 1, 1}};
  for (const auto& row : rows)
    for (const std::uint32_t level : {255U, 128U}) {
      OwnedBitmap bitmap(row.width, row.height, 8);
      for (int y = 0; y < row.height; ++y)
        std::memset(bitmap.pStorage->Row(y), static_cast<int>(level), bitmap.pStorage->RowBytes());
      LEADTOOLS::SizeBitmapExt(&bitmap, row.toWidth, row.toHeight, 2);
      for (const std::uint32_t pixel : AllPixels(bitmap))
        ASSERT_EQ(pixel, level) << row.width << " x " << row.height;
    }
}

TEST(Resize, WritesTheTargetsDepthAndOrder) {
  OwnedBitmap source(4, 4, 24);
  source.Order = 0;
  for (int y = 0; y < 4; ++y)
    for (int x = 0; x < 4; ++x) pixel_test::SetPixel(*source.pStorage, x, y, 0x0000ff);  // red
  OwnedBitmap color(2, 2, 24);
  color.Order = 1;
  LEADTOOLS::ResizeBitmap(&source, &color);
  EXPECT_EQ(AllPixels(color), std::vector<std::uint32_t>(4, 0xff0000));
  OwnedBitmap gray(3, 2, 8);
  LEADTOOLS::ResizeBitmap(&source, &gray);
  EXPECT_EQ(AllPixels(gray), std::vector<std::uint32_t>(6, 76));
  OwnedBitmap bilevel(8, 8, 1);
  pixel_test::FillNoise(*bilevel.pStorage, 4);
  OwnedBitmap larger(16, 8, 1);
  LEADTOOLS::ResizeBitmap(&bilevel, &larger);
  EXPECT_EQ(GetPixel(larger, 11, 5), GetPixel(bilevel, 5, 5));
  EXPECT_EQ(ErrorOf([&] { LEADTOOLS::ResizeBitmap(&source, &bilevel); }), imaging::kErrorUnsupported);
}

TEST(GrayScale, WeighsTheColorsOfAllDepths) {
  OwnedBitmap table(2, 1, 4);
  table.pStorage->Palette()[1] = {200, 100, 50, 0};
  pixel_test::SetPixel(*table.pStorage, 1, 0, 1);
  LEADTOOLS::GrayScaleBitmap(&table, 8);
  EXPECT_EQ(table.BitsPerPixel, 8);
  EXPECT_EQ(AllPixels(table),
            (std::vector<std::uint32_t>{0, 96}));  // 0.299 * 50 + 0.587 * 100 + 0.114 * 200 = 96.45
  for (const int order : {0, 1}) {
    OwnedBitmap color(1, 1, 24);
    color.Order = order;
    pixel_test::SetPixel(*color.pStorage, 0, 0, order == 1 ? 0x3264c8 : 0xc86432);
    LEADTOOLS::GrayScaleBitmap(&color, 8);
    EXPECT_EQ(GetPixel(color, 0, 0), 96U) << order;
  }
  OwnedBitmap bilevel(2, 1, 1);
  pixel_test::SetPixel(*bilevel.pStorage, 0, 0, 1);
  LEADTOOLS::GrayScaleBitmap(&bilevel, 8);
  EXPECT_EQ(AllPixels(bilevel), (std::vector<std::uint32_t>{255, 0}));
}

// Weights that don't add up darken or lighten; a span past the end reads memory of something else.
TEST(BoxAxis, SpansCoverTheSourceAndNoMore) {
  for (int length = 2; length < 60; ++length)
    for (int size = 1; size < length; ++size)
      for (const int fraction : {0, 3, 8, 14}) {
        const imaging::BoxAxis axis(length, size, fraction);
        for (int i = 0; i < size; ++i) {
          const imaging::BoxSpan span = axis.At(i);
          const std::uint32_t full = static_cast<std::uint32_t>(span.full) << fraction;
          ASSERT_EQ(span.firstWeight + full + span.lastWeight, axis.Sum()) << length << " to " << size;
          ASSERT_LE(span.firstWeight, (1U << fraction) + 1);
          ASSERT_LE(span.lastWeight, (1U << fraction) + 1);
          ASSERT_EQ(span.first, i * length / size);
          const int end = span.first + span.full + (span.lastWeight != 0 ? 2 : 1);
          ASSERT_LE(end, length) << length << " to " << size << " at " << i;
        }
      }
}

// The kernels chosen for the processor must give the plain ones' bytes.
TEST(Kernels, FastEqualPlain) {
#if defined(__x86_64__)
  ASSERT_EQ(__builtin_cpu_supports("avx2") == 0, &imaging::FastKernels() == &imaging::PlainKernels());
#endif
  for (const int bits : {1, 8, 24, 32}) {
    auto pixels = imaging::PixelStorage::Create(1201, 403, bits);
    pixel_test::FillNoise(*pixels, 31);
    for (const auto& [width, height] : {std::pair{1200, 402},
                                        {601, 200},
                                        {400, 134},
                                        {301, 41},
                                        {150, 100},
                                        {37, 29},
                                        {2000, 100},
                                        {3, 2}}) {
      const imaging::Scaling scaling{0, 0, 1201, 403, width, height};
      const auto count = static_cast<std::size_t>(width * height);
      std::vector<std::uint32_t> fast(count);
      std::vector<std::uint32_t> plain(count);
      imaging::RenderScaled(*pixels, 1, scaling, {0, 0, width, height}, fast.data(), width,
                            imaging::FastKernels());
      imaging::RenderScaled(*pixels, 1, scaling, {0, 0, width, height}, plain.data(), width,
                            imaging::PlainKernels());
      for (std::size_t i = 0; i < count; ++i)
        ASSERT_EQ(fast[i], plain[i]) << bits << " bits, " << width << " x " << height << ", pixel " << i;
    }
  }
}

// Bits are counted where they are packed; the bytes of the same picture are added up one by one.
TEST(BoxScaler, PackedBitsGiveWhatTheirBytesGive) {
  for (const int width : {40, 63, 64, 71, 1201}) {
    auto packed = imaging::PixelStorage::Create(width, 600, 1);
    pixel_test::FillNoise(*packed, static_cast<unsigned>(width));
    for (int y = 0; y < 300; ++y) packed->Row(y)[2] = 0xff;  // columns that are full
    packed->Palette()[0] = {200, 200, 200, 0};
    packed->Palette()[1] = {31, 31, 31, 0};
    const auto bytes = imaging::Grayed(*packed, 1);
    for (const int height : {99, 41, 7, 3, 2, 1}) {  // 1: too many rows to count
      for (const int left : {0, 5, 16}) {
        const imaging::Scaling scaling{left, 3, width - left, 590, (width - left) / 3 + 1, height};
        const RECT part{2, 0, scaling.width, height};
        const int columns = scaling.width - 2;
        std::vector<std::uint32_t> wanted(static_cast<std::size_t>(columns * height));
        imaging::RenderScaled(*bytes, 1, scaling, part, wanted.data(), columns);
        for (const auto* kernels : {&imaging::FastKernels(), &imaging::PlainKernels()}) {
          std::vector<std::uint32_t> shown(wanted.size());
          imaging::RenderScaled(*packed, 1, scaling, part, shown.data(), columns, *kernels);
          ASSERT_EQ(shown, wanted) << width << " from " << left << " to " << height << " rows";
        }
      }
    }
  }
}

TEST(Kernels, ExpandBitsFromAnyBit) {
  std::vector<std::uint8_t> bits(64);
  for (std::size_t i = 0; i < bits.size(); ++i) bits[i] = static_cast<std::uint8_t>(i * 37 + 11);
  for (std::size_t first = 0; first < 40; ++first)
    for (const std::size_t count : {1U, 7U, 31U, 32U, 65U, 200U}) {
      std::vector<std::uint8_t> fast(count, 9);
      std::vector<std::uint8_t> plain(count, 8);
      imaging::FastKernels().expandBits(fast.data(), bits.data(), first, count, 3, 250);
      imaging::PlainKernels().expandBits(plain.data(), bits.data(), first, count, 3, 250);
      ASSERT_EQ(fast, plain) << first << " " << count;
    }
}

}  // namespace
