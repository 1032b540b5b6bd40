#include <gtest/gtest.h>

#include <cmath>
#include <cstring>

#include "tests/imaging/codec_files.h"

namespace codec_test {
namespace {

int Level(std::uint32_t value, int bits) {
  const double most = std::pow(2.0, bits) - 1;
  return bits > 16 ? static_cast<int>(value >> (bits - 8))
                   : static_cast<int>(std::lround(value * 255 / most));
}

/// The colour that the samples of a pixel stand for.
Color Expected(const TiffForm& form, int x, int y) {
  const auto sample = [&](int i) { return SampleAt(form, x, y, i); };
  const auto level = [&](int i) { return Level(sample(i), form.bits); };
  const int alpha = form.extra > 0 ? level(form.samples - 1) : 255;
  switch (form.photometric) {
    case PHOTOMETRIC_PALETTE: {
      const unsigned i = sample(0);
      return {static_cast<int>(i * 37 & 255), static_cast<int>(255 - i), static_cast<int>(i * 11 & 255), 255};
    }
    case PHOTOMETRIC_MINISWHITE:
      return {255 - level(0), 255 - level(0), 255 - level(0), alpha};
    case PHOTOMETRIC_MINISBLACK:
      return {level(0), level(0), level(0), alpha};
    case PHOTOMETRIC_SEPARATED: {
      const auto mix = [&](int i) {
        return static_cast<int>(std::lround((255 - level(i)) * (255 - level(3)) / 255.0));
      };
      return {mix(0), mix(1), mix(2), 255};
    }
    default:
      break;
  }
  const auto straight = [&](int i) {
    if (form.extra != EXTRASAMPLE_ASSOCALPHA) return level(i);
    return alpha == 0 ? 0 : std::min(255, static_cast<int>(std::lround(level(i) * 255.0 / alpha)));
  };
  return {straight(0), straight(1), straight(2), alpha};
}

struct Case {
  TiffForm form;
  int memoryBits;
  int code;
  const char* compression;
};

const Case kCases[] = {
    {{"bilevel"}, 1, 3, "None"},
    {{"bilevel_white", 1, 1, PHOTOMETRIC_MINISWHITE}, 1, 3, "None"},
    {{"bilevel_palette", 1, 1, PHOTOMETRIC_PALETTE}, 1, 3, "None"},
    {{"bilevel_tiles", 1, 1, PHOTOMETRIC_MINISWHITE, COMPRESSION_LZW, false, true}, 1, 17, "LZW"},
    {{"rle", 1, 1, PHOTOMETRIC_MINISWHITE, COMPRESSION_CCITTRLE}, 1, 25, "CCITT RLE"},
    {{"g3", 1, 1, PHOTOMETRIC_MINISWHITE, COMPRESSION_CCITTFAX3}, 1, 27, "CCITT G3 1D"},
    {{"g4", 1, 1, PHOTOMETRIC_MINISWHITE, COMPRESSION_CCITTFAX4}, 1, 29, "CCITT G4"},
    {{"g4_black", 1, 1, PHOTOMETRIC_MINISBLACK, COMPRESSION_CCITTFAX4}, 1, 29, "CCITT G4"},
    {{"gray2", 2, 1, PHOTOMETRIC_MINISBLACK}, 8, 3, "None"},
    {{"gray4_white", 4, 1, PHOTOMETRIC_MINISWHITE, COMPRESSION_PACKBITS}, 4, 87, "PackBits"},
    {{"gray6", 6, 1, PHOTOMETRIC_MINISBLACK}, 8, 3, "None"},
    {{"gray8_white", 8, 1, PHOTOMETRIC_MINISWHITE}, 8, 3, "None"},
    {{"gray8_big_endian", 8, 1, PHOTOMETRIC_MINISBLACK, COMPRESSION_ADOBE_DEFLATE, false, true, "wb"},
     8,
     0,
     "Deflate"},
    {{"gray12", 12, 1, PHOTOMETRIC_MINISBLACK}, 8, 3, "None"},
    {{"gray16_big_endian", 16, 1, PHOTOMETRIC_MINISBLACK, COMPRESSION_LZW, false, false, "wb"}, 8, 17, "LZW"},
    {{"gray32", 32, 1, PHOTOMETRIC_MINISBLACK}, 8, 3, "None"},
    {{"palette2", 2, 1, PHOTOMETRIC_PALETTE}, 8, 3, "None"},
    {{"palette4", 4, 1, PHOTOMETRIC_PALETTE}, 4, 3, "None"},
    {{"palette8_big_tiff", 8, 1, PHOTOMETRIC_PALETTE, COMPRESSION_LZW, false, false, "w8"}, 8, 17, "LZW"},
    {{"rgb", 8, 3, PHOTOMETRIC_RGB, COMPRESSION_LZW}, 24, 17, "LZW"},
    {{"rgb_planar_tiles", 8, 3, PHOTOMETRIC_RGB, COMPRESSION_ADOBE_DEFLATE, true, true}, 24, 0, "Deflate"},
    {{"rgb4_planar", 4, 3, PHOTOMETRIC_RGB, COMPRESSION_NONE, true}, 24, 3, "None"},
    {{"rgb10", 10, 3, PHOTOMETRIC_RGB}, 24, 3, "None"},
    {{"rgb16", 16, 3, PHOTOMETRIC_RGB, COMPRESSION_PACKBITS, false, true, "wb8"}, 24, 87, "PackBits"},
    {{"rgb32", 32, 3, PHOTOMETRIC_RGB}, 24, 3, "None"},
    {{"rgba_straight", 8, 4, PHOTOMETRIC_RGB, COMPRESSION_NONE, false, false, "w", 37, 29,
      EXTRASAMPLE_UNASSALPHA},
     32,
     3,
     "None"},
    {{"rgba_associated", 8, 4, PHOTOMETRIC_RGB, COMPRESSION_LZW, false, false, "w", 37, 29,
      EXTRASAMPLE_ASSOCALPHA},
     32,
     17,
     "LZW"},
    {{"rgb_and_unknown", 8, 4, PHOTOMETRIC_RGB, COMPRESSION_NONE, false, false, "w", 37, 29,
      EXTRASAMPLE_UNSPECIFIED},
     24,
     3,
     "None"},
    {{"gray_alpha_planar", 8, 2, PHOTOMETRIC_MINISBLACK, COMPRESSION_NONE, true, false, "w", 37, 29,
      EXTRASAMPLE_UNASSALPHA},
     32,
     3,
     "None"},
    {{"cmyk", 8, 4, PHOTOMETRIC_SEPARATED, COMPRESSION_LZW}, 24, 86, "LZW"},
    {{"cmyk_planar", 8, 4, PHOTOMETRIC_SEPARATED, COMPRESSION_PACKBITS, true}, 24, 88, "PackBits"},
    {{"cmyk16", 16, 4, PHOTOMETRIC_SEPARATED}, 24, 85, "None"},
};

class TiffKinds : public testing::TestWithParam<Case> {};

TEST_P(TiffKinds, PixelsAndInformation) {
  const Case& test = GetParam();
  const TiffForm& form = test.form;
  const Bytes file = MakeTiff({form});
  const Loaded page = LoadMemory(file);
  ASSERT_EQ(page.error, "");
  EXPECT_EQ(page.record.BitsPerPixel, test.memoryBits);
  EXPECT_EQ(page.record.Order, 0);
  EXPECT_EQ(page.info.BitsPerPixel, form.bits * form.samples);
  EXPECT_EQ(page.info.Format, test.code);
  EXPECT_STREQ(page.info.Compression, test.compression);
  EXPECT_EQ(page.info.SizeDisk, static_cast<int>(file.size()));
  ASSERT_EQ(page.record.Width, form.width);
  ASSERT_EQ(page.record.Height, form.height);
  const int near = form.extra == EXTRASAMPLE_ASSOCALPHA ? 1 : 0;
  for (int y = 0; y < form.height; ++y)
    for (int x = 0; x < form.width; ++x) {
      const Color color = ColorAt(page, x, y);
      const Color expected = Expected(form, x, y);
      ASSERT_NEAR(color.red, expected.red, near) << "at " << x << "," << y;
      ASSERT_NEAR(color.green, expected.green, near) << "at " << x << "," << y;
      ASSERT_NEAR(color.blue, expected.blue, near) << "at " << x << "," << y;
      ASSERT_EQ(color.alpha, expected.alpha) << "at " << x << "," << y;
    }
}

INSTANTIATE_TEST_SUITE_P(All, TiffKinds, testing::ValuesIn(kCases),
                         [](const auto& info) { return std::string(info.param.form.name); });

// Every way of fax coding, both fill orders, strips of one row to the whole page, odd widths: the same
// picture as 1 bit and as 8.
TEST(TiffFax, EveryCodingGivesTheSamePage) {
  for (const int compression : {COMPRESSION_CCITTRLE, COMPRESSION_CCITTFAX3, COMPRESSION_CCITTFAX4})
    for (const int options : {0, 1, 4, 5})
      for (const int fill : {FILLORDER_MSB2LSB, FILLORDER_LSB2MSB})
        for (const int width : {1, 31, 64, 1000})
          for (const int rows : {1, 7, 40}) {
            if (options != 0 && compression != COMPRESSION_CCITTFAX3) continue;
            TiffForm form{"fax", 1, 1, PHOTOMETRIC_MINISWHITE, compression};
            form.g3Options = options;
            form.fillOrder = fill;
            form.width = width;
            form.height = 40;
            form.rowsPerStrip = rows;
            const Bytes file = MakeTiff({form});
            const Loaded one = LoadMemory(file, 1, 1);
            const Loaded eight = LoadMemory(file, 1, 8);
            ASSERT_EQ(one.error + eight.error, "");
            ASSERT_EQ(one.record.BitsPerPixel, 1);
            ASSERT_EQ(eight.record.BitsPerPixel, 8);
            ASSERT_TRUE(eight.pixels->IsLinearGray());
            EXPECT_EQ(one.info.Format, compression == COMPRESSION_CCITTFAX4  ? 29
                                       : compression == COMPRESSION_CCITTRLE ? 25
                                       : (options & 1) != 0                  ? 28
                                                                             : 27);
            for (int y = 0; y < form.height; ++y)
              for (int x = 0; x < width; ++x) {
                const int expected = SampleAt(form, x, y, 0) == 0 ? 1 : 0;
                ASSERT_EQ(IndexAt(*one.pixels, x, y), expected)
                    << x << "," << y << " of " << width << " " << compression << " " << options;
                ASSERT_EQ(IndexAt(*eight.pixels, x, y), expected * 255) << x << "," << y;
              }
          }
}

TEST(TiffBilevel, ColoursStayInTheTable) {
  const Bytes file = MakeTiff({{"palette", 1, 1, PHOTOMETRIC_PALETTE}});
  const Loaded page = LoadMemory(file, 1, 8);
  ASSERT_EQ(page.error, "");
  for (int y = 0; y < page.record.Height; ++y)
    for (int x = 0; x < page.record.Width; ++x) {
      ASSERT_LE(IndexAt(*page.pixels, x, y), 1);
      ASSERT_EQ(ColorAt(page, x, y).green, SampleAt({"palette"}, x, y, 0) == 0 ? 255 : 254);
    }
}

TEST(TiffJpeg, ColoursComeAsRgbInStripsAndTiles) {
  for (const bool tiled : {false, true})
    for (const int photometric : {PHOTOMETRIC_YCBCR, PHOTOMETRIC_RGB}) {
      TiffForm form{"jpeg", 8, 3, photometric, COMPRESSION_JPEG, false, tiled};
      form.width = form.height = 48;
      form.rowsPerStrip = 16;
      const Loaded page = LoadMemory(MakeTiff({form}));
      ASSERT_EQ(page.error, "");
      EXPECT_EQ(page.info.Format, photometric == PHOTOMETRIC_RGB ? 11 : 22);
      for (int y = 0; y < 48; ++y)
        for (int x = 0; x < 48; ++x) {
          const Color color = ColorAt(page, x, y);
          ASSERT_NEAR(color.red, static_cast<int>(SampleAt(form, x, y, 0)), 12) << x << "," << y;
          ASSERT_NEAR(color.blue, static_cast<int>(SampleAt(form, x, y, 2)), 12) << x << "," << y;
        }
    }
}

TEST(TiffFloat, KeepsOneAndStretchesMore) {
  for (const float top : {1.0F, 400.0F}) {
    const TempFolder folder;
    TIFF* tiff = TIFFOpen(folder.Path("float.tif").c_str(), "wb");
    TIFFSetField(tiff, TIFFTAG_IMAGEWIDTH, 3);
    TIFFSetField(tiff, TIFFTAG_IMAGELENGTH, 1);
    TIFFSetField(tiff, TIFFTAG_BITSPERSAMPLE, 32);
    TIFFSetField(tiff, TIFFTAG_SAMPLESPERPIXEL, 1);
    TIFFSetField(tiff, TIFFTAG_SAMPLEFORMAT, SAMPLEFORMAT_IEEEFP);
    TIFFSetField(tiff, TIFFTAG_PHOTOMETRIC, PHOTOMETRIC_MINISBLACK);
    float row[3] = {0, top / 4, top};
    TIFFWriteScanline(tiff, row, 0, 0);
    TIFFClose(tiff);
    const Loaded page = LoadFile(folder.Path("float.tif"));
    ASSERT_EQ(page.error, "");
    EXPECT_EQ(IndexAt(*page.pixels, 0, 0), 0);
    EXPECT_EQ(IndexAt(*page.pixels, 1, 0), 64);
    EXPECT_EQ(IndexAt(*page.pixels, 2, 0), 255);
  }
}

struct DensityCase {
  int unit;
  float x;
  float y;
  int xExpected;
  int yExpected;
};

TEST(TiffTags, ResolutionAndOrientation) {
  const DensityCase cases[] = {{RESUNIT_INCH, 203.6F, 97.4F, 204, 97},
                               {RESUNIT_CENTIMETER, 78.74F, 80.3F, 200, 204},
                               {RESUNIT_NONE, 300, 300, 0, 0},
                               {RESUNIT_INCH, 0, 72, 0, 72}};
  int orientation = 1;
  for (const DensityCase& test : cases) {
    const TempFolder folder;
    TIFF* tiff = TIFFOpen(folder.Path("a.tif").c_str(), "w");
    TIFFSetField(tiff, TIFFTAG_RESOLUTIONUNIT, test.unit);
    TIFFSetField(tiff, TIFFTAG_XRESOLUTION, static_cast<double>(test.x));
    TIFFSetField(tiff, TIFFTAG_YRESOLUTION, static_cast<double>(test.y));
    TIFFSetField(tiff, TIFFTAG_ORIENTATION, orientation);
    WriteTiffPage(tiff, {"a", 8});
    TIFFClose(tiff);
    const Loaded page = LoadFile(folder.Path("a.tif"));
    ASSERT_EQ(page.error, "");
    EXPECT_EQ(page.record.XResolution, test.xExpected);
    EXPECT_EQ(page.record.YResolution, test.yExpected);
    EXPECT_EQ(page.record.ViewPerspective, orientation == 1 ? 0 : orientation);
    EXPECT_EQ(page.info.ViewPerspective, page.record.ViewPerspective);
    orientation += 2;
  }
}

}  // namespace
}  // namespace codec_test
