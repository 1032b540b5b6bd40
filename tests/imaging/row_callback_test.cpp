#include <gtest/gtest.h>

#include <algorithm>

#include "imaging/core/exception.h"
#include "tests/imaging/codec_files.h"

// The rows of a page are told while it is decoded: whoever ends the load saves the rest of the work.

using namespace codec_test;

namespace {

struct Told {
  Bytes file;  ///< what is loaded
  std::vector<int> rows;
  int endAt = -1;
  bool spoils = false;  ///< overwrites a part of the file that the first row doesn't need
  static int Note(struct_file_information* info, struct_LEAD_Bitmap* header, BYTE*, UINT, int row, int lines,
                  void* data) {
    auto& told = *static_cast<Told*>(data);
    EXPECT_EQ(lines, 1);
    EXPECT_EQ(info->Height, header->Height);
    if (told.spoils && row == 0) {
      const auto half = told.file.begin() + static_cast<std::ptrdiff_t>(told.file.size() / 2);
      std::fill(half, half + static_cast<std::ptrdiff_t>(told.file.size() / 4), std::uint8_t{0});
    }
    told.rows.push_back(row);
    return row == told.endAt ? 0 : 1;
  }
};

Loaded LoadTelling(Told& told) {
  auto options = OptionsFor(1);
  return Load([&](auto* bitmap, auto* info) {
    LEADTOOLS::LoadMemory(reinterpret_cast<char*>(told.file.data()), bitmap, 0, 1, 3, &Told::Note, &told,
                          static_cast<long>(told.file.size()), &options, info);
  });
}

std::uint8_t Noise(int x, int y, int channel) {
  auto hash = static_cast<std::uint32_t>(x) * 73856093U ^ static_cast<std::uint32_t>(y) * 19349663U ^
              static_cast<std::uint32_t>(channel) * 83492791U;
  hash = (hash ^ hash >> 13) * 0x5bd1e995U;
  return static_cast<std::uint8_t>(hash >> 15);
}

bool SamePixels(const Loaded& a, const Loaded& b) {
  for (int y = 0; y < a.pixels->Height(); ++y)
    if (!std::equal(a.pixels->Row(y), a.pixels->Row(y) + a.pixels->RowBytes(), b.pixels->Row(y)))
      return false;
  return true;
}

Bytes Tiff(int bits, int samples, int photometric, int compression) {
  TiffForm form;
  form.bits = bits;
  form.samples = samples;
  form.photometric = photometric;
  form.compression = compression;
  form.width = 600;
  form.height = 400;
  return MakeTiff({form});
}

TEST(RowCallback, IsCalledDuringDecoding) {
  const struct {
    const char* name;
    Bytes file;
  } cases[] = {
      {"G4", Tiff(1, 1, PHOTOMETRIC_MINISWHITE, COMPRESSION_CCITTFAX4)},
      {"G3", Tiff(1, 1, PHOTOMETRIC_MINISWHITE, COMPRESSION_CCITTFAX3)},
      {"bilevel LZW", Tiff(1, 1, PHOTOMETRIC_MINISBLACK, COMPRESSION_LZW)},
      {"grey as it is", Tiff(8, 1, PHOTOMETRIC_MINISBLACK, COMPRESSION_NONE)},
      {"grey in place", Tiff(8, 1, PHOTOMETRIC_MINISBLACK, COMPRESSION_PACKBITS)},
      {"converted", Tiff(16, 3, PHOTOMETRIC_RGB, COMPRESSION_NONE)},
      {"JPEG", MakeJpeg(800, 600, 3, false, Noise)},
      {"PNG", MakePng(700, 700, 8, 2, false, [](int x, int y, int c) { return unsigned{Noise(x, y, c)}; })},
  };
  for (const auto& c : cases) {
    Told calm{c.file, {}, -1, false};
    Told spoiled{c.file, {}, -1, true};
    const Loaded whole = LoadTelling(calm);
    const Loaded disturbed = LoadTelling(spoiled);
    ASSERT_EQ(whole.error, "") << c.name;
    std::vector<int> inOrder(static_cast<std::size_t>(whole.pixels->Height()));
    for (std::size_t i = 0; i < inOrder.size(); ++i) inOrder[i] = static_cast<int>(i);
    EXPECT_EQ(calm.rows, inOrder) << c.name;
    EXPECT_TRUE(disturbed.pixels == nullptr || !SamePixels(whole, disturbed))
        << c.name << ": all was decoded before the first row was told";

    Told ended{c.file, {}, 20, true};
    const Loaded none = LoadTelling(ended);
    EXPECT_EQ(none.code, imaging::kErrorUserAbort) << c.name;
    EXPECT_EQ(none.record.pStorage, nullptr) << c.name;
    EXPECT_EQ(ended.rows.size(), 21U) << c.name;
  }
}

}  // namespace
