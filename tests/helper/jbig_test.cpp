extern "C" {
#include <jbig.h>
}
#include <gtest/gtest.h>

#include "tests/imaging/codec_files.h"
#include "tests/imaging/fax_files.h"

namespace codec_test {
namespace {

/// Rows of packed bits for each plane, one behind another.
Bytes MakeJbig(std::vector<Bytes> planes, int width, int height, int layers) {
  std::vector<unsigned char*> pointers;
  for (Bytes& plane : planes) pointers.push_back(plane.data());
  Bytes file;
  jbg_enc_state state;
  jbg_enc_init(
      &state, static_cast<unsigned long>(width), static_cast<unsigned long>(height),
      static_cast<int>(planes.size()), pointers.data(),
      [](unsigned char* data, std::size_t size, void* target) {
        auto& bytes = *static_cast<Bytes*>(target);
        bytes.insert(bytes.end(), data, data + size);
      },
      &file);
  jbg_enc_layers(&state, layers);
  jbg_enc_lrange(&state, 0, layers);
  jbg_enc_out(&state);
  jbg_enc_free(&state);
  return file;
}

Bytes Join(const std::vector<Bytes>& rows) {
  Bytes whole;
  for (const Bytes& row : rows) whole.insert(whole.end(), row.begin(), row.end());
  return whole;
}

TEST(Jbig, BilevelPagesBitForBit) {
  const TempFolder folder;
  for (const int width : {153, 1728})
    for (const int layers : {0, 2}) {
      SCOPED_TRACE(std::to_string(width) + " " + std::to_string(layers));
      const auto rows = RandomFaxRows(width, 300, 3);
      const std::string path = folder.Path("a.jbg");
      WriteAll(path, MakeJbig({Join(rows)}, width, 300, layers));
      for (const int bits : {0, 8}) {
        const Loaded page = LoadFile(path, 1, bits);
        EXPECT_EQ(FaxDifference(page, rows), "");
        EXPECT_EQ(page.info.Format, 115);
        EXPECT_EQ(page.record.BitsPerPixel, bits == 0 ? 1 : 8);
        EXPECT_STREQ(page.info.Compression, "JBIG");
      }
    }
}

// Planes are in Gray code: with two of them the levels are 00, 01, 11, 10.
TEST(Jbig, PlanesAreGrey) {
  const TempFolder folder;
  const Bytes high = {0b00110000};
  const Bytes low = {0b01100000};
  WriteAll(folder.Path("a.jbig"), MakeJbig({high, low}, 4, 1, 0));
  const Loaded page = LoadFile(folder.Path("a.jbig"));
  ASSERT_EQ(page.error, "");
  EXPECT_EQ(page.info.BitsPerPixel, 2);
  for (int x = 0; x < 4; ++x) EXPECT_EQ(ColorAt(page, x, 0).red, x * 85);
}

TEST(Jbig, CutFilesShowTheirRows) {
  const TempFolder folder;
  const auto rows = RandomFaxRows(1728, 400, 4);
  const Bytes whole = MakeJbig({Join(rows)}, 1728, 400, 0);
  const std::string path = folder.Path("cut.jbg");
  WriteAll(path, Bytes(whole.begin(), whole.begin() + std::ssize(whole) * 3 / 4));
  const Loaded page = LoadFile(path);
  ASSERT_EQ(page.error, "");
  ASSERT_EQ(page.record.Height, 400);
  int good = 0;
  const auto same = [&](int y) {
    return std::equal(rows[static_cast<std::size_t>(y)].begin(), rows[static_cast<std::size_t>(y)].end(),
                      page.pixels->Row(y));
  };
  while (good < 400 && same(good)) ++good;
  EXPECT_GT(good, 200);
  EXPECT_LT(good, 400);
  for (std::size_t size = 1; size < whole.size(); size += 1 + whole.size() / 40) {
    WriteAll(path, Bytes(whole.begin(), whole.begin() + static_cast<std::ptrdiff_t>(size)));
    const Loaded cut = LoadFile(path);
    EXPECT_TRUE(!cut.error.empty() || cut.record.Height == 400);
  }
}

}  // namespace
}  // namespace codec_test
