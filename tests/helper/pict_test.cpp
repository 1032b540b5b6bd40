#include <gtest/gtest.h>

#include "tests/helper/damage.h"
#include "tests/imaging/codec_files.h"

namespace codec_test {
namespace {

struct Writer {
  Bytes bytes;
  Writer& Words(std::initializer_list<int> words) {
    for (const int word : words) Byte(word >> 8).Byte(word);
    return *this;
  }
  Writer& Byte(int value) {
    bytes.push_back(static_cast<std::uint8_t>(value));
    return *this;
  }
  Writer& Add(const Bytes& more) {
    bytes.insert(bytes.end(), more.begin(), more.end());
    return *this;
  }
};

/// One bitmap of 10 by 2 pixels: its opcode, its depth, how it is packed, and its data.
struct Case {
  const char* name;
  int opcode;
  int bits;
  int packType;
  int rowBytes;
  Bytes data;
  std::uint32_t first;  ///< colours of the first and the last pixel
  std::uint32_t last;
};

std::ostream& operator<<(std::ostream& out, const Case& value) {
  return out << value.name;
}

Bytes MakePict(const Case& value, int version, int targetRight = 10) {
  Writer file;
  file.bytes.resize(version == 2 ? 512 : 0);
  file.Words({0, 0, 0, 2, 10});
  if (version == 2)
    file.Words(
        {0x11, 0x2ff, 0xc00, -2, 0, 300, 0, 150, 0, 0, 0, 2, 10, 0, 0, 1, 10, 0, 0, 2, 10, value.opcode});
  else
    file.Words({0x1101}).Byte(value.opcode);
  const bool direct = value.opcode >= 0x9a;
  if (direct) file.Words({0, 0xff});
  const bool pixmap = direct || value.packType >= 0;
  file.Words({value.rowBytes | (pixmap ? 0x8000 : 0), 0, 0, 2, 10});
  if (pixmap)
    file.Words({0, value.packType, 0, 0, 72, 0, 72, 0, direct ? 16 : 0, value.bits, direct ? 3 : 1, 8, 0, 0,
                0, 0, 0, 0});
  if (pixmap && !direct) file.Words({0, 0, 0, 1, 0, 0x1100, 0x2200, 0x3300, 1, 0xaa00, 0xbb00, 0xcc00});
  file.Words({0, 0, 2, 10, 0, 0, 2, targetRight, 0});
  if (value.opcode % 2 != 0) file.Words({10, 0, 0, 2, 10});
  file.Add(value.data);
  if (version == 1) return file.Byte(0xff).bytes;
  if (file.bytes.size() % 2 != 0) file.Byte(0);
  return file.Words({0xff}).bytes;
}

Bytes Twice(Bytes row) {
  const Bytes once = row;
  row.insert(row.end(), once.begin(), once.end());
  return row;
}

const Case kCases[] = {
    {"bits", 0x90, 1, -1, 2, {0x80, 0x40, 0x80, 0x40}, 0x000000, 0x000000},
    {"packed bits", 0x99, 1, -1, 8, Twice({3, 0xf9, 0x80, 0x80}), 0x000000, 0xffffff},
    {"two bits", 0x98, 2, 0, 4, Twice({0x40, 0x00, 0x10, 0}), 0xaabbcc, 0xaabbcc},
    {"four bits", 0x98, 4, 0, 8, Twice({6, 0, 0x10, 0xfb, 0x01, 0, 0}), 0xaabbcc, 0xaabbcc},
    {"eight bits", 0x98, 8, 0, 10, Twice({4, 0xf8, 1, 0, 0}), 0xaabbcc, 0x112233},
    {"words", 0x9a, 16, 3, 20, Twice({6, 0xf8, 0x7c, 0x00, 0, 0x00, 0x1f}), 0xff0000, 0x0000ff},
    {"components", 0x9b, 32, 4, 40, Twice({6, 0xf7, 0x12, 0xf7, 0x34, 0xf7, 0x56}), 0x123456, 0x123456},
    {"no padding", 0x9a, 32, 2, 40, Bytes(60, 0x77), 0x777777, 0x777777},
    {"unpacked", 0x9a, 32, 1, 40, Bytes(80, 0x66), 0x666666, 0x666666},
};

class Pict : public testing::TestWithParam<Case> {};

std::uint32_t ColorOf(const Loaded& page, int x, int y) {
  const auto color = ColorAt(page, x, y);
  return static_cast<std::uint32_t>(color.red << 16 | color.green << 8 | color.blue);
}

TEST_P(Pict, OneBitmapKeepsItsDepth) {
  const Case& value = GetParam();
  for (const int version : {1, 2}) {
    const TempFolder folder;
    const std::string path = folder.Path("a.pict");
    WriteAll(path, MakePict(value, version));
    const Loaded page = LoadFile(path);
    ASSERT_EQ(page.error, "");
    EXPECT_EQ(page.info.Format, 56);
    EXPECT_EQ(page.info.BitsPerPixel, value.bits == 32 ? 24 : value.bits);
    EXPECT_EQ(page.info.XResolution, version == 2 ? 300 : 72);
    EXPECT_EQ(page.info.YResolution, version == 2 ? 150 : 72);
    EXPECT_EQ(ColorOf(page, 0, 0), value.first);
    EXPECT_EQ(ColorOf(page, 9, 1), value.last);
  }
}

// A bitmap that fills half of the frame is drawn at half its width, on white.
TEST_P(Pict, OtherBitmapsAreScaled) {
  const Loaded page = LoadMemory(MakePict(GetParam(), 2, 5));
  ASSERT_EQ(page.error, "");
  EXPECT_EQ(page.record.BitsPerPixel, 24);
  EXPECT_EQ(ColorOf(page, 0, 0), GetParam().first);
  EXPECT_EQ(ColorOf(page, 5, 1), 0xffffffU);
}

TEST_P(Pict, DamagedFilesGiveAPageOrAnError) {
  const Bytes file = MakePict(GetParam(), 2);
  ExpectPageOrError(file, {23, std::size_t{512} * 8, file.size() * 8, 29}, 2);
}

TEST(PictShapes, FiguresPatternsAndClip) {
  Writer file;
  file.Words({0, 0, 0, 40, 40, 0x1101});
  file.Byte(0x0e).Words({0, 205}).Byte(0x31).Words({0, 0, 10, 10});   // red paint
  file.Byte(0x33).Words({2, 2, 4, 4}).Byte(0x3a);                     // cyan, and erased again
  file.Byte(0x0e).Words({0, 409}).Byte(0x50).Words({0, 20, 20, 40});  // a blue circle
  file.Byte(0x20).Words({30, 0, 30, 9}).Byte(0x23).Byte(0).Byte(5);
  file.Byte(0x09).Words({0xaa55, 0xaa55, 0xaa55, 0xaa55});
  file.Byte(0x71).Words({22, 20, 20, 40, 40, 20, 20, 40, 20, 40, 40});
  file.Byte(0x01).Words({10, 0, 0, 40, 15}).Byte(0x35).Words({36, 10, 40, 20}).Byte(0xff);
  file.Byte(0xff);
  file.bytes[1] = static_cast<std::uint8_t>(file.bytes.size());
  const Loaded page = LoadMemory(file.bytes);
  ASSERT_EQ(page.error, "");
  struct Pixel {
    int x, y;
    std::uint32_t color;
  };
  for (const auto& [x, y, color] : {Pixel{0, 0, 0xff0000},
                                    {9, 9, 0xff0000},
                                    {10, 9, 0xffffff},
                                    {3, 3, 0xffffff},
                                    {30, 0, 0x0000ff},
                                    {30, 10, 0xffffff},
                                    {20, 0, 0xffffff},
                                    {20, 10, 0x0000ff},
                                    {9, 30, 0x0000ff},
                                    {9, 35, 0x0000ff},
                                    {10, 30, 0xffffff},
                                    {22, 38, 0x0000ff},
                                    {23, 38, 0xffffff},
                                    {38, 22, 0xffffff}})
    EXPECT_EQ(ColorOf(page, x, y), color) << x << " " << y;
  ExpectPageOrError(file.bytes, {7, 80, file.bytes.size() * 8, 13});
}

/// Version 2, in which opcodes are words.
TEST(PictShapes, PixelPatternsRegionsAndOrigin) {
  Writer file;
  file.Words({0, 0, 0, 40, 40, 0x11, 0x2ff});
  // A pattern of 2 by 2 pixels of two colours, then four rows of it.
  file.Words(
      {0x13, 1, 0, 0, 0, 0, 0x8002, 0, 0, 2, 2, 0, 0, 0, 0, 72, 0, 72, 0, 0, 8, 1, 8, 0, 0, 0, 0, 0, 0});
  file.Words({0, 0, 0, 1, 0, 0x1100, 0x2200, 0x3300, 1, 0xaa00, 0xbb00, 0xcc00, 0x0001, 0x0100});
  file.Words({0x31, 0, 0, 4, 20});
  // An L: its columns in its rows from 10 on, and what changes from 14 on.
  file.Words({0x1a, 0, 0, 0xffff, 0x0a, 0xffff, 0xffff, 0xffff, 0xffff});
  file.Words({0x84, 10 + 26, 10, 2, 20, 12, 10, 2, 6, 0x7fff, 14, 6, 12, 0x7fff, 20, 2, 12, 0x7fff, 0x7fff});
  file.Words({0x84, 10, 22, 2, 24, 4});
  // What is white, and nothing else, becomes green.
  file.Words({0x1d, 0, 0xffff, 0, 0x1c, 0x33, 22, 2, 24, 6});
  // From here on a point is 5 to the left and 30 up.
  file.Words({0x0c, 5, -30, 0x34, 0, 10, 4, 15, 0x84, 10 + 18, 5, 15, 7, 20, 5, 15, 20, 0x7fff, 7, 15, 20});
  file.Words({0x7fff, 0x7fff, 0xff});
  const Loaded page = LoadMemory(file.bytes);
  ASSERT_EQ(page.error, "");
  struct Pixel {
    int x, y;
    std::uint32_t color;
  };
  constexpr std::uint32_t kWhite = 0xffffff;
  constexpr std::uint32_t kBlue = 0x0000ff;
  for (const auto& [x, y, color] :
       {Pixel{0, 0, 0x112233}, {1, 0, 0xaabbcc}, {18, 2, 0x112233}, {18, 3, 0xaabbcc}, {19, 3, 0x112233},
        {20, 3, kWhite},       {2, 10, kBlue},   {5, 13, kBlue},    {6, 13, kWhite},   {6, 14, kBlue},
        {11, 19, kBlue},       {12, 19, kWhite}, {2, 20, kWhite},   {3, 23, kBlue},    {5, 23, 0x00ff00},
        {5, 30, kBlue},        {9, 33, kBlue},   {10, 33, kWhite},  {4, 30, kWhite},   {10, 35, kBlue},
        {14, 36, kBlue},       {15, 36, kWhite}, {10, 37, kWhite}})
    EXPECT_EQ(ColorOf(page, x, y), color) << x << " " << y;
  ExpectPageOrError(file.bytes, {17, 80, file.bytes.size() * 8, 29});
}

// Half as wide as it is stored, at a place of its own.
TEST(PictShapes, JpegThatDoesNotFillTheFrame) {
  Bytes jpeg = MakeJpeg(32, 16, 3, false, [](int, int, int) { return std::uint8_t{90}; });
  if (jpeg.size() % 2 != 0) jpeg.push_back(0);
  const auto size = static_cast<int>(jpeg.size());
  Writer file;
  file.Words({0, 0, 0, 40, 40, 0x11, 0x2ff, 0x8200, 0, 68 + 86 + size});
  file.Words({0, 0, 0x8000, 0, 0, 0, 0, 0, 0, 1, 0, 0, 0, 10, 0, 20, 0, 0x4000, 0});
  file.Words({0, 0, 0, 0, 0, 0, 0, 0, 0, 16, 32, 0, 0, 0, 0});
  file.Words({0, 86, 0x6a70, 0x6567}).Add(Bytes(36)).Words({0, size}).Add(Bytes(38)).Add(jpeg).Words({0xff});
  const Loaded page = LoadMemory(file.bytes);
  ASSERT_EQ(page.error, "");
  EXPECT_EQ(page.record.BitsPerPixel, 24);
  for (const int x : {10, 25})
    for (const int y : {20, 35}) EXPECT_NEAR(ColorAt(page, x, y).green, 90, 2);
  for (const auto& [x, y] : {std::pair{9, 20}, {26, 20}, {10, 19}, {10, 36}})
    EXPECT_EQ(ColorOf(page, x, y), 0xffffffU) << x << " " << y;
  ExpectPageOrError(file.bytes, {61, 80, file.bytes.size() * 8, 171});
}

INSTANTIATE_TEST_SUITE_P(Kinds, Pict, testing::ValuesIn(kCases));

}  // namespace
}  // namespace codec_test
