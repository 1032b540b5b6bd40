#include <cstdio>

extern "C" {
#include <jpeglib.h>
}
#include <gtest/gtest.h>

#include <functional>

#include "tests/helper/damage.h"
#include "tests/imaging/flashpix_files.h"

namespace codec_test {
namespace {

constexpr int kSide = 64;

/// Slow enough for JPEG, different in each channel and in each tile.
std::uint8_t Level(int x, int y, int channel) {
  return static_cast<std::uint8_t>(20 + x + y / 2 + 20 * channel);
}

Bytes PlainTile(int column, int channels) {
  Bytes bytes;
  for (int y = 0; y < kSide; ++y)
    for (int x = 0; x < kSide; ++x)
      for (int channel = 0; channel < channels; ++channel)
        bytes.push_back(Level(column * kSide + x, y, channel));
  return bytes;
}

std::vector<FlashpixTile> PlainTiles(int channels) {
  return {{0, PlainTile(0, channels), {}}, {0, PlainTile(1, channels), {}}};
}

/// The tables alone, or the tile without them.
Bytes Compressed(int column, int channels, bool converted, bool tables, int quality) {
  unsigned char* memory = nullptr;
  unsigned long size = 0;
  jpeg_compress_struct info{};
  jpeg_error_mgr errors{};
  info.err = jpeg_std_error(&errors);
  jpeg_create_compress(&info);
  jpeg_mem_dest(&info, &memory, &size);
  info.image_width = info.image_height = kSide;
  info.input_components = channels;
  info.in_color_space = channels == 1   ? JCS_GRAYSCALE
                        : !converted    ? JCS_UNKNOWN
                        : channels == 3 ? JCS_RGB
                                        : JCS_CMYK;
  jpeg_set_defaults(&info);
  jpeg_set_quality(&info, quality, TRUE);
  if (tables) {
    jpeg_write_tables(&info);
  } else {
    if (converted && channels == 4) jpeg_set_colorspace(&info, JCS_YCCK);
    jpeg_suppress_tables(&info, TRUE);
    jpeg_start_compress(&info, FALSE);
    Bytes pixels = PlainTile(column, channels);
    for (std::size_t y = 0; y < kSide; ++y) {
      JSAMPROW row = &pixels[y * kSide * static_cast<std::size_t>(channels)];
      jpeg_write_scanlines(&info, &row, 1);
    }
    jpeg_finish_compress(&info);
  }
  jpeg_destroy_compress(&info);
  const Bytes bytes(memory, memory + size);
  std::free(memory);
  return bytes;
}

FlashpixForm JpegForm(int channels, bool converted, int quality = 98) {
  const std::array<std::uint8_t, 4> detail = {0, 0x22, converted, 1};
  return {.channels = channels,
          .space = channels == 1 ? 1 : 3,
          .tiles = {{2, Compressed(0, channels, converted, false, quality), detail},
                    {2, Compressed(1, channels, converted, false, quality), detail}},
          .tables = Compressed(0, channels, converted, true, quality)};
}

/// The pixel that the tiles have, as it is shown.
Color Wanted(int channels, int x, int y) {
  const int gray = Level(x, y, 0);
  if (channels < 3) return {gray, gray, gray, 255};
  return {gray, Level(x, y, 1), Level(x, y, 2), channels == 4 ? Level(x, y, 3) : 255};
}

int Distance(const Color& a, const Color& b) {
  return std::max({std::abs(a.red - b.red), std::abs(a.green - b.green), std::abs(a.blue - b.blue)});
}

TEST(Flashpix, TilesInEveryCoding) {
  struct Case {
    const char* name;
    FlashpixForm form;
    int code;
    const char* compression;
    int within;
  };
  const Case cases[] = {
      {"grey", {.channels = 1, .space = 1, .tiles = PlainTiles(1)}, 80, "None", 0},
      {"grey with opacity", {.channels = 2, .space = 1, .tiles = PlainTiles(2)}, 80, "None", 0},
      {"colour", {.channels = 3, .tiles = PlainTiles(3)}, 80, "None", 0},
      {"colour with opacity", {.channels = 4, .tiles = PlainTiles(4)}, 80, "None", 0},
      {"grey JPEG", JpegForm(1, false), 83, "JPEG", 3},
      {"JPEG", JpegForm(3, true), 83, "JPEG", 5},
      {"JPEG of plain channels", JpegForm(3, false), 83, "JPEG", 3},
      {"JPEG of the standard's quality", JpegForm(3, true, 50), 82, "JPEG", 30},
      {"JPEG with opacity", JpegForm(4, true), 83, "JPEG", 5},
  };
  for (const Case& test : cases) {
    SCOPED_TRACE(test.name);
    const Loaded page = LoadMemory(MakeFlashpix(test.form));
    ASSERT_EQ(page.error, "");
    ASSERT_EQ(page.record.Width, 70);
    ASSERT_EQ(page.record.Height, 46);
    EXPECT_EQ(page.info.Format, test.code);
    EXPECT_STREQ(page.info.Compression, test.compression);
    EXPECT_EQ(page.info.BitsPerPixel, 8 * test.form.channels);
    for (const int x : {0, 40, 63, 64, 69})
      for (const int y : {0, 45})
        EXPECT_LE(Distance(ColorAt(page, x, y), Wanted(test.form.channels, x, y)), test.within)
            << x << ' ' << y;
  }
}

TEST(Flashpix, TilesOfOneColor) {
  struct Case {
    int space;
    Color color;
    int code = 81;
  };
  // White of PhotoYCC, the colours of which lie off the middle, and the same levels as red, green and blue.
  for (const Case& test : {Case{2, {247, 247, 247, 255}}, Case{3, {182, 156, 137, 255}}}) {
    const FlashpixTile tile = {1, {}, {182, 156, 137, 0}};
    const Loaded page = LoadMemory(MakeFlashpix({.space = test.space, .tiles = {tile, tile}}));
    ASSERT_EQ(page.error, "");
    EXPECT_EQ(page.info.Format, test.code);
    for (const int x : {0, 69}) EXPECT_EQ(ColorAt(page, x, 45), test.color);
  }
}

// The class of the root tells a picture from other compound files.
TEST(Flashpix, OtherCompoundFilesAreRefused) {
  const TempFolder folder;
  const auto make = [](int kind) { return MakeFlashpix({.tiles = PlainTiles(3), .kind = kind}); };
  EXPECT_EQ(Distance(ColorAt(LoadMemory(make(0x60)), 69, 45), Wanted(3, 69, 45)), 0);
  for (const auto& [name, text] :
       {std::pair("a.doc", "not an image"), std::pair("a.awd", "a Microsoft fax")}) {
    WriteAll(folder.Path(name), make(0x61));
    EXPECT_NE(LoadFile(folder.Path(name)).error.find(text), std::string::npos);
  }
}

TEST(Flashpix, DamagedTilesAreWhiteAndTheOthersShown) {
  const FlashpixTile bad[] = {{7, {}, {}},
                              {0, Bytes(100), {}},
                              {2, {}, {0, 0x22, 1, 1}},
                              {2, Compressed(1, 3, true, false, 98), {0, 0, 1, 9}}};
  for (const FlashpixTile& tile : bad) {
    const Loaded page = LoadMemory(MakeFlashpix({.tiles = {PlainTiles(3)[0], tile}}));
    ASSERT_EQ(page.error, "");
    EXPECT_EQ(Distance(ColorAt(page, 63, 45), Wanted(3, 63, 45)), 0);
    EXPECT_EQ(Distance(ColorAt(page, 64, 0), {255, 255, 255, 255}), 0);
  }
  EXPECT_NE(LoadMemory(MakeFlashpix({.tiles = {bad[0], bad[0]}})).error, "");
  EXPECT_NE(LoadMemory(MakeFlashpix({.channels = 5, .tiles = PlainTiles(5)})).error, "");
}

TEST(Flashpix, WhateverIsDamagedGivesAPageOrAnError) {
  const Bytes whole = MakeFlashpix(JpegForm(3, true));
  ExpectPageOrError(whole, {whole.size() / 40, 8 * 24, 8 * 100, 7});
  // Every chain in turn runs in a circle, or elsewhere.
  const std::size_t table = whole.size() - 512;
  for (std::size_t entry = 0; entry < 128 && whole[table + 4 * entry + 3] == 0; ++entry)
    for (const std::size_t next : {std::size_t{0}, entry}) {
      Bytes bad = whole;
      bad[table + 4 * entry] = static_cast<std::uint8_t>(next);
      const Loaded page = LoadMemory(bad);
      EXPECT_TRUE(!page.error.empty() || page.pixels != nullptr) << entry;
    }
}

}  // namespace
}  // namespace codec_test
