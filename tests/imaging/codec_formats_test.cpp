#include <gtest/gtest.h>
#include <png.h>

#include <chrono>
#include <thread>

#include "imaging/core/exception.h"
#include "tests/imaging/codec_files.h"

// JPEG, PNG, GIF and BMP.
namespace codec_test {
namespace {

TEST(Jpeg, KindsAndOrders) {
  const auto soft = [](int x, int y, int c) { return static_cast<std::uint8_t>(40 + x + y / 2 + c * 25); };
  for (const int components : {1, 3})
    for (const bool progressive : {false, true})
      for (const int order : {0, 1}) {
        const Loaded page = LoadMemory(MakeJpeg(70, 50, components, progressive, soft), 1, 0, order);
        ASSERT_EQ(page.error, "");
        EXPECT_EQ(page.record.BitsPerPixel, components * 8);
        EXPECT_STREQ(page.info.Compression, progressive ? "JPEG progressive" : "JPEG baseline");
        EXPECT_EQ(page.info.Format, components == 1 ? 10 : 21);
        if (components == 3) {
          EXPECT_EQ(page.record.Order, order);
        }
        for (int y = 0; y < 50; ++y)
          for (int x = 0; x < 70; ++x) {
            ASSERT_NEAR(ColorAt(page, x, y).red, soft(x, y, 0), 6) << x << "," << y;
            ASSERT_NEAR(ColorAt(page, x, y).blue, soft(x, y, components == 1 ? 0 : 2), 6) << x << "," << y;
          }
      }
}

// Without Adobe's mark 255 is full ink.
TEST(Jpeg, InkBecomesColour) {
  const std::uint8_t inks[] = {200, 100, 0, 51};
  Bytes file = MakeJpeg(16, 16, 4, false, [&](int, int, int c) { return inks[c]; });
  Loaded page = LoadMemory(file);
  ASSERT_EQ(page.error, "");
  EXPECT_EQ(page.info.BitsPerPixel, 32);
  EXPECT_EQ(page.record.BitsPerPixel, 24);
  // The library wrote Adobe's mark, so the levels are inverted ink: colour = level x black / 255.
  EXPECT_NEAR(ColorAt(page, 8, 8).red, 200 * 51 / 255, 2);
  EXPECT_NEAR(ColorAt(page, 8, 8).green, 100 * 51 / 255, 2);
  EXPECT_NEAR(ColorAt(page, 8, 8).blue, 0, 2);
  for (std::size_t i = 0; i + 4 < file.size(); ++i)
    if (file[i] == 0xff && file[i + 1] == 0xee && file[i + 4] == 'A') file[i + 4] = 'x';
  page = LoadMemory(file);
  ASSERT_EQ(page.error, "");
  EXPECT_NEAR(ColorAt(page, 8, 8).red, 55 * 204 / 255, 2);
  EXPECT_NEAR(ColorAt(page, 8, 8).blue, 204, 2);
}

/// An Exif block with orientation 6 and 300 dots per inch, big-endian.
Bytes Exif() {
  return {'E', 'x', 'i', 'f', 0, 0, 'M', 'M',  0, 42, 0, 0, 0, 8, 0, 3,  1, 0x12, 0, 3,    0, 0,
          0,   1,   0,   6,   0, 0, 1,   0x1a, 0, 5,  0, 0, 0, 1, 0, 0,  0, 50,   1, 0x1b, 0, 5,
          0,   0,   0,   1,   0, 0, 0,   50,   0, 0,  0, 0, 0, 0, 1, 44, 0, 0,    0, 1};
}

/// The same fields under other types and counts: a signed long, or a short that isn't alone, for the
/// orientation, a short and an array of two rationals for the densities.
Bytes OddExif(bool manyShorts) {
  Bytes block = Exif();
  const auto put = [&block](std::size_t at, const Bytes& bytes) {
    std::copy(bytes.begin(), bytes.end(), block.begin() + static_cast<std::ptrdiff_t>(at));
  };
  put(18, manyShorts ? Bytes{0, 3, 0, 0, 0, 3, 0, 6, 0, 0} : Bytes{0, 9, 0, 0, 0, 1, 0, 0, 0, 6});
  put(30, {0, 3, 0, 0, 0, 1, 1, 44, 0, 0});
  put(42, {0, 5, 0, 0, 0, 2});
  return block;
}

TEST(Jpeg, DensityAndOrientation) {
  const auto gray = [](int, int, int) { return std::uint8_t{90}; };
  struct Row {
    int unit;
    int density;
    Bytes exif;
    int expected;
    int orientation;
    int code;
  };
  for (const Row& row : {Row{1, 204, {}, 204, 0, 21}, Row{2, 100, {}, 254, 0, 21}, Row{0, 100, {}, 0, 0, 21},
                         Row{0, 0, Exif(), 300, 6, 101}, Row{0, 0, OddExif(false), 300, 6, 101},
                         Row{0, 0, OddExif(true), 300, 6, 101}}) {
    const Information info = InformMemory(MakeJpeg(16, 16, 3, false, gray, row.unit, row.density, row.exif));
    ASSERT_EQ(info.error, "");
    EXPECT_EQ(info.record.XResolution, row.expected);
    EXPECT_EQ(info.record.YResolution, row.expected);
    EXPECT_EQ(info.record.ViewPerspective, row.orientation);
    EXPECT_EQ(info.record.Format, row.code);
  }
}

TEST(Png, EveryDepthAndType) {
  struct Row {
    int type;
    int depth;
    int memoryBits;
  };
  const Row rows[] = {{0, 1, 1},  {0, 2, 8},   {0, 4, 4},   {0, 8, 8},  {0, 16, 8},
                      {2, 8, 24}, {2, 16, 24}, {3, 1, 1},   {3, 2, 8},  {3, 4, 4},
                      {3, 8, 8},  {4, 8, 32},  {4, 16, 32}, {6, 8, 32}, {6, 16, 32}};
  for (const Row& row : rows)
    for (const bool interlaced : {false, true}) {
      SCOPED_TRACE("type " + std::to_string(row.type) + " depth " + std::to_string(row.depth));
      const auto sample = [&](int x, int y, int c) {
        return (static_cast<unsigned>(x * 31 + y * 17 + c * 57 + x * y) * 2654435761U) >> (32 - row.depth);
      };
      const auto level = [&](int x, int y, int c) {
        return static_cast<int>((sample(x, y, c) * 255 + (1U << row.depth) / 2) / ((1U << row.depth) - 1));
      };
      const Loaded page =
          LoadMemory(MakePng(21, 19, row.depth, row.type, interlaced, sample), 1, 0, row.depth == 16);
      ASSERT_EQ(page.error, "");
      EXPECT_EQ(page.record.BitsPerPixel, row.memoryBits);
      EXPECT_EQ(page.info.Format, 75);
      EXPECT_EQ(page.record.XResolution, 300);
      EXPECT_EQ(page.record.YResolution, 150);
      for (int y = 0; y < 19; ++y)
        for (int x = 0; x < 21; ++x) {
          const Color color = ColorAt(page, x, y);
          if (row.type == 3) {
            ASSERT_EQ(color.green, static_cast<int>(255 - sample(x, y, 0)));
            continue;
          }
          const bool gray = row.type == 0 || row.type == 4;
          ASSERT_NEAR(color.red, level(x, y, 0), 1) << x << "," << y;
          ASSERT_NEAR(color.blue, level(x, y, gray ? 0 : 2), 1) << x << "," << y;
          ASSERT_NEAR(color.alpha, row.type >= 4 ? level(x, y, gray ? 1 : 3) : 255, 1) << x << "," << y;
        }
    }
}

TEST(Png, BilevelAsEightBits) {
  const auto sample = [](int x, int y, int) { return static_cast<unsigned>(x + y) & 1U; };
  const Loaded page = LoadMemory(MakePng(13, 5, 1, PNG_COLOR_TYPE_GRAY, false, sample), 1, 8);
  ASSERT_EQ(page.error, "");
  ASSERT_TRUE(page.pixels->IsLinearGray());
  for (int x = 0; x < 13; ++x) EXPECT_EQ(IndexAt(*page.pixels, x, 0), x % 2 * 255);
}

TEST(Png, WrittenAndReadAgain) {
  const TempFolder folder;
  const std::string path = folder.Path("out.png");
  const auto sample = [](int x, int y, int c) {
    return (static_cast<unsigned>(x * 31 + y * 17 + c * 57) * 2654435761U) >> 24;
  };
  struct Row {
    int type;
    int depth;
  };
  for (const Row& row : {Row{0, 1}, Row{3, 4}, Row{0, 8}, Row{3, 8}, Row{2, 8}, Row{6, 8}}) {
    Loaded first =
        LoadMemory(MakePng(21, 19, row.depth, row.type, false,
                           [&](int x, int y, int c) { return sample(x, y, c) >> (8 - row.depth); }),
                   1, 0, 1);
    ASSERT_EQ(first.error, "");
    LEADTOOLS::SaveBitmap(path.c_str(), &first.record, 75, 0, 0, nullptr);
    const Loaded second = LoadFile(path);
    ASSERT_EQ(second.error, "");
    EXPECT_EQ(second.record.BitsPerPixel, first.record.BitsPerPixel);
    EXPECT_EQ(second.record.XResolution, 300);
    for (int y = 0; y < 19; ++y)
      for (int x = 0; x < 21; ++x)
        ASSERT_EQ(ColorAt(second, x, y), ColorAt(first, x, y)) << row.type << " " << row.depth;
    const auto save = [&](const std::string& target, int format) {
      return Inform(
                 [&](auto*) { LEADTOOLS::SaveBitmap(target.c_str(), &first.record, format, 0, 0, nullptr); })
          .error;
    };
    EXPECT_NE(save(folder.Path("no/such/folder.png"), 75), "");
    EXPECT_NE(save(path, 29), "");
  }
  EXPECT_EQ(std::distance(std::filesystem::directory_iterator(folder.Path("")), {}), 1);
}

// Four frames: a red screen, a green square that vanishes to nothing, a white one that gives way to what was
// there, and a frame of the transparent colour.
TEST(Gif, FramesAreComposed) {
  const Bytes file = MakeGif(
      20, 20, {{0, 0, 20, 20, 1, 1}, {2, 2, 6, 6, 2, 2}, {10, 10, 6, 6, 3, 3}, {0, 0, 20, 20, 0, 1, 0}});
  const Color red{255, 0, 0, 255};
  const Color green{0, 255, 0, 255};
  const Color white{255, 255, 255, 255};
  ASSERT_EQ(InformMemory(file).record.TotalPages, 4);
  Loaded page = LoadMemory(file, 1);
  ASSERT_EQ(page.error, "");
  EXPECT_EQ(page.record.BitsPerPixel, 8);
  EXPECT_EQ(ColorAt(page, 3, 3), red);
  page = LoadMemory(file, 2);
  ASSERT_EQ(page.error, "");
  EXPECT_EQ(page.record.BitsPerPixel, 8);
  EXPECT_EQ(ColorAt(page, 3, 3), green);
  EXPECT_EQ(ColorAt(page, 8, 8), red);
  page = LoadMemory(file, 3);
  ASSERT_EQ(page.error, "");
  EXPECT_EQ(page.record.BitsPerPixel, 32);
  EXPECT_EQ(ColorAt(page, 3, 3).alpha, 0);
  EXPECT_EQ(ColorAt(page, 12, 12), white);
  page = LoadMemory(file, 4);
  ASSERT_EQ(page.error, "");
  EXPECT_EQ(page.record.Width, 20);
  EXPECT_EQ(ColorAt(page, 12, 12), red);
  EXPECT_EQ(ColorAt(page, 3, 3).alpha, 0);
  EXPECT_EQ(LoadMemory(file, 5).code, imaging::kErrorPageNotFound);
}

/// What the screen shows at a place with a frame drawn: the index of a colour, or -1 for nothing.
int Shown(const std::vector<GifFrame>& frames, int page, int x, int y) {
  int color = -1;
  for (int i = 0; i < page; ++i) {
    const GifFrame& frame = frames[static_cast<std::size_t>(i)];
    if (x < frame.left || x >= frame.left + frame.width || y < frame.top || y >= frame.top + frame.height)
      continue;
    const int before = color;
    if (frame.index != frame.transparent) color = frame.index;
    if (i + 1 < page && frame.disposal == 2) color = -1;
    if (i + 1 < page && frame.disposal == 3) color = before;
  }
  return color;
}

// Pages in any order, remembered (a file) or not (memory), whichever frames they can be composed from: among
// them are whole ones that stay, vanish, and give way to what was there.
TEST(Gif, PagesInAnyOrderFollowTheRules) {
  std::vector<GifFrame> frames = {{0, 0, 20, 20, 1, 1}};
  for (int i = 1; i < 60; ++i) {
    frames.push_back({i % 11, 2 * i % 13, 4, 3, i % 4, i % 4, i % 7 == 5 ? i % 4 : -1});
    if (i % 8 == 0) frames.push_back({0, 0, 20, 20, i / 8 % 4, i / 8 % 4, i % 16 == 0 ? -1 : i / 8 % 3});
  }
  const int last = static_cast<int>(frames.size());
  const Bytes file = MakeGif(20, 20, frames);
  const TempFolder folder;
  WriteAll(folder.Path("a.gif"), file);
  std::this_thread::sleep_for(std::chrono::milliseconds(150));  // old enough to be remembered
  const Color colors[] = {{0, 0, 0, 255}, {255, 0, 0, 255}, {0, 255, 0, 255}, {255, 255, 255, 255}};
  std::vector<int> order = {1, 2, 3, 4, 5, 9, 6, 7, 7, 8, 9, 8, 2, last};
  for (int page = 1; page <= last; ++page) order.push_back(page);
  for (int page = last; page >= 1; page -= 3) order.push_back(page);
  for (const int page : order)
    for (const bool isFile : {true, false}) {
      const Loaded loaded = isFile ? LoadFile(folder.Path("a.gif"), page) : LoadMemory(file, page);
      ASSERT_EQ(loaded.error, "") << page;
      for (int y = 0; y < 20; ++y)
        for (int x = 0; x < 20; ++x) {
          const int shown = Shown(frames, page, x, y);
          const Color color = ColorAt(loaded, x, y);
          ASSERT_TRUE(shown < 0 ? color.alpha == 0 : color == colors[shown])
              << "page " << page << " at " << x << "," << y << (isFile ? ", file" : ", memory");
        }
    }
  EXPECT_EQ(LoadFile(folder.Path("a.gif"), last + 1).code, imaging::kErrorPageNotFound);
}

Bytes Colors(int count) {
  Bytes table;
  for (int i = 0; i < count; ++i)
    for (const int value : {i * 11, 255 - i, i * 37, 0}) table.push_back(static_cast<std::uint8_t>(value));
  return table;
}

TEST(Bmp, UncompressedDepths) {
  for (const int bits : {1, 2, 4, 8, 16, 24, 32})
    for (const bool topDown : {false, true}) {
      const int width = 11;
      const int height = 3;
      Bytes pixels;
      for (int line = 0; line < height; ++line) {
        const std::size_t start = pixels.size();
        pixels.resize(start + static_cast<std::size_t>((width * bits + 31) / 32 * 4));
        for (std::size_t i = start; i < pixels.size(); ++i)
          pixels[i] = static_cast<std::uint8_t>(line * 50 + static_cast<int>(i - start) * 7);
      }
      const Loaded page = LoadMemory(MakeBmp(width, topDown ? -height : height, bits, 0,
                                             bits <= 8 ? Colors(1 << bits) : Bytes(), pixels));
      ASSERT_EQ(page.error, "") << bits;
      EXPECT_EQ(page.info.BitsPerPixel, bits);
      EXPECT_EQ(page.record.XResolution, 100);
      EXPECT_EQ(page.record.YResolution, 200);
      for (int y = 0; y < height; ++y) {
        const int line = topDown ? y : height - 1 - y;
        const auto byte = [&](int i) { return (line * 50 + i * 7) & 255; };
        const int x = 5;
        const Color color = ColorAt(page, x, y);
        if (bits <= 8) {
          const int index = byte(x * bits / 8) >> (8 - bits - x * bits % 8) & ((1 << bits) - 1);
          EXPECT_EQ(color.red, index * 37 & 255) << bits << " line " << line;
        } else if (bits == 16) {
          const int pixel = byte(10) | byte(11) << 8;
          EXPECT_EQ(color.red, ((pixel >> 10 & 31) * 255 + 15) / 31);
          EXPECT_EQ(color.blue, ((pixel & 31) * 255 + 15) / 31);
        } else {
          EXPECT_EQ(color, (Color{byte(x * bits / 8 + 2), byte(x * bits / 8 + 1), byte(x * bits / 8), 255}));
        }
      }
    }
}

TEST(Bmp, BitFieldsWithoutAlphaOfSixBits) {
  Bytes masks;
  for (const unsigned mask : {0xf800U, 0x07e0U, 0x001fU})
    for (int i = 0; i < 4; ++i) masks.push_back(static_cast<std::uint8_t>(mask >> 8 * i));
  const Loaded page = LoadMemory(MakeBmp(2, 1, 16, 3, masks, {0xe0, 0x07, 0x1f, 0xf8}));
  ASSERT_EQ(page.error, "");
  EXPECT_STREQ(page.info.Compression, "None (bit fields)");
  EXPECT_EQ(ColorAt(page, 0, 0), (Color{0, 255, 0, 255}));
  EXPECT_EQ(ColorAt(page, 1, 0), (Color{255, 0, 255, 255}));
}

TEST(Bmp, RunLengths) {
  struct Row {
    const char* what;
    int bits;
    Bytes stream;
    std::vector<int> expected;  ///< indices of a picture 6 wide and 2 high, upper line first
  };
  const Row rows[] = {
      {"runs", 8, {6, 1, 0, 0, 6, 2, 0, 1}, {2, 2, 2, 2, 2, 2, 1, 1, 1, 1, 1, 1}},
      {"absolute of odd length",
       8,
       {0, 3, 7, 8, 9, 0, 3, 4, 0, 0, 6, 2, 0, 1},
       {2, 2, 2, 2, 2, 2, 7, 8, 9, 4, 4, 4}},
      {"delta", 8, {1, 5, 0, 2, 2, 1, 2, 6, 0, 1}, {0, 0, 0, 6, 6, 0, 5, 0, 0, 0, 0, 0}},
      {"run over the edge", 8, {200, 3, 0, 0, 1, 4, 0, 1}, {4, 0, 0, 0, 0, 0, 3, 3, 3, 3, 3, 3}},
      {"no end", 8, {6, 1}, {0, 0, 0, 0, 0, 0, 1, 1, 1, 1, 1, 1}},
      {"delta out of the picture", 8, {0, 2, 255, 255, 9, 9, 0, 1}, {0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0}},
      {"nibbles", 4, {5, 0x12, 0, 0, 0, 3, 0x45, 0x60, 3, 0x77, 0, 1}, {4, 5, 6, 7, 7, 7, 1, 2, 1, 2, 1, 0}},
  };
  for (const Row& row : rows) {
    const Loaded page =
        LoadMemory(MakeBmp(6, 2, row.bits, row.bits == 8 ? 1 : 2, Colors(1 << row.bits), row.stream));
    ASSERT_EQ(page.error, "") << row.what;
    EXPECT_EQ(page.info.Format, 84);
    for (int i = 0; i < 12; ++i)
      EXPECT_EQ(IndexAt(*page.pixels, i % 6, i / 6), row.expected[static_cast<std::size_t>(i)])
          << row.what << " " << i;
  }
}

TEST(Bmp, EmbeddedPictures) {
  const auto sample = [](int x, int y, int c) {
    return static_cast<unsigned>(x * 9 + y * 5 + c * 50) & 255U;
  };
  const Loaded page = LoadMemory(MakeBmp(9, 7, 0, 5, {}, MakePng(9, 7, 8, 2, false, sample)));
  ASSERT_EQ(page.error, "");
  EXPECT_STREQ(page.info.Compression, "PNG");
  EXPECT_EQ(ColorAt(page, 4, 5).blue, static_cast<int>(sample(4, 5, 2)));
  EXPECT_NE(LoadMemory(MakeBmp(9, 7, 0, 5, {}, Bytes(100))).error, "");
  // A bitmap inside a bitmap inside a bitmap is no picture.
  EXPECT_NE(LoadMemory(MakeBmp(9, 7, 0, 5, {}, MakeBmp(9, 7, 24, 0, {}, Bytes(300)))).error, "");
}

}  // namespace
}  // namespace codec_test
