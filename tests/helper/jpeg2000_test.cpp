#include <gtest/gtest.h>
#include <openjpeg.h>

#include <algorithm>
#include <array>
#include <cmath>
#include <cstring>

#include "tests/helper/damage.h"
#include "tests/helper/jpeg2000_files.h"
#include "tests/imaging/codec_files.h"

namespace codec_test {
namespace {

struct Form {
  const char* name;
  bool container;
  std::vector<int> depths;  ///< of each component
  OPJ_COLOR_SPACE space;
  int memoryBits;
  bool alpha = false;  ///< the last component
  int step = 1;        ///< of the second and third component
};

constexpr int kWidth = 37;
constexpr int kHeight = 29;

/// Of that many bits. Runs through all values of small depths.
int SampleAt(int x, int y, int component, int depth) {
  return (x * 7 + y * 5 + component * 40) * 257 % (1 << depth);
}

/// A part of the picture.
struct Area {
  int left = 0;
  int top = 0;
  int width = kWidth;
  int height = kHeight;
};

opj_image_t* MakeImage(const Form& form, const Area& area) {
  std::vector<opj_image_cmptparm_t> parameters;
  for (std::size_t i = 0; i < form.depths.size(); ++i) {
    opj_image_cmptparm_t parameter{};
    const int step = i == 1 || i == 2 ? form.step : 1;
    parameter.dx = parameter.dy = static_cast<OPJ_UINT32>(step);
    parameter.w = static_cast<OPJ_UINT32>((area.width + step - 1) / step);
    parameter.h = static_cast<OPJ_UINT32>((area.height + step - 1) / step);
    parameter.prec = static_cast<OPJ_UINT32>(form.depths[i]);
    parameters.push_back(parameter);
  }
  opj_image_t* image =
      opj_image_create(static_cast<OPJ_UINT32>(parameters.size()), parameters.data(), form.space);
  image->x1 = static_cast<OPJ_UINT32>(area.width);
  image->y1 = static_cast<OPJ_UINT32>(area.height);
  for (OPJ_UINT32 i = 0; i < image->numcomps; ++i) {
    opj_image_comp_t& component = image->comps[i];
    if (form.alpha && i + 1 == image->numcomps) component.alpha = 1;
    for (OPJ_UINT32 at = 0; at < component.w * component.h; ++at)
      component.data[at] = SampleAt(area.left + static_cast<int>(at % component.w),
                                    area.top + static_cast<int>(at / component.w), static_cast<int>(i),
                                    static_cast<int>(component.prec));
  }
  return image;
}

Bytes MakeJpeg2000(const Form& form, const Area& area = {}) {
  Bytes file = EncodeJpeg2000(MakeImage(form, area), form.container);
  if (form.space == OPJ_CLRSPC_CMYK) {  // which the writer can't name
    constexpr std::string_view kColors = "colr\1";
    const auto box = std::search(file.begin(), file.end(), kColors.begin(), kColors.end());
    box[10] = 12;
  }
  return file;
}

/// Puts a box with a resolution into the header box: dots in a metre.
Bytes WithDensity(Bytes file, int xDots, int yDots) {
  const auto big = [](int value, int bytes) {
    Bytes coded;
    for (int i = bytes - 1; i >= 0; --i) coded.push_back(static_cast<std::uint8_t>(value >> i * 8));
    return coded;
  };
  Bytes box;
  const auto add = [&](const Bytes& bytes) { box.insert(box.end(), bytes.begin(), bytes.end()); };
  add(big(26, 4));
  add({'r', 'e', 's', ' '});
  add(big(18, 4));
  add({'r', 'e', 's', 'd'});
  for (const int dots : {yDots, xDots}) {
    add(big(dots, 2));
    add(big(10, 2));
  }
  add({1, 1});  // times ten
  constexpr std::string_view kHeader = "jp2h";
  const auto header = std::search(file.begin(), file.end(), kHeader.begin(), kHeader.end());
  const auto start = header - file.begin() - 4;
  const Bytes length = big(file[static_cast<std::size_t>(start) + 3] + 26, 4);
  std::copy(length.begin(), length.end(), file.begin() + start);
  file.insert(header + 4, box.begin(), box.end());
  return file;
}

int LevelAt(const Form& form, int x, int y, std::size_t component) {
  const int step = component == 1 || component == 2 ? form.step : 1;
  const int depth = form.depths[component];
  return (SampleAt(x / step, y / step, static_cast<int>(component), depth) * 255 + ((1 << depth) - 1) / 2) /
         ((1 << depth) - 1);
}

Color ExpectedAt(const Form& form, int x, int y) {
  const auto level = [&](std::size_t component) { return LevelAt(form, x, y, component); };
  const std::size_t count = form.depths.size();
  const bool gray = count < 3;
  Color color{level(0), level(gray ? 0 : 1), level(gray ? 0 : 2), 255};
  if (form.memoryBits == 32) color.alpha = level(count - 1);
  if (form.space == OPJ_CLRSPC_SYCC) {
    const double blue = color.green - 128.0;
    const double red = color.blue - 128.0;
    const double luma = color.red;
    const auto clamp = [](double value) {
      return static_cast<int>(std::lround(std::clamp(value, 0.0, 255.0)));
    };
    color = Color{clamp(luma + 1.402 * red), clamp(luma - 0.344136 * blue - 0.714136 * red),
                  clamp(luma + 1.772 * blue), 255};
  }
  if (form.space == OPJ_CLRSPC_CMYK) {
    const int light = 255 - level(3);
    color = Color{(255 - level(0)) * light / 255, (255 - level(1)) * light / 255,
                  (255 - level(2)) * light / 255, 255};
  }
  return color;
}

const std::vector<Form>& Forms() {
  static const std::vector<Form> forms = {
      {"grey", true, {8}, OPJ_CLRSPC_GRAY, 8},
      {"grey stream", false, {8}, OPJ_CLRSPC_GRAY, 8},
      {"bilevel", true, {1}, OPJ_CLRSPC_GRAY, 1},
      {"4 bits", true, {4}, OPJ_CLRSPC_GRAY, 8},
      {"9 bits", false, {9}, OPJ_CLRSPC_GRAY, 8},
      {"16 bits", true, {16}, OPJ_CLRSPC_GRAY, 8},
      {"colour", true, {8, 8, 8}, OPJ_CLRSPC_SRGB, 24},
      {"colour stream", false, {8, 8, 8}, OPJ_CLRSPC_SRGB, 24},
      {"alpha", true, {8, 8, 8, 8}, OPJ_CLRSPC_SRGB, 32, true},
      {"alpha of 1 bit", true, {8, 8, 8, 1}, OPJ_CLRSPC_SRGB, 32, true},
      {"untold alpha", false, {5, 5, 5, 5}, OPJ_CLRSPC_SRGB, 32},
      {"grey and alpha", true, {8, 8}, OPJ_CLRSPC_GRAY, 32, true},
      {"ycc", true, {8, 8, 8}, OPJ_CLRSPC_SYCC, 24, false, 2},
      {"ink", true, {8, 8, 8, 8}, OPJ_CLRSPC_CMYK, 24},
  };
  return forms;
}

/// The picture in strips of ten rows, or in tiles of 16 by 16 pixels; how many bytes of the last one there
/// are.
Bytes MakeJpeg2000Tiff(const Form& form, int photometric, bool tiled, std::size_t lastBytes = SIZE_MAX) {
  constexpr int kTile = 16;
  constexpr int kStrip = 10;
  const TempFolder folder;
  TIFF* tiff = TIFFOpen(folder.Path("a.tif").c_str(), "w");
  TIFFSetField(tiff, TIFFTAG_IMAGEWIDTH, kWidth);
  TIFFSetField(tiff, TIFFTAG_IMAGELENGTH, kHeight);
  TIFFSetField(tiff, TIFFTAG_BITSPERSAMPLE, form.depths[0]);
  TIFFSetField(tiff, TIFFTAG_SAMPLESPERPIXEL, form.depths.size());
  TIFFSetField(tiff, TIFFTAG_PHOTOMETRIC, photometric);
  TIFFSetField(tiff, TIFFTAG_PLANARCONFIG, PLANARCONFIG_CONTIG);
  TIFFSetField(tiff, TIFFTAG_COMPRESSION, COMPRESSION_JP2000);
  if (tiled) TIFFSetField(tiff, TIFFTAG_TILEWIDTH, kTile);
  TIFFSetField(tiff, tiled ? TIFFTAG_TILELENGTH : TIFFTAG_ROWSPERSTRIP, tiled ? kTile : kStrip);
  std::uint32_t index = 0;
  for (int top = 0; top < kHeight; top += tiled ? kTile : kStrip)
    for (int left = 0; left < kWidth; left += tiled ? kTile : kWidth) {
      const Area area = {left, top, tiled ? kTile : kWidth, tiled ? kTile : std::min(kStrip, kHeight - top)};
      Bytes piece = MakeJpeg2000(form, area);
      if (index == 2) piece.resize(std::min(piece.size(), lastBytes));
      const auto size = static_cast<tmsize_t>(piece.size());
      EXPECT_EQ(tiled ? TIFFWriteRawTile(tiff, index, piece.data(), size)
                      : TIFFWriteRawStrip(tiff, index, piece.data(), size),
                size);
      ++index;
    }
  TIFFClose(tiff);
  return ReadAll(folder.Path("a.tif"));
}

TEST(Jpeg2000, StripsAndTilesOfTiff) {
  const Form gray = {"grey", false, {8}, OPJ_CLRSPC_GRAY, 8};
  const Form fine = {"16 bits", false, {16}, OPJ_CLRSPC_GRAY, 8};
  const Form color = {"colour", false, {8, 8, 8}, OPJ_CLRSPC_SRGB, 24};
  const Form boxed = {"colour in a container", true, {8, 8, 8}, OPJ_CLRSPC_SRGB, 24};
  for (const Form& form : {gray, fine, color, boxed})
    for (const bool tiled : {false, true})
      for (const bool inverted : {false, true}) {
        if (inverted && form.memoryBits != 8) continue;
        SCOPED_TRACE(std::string(form.name) + (tiled ? " tiles" : " strips"));
        const int rgb = form.memoryBits == 24 ? PHOTOMETRIC_RGB : PHOTOMETRIC_MINISBLACK;
        const Loaded page =
            LoadMemory(MakeJpeg2000Tiff(form, inverted ? PHOTOMETRIC_MINISWHITE : rgb, tiled));
        ASSERT_EQ(page.error, "");
        EXPECT_EQ(page.info.Format, 166);
        EXPECT_STREQ(page.info.Compression, "JPEG 2000");
        EXPECT_EQ(page.record.BitsPerPixel, form.memoryBits);
        int wrong = 0;
        for (int y = 0; y < kHeight; ++y)
          for (int x = 0; x < kWidth; ++x) {
            Color expected = ExpectedAt(form, x, y);
            for (int* level : {&expected.red, &expected.green, &expected.blue})
              *level = inverted ? 255 - *level : *level;
            wrong += ColorAt(page, x, y) == expected ? 0 : 1;
          }
        EXPECT_EQ(wrong, 0);
      }
  // One piece of nonsense stays white, and costs the others nothing.
  const Loaded damaged = LoadMemory(MakeJpeg2000Tiff(gray, PHOTOMETRIC_MINISBLACK, false, 30));
  EXPECT_EQ(damaged.error, "");
  EXPECT_EQ(ColorAt(damaged, 9, 19), ExpectedAt(gray, 9, 19));
  EXPECT_EQ(ColorAt(damaged, 9, 20).red, 255);
}

TEST(Jpeg2000, DepthsSpacesAndSampling) {
  for (const Form& form : Forms()) {
    SCOPED_TRACE(form.name);
    const Loaded page = LoadMemory(MakeJpeg2000(form));
    EXPECT_EQ(page.error, "");
    if (!page.error.empty()) continue;
    EXPECT_EQ(page.info.Format, form.container ? 163 : 164);
    EXPECT_STREQ(page.info.Compression, "JPEG 2000");
    EXPECT_EQ(page.record.BitsPerPixel, form.memoryBits);
    int bits = 0;
    for (const int depth : form.depths) bits += depth;
    EXPECT_EQ(page.info.BitsPerPixel, bits);
    int wrong = 0;
    for (int y = 0; y < kHeight; ++y)
      for (int x = 0; x < kWidth; ++x)
        if (ColorAt(page, x, y) != ExpectedAt(form, x, y) && ++wrong == 1) ADD_FAILURE() << x << ',' << y;
    EXPECT_EQ(wrong, 0);
  }
}

TEST(Jpeg2000, DensityOfTheBox) {
  const Information info = InformMemory(WithDensity(MakeJpeg2000(Forms()[0]), 11811, 7874));
  EXPECT_EQ(info.error, "");
  EXPECT_EQ(info.record.XResolution, 300);
  EXPECT_EQ(info.record.YResolution, 200);
}

// Whatever is cut off or turned over in a file, the host gets a page of its size or an error.
TEST(Jpeg2000, DamagedFiles) {
  const Bytes whole = MakeJpeg2000(Forms()[6]);
  ExpectPageOrError(whole, {1 + whole.size() / 50, 0, 200 * 8, 5}, kHeight);
}

}  // namespace
}  // namespace codec_test
