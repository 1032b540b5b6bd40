#include <gtest/gtest.h>
#include <sys/stat.h>

#include <chrono>
#include <cstring>
#include <thread>

#include "imaging/core/exception.h"
#include "tests/imaging/fax_files.h"
#include "tests/imaging/raster_files.h"

// Pages of a file, and files that aren't what they should be.
namespace codec_test {
namespace {

TiffForm Page(int width, int bits = 8) {
  TiffForm form{"page", bits};
  form.width = width;
  return form;
}

void Put32(Bytes& file, std::size_t at, std::uint32_t value) {
  std::memcpy(&file[at], &value, 4);
}
std::uint32_t Get32(const Bytes& file, std::size_t at) {
  std::uint32_t value = 0;
  std::memcpy(&value, &file[at], 4);
  return value;
}
/// Offset of the field that leads to the next directory, of a little-endian classic file.
std::size_t NextField(const Bytes& file, std::size_t directory) {
  return directory + 2 + std::size_t{12} * (file[directory] | file[directory + 1] << 8);
}
/// Changes the value of a tag with one entry.
void SetTag(Bytes& file, unsigned tag, std::uint32_t value) {
  const std::size_t directory = Get32(file, 4);
  for (std::size_t entry = directory + 2; entry < NextField(file, directory); entry += 12)
    if ((file[entry] | file[entry + 1] << 8) == static_cast<int>(tag)) {
      file[entry + 2] = 4;  // LONG
      Put32(file, entry + 8, value);
    }
}

TEST(Pages, EachHasItsOwnSizeAndDepth) {
  for (const char* mode : {"w", "wb", "w8", "wb8"}) {
    std::vector<TiffForm> pages = {Page(5, 1), Page(17), Page(33, 16)};
    pages[0].mode = mode;
    const Bytes file = MakeTiff(pages);
    for (int page = 1; page <= 3; ++page) {
      const Information info = InformMemory(file, page);
      ASSERT_EQ(info.error, "") << mode;
      EXPECT_EQ(info.record.TotalPages, 3);
      EXPECT_EQ(info.record.PageNumber, page);
      EXPECT_EQ(info.record.Width, pages[static_cast<std::size_t>(page) - 1].width);
      EXPECT_EQ(LoadMemory(file, page).info.BitsPerPixel, pages[static_cast<std::size_t>(page) - 1].bits);
    }
    for (const int page : {-1, 0, 4, 1'000'000}) {
      EXPECT_NE(InformMemory(file, page).error, "");
      EXPECT_EQ(LoadMemory(file, page).code, imaging::kErrorPageNotFound);
    }
  }
}

TEST(Pages, LoopEndsTheCount) {
  for (const int back : {1, 2, 3}) {  // the last page leads back to this one
    Bytes file = MakeTiff({Page(5), Page(6), Page(7)});
    std::vector<std::size_t> directories = {Get32(file, 4)};
    for (int i = 0; i < 2; ++i) directories.push_back(Get32(file, NextField(file, directories.back())));
    Put32(file, NextField(file, directories.back()),
          static_cast<std::uint32_t>(directories[static_cast<std::size_t>(back) - 1]));
    EXPECT_EQ(InformMemory(file).record.TotalPages, 3) << back;
    EXPECT_EQ(LoadMemory(file, 3).record.Width, 7);
    EXPECT_EQ(LoadMemory(file, 4).code, imaging::kErrorPageNotFound);
  }
}

TEST(Pages, ReplacedFileIsReadAnew) {
  const TempFolder folder;
  const std::string path = folder.Path("pages.tif");
  WriteAll(path, MakeTiff({Page(5), Page(6), Page(7)}));
  // Only files that haven't changed for a moment are remembered.
  const auto settle = [] { std::this_thread::sleep_for(std::chrono::milliseconds(150)); };
  settle();
  EXPECT_EQ(InformFile(path).record.TotalPages, 3);
  EXPECT_EQ(InformFile(path, 3).record.Width, 7);
  WriteAll(path, MakeTiff({Page(8), Page(9)}));
  settle();
  EXPECT_EQ(InformFile(path).record.TotalPages, 2);
  EXPECT_EQ(LoadFile(path, 2).record.Width, 9);
  EXPECT_EQ(LoadFile(path, 3).code, imaging::kErrorPageNotFound);
  // Renamed over, with the same size and an old time of change.
  const std::string other = folder.Path("other.tif");
  WriteAll(other, MakeTiff({Page(9), Page(8)}));
  std::filesystem::last_write_time(other, std::filesystem::last_write_time(path));
  std::filesystem::rename(other, path);
  settle();
  EXPECT_EQ(LoadFile(path, 2).record.Width, 8);
}

TEST(BadFiles, ErrorsNameTheFile) {
  const TempFolder folder;
  const std::string empty = folder.Path("empty.tif");
  const std::string text = folder.Path("text.tif");
  const std::string pipe = folder.Path("pipe.tif");
  const std::string missing = folder.Path("missing.tif");
  WriteAll(empty, {});
  WriteAll(text, Bytes(1000, 'x'));
  ASSERT_EQ(mkfifo(pipe.c_str(), 0600), 0);
  for (const std::string& path : {empty, text, pipe, missing, folder.Path("")}) {
    EXPECT_NE(InformFile(path).error.find(path), std::string::npos) << path;
    EXPECT_NE(LoadFile(path).error.find(path), std::string::npos) << path;
  }
  EXPECT_NE(InformFile("").error, "");
  EXPECT_NE(Inform([](auto* info) { LEADTOOLS::FileInfo(nullptr, info, 0, nullptr); }).error, "");
  EXPECT_NE(Inform([](auto* info) { LEADTOOLS::FileInfoMemory(nullptr, info, 10, 0, nullptr); }).error, "");
}

TEST(BadFiles, NullOptionsStandForPageOne) {
  Bytes file = MakeTiff({Page(5), Page(6)});
  const Information info = Inform([&](auto* record) {
    LEADTOOLS::FileInfoMemory(reinterpret_cast<char*>(file.data()), record, static_cast<long>(file.size()), 1,
                              nullptr);
  });
  EXPECT_EQ(info.record.Width, 5);
  EXPECT_EQ(info.record.TotalPages, 2);
}

TEST(BadFiles, SizesThatCannotBe) {
  struct Row {
    std::uint32_t width;
    std::uint32_t height;
    int code;
  };
  for (const Row& row :
       {Row{0, 5, imaging::kErrorCorrupt}, Row{5, 0, imaging::kErrorCorrupt},
        Row{0x80000000U, 5, imaging::kErrorLimit}, Row{5, 0x80000000U, imaging::kErrorLimit},
        Row{0xffffffffU, 0xffffffffU, imaging::kErrorLimit}, Row{150000, 150000, imaging::kErrorLimit}}) {
    Bytes tiff = MakeTiff({Page(5)});
    SetTag(tiff, TIFFTAG_IMAGEWIDTH, row.width);
    SetTag(tiff, TIFFTAG_IMAGELENGTH, row.height);
    EXPECT_NE(InformMemory(tiff).error, "") << row.width;
    const int code = LoadMemory(tiff).code;  // libtiff itself refuses some as damaged
    EXPECT_TRUE(code == row.code || code == imaging::kErrorCorrupt) << row.width << " x " << row.height;
    Bytes bmp = MakeBmp(5, 5, 24, 0, {}, Bytes(80));
    Put32(bmp, 18, row.width);
    Put32(bmp, 22, row.height);
    EXPECT_NE(LoadMemory(bmp).error, "") << row.width << " x " << row.height;
    Bytes png = MakePng(5, 5, 8, 2, false, [](int, int, int) { return 0U; });
    for (std::size_t i = 0; i < 4; ++i) {
      png[16 + i] = static_cast<std::uint8_t>(row.width >> (24 - 8 * i));
      png[20 + i] = static_cast<std::uint8_t>(row.height >> (24 - 8 * i));
    }
    EXPECT_NE(LoadMemory(png).error, "");
  }
}

// Strips of more rows than the page, and a tile of half a gigabyte for a page of 25 pixels.
TEST(BadFiles, BandsLargerThanThePage) {
  Bytes tiff = MakeTiff({Page(5)});
  SetTag(tiff, TIFFTAG_ROWSPERSTRIP, 0xffffffffU);
  EXPECT_EQ(InformMemory(tiff).error, "");
  TiffForm form = Page(5);
  form.tiled = true;
  Bytes tiles = MakeTiff({form});
  SetTag(tiles, TIFFTAG_TILELENGTH, 0x7ffffff0U);
  EXPECT_EQ(LoadMemory(tiles).code, imaging::kErrorLimit);
}

TEST(BadFiles, CutFaxPageShowsItsUpperPart) {
  TiffForm form{"fax", 1, 1, PHOTOMETRIC_MINISWHITE, COMPRESSION_CCITTFAX4};
  form.width = 400;
  form.height = 300;
  form.rowsPerStrip = 300;
  const TempFolder folder;
  const std::string path = folder.Path("fax.tif");
  WriteAll(path, MakeTiff({form}));
  // libtiff writes the directory behind the strip; the strip's tail is overwritten instead of cut off.
  Bytes file = ReadAll(path);
  const std::size_t directory = Get32(file, 4);
  std::fill(file.begin() + static_cast<std::ptrdiff_t>(directory / 2),
            file.begin() + static_cast<std::ptrdiff_t>(directory), std::uint8_t{0});
  const Loaded page = LoadMemory(file, 1, 8);
  ASSERT_EQ(page.error, "");
  for (int y = 0; y < 100; ++y)
    for (int x = 0; x < form.width; ++x)
      ASSERT_EQ(IndexAt(*page.pixels, x, y) == 0, SampleAt(form, x, y, 0) == 1) << x << "," << y;
  for (int x = 0; x < form.width; ++x) ASSERT_EQ(IndexAt(*page.pixels, x, 299), 255) << x;
  std::fill(file.begin() + 8, file.begin() + static_cast<std::ptrdiff_t>(directory), std::uint8_t{0});
  EXPECT_EQ(LoadMemory(file).code, imaging::kErrorCorrupt);
}

TEST(BadFiles, CutJpegShowsItsUpperPart) {
  Bytes file = MakeJpeg(200, 200, 3, false, [](int x, int y, int c) {
    return static_cast<std::uint8_t>(x * 3 % 97 + y / 4 + c * 20);
  });
  file.resize(file.size() / 2);
  const Loaded page = LoadMemory(file);
  ASSERT_EQ(page.error, "");
  for (int x = 0; x < 200; ++x) ASSERT_NEAR(ColorAt(page, x, 50).green, x * 3 % 97 + 12 + 20, 40) << x;
}

/// One file of each family with something of everything in it.
std::vector<Bytes> Samples() {
  TiffForm fax{"fax", 1, 1, PHOTOMETRIC_MINISWHITE, COMPRESSION_CCITTFAX4};
  fax.width = 300;
  fax.height = 200;
  TiffForm color{"color", 8, 3, PHOTOMETRIC_RGB, COMPRESSION_LZW, false, true};
  TiffForm ycc{"ycc", 8, 3, PHOTOMETRIC_YCBCR, COMPRESSION_JPEG};
  ycc.width = ycc.height = 64;
  ycc.rowsPerStrip = 16;
  TiffForm deflate{"deflate", 16, 4, PHOTOMETRIC_SEPARATED, COMPRESSION_ADOBE_DEFLATE, true};
  deflate.mode = "w8";
  const auto ramp = [](int x, int y, int c) { return static_cast<std::uint8_t>(x * 5 ^ y * 3 ^ c * 77); };
  const auto wide = [](int x, int y, int c) { return static_cast<unsigned>(x * 5 ^ y * 3 ^ c * 77) & 255U; };
  std::vector<Bytes> samples = {
      MakeTiff({fax, color, ycc}),
      MakeTiff({deflate, fax}),
      MakeJpeg(120, 90, 3, false, ramp),
      MakeJpeg(120, 90, 4, true, ramp),
      MakePng(60, 50, 8, 6, true, wide),
      MakePng(60, 50, 8, 3, false, wide),
      MakeGif(64, 64,
              {{0, 0, 64, 64, 1, 1}, {5, 5, 20, 20, 2, 2}, {9, 9, 20, 20, 3, 3}, {0, 0, 8, 8, 0, 1, 0}}),
      MakeBmp(32, 32, 8, 0, Bytes(1024, 9), Bytes(1024, 3)),
      MakeBmp(60, 30, 8, 1, Bytes(1024, 9), Bytes(1000, 7))};
  for (const auto& more : {MakeRasterSamples(), MakeArchiveSamples()})
    samples.insert(samples.end(), more.begin(), more.end());
  return samples;
}

void LoadEveryPage(const Bytes& file) {
  for (int page = 1; page <= 4; ++page)
    for (const int bits : {0, 8}) {
      InformMemory(file, page);
      const Loaded loaded = LoadMemory(file, page, bits, 1);
      ASSERT_TRUE(loaded.pixels != nullptr || !loaded.error.empty());
    }
}

// A cut file gives rows or a report, and nothing on the error stream. Run under the sanitizers.
TEST(BadFiles, CutAnywhere) {
  testing::internal::CaptureStderr();
  for (const Bytes& whole : Samples())
    for (std::size_t size = 1; size < whole.size(); size += size < 1024 ? 37 : 256)
      LoadEveryPage(Bytes(whole.begin(), whole.begin() + static_cast<std::ptrdiff_t>(size)));
  EXPECT_EQ(testing::internal::GetCapturedStderr(), "");
}

TEST(BadFiles, BytesChangedAnywhere) {
  std::uint32_t seed = 5;
  const auto next = [&seed](std::size_t limit) {
    seed = seed * 1664525U + 1013904223U;
    return static_cast<std::size_t>(seed >> 8) % limit;
  };
  for (const Bytes& whole : Samples())
    for (int round = 0; round < 60; ++round) {
      Bytes damaged = whole;
      // Half of the rounds aim at the header, where sizes stand.
      const std::size_t reach = round % 2 == 0 ? std::min<std::size_t>(damaged.size(), 120) : damaged.size();
      for (int change = 0; change < 4; ++change) damaged[next(reach)] = static_cast<std::uint8_t>(next(256));
      LoadEveryPage(damaged);
    }
}

// A header of one bit wrong gives a picture or a report, and takes no memory that the file can't account for.
TEST(BadFiles, BitsOfTheHeaderTurnedOver) {
  for (const auto& [files, reach] :
       {std::pair(MakeRasterSamples(), 112), std::pair(MakeArchiveSamples(), 300)})
    for (const Bytes& file : files)
      for (std::size_t bit = 0; bit < 8 * std::min<std::size_t>(file.size(), static_cast<std::size_t>(reach));
           ++bit) {
        Bytes damaged = file;
        damaged[bit / 8] = static_cast<std::uint8_t>(damaged[bit / 8] ^ 1U << bit % 8);
        const Information info = InformMemory(damaged);
        EXPECT_LE(std::int64_t{info.record.Width} * info.record.Height * info.record.BitsPerPixel,
                  800'000'000);
        if (std::int64_t{info.record.Width} * info.record.Height > 4'000'000)
          continue;  // takes long, tells nothing
        const Loaded page = LoadMemory(damaged, 1, 8);
        ASSERT_TRUE(page.pixels != nullptr || !page.error.empty());
        if (page.pixels != nullptr) {
          EXPECT_EQ(info.record.Width, page.record.Width) << info.record.Format << " bit " << bit;
        }
      }
}

}  // namespace
}  // namespace codec_test
