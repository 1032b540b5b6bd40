#include <gtest/gtest.h>

#include <array>

#include "imaging/core/exception.h"
#include "tests/imaging/lossless_files.h"

// JPEG of the lossless process, alone and in TIFF, against a coder written for the purpose.
namespace codec_test {
namespace {

int Sample(const LosslessForm& form, int x, int y, int c) {
  const unsigned noise = static_cast<unsigned>(x * 31 + y * 17 + c * 101) * 2654435761U;
  const unsigned soft = static_cast<unsigned>(x * 3 + y * 5 + c * 40) << 8;
  return static_cast<int>((x % 7 == 0 ? noise >> 16 : soft & 0xffffU) >> (16 - form.precision));
}

int Level(const LosslessForm& form, int x, int y, int c) {
  const int most = (1 << form.precision) - 1;
  const int kept = Sample(form, x, y, c) >> form.shift << form.shift;
  return (kept * 255 + most / 2) / most;
}

void ExpectSamples(const Loaded& page, const LosslessForm& form) {
  ASSERT_EQ(page.error, "");
  for (int y = 0; y < page.record.Height; ++y)
    for (int x = 0; x < page.record.Width; ++x) {
      ASSERT_EQ(ColorAt(page, x, y).red, Level(form, x, y, 0)) << x << "," << y;
      ASSERT_EQ(ColorAt(page, x, y).blue, Level(form, x, y, form.components == 1 ? 0 : 2)) << x << "," << y;
    }
}

TEST(LosslessJpeg, PredictorsPrecisionsAndScans) {
  for (int predictor = 1; predictor <= 7; ++predictor)
    for (const int precision : {2, 8, 12, 16})
      for (const int components : {1, 3})
        for (const bool special : {false, true}) {
          const LosslessForm form{precision,       components, predictor, special ? precision / 3 : 0,
                                  special ? 4 : 0, special};
          SCOPED_TRACE("predictor " + std::to_string(predictor) + " precision " + std::to_string(precision));
          const Loaded page = LoadMemory(
              MakeLosslessJpeg(37, 21, form, [&](int x, int y, int c) { return Sample(form, x, y, c); }));
          ExpectSamples(page, form);
          EXPECT_EQ(page.info.Format, 10);
          EXPECT_EQ(page.info.BitsPerPixel, precision * components);
          EXPECT_STREQ(page.info.Compression, "JPEG lossless");
        }
}

TEST(LosslessJpeg, ColoursWithAMarkAreConverted) {
  LosslessForm form{8, 3};
  form.adobeYcc = true;
  const std::array ycc = {100, 200, 90};
  const Loaded page = LoadMemory(
      MakeLosslessJpeg(3, 2, form, [&](int, int, int c) { return ycc[static_cast<std::size_t>(c)]; }));
  ASSERT_EQ(page.error, "");
  EXPECT_NEAR(ColorAt(page, 1, 1).red, 100 + 1.402 * (90 - 128), 1);
  EXPECT_NEAR(ColorAt(page, 1, 1).green, 100 - 0.34414 * 72 + 0.71414 * 38, 1);
  EXPECT_NEAR(ColorAt(page, 1, 1).blue, 100 + 1.772 * 72, 1);
}

TEST(LosslessJpeg, CutShowsItsUpperPart) {
  const LosslessForm form{12, 1, 4};
  Bytes file = MakeLosslessJpeg(60, 80, form, [&](int x, int y, int c) { return Sample(form, x, y, c); });
  file.resize(file.size() / 2);
  const Loaded page = LoadMemory(file);
  ASSERT_EQ(page.error, "");
  for (int x = 0; x < 60; ++x) {
    ASSERT_EQ(ColorAt(page, x, 20).red, Level(form, x, 20, 0));
    ASSERT_EQ(ColorAt(page, x, 79).red, 255);
  }
  file.resize(100);
  EXPECT_EQ(LoadMemory(file).code, imaging::kErrorCorrupt);
}

TEST(LosslessTiff, StripsAndTiles) {
  constexpr int kSide = 48;
  const TempFolder folder;
  for (const bool tiled : {false, true})
    for (const int components : {1, 3}) {
      const LosslessForm form{16, components, 6};
      const std::string path = folder.Path("a.tif");
      TIFF* tiff = TIFFOpen(path.c_str(), "w");
      TIFFSetField(tiff, TIFFTAG_IMAGEWIDTH, kSide);
      TIFFSetField(tiff, TIFFTAG_IMAGELENGTH, kSide);
      TIFFSetField(tiff, TIFFTAG_BITSPERSAMPLE, 16);
      TIFFSetField(tiff, TIFFTAG_SAMPLESPERPIXEL, components);
      TIFFSetField(tiff, TIFFTAG_PLANARCONFIG, PLANARCONFIG_CONTIG);
      TIFFSetField(tiff, TIFFTAG_PHOTOMETRIC, components == 1 ? PHOTOMETRIC_MINISBLACK : PHOTOMETRIC_RGB);
      TIFFSetField(tiff, TIFFTAG_COMPRESSION, COMPRESSION_JPEG);
      if (tiled) {
        TIFFSetField(tiff, TIFFTAG_TILEWIDTH, 32);
        TIFFSetField(tiff, TIFFTAG_TILELENGTH, 32);
      } else {
        TIFFSetField(tiff, TIFFTAG_ROWSPERSTRIP, 20);
      }
      std::uint32_t index = 0;
      for (int y = 0; y < kSide; y += tiled ? 32 : 20)
        for (int x = 0; x < kSide; x += tiled ? 32 : kSide) {
          Bytes piece = MakeLosslessJpeg(
              tiled ? 32 : kSide, tiled ? 32 : std::min(20, kSide - y), form,
              [&](int column, int row, int c) { return Sample(form, x + column, y + row, c); });
          (tiled ? TIFFWriteRawTile : TIFFWriteRawStrip)(tiff, index++, piece.data(),
                                                         static_cast<tmsize_t>(piece.size()));
        }
      TIFFClose(tiff);
      const Loaded page = LoadFile(path);
      ExpectSamples(page, form);
      EXPECT_EQ(page.info.Format, 11);
      EXPECT_STREQ(page.info.Compression, "JPEG lossless");
    }
}

}  // namespace
}  // namespace codec_test
