#include <cmath>

#include "imaging/pixels/paint.h"
#include "imaging/pixels/view_cache.h"
#include "tests/imaging/pixel_support.h"

using imaging::PaintOnSurface;
using imaging::PaintRects;
using pixel_test::ErrorOf;
using pixel_test::GetPixel;
using pixel_test::OwnedBitmap;

namespace {

constexpr std::uint32_t kUntouched = 0xff123456U;
constexpr std::uint32_t kSourceCopy = 0x00cc0020;

/// A surface with a pattern in it, so that each stray pixel shows.
struct Canvas {
  Canvas(int width, int height) : pixels(static_cast<std::size_t>(width * height), kUntouched) {
    view.pixels = pixels.data();
    view.width = width;
    view.height = height;
    view.stride = width;
    clips = {{0, 0, width, height}};
    view.clip = clips;
  }
  std::uint32_t At(int x, int y) const { return pixels[static_cast<std::size_t>(y * view.width + x)]; }
  void Paint(OwnedBitmap& bitmap, RECT destination, const RECT* clip = nullptr,
             std::uint32_t operation = kSourceCopy) {
    PaintRects rects;
    rects.destination = &destination;
    rects.destinationClip = clip;
    PaintOnSurface(view, &bitmap, rects, operation);
  }

  std::vector<std::uint32_t> pixels;
  std::vector<RECT> clips;
  platform::SurfaceView view;
};

/// Colour of a source pixel as it must look on the screen: channel 0 blue, 1 green, 2 red.
double Seen(const OwnedBitmap& bitmap, int x, int y, int channel) {
  const std::uint32_t value = GetPixel(bitmap, x, y);
  if (bitmap.BitsPerPixel <= 8) {
    const imaging::PixelStorage& pixels = *bitmap.pStorage;
    const RGBQUAD color = pixels.Palette()[value];
    return channel == 0 ? color.rgbBlue : channel == 1 ? color.rgbGreen : color.rgbRed;
  }
  const int place = bitmap.Order == 1 ? channel : 2 - channel;
  const double level = value >> (8 * place) & 255;
  const double alpha = bitmap.BitsPerPixel == 32 ? (value >> 24) / 255.0 : 1;
  return level * alpha + 255 * (1 - alpha);
}

/// The source interval below a result pixel: averaged when the axis gets shorter, else one pixel.
std::pair<double, double> Interval(int position, int length, int size) {
  if (size < length)
    return {static_cast<double>(position) * length / size, static_cast<double>(position + 1) * length / size};
  const double pixel = std::floor((position + 0.5) * length / size);
  return {pixel, pixel + 1};
}

double Average(const OwnedBitmap& bitmap, std::pair<double, double> columns, std::pair<double, double> rows,
               int channel) {
  double sum = 0;
  for (int y = static_cast<int>(rows.first); y < rows.second && y < bitmap.Height; ++y)
    for (int x = static_cast<int>(columns.first); x < columns.second && x < bitmap.Width; ++x) {
      const double wide = std::min(columns.second, x + 1.0) - std::max<double>(columns.first, x);
      const double high = std::min(rows.second, y + 1.0) - std::max<double>(rows.first, y);
      sum += wide * high * Seen(bitmap, x, y, channel);
    }
  return sum / (columns.second - columns.first) / (rows.second - rows.first);
}

struct Case {
  const char* name;
  int bits;
  int order;
  bool colorTable;
  int width;
  int height;
  int paintedWidth;
  int paintedHeight;
};

void PrintTo(const Case& c, std::ostream* out) {
  *out << c.name;
}

class Paint : public testing::TestWithParam<Case> {
 protected:
  Paint() : m_bitmap(GetParam().width, GetParam().height, GetParam().bits) {
    pixel_test::FillNoise(*m_bitmap.pStorage, 7);
    if (GetParam().colorTable) pixel_test::SetColorTable(*m_bitmap.pStorage, 8);
    m_bitmap.Order = GetParam().order;
  }
  OwnedBitmap m_bitmap;
};

// Catches wrong weights, wrong intervals at fractional edges, exchanged channels, alpha left as it is.
TEST_P(Paint, IsTheAverageOfTheCoveredPixels) {
  const Case& c = GetParam();
  Canvas canvas(c.paintedWidth, c.paintedHeight);
  canvas.Paint(m_bitmap, {0, 0, c.paintedWidth, c.paintedHeight});
  for (int y = 0; y < c.paintedHeight; ++y)
    for (int x = 0; x < c.paintedWidth; ++x)
      for (int channel = 0; channel < 3; ++channel) {
        const double expected = Average(m_bitmap, Interval(x, c.width, c.paintedWidth),
                                        Interval(y, c.height, c.paintedHeight), channel);
        const int painted = static_cast<int>(canvas.At(x, y) >> (8 * channel) & 255);
        ASSERT_NEAR(painted, expected, c.bits == 32 ? 1.02 : 0.52)
            << x << ", " << y << " channel " << channel;
        ASSERT_EQ(canvas.At(x, y) >> 24, 255U);
      }
}

// Catches scaled pixels that depend on where the clip begins, and anything kept from an earlier paint that no
// longer fits.
TEST_P(Paint, InTilesEqualsPaintingWhole) {
  const Case& c = GetParam();
  Canvas whole(c.paintedWidth + 9, c.paintedHeight + 9);
  Canvas tiled(c.paintedWidth + 9, c.paintedHeight + 9);
  const RECT place{-3, 4, c.paintedWidth - 3, c.paintedHeight + 4};
  whole.Paint(m_bitmap, place);
  OwnedBitmap copy;
  LEADTOOLS::CopyBitmap(&copy, &m_bitmap);
  for (int y = 0; y < whole.view.height; y += 5)
    for (int x = 0; x < whole.view.width; x += 7) {
      const RECT tile{x, y, x + 7, y + 5};
      tiled.Paint(copy, place, &tile);
    }
  for (int y = 0; y < whole.view.height; ++y)
    for (int x = 0; x < whole.view.width; ++x) ASSERT_EQ(whole.At(x, y), tiled.At(x, y)) << x << ", " << y;
}

INSTANTIATE_TEST_SUITE_P(Depths, Paint,
                         testing::Values(Case{"bilevel_reduced", 1, 0, false, 203, 151, 37, 29},
                                         Case{"bilevel_colors_reduced", 1, 0, true, 203, 151, 40, 50},
                                         Case{"four_bits_reduced", 4, 0, true, 101, 77, 33, 20},
                                         Case{"gray_by_whole_factor", 8, 0, false, 96, 64, 24, 16},
                                         Case{"gray_slightly_reduced", 8, 0, false, 64, 48, 61, 47},
                                         Case{"gray_reduced", 8, 0, false, 211, 97, 50, 31},
                                         Case{"gray_as_is", 8, 0, false, 40, 30, 40, 30},
                                         Case{"gray_enlarged", 8, 0, false, 19, 13, 64, 70},
                                         Case{"gray_narrower_and_higher", 8, 0, false, 60, 20, 25, 47},
                                         Case{"gray_wider_and_lower", 8, 0, false, 20, 60, 47, 25},
                                         Case{"gray_of_600_rows_to_2", 8, 0, false, 30, 700, 20, 2},
                                         Case{"gray_of_900_columns_to_2", 8, 0, false, 900, 12, 2, 9},
                                         Case{"color_table_reduced", 8, 0, true, 99, 55, 20, 30},
                                         Case{"color_table_enlarged", 8, 0, true, 9, 5, 31, 23},
                                         Case{"blue_first_reduced", 24, 1, false, 120, 90, 31, 40},
                                         Case{"red_first_reduced", 24, 0, false, 120, 90, 31, 40},
                                         Case{"red_first_enlarged", 24, 0, false, 12, 9, 31, 40},
                                         Case{"blue_first_as_is", 24, 1, false, 31, 40, 31, 40},
                                         Case{"alpha_reduced", 32, 1, false, 70, 50, 33, 21},
                                         Case{"alpha_red_first_enlarged", 32, 0, false, 7, 5, 33, 21}),
                         testing::PrintToStringParamName());

TEST(PaintClip, TouchesTheClipOnly) {
  OwnedBitmap bitmap(40, 40, 8);
  Canvas canvas(30, 30);
  canvas.clips = {{2, 2, 10, 10}, {20, 5, 25, 28}};
  canvas.view.clip = canvas.clips;
  const RECT clip{4, 0, 23, 20};
  canvas.Paint(bitmap, {0, 0, 20, 40}, &clip);
  for (int y = 0; y < 30; ++y)
    for (int x = 0; x < 30; ++x) {
      const bool drawn = x >= 4 && x < 10 && y >= 2 && y < 10;
      ASSERT_EQ(canvas.At(x, y), drawn ? 0xff000000U : kUntouched) << x << ", " << y;
    }
}

TEST(PaintClip, SourceRectangleAndSourceClip) {
  OwnedBitmap bitmap(10, 10, 8);
  for (int y = 0; y < 10; ++y)
    for (int x = 0; x < 10; ++x)
      pixel_test::SetPixel(*bitmap.pStorage, x, y, static_cast<unsigned>(10 * y + x));
  Canvas canvas(8, 8);
  const RECT source{3, 2, 7, 6};
  const RECT sourceClip{4, 0, 6, 3};
  const RECT destination{0, 0, 8, 6};  // rows by one and a half
  PaintOnSurface(canvas.view, &bitmap, {&source, &sourceClip, &destination, nullptr}, kSourceCopy);
  for (int y = 0; y < 8; ++y)
    for (int x = 0; x < 8; ++x) {
      const int column = 3 + x / 2;
      const int row = 2 + (2 * y + 1) / 3;
      const bool drawn = column >= 4 && column < 6 && row < 3 && y < 6;
      const auto gray = static_cast<std::uint32_t>(10 * row + column);
      ASSERT_EQ(canvas.At(x, y), drawn ? 0xff000000U | gray * 0x010101U : kUntouched) << x << ", " << y;
    }
}

// On a display of scale 1.5 a page of 60 pixels shown at 40 units is painted 1:1 in device pixels.
TEST(PaintScale, GoesStraightToDevicePixels) {
  OwnedBitmap bitmap(60, 60, 8);
  pixel_test::FillNoise(*bitmap.pStorage, 3);
  Canvas canvas(70, 70);
  canvas.view.scale = 1.5;
  canvas.view.originX = 3;
  canvas.Paint(bitmap, {2, 0, 42, 40});
  for (int y = 0; y < 60; ++y)
    for (int x = 0; x < 60; ++x)
      ASSERT_EQ(canvas.At(x + 6, y) & 255, GetPixel(bitmap, x, y)) << x << ", " << y;
  EXPECT_EQ(canvas.At(5, 0), kUntouched);
  EXPECT_EQ(canvas.At(66, 0), kUntouched);
}

TEST(PaintOperation, CombinesWithTheSurface) {
  OwnedBitmap bitmap(1, 1, 24);
  bitmap.Order = 1;
  pixel_test::SetPixel(*bitmap.pStorage, 0, 0, 0x0f0f0fU);
  const struct {
    std::uint32_t operation;
    std::uint32_t result;
  } rows[] = {{0x00660046, 0xff1d3b59U},
              {0x008800c6, 0xff020406U},
              {0x00ee0086, 0xff1f3f5fU},
              {0x00330008, 0xfff0f0f0U}};
  for (const auto& row : rows) {
    Canvas canvas(1, 1);
    canvas.Paint(bitmap, {0, 0, 1, 1}, nullptr, row.operation);
    EXPECT_EQ(canvas.At(0, 0), row.result) << std::hex << row.operation;
  }
  Canvas canvas(1, 1);
  constexpr std::uint32_t kMergeCopy = 0x00c000ca;
  EXPECT_EQ(ErrorOf([&] {
              canvas.Paint(bitmap, {0, 0, 1, 1}, nullptr, kMergeCopy);
            }),
            imaging::kErrorUnsupported);
}

/// Counts what a piece of work had to scale anew.
template <typename Work>
std::uint64_t Rendered(Work work) {
  const std::uint64_t before = imaging::ViewCache::Instance().RenderedPixels();
  work();
  return imaging::ViewCache::Instance().RenderedPixels() - before;
}

TEST(PaintAgain, ScalesTheNewlyExposedOnly) {
  OwnedBitmap bitmap(600, 900, 8);
  pixel_test::FillNoise(*bitmap.pStorage, 41);
  Canvas canvas(200, 150);
  const auto paint = [&](int x, int y) { canvas.Paint(bitmap, {-x, -y, 301 - x, 451 - y}); };
  EXPECT_EQ(Rendered([&] { paint(0, 0); }), 200U * 150);
  EXPECT_EQ(Rendered([&] { paint(0, 0); }), 0U);
  EXPECT_EQ(Rendered([&] { paint(0, 40); }), 200U * 40);
  EXPECT_EQ(Rendered([&] { paint(30, 40); }), 30U * 150);
  EXPECT_EQ(Rendered([&] { paint(20, 45); }), 200U * 5) << "columns just passed are still there";
  EXPECT_EQ(Rendered([&] { paint(90, 55); }), 200U * 150 - 130 * 140) << "both ways at once";
  EXPECT_EQ(Rendered([&] { paint(101, 301); }), 200U * 150);
  pixel_test::SetPixel(*bitmap.pStorage, 300, 700, 0);
  EXPECT_EQ(Rendered([&] { paint(101, 301); }), 200U * 150) << "changed pixels";
}

// A random walk by scrolling, jumps, zoom steps and partial repaints must never show a pixel from elsewhere.
TEST(PaintAgain, AlwaysEqualsAFreshPaint) {
  OwnedBitmap bitmap(700, 800, 8);
  pixel_test::FillNoise(*bitmap.pStorage, 42);
  std::mt19937 random(43);
  Canvas canvas(160, 140);
  int x = 0;
  int y = 0;
  int width = 600;
  for (int step = 0; step < 480; ++step) {
    const auto pick = [&](int below) { return static_cast<int>(random() % static_cast<unsigned>(below)); };
    if (step % 80 == 79) width = 480 + pick(300);
    // Long ways along one axis, there, back and there again, and in between both axes at once.
    const int way = step % 40 / 13 % 2 == 0 ? 23 : -21;
    const bool jump = step % 80 == 0;
    x = std::clamp(jump ? pick(400)
                        : x + (step % 80 < 40  ? way
                               : step % 9 == 0 ? pick(61) - 30
                                               : 0),
                   -20, width - 100);
    y = std::clamp(jump ? pick(400)
                        : y + (step % 80 >= 40 ? way
                               : step % 9 == 0 ? pick(61) - 30
                                               : 0),
                   -20, width - 100);
    if (step % 90 == 7) pixel_test::SetPixel(*bitmap.pStorage, pick(700), pick(800), 0);
    const RECT place{-x, -y, width - x, width - y};
    const RECT part{pick(80), pick(70), 80 + pick(81), 70 + pick(71)};
    const RECT* clip = step % 7 == 0 ? &part : nullptr;
    std::fill(canvas.pixels.begin(), canvas.pixels.end(), kUntouched);
    canvas.Paint(bitmap, place, clip);
    OwnedBitmap copy;
    LEADTOOLS::CopyBitmap(&copy, &bitmap);
    Canvas fresh(160, 140);
    fresh.Paint(copy, place, clip);
    for (int row = 0; row < 140; ++row)
      for (int column = 0; column < 160; ++column)
        if (clip == nullptr ||
            (column >= clip->left && column < clip->right && row >= clip->top && row < clip->bottom)) {
          ASSERT_EQ(canvas.At(column, row), fresh.At(column, row))
              << "step " << step << " at " << column << ", " << row;
        }
  }
}

TEST(PaintFailure, IsToldAndHarmless) {
  OwnedBitmap bitmap(4, 4, 8);
  OwnedBitmap empty;
  Canvas canvas(4, 4);
  EXPECT_EQ(ErrorOf([&] { canvas.Paint(empty, {0, 0, 4, 4}); }), imaging::kErrorNoBitmap);
  const RECT outside{2, 2, 5, 4};
  const RECT destination{0, 0, 4, 4};
  EXPECT_EQ(ErrorOf([&] {
              PaintOnSurface(canvas.view, &bitmap, {&outside, nullptr, &destination, nullptr}, kSourceCopy);
            }),
            imaging::kErrorInvalidParameter);
  EXPECT_EQ(ErrorOf([&] { PaintOnSurface(canvas.view, &bitmap, {}, kSourceCopy); }),
            imaging::kErrorInvalidParameter);
  canvas.Paint(bitmap, {3, 3, 3, 9});
  canvas.Paint(bitmap, {3, 3, 1, 1});
  for (const std::uint32_t pixel : canvas.pixels) EXPECT_EQ(pixel, kUntouched);
  canvas.Paint(bitmap, {INT32_MIN, INT32_MIN, INT32_MAX, INT32_MAX});  // must only come to an end
  canvas.Paint(bitmap, {-100'000'000, -100'000'000, 100'000'000, 100'000'000});
  EXPECT_EQ(canvas.At(0, 0), 0xff000000U);
}

}  // namespace
