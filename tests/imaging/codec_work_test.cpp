#include <gtest/gtest.h>

#include <algorithm>
#include <chrono>
#include <string>
#include <thread>

#include "imaging/core/exception.h"
#include "imaging/core/limits.h"
#include "tests/imaging/codec_files.h"

// Files that cost far more than the page they show are given up with a text that says so.

using namespace codec_test;

namespace {

std::uint8_t Ramp(int x, int y, int component) {
  return static_cast<std::uint8_t>(x * 5 ^ y * 3 ^ component * 77);
}

void Insert(Bytes& file, std::size_t at, std::size_t count, const Bytes& bytes) {
  Bytes inserted;
  for (std::size_t i = 0; i < count; ++i) inserted.insert(inserted.end(), bytes.begin(), bytes.end());
  file.insert(file.begin() + static_cast<std::ptrdiff_t>(at), inserted.begin(), inserted.end());
}

/// A progressive picture whose first scan comes that many times more.
Bytes ManyScans(int side, std::size_t count) {
  Bytes file = MakeJpeg(side, side, 1, true, Ramp);
  const auto scan = [&file](std::size_t from) {
    for (; file[from] != 0xff || file[from + 1] != 0xda; ++from) {
    }
    return from;
  };
  const std::size_t first = scan(0);
  std::size_t end = first + 2;
  while (file[end] != 0xff || file[end + 1] == 0) ++end;
  const Bytes bytes(file.begin() + static_cast<std::ptrdiff_t>(first),
                    file.begin() + static_cast<std::ptrdiff_t>(end));
  Insert(file, end, count, bytes);
  return file;
}

/// Two frames as large as the screen, the second partly transparent and there that many times.
Bytes ManyFrames(int side, std::size_t count) {
  Bytes file = MakeGif(side, side, {{0, 0, side, side, 1}, {0, 0, side, side, 2, 1, 0}});
  const Bytes one = MakeGif(side, side, {{0, 0, side, side, 1}});
  const Bytes frame(file.begin() + static_cast<std::ptrdiff_t>(one.size()) - 1, file.end() - 1);
  Insert(file, file.size() - 1, count - 1, frame);
  return file;
}

Bytes Padded(Bytes file, std::size_t at, const Bytes& padding) {
  Insert(file, at, static_cast<std::size_t>(imaging::Limit().workBytes) / padding.size() + 1, padding);
  return file;
}

TEST(Work, CostlyFilesAreGivenUpWithAText) {
  constexpr std::size_t kBehindIhdr = 33;
  const auto level = [](int x, int y, int) { return static_cast<unsigned>(x + y) & 255U; };
  const Bytes text = [] {
    Bytes chunk = {0, 0, 0x40, 0, 't', 'E', 'X', 't'};
    chunk.resize(8 + 0x4000 + 4, 'a');
    return chunk;
  }();
  const struct {
    const char* name;
    Bytes file;
    int page;
    const char* text;
  } rows[] = {{"scans", ManyScans(16, 600), 1, "more than 500 scans"},
              {"scans of a large page", ManyScans(1000, 400), 1, "takes more work"},
              {"nothing before the picture", Padded(MakeJpeg(16, 16, 1, false, Ramp), 20, Bytes(4096)), 1,
               "takes more work"},
              {"texts", Padded(MakePng(16, 16, 8, 0, false, level), kBehindIhdr, text), 1, "takes more work"},
              {"frames", ManyFrames(400, 700), 690, "takes more work"}};
  for (const auto& row : rows) {
    const Loaded loaded = LoadMemory(row.file, row.page);
    EXPECT_EQ(loaded.code, imaging::kErrorLimit) << row.name << ": " << loaded.error;
    EXPECT_NE(loaded.error.find(row.text), std::string::npos) << row.name << ": " << loaded.error;
  }
}

// What is too much at once isn't for who pages through.
TEST(Work, PagingOnCostsOneFrame) {
  const TempFolder folder;
  const std::string path = folder.Path("a.gif");
  WriteAll(path, ManyFrames(400, 700));
  std::this_thread::sleep_for(std::chrono::milliseconds(150));  // old enough to be remembered
  EXPECT_EQ(LoadFile(path, 690).code, imaging::kErrorLimit);
  for (int page = 1; page <= 701; page += 100) ASSERT_EQ(LoadFile(path, page).error, "") << page;
}

}  // namespace
