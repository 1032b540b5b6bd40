// Export: the name with and without its extension, the questions, giving up.

#include "tests/frames/viewer_fixture.h"

namespace {

class ViewerExport : public ViewerTest {
 protected:
  struct Given {
    static inline std::string path;
    static inline unsigned filter = 1;
    static inline platform::FileDialogRequest request;
    static bool Answer(platform::FileDialogRequest& asked) {
      request = asked;
      asked.path = path;
      asked.filterIndex = filter;
      return !path.empty();
    }
  };
  void SetUp() override {
    ViewerTest::SetUp();
    platform::testing::SetFileDialogAnswer(&Given::Answer);
  }
  void TearDown() override {
    platform::testing::SetFileDialogAnswer(nullptr);
    ViewerTest::TearDown();
  }
  std::string In(const char* name) { return (m_folder / name).string(); }
  /// How often the question about a file that is there was put by the frame.
  static int Questions() {
    int count = 0;
    for (const auto& box : Boxes::shown)
      if (box.second == (MB_YESNO | MB_ICONEXCLAMATION) &&
          box.first.find("sovrascriverlo") != std::string::npos)
        ++count;
    return count;
  }
};

TEST_F(ViewerExport, WritesUnderTheNameWithItsExtension) {
  struct Case {
    const char* name;
    unsigned filter;
    const char* written;
    const char* magic;
  };
  const Case cases[] = {{"a", 1, "a.tif", "II"},         {"b.TIF", 1, "b.TIF", "II"},
                        {"c.jpg", 2, "c.jpg.bmp", "BM"}, {"d.bmp", 2, "d.bmp", "BM"},
                        {"e.bmp", 1, "e.bmp.tif", "II"}, {"f.x.tif", 1, "f.x.tif", "II"}};
  Open(1);
  for (const Case& c : cases) {
    Given::path = In(c.name);
    Given::filter = c.filter;
    Command(ID_ZP_FILE_EXPORT);
    const std::vector<char> bytes = ReadAll(In(c.written));
    ASSERT_GE(bytes.size(), 2U) << c.name;
    EXPECT_EQ(std::string(bytes.data(), 2), c.magic) << c.name;
    if (std::string(c.name) != c.written) {
      EXPECT_FALSE(std::filesystem::exists(In(c.name))) << c.name;
    }
    EXPECT_EQ(Questions(), 0) << c.name;
    EXPECT_EQ(MessagePane(), "Pronto") << c.name;
  }
  EXPECT_FALSE(Given::request.open);
  EXPECT_EQ(Given::request.title, "Export");
  ASSERT_EQ(Given::request.filters.size(), 2U);
  EXPECT_EQ(Given::request.filters[0].text, "TIFF file");
  EXPECT_EQ(Given::request.filters[1].patterns, "*.bmp");
}

TEST_F(ViewerExport, AsksBeforeItTakesAFilesPlace) {
  Open(1);
  Given::filter = 1;
  for (const int answer : {IDNO, IDYES}) {
    const std::string old = WriteText("old.tif");
    const auto size = std::filesystem::file_size(old);
    Given::path = In("old");
    Boxes::shown.clear();
    Boxes::answer = answer;
    Command(ID_ZP_FILE_EXPORT);
    EXPECT_EQ(Questions(), 1) << answer;
    EXPECT_EQ(std::filesystem::file_size(old) == size, answer == IDNO) << answer;
    EXPECT_EQ(MessagePane(), "Pronto") << answer;
  }
}

TEST_F(ViewerExport, GivenUpNothingHappens) {
  Open(1);
  Given::path.clear();
  Command(ID_ZP_FILE_EXPORT);
  EXPECT_TRUE(Boxes::shown.empty());
  EXPECT_EQ(MessagePane(), "Pronto");
}

TEST_F(ViewerExport, WritesWhatStandsInMemory) {
  std::vector<char> block = ReadAll(WriteFile(2));
  ASSERT_TRUE(frame->OpenImageMemory(block.data(), block.size()));
  Given::path = In("memory");
  Given::filter = 1;
  Command(ID_ZP_FILE_EXPORT);
  EXPECT_FALSE(ReadAll(In("memory.tif")).empty());
}

}  // namespace
