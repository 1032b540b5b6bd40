#include <gtest/gtest.h>

#include <algorithm>

#include "imaging/core/exception.h"
#include "tests/imaging/codec_files.h"
#include "tests/imaging/raster_files.h"

// The small raster kinds.
namespace codec_test {
namespace {

// Every kind, depth and coding, known by its contents alone; a bilevel page also as it is asked for in 8
// bits.
TEST(Rasters, EveryPixelOfEveryKind) {
  for (const RasterFile& file : MakeRasterFiles()) {
    SCOPED_TRACE(file.name);
    const Information info = InformMemory(file.bytes);
    ASSERT_EQ(info.error, "");
    EXPECT_EQ(info.record.TotalPages, 1);
    EXPECT_EQ(info.record.Format, file.format);
    EXPECT_EQ(info.record.BitsPerPixel, file.bits);
    EXPECT_STREQ(info.record.Compression, file.compression);
    EXPECT_EQ(info.record.XResolution, file.xResolution);
    EXPECT_EQ(info.record.YResolution, file.yResolution);
    const int memoryBits = file.memoryBits == 0 ? file.bits : file.memoryBits;
    for (const int bits : {0, 8}) {
      const Loaded page = LoadMemory(file.bytes, 1, bits);
      ASSERT_EQ(page.error, "");
      EXPECT_EQ(page.record.BitsPerPixel, memoryBits == 1 && bits == 8 ? 8 : memoryBits);
      ASSERT_EQ(page.record.Width, info.record.Width);
      ASSERT_EQ(page.record.Height, info.record.Height);
      for (int y = 0; y < page.record.Height; ++y)
        for (int x = 0; x < page.record.Width; ++x)
          ASSERT_EQ(ColorAt(page, x, y), file.color(x, y)) << x << "," << y;
    }
  }
}

TEST(Rasters, PagesOfAlbums) {
  const Bytes one = MakePcx(1, 1, true).bytes;
  const Bytes two = MakePcx(8, 3, true).bytes;
  const Bytes icons = MakeIcons({{5, 8}, {9, 4}, {7, 24, true}, {9, 32}, {8, 24, false, true}});
  struct Row {
    Bytes file;
    std::vector<std::pair<int, int>> pages;  ///< width and bits
  };
  for (const Row& row : {Row{MakeDcx({one, two, one}), {{13, 1}, {13, 24}, {13, 1}}},
                         Row{icons, {{9, 32}, {9, 4}, {8, 24}, {7, 24}, {5, 8}}},
                         Row{MakeAnimatedCursor({MakeIcons({{5, 8}, {6, 8}}, true), MakeIcons({{9, 4}})}),
                             {{6, 8}, {9, 4}}}}) {
    const Information first = InformMemory(row.file);
    ASSERT_EQ(first.error, "");
    ASSERT_EQ(first.record.TotalPages, static_cast<int>(row.pages.size()));
    for (std::size_t i = 0; i < row.pages.size(); ++i) {
      const Loaded page = LoadMemory(row.file, static_cast<int>(i) + 1);
      ASSERT_EQ(page.error, "") << first.record.Format << " page " << i + 1;
      EXPECT_EQ(page.info.Format, first.record.Format);
      EXPECT_EQ(page.info.Width, row.pages[i].first);
      EXPECT_EQ(page.info.BitsPerPixel, row.pages[i].second);
    }
    EXPECT_EQ(LoadMemory(row.file, static_cast<int>(row.pages.size()) + 1).code, imaging::kErrorPageNotFound);
  }
}

// A page that can't be shown is none of the others' business, and comes after them among icons.
TEST(Rasters, DamagedPageOfAnAlbum) {
  Bytes fax = MakeDcx({MakePcx(1, 1, true).bytes, MakePcx(1, 1, true).bytes});
  fax[7] = 0x7f;  // page 1 lies two thousand million bytes away
  EXPECT_EQ(LoadMemory(fax, 1).code, imaging::kErrorCorrupt);
  EXPECT_EQ(LoadMemory(fax, 2).error, "");
  Bytes icons = MakeIcons({{9, 8}, {5, 8}});
  icons[6 + 12 + 3] = 0x7f;
  EXPECT_EQ(InformMemory(icons).record.Width, 5);
  EXPECT_EQ(LoadMemory(icons, 2).code, imaging::kErrorCorrupt);
}

TEST(Rasters, ColoursOfDrHaloLieBeside) {
  const TempFolder folder;
  const RasterFile picture = MakeDrHalo();
  WriteAll(folder.Path("a.cut"), picture.bytes);
  EXPECT_EQ(ColorAt(LoadFile(folder.Path("a.cut")), 0, 0), picture.color(0, 0));
  WriteAll(folder.Path("a.pal"), MakeDrHaloColors());
  const Loaded page = LoadFile(folder.Path("a.cut"));
  ASSERT_EQ(page.error, "");
  EXPECT_EQ(page.record.BitsPerPixel, 8);
  for (int i = 0; i < 256; ++i) {
    const RGBQUAD& color = page.pixels->Palette()[static_cast<std::size_t>(i)];
    EXPECT_EQ((Color{color.rgbRed, color.rgbGreen, color.rgbBlue, 255}),
              (Color{i * 37 & 255, (255 - i * 11) & 255, i * 73 & 255, 255}))
        << i;
  }
}

TEST(Rasters, NamesOfColours) {
  struct Row {
    const char* color;
    Color expected;
  };
  for (const Row& row :
       {Row{"c light Sky blue", {135, 206, 250, 255}}, Row{"m white g4 gray50", {128, 128, 128, 255}},
        Row{"s x c #f80", {255, 136, 0, 255}}, Row{"c DarkSlateGrey s c", {47, 79, 79, 255}},
        Row{"c #123456789abc", {18, 86, 154, 255}}, Row{"c no such colour", {0, 0, 0, 255}}}) {
    const std::string text = std::string("/* XPM */ static char* x[] = {\"1 1 2 1\", \"  c red\", \".\t") +
                             row.color + "\", \".\"};";
    const Loaded page = LoadMemory(Bytes(text.begin(), text.end()));
    ASSERT_EQ(page.error, "") << row.color;
    EXPECT_EQ(ColorAt(page, 0, 0), row.expected) << row.color;
  }
}

// Of a file that is cut off one row is missing at most.
TEST(Rasters, CutFilesShowTheirPart) {
  for (const RasterFile& file : MakeRasterFiles()) {
    if (file.compression != std::string("None") || file.name == "pcx of 1 x 8")
      continue;  // colours at the end
    SCOPED_TRACE(file.name);
    const Loaded page = LoadMemory(Bytes(file.bytes.begin(), file.bytes.end() - 1));
    ASSERT_EQ(page.error, "");
    int different = 0;
    for (int y = 0; y < page.record.Height; ++y)
      for (int x = 0; x < page.record.Width; ++x)
        different += ColorAt(page, x, y) == file.color(x, y) ? 0 : 1;
    EXPECT_LE(different, page.record.Width);
  }
}

// Kinds without a mark take nothing that isn't theirs.
TEST(Rasters, StrangeBytesAreNoPicture) {
  std::uint32_t seed = 3;
  for (int round = 0; round < 300; ++round) {
    Bytes bytes(700);
    for (std::uint8_t& byte : bytes) {
      seed = seed * 1664525U + 1013904223U;
      byte = static_cast<std::uint8_t>(round % 2 == 0 ? seed >> 24 : 32 + (seed >> 24) % 90);
    }
    EXPECT_EQ(LoadMemory(bytes).code, imaging::kErrorFileFormat) << round;
  }
  EXPECT_EQ(LoadMemory(Bytes(700)).code, imaging::kErrorFileFormat);
}

}  // namespace
}  // namespace codec_test
