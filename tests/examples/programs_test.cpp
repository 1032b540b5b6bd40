// The example programs, run as a user runs them.

#include <gtest/gtest.h>
#include <png.h>
#include <unistd.h>

#include <cstdio>
#include <filesystem>
#include <fstream>
#include <string>
#include <vector>

#include "tests/run_program.h"

namespace {

namespace fs = std::filesystem;

struct Picture {
  int width = 0;
  int height = 0;
  std::vector<std::uint8_t> gray;
  int At(int x, int y) const {
    return gray[static_cast<std::size_t>(y) * static_cast<std::size_t>(width) + static_cast<std::size_t>(x)];
  }
};

class Programs : public ::testing::Test {
 protected:
  void SetUp() override {
    folder = fs::temp_directory_path() / ("tessarel-programs-" + std::to_string(getpid()));
    fs::create_directories(folder);
  }
  void TearDown() override { fs::remove_all(folder); }

  Outcome Run(const std::string& command) const { return RunProgram(command, folder); }
  Outcome Screenshot(const std::string& file, const std::string& options,
                     const std::string& environment = "") const {
    return Run(environment + " " PAGE_WINDOW " '" + file + "' --screenshot " + picture.string() + " " +
               options);
  }
  Picture Load() const {
    png_image image{};
    image.version = PNG_IMAGE_VERSION;
    Picture result;
    if (png_image_begin_read_from_file(&image, picture.c_str()) == 0) return result;
    image.format = PNG_FORMAT_GRAY;
    result.width = static_cast<int>(image.width);
    result.height = static_cast<int>(image.height);
    result.gray.resize(PNG_IMAGE_SIZE(image));
    png_image_finish_read(&image, nullptr, result.gray.data(), 0, nullptr);
    return result;
  }

  fs::path folder;
  fs::path picture{fs::temp_directory_path() / ("tessarel-programs-" + std::to_string(getpid())) /
                   "picture.png"};
};

TEST_F(Programs, TheWindowShowsThePageThatIsAskedFor) {
  const Outcome run = Screenshot(SAMPLE_FAX, "--page 3 --zoom 50 --size 700x500");
  ASSERT_EQ(run.status, 0) << run.err;
  EXPECT_EQ(run.err, "");
  const Picture shown = Load();
  ASSERT_EQ(shown.width, 700);
  ASSERT_EQ(shown.height, 500);
  // The plate's upper edge: 400 drawn rows down, halved, behind the window's edge of 2.
  EXPECT_LT(shown.At(400, 203), 64);
  EXPECT_EQ(shown.At(400, 180), 255) << "above it the paper";
  EXPECT_NE(Screenshot(SAMPLE_FAX, "--page 4").status, 0);
}

TEST_F(Programs, AScaledDisplayShowsMoreOfThePage) {
  ASSERT_EQ(Screenshot(SAMPLE_FAX, "--zoom 50 --size 400x300", "QT_SCALE_FACTOR=2").status, 0);
  const Picture sharp = Load();
  ASSERT_EQ(sharp.width, 800);
  // 50 percent on a display of twice the pixels is the page itself: nothing between black and white.
  int between = 0;
  for (int y = 10; y < 560; ++y)
    for (int x = 10; x < 760; ++x) between += sharp.At(x, y) > 0 && sharp.At(x, y) < 255 ? 1 : 0;
  EXPECT_EQ(between, 0);
}

TEST_F(Programs, AFileThatIsNoImageIsReportedOnce) {
  const std::string text = (folder / "note.txt").string();
  std::ofstream(text) << "This is a letter, not a picture.";
  const std::string empty = (folder / "empty.tif").string();
  std::ofstream(empty).flush();
  const std::string files[] = {"/no/such/file.tif", folder.string(), text, empty};
  for (const std::string& file : files) {
    fs::remove(picture);
    for (const Outcome& run : {Screenshot(file, ""), Run(IMAGE_INFO " '" + file + "'")}) {
      EXPECT_EQ(run.status, 1) << file;
      EXPECT_EQ(run.err.rfind("Error ZP-", 0), 0U) << run.err;
      EXPECT_NE(run.err.find(fs::path(file).filename().string()), std::string::npos)
          << "which file: " << run.err;
      EXPECT_EQ(std::count(run.err.begin(), run.err.end(), '\n'), 1) << run.err;
    }
    EXPECT_FALSE(fs::exists(picture)) << file;
  }
}

TEST_F(Programs, ImageInfoTellsAndDecodes) {
  const Outcome run = Run(IMAGE_INFO " " SAMPLE_FAX " --decode 2 " + picture.string());
  ASSERT_EQ(run.status, 0) << run.err;
  std::string expected;
  for (const char* page : {"1", "2", "3"})
    expected += std::string(page) + "\t1728\t1078\t1\t204\t98\t1\t27\tCCITT G3 1D\n";
  EXPECT_EQ(run.out, expected);
  const Picture page = Load();
  ASSERT_EQ(page.width, 1728);
  ASSERT_EQ(page.height, 1078);
  EXPECT_EQ(page.At(10, 500), 255) << "paper is white";
}

}  // namespace
