// Export into other files: which way it takes, what the user is asked and told, what stands in the target.

#include <sys/statvfs.h>
#include <tiffio.h>

#include <cstring>
#include <fstream>
#include <functional>
#include <sstream>

#include "imagewindow/export_rules.h"
#include "platform/framework/message_box.h"
#include "tests/imagewindow/window_fixture.h"

namespace {

// What the disk tells that it has room for; less than nothing: nothing is told.
long g_room = -1;

}  // namespace

// Stands before the C library's.
extern "C" [[gnu::visibility("default")]] int statvfs(const char*, struct statvfs* told) noexcept {
  if (g_room < 0) return -1;
  *told = {};
  told->f_frsize = 1;
  told->f_blocks = 1 << 20;
  told->f_bavail = static_cast<fsblkcnt_t>(g_room);
  return 0;
}

namespace {

struct Box {
  std::string text;
  UINT type;
};
std::vector<Box>& Boxes() {
  static std::vector<Box> boxes;
  return boxes;
}
int g_answer = IDOK;
std::function<int()> g_onBox;  ///< answers in its place

class Export : public ImageWindowTest {
 protected:
  void SetUp() override {
    ImageWindowTest::SetUp();
    Boxes().clear();
    g_answer = IDOK;
    platform::testing::SetMessageBoxAnswer([](const CString& text, UINT type) -> int {
      Boxes().push_back({static_cast<const char*>(text), type});
      return g_onBox ? g_onBox() : g_answer;
    });
  }
  void TearDown() override {
    platform::testing::SetMessageBoxAnswer(nullptr);
    ImageWindowTest::TearDown();
  }
  std::string Target(const std::string& name) const { return (m_folder / name).string(); }
  static std::string Bytes(const std::string& path) {
    std::ostringstream bytes;
    bytes << std::ifstream(path, std::ios::binary).rdbuf();
    return bytes.str();
  }
  void Open(const std::string& path) {
    ASSERT_TRUE(window->OpenImageFile(path.c_str()));
    ASSERT_TRUE(window->LoadPage(1));
  }
  /// Width and compression of each page.
  static std::vector<std::pair<int, int>> PagesOf(const std::string& path) {
    std::vector<std::pair<int, int>> pages;
    TIFF* file = TIFFOpen(path.c_str(), "r");
    if (file == nullptr) return pages;
    do {
      std::uint32_t width = 0;
      std::uint16_t compression = 0;
      TIFFGetField(file, TIFFTAG_IMAGEWIDTH, &width);
      TIFFGetField(file, TIFFTAG_COMPRESSION, &compression);
      pages.emplace_back(static_cast<int>(width), compression);
    } while (TIFFReadDirectory(file) != 0);
    TIFFClose(file);
    return pages;
  }
  const std::vector<Page> mixed = {{100, 60}, {40, 30, 8}, {64, 64}};
  const std::vector<std::pair<int, int>> mixedPages = {
      {100, COMPRESSION_CCITTFAX3}, {40, COMPRESSION_PACKBITS}, {64, COMPRESSION_CCITTFAX3}};
};

TEST_F(Export, EqualExtensionsAreAPlainCopy) {
  const std::string source = WriteFile(mixed);
  Open(source);
  EXPECT_TRUE(window->ExportAs(Target("copy.tif").c_str()));
  EXPECT_EQ(Bytes(Target("copy.tif")), Bytes(source));
  ASSERT_EQ(Boxes().size(), 1U);
  EXPECT_EQ(Boxes()[0].text, "File " + source + "\ncopiato su\n" + Target("copy.tif"));
  EXPECT_EQ(Boxes()[0].type, 64U);
  EXPECT_FALSE(window->ExportAs(Target("no/such/folder/copy.tif").c_str()));
  EXPECT_EQ(Reports().size(), 1U);
}

TEST_F(Export, EveryPageGoesIntoATifByItsOwnDepth) {
  Open(WriteFile(mixed, "pages.TIF"));
  window->Rotate(90, true);  // which export doesn't look at
  EXPECT_TRUE(window->ExportAs(Target("all.tif").c_str()));
  EXPECT_EQ(PagesOf(Target("all.tif")), mixedPages);
  ASSERT_EQ(Boxes().size(), 1U);
  EXPECT_EQ(Boxes()[0].text, "File convertito con successo");
}

TEST_F(Export, WithoutPagesThereIsNothingToExport) {
  Open(WriteFile(mixed, "pages.TIF"));
  window->m_nMaxPage = 0;  // as a source that has none is told
  for (const char* target : {"none.tif", "none.bmp"}) {
    EXPECT_FALSE(window->ExportAs(Target(target).c_str())) << target;
    EXPECT_FALSE(std::filesystem::exists(Target(target))) << target;
  }
  EXPECT_EQ(Reports().size(), 2U);
  EXPECT_TRUE(Boxes().empty()) << "no success";
}

TEST_F(Export, OntoTheSourceItselfLosesNothing) {
  Open(WriteFile(mixed, "pages.TIF"));
  std::filesystem::create_symlink(m_folder / "pages.TIF", m_folder / "link.tif");
  EXPECT_TRUE(window->ExportAs(Target("./pages.TIF").c_str()));
  EXPECT_EQ(PagesOf(Target("pages.TIF")), mixedPages);
  EXPECT_TRUE(window->ExportAs(Target("link.tif").c_str()));
  EXPECT_EQ(PagesOf(Target("pages.TIF")), mixedPages);
  EXPECT_TRUE(window->LoadPage(3));
}

TEST_F(Export, OnePageFormatsAskFirst) {
  Open(WriteFile(mixed));
  ASSERT_TRUE(window->LoadPage(2));
  g_answer = IDCANCEL;
  EXPECT_FALSE(window->ExportAs(Target("page.bmp").c_str()));
  ASSERT_EQ(Boxes().size(), 1U);
  EXPECT_EQ(Boxes()[0].type, 49U);
  EXPECT_FALSE(std::filesystem::exists(Target("page.bmp")));
  g_answer = IDOK;
  EXPECT_TRUE(window->ExportAs(Target("page.BMP").c_str()));
  struct_file_information info{};
  LEADTOOLS::FileInfo(Target("page.BMP").c_str(), &info, 1, nullptr);
  EXPECT_EQ(info.Width, 40) << "the current page";
  Boxes().clear();
  Open(WriteFile({{90, 70, 24}}, "one.tif"));
  EXPECT_TRUE(window->ExportAs(Target("one.jpg").c_str()));
  EXPECT_EQ(Boxes().size(), 1U) << "a single page needs no question";
  LEADTOOLS::FileInfo(Target("one.jpg").c_str(), &info, 1, nullptr);
  EXPECT_EQ(info.Format, 98);
  EXPECT_TRUE(Reports().empty());
}

TEST_F(Export, WhatCantBeExportedIsReportedAndWritesNothing) {
  Open(WriteFile(mixed));
  for (const char* name : {"page.gif", "page", "page.tif2"}) {
    Reports().clear();
    EXPECT_FALSE(window->ExportAs(Target(name).c_str())) << name;
    EXPECT_EQ(Reports().size(), 1U) << name;
    EXPECT_FALSE(std::filesystem::exists(Target(name))) << name;
  }
  EXPECT_TRUE(Boxes().empty());
}

// The pages are of 100 x 60 x 1, 40 x 30 x 8 and 64 x 64 x 1 bits, the current one is the second.
TEST_F(Export, ADiskWithoutRoomIsToldFirst) {
  enum Told { kDone, kAsked, kRefused };
  struct Row {
    const char* target;
    long room;
    Told told;
  };
  const Row rows[] = {{"copy.tif", 100, kRefused}, {"copy.tif", 1 << 20, kDone}, {"all.tif", 100, kRefused},
                      {"all.tif", 2000, kAsked},   {"all.tif", 1 << 20, kDone},  {"page.bmp", 1000, kRefused},
                      {"page.bmp", 1300, kAsked},  {"page.bmp", 4000, kDone},    {"page.jpg", 5, kRefused},
                      {"page.jpg", 500, kAsked}};
  for (const Row& row : rows) {
    SCOPED_TRACE(row.target + (" into " + std::to_string(row.room)));
    // Only one of them has the ending of the copy.
    Open(WriteFile(mixed, row.target == std::string("copy.tif") ? "room.tif" : "room.TIF"));
    ASSERT_TRUE(window->LoadPage(2));
    for (const int answer : {IDCANCEL, IDOK}) {
      std::ofstream(Target(row.target), std::ios::trunc) << "old";
      Boxes().clear();
      Reports().clear();
      g_room = row.room;
      // A page of several is asked for before.
      int asked = 0;
      g_onBox = [&] {
        return std::strstr(Boxes().back().text.c_str(), "possono servire") != nullptr && ++asked == 1 ? answer
                                                                                                      : IDOK;
      };
      const bool done = window->ExportAs(Target(row.target).c_str());
      g_room = -1;
      g_onBox = nullptr;
      EXPECT_EQ(done, row.told == kDone || (row.told == kAsked && answer == IDOK));
      EXPECT_EQ(asked, row.told == kAsked ? 1 : 0);
      EXPECT_EQ(Reports().size(), row.told == kRefused ? 1U : 0U);
      EXPECT_EQ(Bytes(Target(row.target)) == "old", !done);
    }
  }
}

TEST_F(Export, AMemoryImageIsNeverCopied) {
  std::string block = Bytes(WriteFile(mixed));
  ASSERT_TRUE(window->OpenImageMemory(block.data(), block.size()));
  ASSERT_TRUE(window->LoadPage(1));
  EXPECT_TRUE(window->ExportAs(Target("memory.tif").c_str()));
  EXPECT_EQ(PagesOf(Target("memory.tif")), mixedPages);
}

}  // namespace
