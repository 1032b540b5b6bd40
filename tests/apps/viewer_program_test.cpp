// The application's command line, run as a user and a script run it.

#include <gtest/gtest.h>
#include <unistd.h>

#include <algorithm>
#include <filesystem>
#include <fstream>
#include <regex>
#include <set>
#include <string>

#include "tests/run_program.h"

namespace {

namespace fs = std::filesystem;

class ViewerProgram : public ::testing::Test {
 protected:
  void SetUp() override {
    fs::create_directories(folder);
    fs::current_path(folder);
    fs::copy_file(SAMPLE_FAX, "fax.tif");
    std::ofstream("letter.txt") << "This is a letter, not a picture.";
  }
  void TearDown() override {
    fs::current_path("/");
    fs::remove_all(folder);
  }
  // Without a display: nothing here may need one.
  static Outcome Run(const std::string& arguments, const std::string& limit = "timeout 60") {
    // Ended if it waits for somebody.
    return RunProgram(
        limit +
            " env -u DISPLAY -u WAYLAND_DISPLAY -u QT_QPA_PLATFORM CUPS_SERVER=/no/such/socket " VIEWER " " +
            arguments,
        ".");
  }
  static std::string InfoOf(const std::string& file) { return Run("--info " + file).out; }

  fs::path folder = fs::temp_directory_path() / ("tessarel-apps-" + std::to_string(getpid()));
};

TEST_F(ViewerProgram, ALineThatMakesNoSenseIsRefusedBeforeAnythingIsDone) {
  for (const char* line : {"--nonsense",
                           "--info",
                           "--page 0 fax.tif",
                           "--page 1x fax.tif",
                           "--page",
                           "--zoom 0 fax.tif",
                           "--zoom deep fax.tif",
                           "--geometry 800 fax.tif",
                           "--geometry 800x600+1 fax.tif",
                           "--help=now",
                           "--info --print fax.tif",
                           "--export a.png fax.tif fax.tif",
                           "--export a.doc fax.tif",
                           "--export a.png --pages 3-1 fax.tif",
                           "--export a.png --pages 0 fax.tif",
                           "--export a.png --pages 1, fax.tif",
                           "--pages 1 fax.tif",
                           "--info --printer x fax.tif",
                           "--screenshot a.jpg fax.tif",
                           "--watch none",
                           "--watch . --info fax.tif"}) {
    const Outcome run = Run(line);
    EXPECT_EQ(run.status, 2) << line;
    EXPECT_EQ(run.out, "") << line;
    EXPECT_TRUE(run.err.starts_with("tessarel-viewer: ")) << line << ": " << run.err;
    EXPECT_FALSE(fs::exists("a.png")) << line;
  }
}

TEST_F(ViewerProgram, AFileThatCannotBeUsedIsToldOnStandardError) {
  const struct {
    const char* line;
    const char* told;
  } cases[] = {
      {"--info none.tif", "none.tif"},
      {"--info letter.txt", "letter.txt"},
      {"--info - < letter.txt", "standard input non è un'immagine"},
      {"--export a.tif letter.txt", "letter.txt"},
      {"--export a.png --pages 4 fax.tif", "no page 4, the file has 3"},
      {"--export a.tif --pages 2-9 fax.tif", "no page 9"},
      {"--export none/a.pdf fax.tif", "none/a.pdf"},
      {"--export none/a.tif fax.tif", "none/a.tif"},
      {"--print fax.tif", "no default printer"},
      {"--print --printer Office fax.tif", "Office: there is no such printer"},
      {"--screenshot a.png letter.txt", "letter.txt"},
      {"--screenshot a.png --page 4 fax.tif", "no page 4"},
      {"--screenshot none/a.png fax.tif", "none/a.png"},
  };
  for (const auto& row : cases) {
    const Outcome run = Run(row.line);
    EXPECT_EQ(run.status, 1) << row.line;
    EXPECT_NE(run.err.find(row.told), std::string::npos) << row.line << ": " << run.err;
    EXPECT_EQ(std::ranges::count(run.err, '\n'), 1) << row.line << ": " << run.err;
    EXPECT_FALSE(fs::exists("a.png") || fs::exists("a.tif")) << row.line;
  }
}

TEST_F(ViewerProgram, InfoTellsEachPageAndGoesOnBehindABadFile) {
  const std::string pages =
      "page 1: 1728 x 1078 pixels, 1 bit, 204 x 98 dpi, CCITT G3 1D\n"
      "page 2: 1728 x 1078 pixels, 1 bit, 204 x 98 dpi, CCITT G3 1D\n"
      "page 3: 1728 x 1078 pixels, 1 bit, 204 x 98 dpi, CCITT G3 1D\n";
  const Outcome run = Run("--info letter.txt fax.tif");
  EXPECT_EQ(run.status, 1);
  EXPECT_EQ(run.out, "fax.tif: 3 pages\n" + pages);
  EXPECT_EQ(Run("--info - < fax.tif").out, "standard input: 3 pages\n" + pages);
  fs::copy_file("fax.tif", "--odd");
  EXPECT_EQ(Run("--info -- --odd").out, "--odd: 3 pages\n" + pages);
}

/// Whoever ends a long export finds what was there before, and nothing beside it.
TEST_F(ViewerProgram, AnExportThatIsInterruptedLeavesNothingHalfWritten) {
  std::string pages = "1";
  for (int i = 0; i < 3000; ++i) pages += ",2,3";
  for (const char* ending : {"tif", "pdf"}) {
    const std::string target = std::string("old.") + ending;
    std::ofstream(target) << "what was there";
    const auto before = std::distance(fs::directory_iterator("."), fs::directory_iterator());
    const Outcome run = Run("--export " + target + " --pages " + pages + " fax.tif",
                            "timeout --signal=INT --preserve-status 1");
    EXPECT_EQ(run.status, 130) << target << ": " << run.err;
    EXPECT_EQ(FileText(target), "what was there") << target;
    EXPECT_LE(std::distance(fs::directory_iterator("."), fs::directory_iterator()), before + 2) << target;
    EXPECT_EQ(run.err, "") << "progress is for terminals";
  }
}

TEST_F(ViewerProgram, AnExportHasThePagesThatAreAskedFor) {
  const struct {
    const char* line;
    const char* written;
    const char* info;
  } cases[] = {
      {"--export a.tif fax.tif", "a.tif", "a.tif: 3 pages\n"},
      {"--export fax.tif --pages 2- fax.tif", "fax.tif", "fax.tif: 2 pages\n"},
      {"--export b.tif --pages 2,1 - < a.tif", "b.tif", "b.tif: 2 pages\n"},
      {"--export=c.png --pages=2 a.tif", "c.png", "c.png: 1 page\npage 1: 1728 x 1078 pixels, 1 bit"},
      {"--export d.jpg --pages 1,3 a.tif", "d-3.jpg", "d-3.jpg: 1 page\npage 1: 1728 x 1078 pixels"},
  };
  for (const auto& row : cases) {
    const Outcome run = Run(row.line);
    EXPECT_EQ(run.status, 0) << row.line << ": " << run.err;
    EXPECT_TRUE(InfoOf(row.written).starts_with(row.info)) << row.line << ": " << InfoOf(row.written);
  }
  EXPECT_TRUE(fs::exists("d-1.jpg"));
  EXPECT_FALSE(fs::exists("d-2.jpg") || fs::exists("d.jpg"));
}

TEST_F(ViewerProgram, APageOfAPdfIsAsLargeAsTheScan) {
  ASSERT_EQ(Run("--export a.pdf --pages 1,2 fax.tif").status, 0);
  const std::string pdf = FileText("a.pdf");
  const std::regex box(R"(/MediaBox *\[ *0 0 ([0-9.]+) ([0-9.]+) *\])");
  int pages = 0;
  for (std::sregex_iterator it(pdf.begin(), pdf.end(), box), end; it != end; ++it, ++pages) {
    EXPECT_NEAR(std::stod((*it)[1]), 1728 * 72 / 204.0, 0.3);
    EXPECT_NEAR(std::stod((*it)[2]), 1078 * 72 / 98.0, 0.3);
  }
  EXPECT_EQ(pages, 2);
  EXPECT_NE(pdf.find("/CCITTFaxDecode /DecodeParms << /K -1"), std::string::npos) << "group 4";
  ASSERT_EQ(Run("--export a.jpg --pages 1 fax.tif").status, 0);
  ASSERT_EQ(Run("--export b.pdf a.jpg").status, 0);
  EXPECT_NE(FileText("b.pdf").find(FileText("a.jpg")), std::string::npos) << "a JPEG file goes in as it is";
}

TEST_F(ViewerProgram, AScreenshotHasTheSizeAndThePageThatAreAskedFor) {
  const auto shot = [](const std::string& options) {
    const Outcome run = Run("--screenshot a.png --geometry 500x400 " + options + " fax.tif");
    EXPECT_EQ(run.status, 0) << run.err;
    EXPECT_EQ(run.err, "");
    return FileText("a.png");
  };
  const std::string first = shot("--zoom width");
  EXPECT_TRUE(InfoOf("a.png").starts_with("a.png: 1 page\npage 1: 500 x 400 pixels, 24 bit"));
  EXPECT_NE(shot("--zoom width --page 2"), first);
  EXPECT_NE(shot("--zoom 300"), first);
  EXPECT_EQ(shot("--zoom width"), first);
}

TEST_F(ViewerProgram, TheManualHasTheOptionsOfTheHelp) {
  const auto options = [](const std::string& text) {
    const std::regex option(R"(^(?:  |\.BI? |\.BR )(--[a-z]+))", std::regex::multiline);
    return std::set<std::string>(std::sregex_token_iterator(text.begin(), text.end(), option, 1), {});
  };
  const Outcome help = Run("--help");
  EXPECT_EQ(help.status, 0);
  const std::string manual = std::regex_replace(FileText(MANUAL), std::regex(R"(\\-)"), "-");
  EXPECT_GE(options(help.out).size(), 10U);
  const auto behindHeading = manual.find("\n.SH OPTIONS");
  ASSERT_NE(behindHeading, std::string::npos);
  EXPECT_EQ(options(manual.substr(behindHeading)), options(help.out));
  EXPECT_TRUE(Run("--version").out.starts_with("tessarel-viewer 12."));
}

}  // namespace
