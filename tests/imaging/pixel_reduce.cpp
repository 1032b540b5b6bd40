// Reduction of two-level images: the vectors against the plain code, this against the rule, and the records.

#include <algorithm>
#include <cstring>
#include <limits>
#include <string>

#include "imaging/pixels/reduce.h"
#include "tests/imaging/pixel_support.h"

using namespace pixel_test;
using imaging::PixelStorage;

namespace {

constexpr std::uint8_t kUntouched = 0xA5;

/// A byte more than each row needs, to see what is written there.
struct Shares {
  Shares(const PixelStorage& source, int divisor)
      : width(source.Width() / divisor),
        height(source.Height() / divisor),
        bytes(static_cast<std::size_t>((width + 1) * height), kUntouched) {}
  imaging::TwoLevelBlocks Blocks(const PixelStorage& source, int divisor, bool invert) {
    return {source.Row(0), source.Pitch(), bytes.data(), width + 1,    width,
            height,        divisor,        invert,       source.Bits()};
  }
  int width;
  int height;
  std::vector<std::uint8_t> bytes;
};

std::vector<std::uint8_t> ByTheRule(const PixelStorage& source, int n, bool invert) {
  Shares shares(source, n);
  for (int y = 0; y < shares.height; ++y)
    for (int x = 0; x < shares.width; ++x) {
      int count = 0;
      for (int i = 0; i < n * n; ++i)
        count += (GetPixel(source, x * n + i % n, y * n + i / n) != 0) != invert ? 1 : 0;
      shares.bytes[static_cast<std::size_t>(y * (shares.width + 1) + x)] =
          static_cast<std::uint8_t>(count * 255 / (n * n));
    }
  return shares.bytes;
}

/// Noise between columns of full and of empty blocks: a sum that runs over its byte shows in its neighbour.
void FillTextLike(PixelStorage& pixels, int n, unsigned seed) {
  FillNoise(pixels, seed);
  for (int x = 0; x < pixels.Width(); ++x) {
    const int column = x / n % 5;
    if (column == 2 || column == 4) continue;
    for (int y = 0; y < pixels.Height(); ++y) SetPixel(pixels, x, y, column == 3 ? 0 : 1);
  }
}

TEST(ReduceBlocks, EveryDivisorAndWidthEqualsTheRule) {
  for (const int n :
       {1, 2, 3, 4, 5, 6, 7, 8, 9, 11, 12, 13, 15, 16, 17, 24, 31, 32, 33, 48, 64, 100, 255, 256})
    for (const int blocks : {1, 2, 7, 8, 9, 15, 17, 31, 33, 63, 64, 65, 127, 128, 129, 257})
      for (const int bits : {1, 8}) {
        if (blocks * n > 4000) continue;
        const auto source = PixelStorage::Create(blocks * n + (blocks * 7) % n, 2 * n + n / 2, bits);
        FillTextLike(*source, n, static_cast<unsigned>(1000 * n + blocks));
        for (const bool invert : {false, true}) {
          const auto wanted = ByTheRule(*source, n, invert);
          Shares plain(*source, n);
          imaging::ReduceBlocksPlain(plain.Blocks(*source, n, invert));
          ASSERT_TRUE(plain.bytes == wanted) << bits << " bit, plain, divisor " << n << ", width " << blocks;
          Shares fast(*source, n);
          if (!imaging::ReduceBlocksFast(fast.Blocks(*source, n, invert))) continue;
          const auto at = std::mismatch(wanted.begin(), wanted.end(), fast.bytes.begin());
          ASSERT_TRUE(at.first == wanted.end())
              << bits << " bit, divisor " << n << ", width " << blocks << ", byte "
              << at.first - wanted.begin() << " is " << int{*at.second} << ", not " << int{*at.first};
        }
      }
}

TEST(ReduceBlocks, EveryCountGivesItsTruncatedShare) {
  for (int n = 2; n <= 17; ++n) {
    const int counts = n * n + 1;
    const auto source = PixelStorage::Create(counts * n, n, 1);
    for (int y = 0; y < n; ++y) std::fill_n(source->Row(y), source->RowBytes(), std::uint8_t{0});
    for (int count = 0; count < counts; ++count)
      for (int i = 0; i < count; ++i) SetPixel(*source, count * n + i % n, i / n, 1);
    Shares shares(*source, n);
    for (const auto& reduce : {imaging::ReduceBlocks, imaging::ReduceBlocksPlain}) {
      reduce(shares.Blocks(*source, n, false));
      for (int count = 0; count < counts; ++count)
        ASSERT_EQ(shares.bytes[static_cast<std::size_t>(count)], count * 255 / (n * n)) << n << ", " << count;
    }
  }
}

TEST(SmartResize, SizeDepthAndColours) {
  const struct {
    int width, height, bits;
    double factor;
    int newWidth, newHeight, newBits;
  } cases[] = {{100, 60, 1, 0.5, 50, 30, 8},      {101, 61, 1, 1.0 / 3, 33, 20, 8},
               {98, 98, 1, 1.0 / 49, 2, 2, 8},  // 98 * (1.0 / 49) is less than 2
               {1000, 800, 1, 0.108, 108, 86, 8}, {5000, 20, 1, 108 / 5000.0, 108, 1, 8},
               {10, 300, 1, 1.0 / 20, 1, 15, 8},  // no whole block
               {100, 60, 1, 1.0, 100, 60, 8},     {100, 60, 24, 0.5, 50, 30, 24},
               {100, 60, 8, 0.25, 25, 15, 8},     {100, 60, 1, 1e-300, 1, 1, 8}};
  for (const auto& c : cases) {
    OwnedBitmap source(c.width, c.height, c.bits);
    FillNoise(*source.pStorage, 5);
    source.XResolution = 204;
    OwnedBitmap target;
    LEADTOOLS::SmartResize(&source, &target, c.factor);
    EXPECT_EQ(target.Width, c.newWidth) << c.width << " by " << c.factor;
    EXPECT_EQ(target.Height, c.newHeight) << c.width << " by " << c.factor;
    EXPECT_EQ(target.BitsPerPixel, c.newBits) << c.width << " by " << c.factor;
    EXPECT_EQ(target.XResolution, 204);
    EXPECT_EQ(source.Width, c.width);
  }
}

TEST(SmartResize, ShadesLieBetweenTheTwoColours) {
  const struct {
    RGBQUAD zero, one;
    std::uint32_t quarterSet;  ///< shade of a block of which one of four pixels is set
  } cases[] = {{{0, 0, 0, 0}, {255, 255, 255, 0}, 0x3f3f3f},
               {{255, 255, 255, 0}, {0, 0, 0, 0}, 0xbfbfbf},
               {{0, 0, 0, 0}, {0, 0, 255, 0}, 0x3f0000},
               {{200, 100, 0, 0}, {0, 0, 0, 0}, 0x004b96}};
  for (const auto& c : cases) {
    OwnedBitmap source(2, 2, 1);
    source.pStorage->Palette()[0] = c.zero;
    source.pStorage->Palette()[1] = c.one;
    SetPixel(*source.pStorage, 1, 1, 1);
    LEADTOOLS::SmartResize(&source, &source, 0.5);  // in place
    ASSERT_EQ(source.Width, 1);
    const RGBQUAD shade = source.pStorage->Palette()[GetPixel(source, 0, 0)];
    EXPECT_EQ(shade.rgbRed << 16 | shade.rgbGreen << 8 | shade.rgbBlue, static_cast<int>(c.quarterSet));
  }
}

TEST(SmartResize, RefusesWhatIsNoReduction) {
  OwnedBitmap source(10, 10, 1);
  OwnedBitmap target;
  const double nan = std::numeric_limits<double>::quiet_NaN();
  for (const double factor : {0.0, -0.5, 1.01, 1e300, nan})
    EXPECT_EQ(ErrorOf([&] { LEADTOOLS::SmartResize(&source, &target, factor); }),
              imaging::kErrorInvalidParameter);
  EXPECT_EQ(ErrorOf([&] { LEADTOOLS::SmartResize(&target, &source, 0.5); }), imaging::kErrorNoBitmap);
  EXPECT_EQ(ErrorOf([&] { LEADTOOLS::SmartResize(&source, nullptr, 0.5); }), imaging::kErrorInvalidParameter);
}

TEST(Regions, BelongToThePixelsUntilTheseChange) {
  OwnedBitmap bitmap(40, 30, 8);
  struct_LEAD_Bitmap header{};
  LEADTOOLS::CopyBitmapHandle(&header, &bitmap);
  struct_LEAD_Bitmap nothing{};
  EXPECT_EQ(LEADTOOLS::BitmapHasRgn(nullptr), 0U);
  EXPECT_EQ(LEADTOOLS::BitmapHasRgn(&nothing), 0U);
  EXPECT_EQ(LEADTOOLS::BitmapHasRgn(&bitmap), 0U);
  RECT bounds{};
  EXPECT_EQ(ErrorOf([&] { LEADTOOLS::GetBitmapRgnBounds(&bitmap, nullptr, &bounds); }),
            imaging::kErrorInvalidParameter);

  const RECT part{5, 6, 40, 30};
  LEADTOOLS::SetBitmapRgnRect(&bitmap, &part);
  EXPECT_NE(LEADTOOLS::BitmapHasRgn(&header), 0U);
  LEADTOOLS::GetBitmapRgnBounds(&header, nullptr, &bounds);
  EXPECT_TRUE(bounds.left == 5 && bounds.top == 6 && bounds.right == 40 && bounds.bottom == 30);
  for (const RECT outside :
       {RECT{0, 0, 41, 30}, RECT{-1, 0, 10, 10}, RECT{10, 10, 10, 20}, RECT{9, 9, 8, 10}})
    EXPECT_EQ(ErrorOf([&] { LEADTOOLS::SetBitmapRgnRect(&bitmap, &outside); }),
              imaging::kErrorInvalidParameter);
  EXPECT_NE(LEADTOOLS::BitmapHasRgn(&bitmap), 0U);
  LEADTOOLS::RotateBitmap(&bitmap, 9000, 5, 0);
  EXPECT_EQ(LEADTOOLS::BitmapHasRgn(&bitmap), 0U);
}

/// A page that two rows of blocks were painted of, and what is done then, before all of it is read.
struct Later {
  const char* what;
  void (*act)(std::unique_ptr<PixelStorage>& source, std::unique_ptr<PixelStorage>& reduced);
};

using Page = std::unique_ptr<PixelStorage>;

TEST(ReducedLevels, RowsThatAreMadeLaterAreThoseOfTheFirstMoment) {
  const Later laters[] = {
      {"nothing", [](Page&, Page&) {}},
      {"the source changes", [](Page& source, Page&) { std::fill_n(source->HeldRow(700), 10, 0x5a); }},
      {"its bytes are asked for", [](Page& source, Page&) { source->HoldBytes(); }},
      {"it turns black and white", [](Page& source, Page&) { source->ShowAsBytes(255, 0); }},
      {"it ends", [](Page& source, Page&) { source = nullptr; }},
      {"its bytes are asked for and it ends",
       [](Page& source, Page&) { source->HoldBytes(), source = nullptr; }},
      {"others take its place",
       [](Page& source, Page&) {
         const Page other = PixelStorage::Create(8, 8, 1);
         source->Exchange(*other);
         source->HeldRow(0)[0] = 1;
       }},
      {"the two change places",
       [](Page& source, Page& reduced) { source->Exchange(*reduced), source.swap(reduced); }},
      {"it is reduced again", [](Page& source, Page&) { imaging::ReducedLevels(*source, 5)->HoldBytes(); }},
  };
  constexpr int kDivisor = 3;
  for (const bool inverted : {false, true})
    for (const Later& later : laters) {
      Page source = PixelStorage::Create(1203, 1001, 1);
      FillNoise(*source, 5);
      source->ShowAsBytes(inverted ? 255 : 0, inverted ? 0 : 255);
      std::vector<std::uint8_t> wanted(401 * 333);
      imaging::ReduceBlocksPlain(
          {source->HeldRow(0), source->HeldPitch(), wanted.data(), 401, 401, 333, kDivisor, inverted, 1});
      Page reduced = imaging::ReducedLevels(*source, kDivisor);
      reduced->MakeRows(100, 2);
      later.act(source, reduced);
      source = nullptr;
      for (int y = 332; y >= 0; --y)
        ASSERT_EQ(std::memcmp(reduced->Row(y), &wanted[static_cast<std::size_t>(y) * 401], 401), 0)
            << later.what << ", row " << y;
    }
}

}  // namespace
