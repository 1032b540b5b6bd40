// File dialogs answered by a function: what is asked, and how the path is told.

#include <gtest/gtest.h>

#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <string>

#include "platform/framework/file_dialog.h"
#include "tessarel12_testing.h"

namespace {

std::string g_path;
std::string g_asked;
int g_answer = IDYES;
platform::FileDialogRequest g_request;

bool Answer(platform::FileDialogRequest& request) {
  g_request = request;
  request.path = g_path;
  request.filterIndex = 2;
  return !g_path.empty();
}

int AnswerBox(const CString& text, UINT type) {
  g_asked += (type & MB_TYPEMASK) == MB_YESNO ? "?" : "!";
  g_asked += text;
  return g_answer;
}

class FileDialogs : public ::testing::Test {
 protected:
  void SetUp() override {
    char name[] = "/tmp/file_dialogXXXXXX";
    m_folder = std::string(mkdtemp(name)) + "/";
    std::ofstream(m_folder + "old.tif") << "x";
    platform::testing::SetFileDialogAnswer(&Answer);
    platform::testing::SetMessageBoxAnswer(&AnswerBox);
  }
  void TearDown() override {
    std::filesystem::remove_all(m_folder);
    platform::testing::SetFileDialogAnswer(nullptr);
    platform::testing::SetMessageBoxAnswer(nullptr);
  }
  std::string m_folder;
};

TEST_F(FileDialogs, TellPathAndExtension) {
  struct Case {
    const char* name;
    bool open;
    const char* defaultExtension;
    const char* chosen;     // null: given up
    const char* extension;  // from nFileExtension on; null: 0
  };
  const Case cases[] = {
      {"old.tif", true, nullptr, "old.tif", "tif"},    {"new.tif", true, nullptr, nullptr, nullptr},
      {"no/new.tif", true, nullptr, nullptr, nullptr}, {"", true, nullptr, nullptr, nullptr},
      {"new.TIF", false, nullptr, "new.TIF", "TIF"},   {"new", false, nullptr, "new", ""},
      {"new.", false, nullptr, "new.", nullptr},       {"new", false, "bmp", "new.bmp", "bmp"},
      {"a.b.jpg", false, "bmp", "a.b.jpg", "jpg"},     {"no/new.tif", false, nullptr, nullptr, nullptr},
  };
  for (const Case& c : cases) {
    CFileDialog dialog(c.open, c.defaultExtension, nullptr, OFN_OVERWRITEPROMPT | OFN_HIDEREADONLY);
    dialog.m_ofn.Flags |= OFN_PATHMUSTEXIST | OFN_FILEMUSTEXIST;
    dialog.m_ofn.lpstrFilter = "TIFF file\0*.tif;*.tiff\0Windows bitmap\0*.bmp\0";
    g_path = *c.name == 0 ? "" : m_folder + c.name;
    ASSERT_EQ(dialog.DoModal(), c.chosen == nullptr ? IDCANCEL : IDOK) << c.name;
    ASSERT_EQ(g_request.filters.size(), 2U);
    EXPECT_EQ(g_request.filters[0].patterns, "*.tif;*.tiff");
    if (c.chosen == nullptr) continue;
    EXPECT_EQ(m_folder + c.chosen, dialog.m_ofn.lpstrFile);
    EXPECT_STREQ(dialog.m_ofn.lpstrFile + dialog.m_ofn.nFileOffset, c.chosen);
    EXPECT_EQ(dialog.m_ofn.nFilterIndex, 2U);
    if (c.extension == nullptr)
      EXPECT_EQ(dialog.m_ofn.nFileExtension, 0);
    else
      EXPECT_STREQ(dialog.m_ofn.lpstrFile + dialog.m_ofn.nFileExtension, c.extension);
  }
}

TEST_F(FileDialogs, AskBeforeAFileIsReplaced) {
  g_path = m_folder + "old.tif";
  for (const int answer : {int{IDYES}, int{IDNO}}) {
    g_asked.clear();
    g_answer = answer;
    CFileDialog dialog(FALSE);
    EXPECT_EQ(dialog.DoModal(), answer == IDYES ? IDOK : IDCANCEL);
    EXPECT_EQ(g_asked, "?" + g_path + " esiste già.\nSostituirlo?");
  }
}

TEST_F(FileDialogs, BeginWhereTheLastFileWas) {
  g_path = m_folder + "new.tif";
  ASSERT_EQ(CFileDialog(FALSE).DoModal(), IDOK);
  g_path = "";
  CFileDialog next(TRUE);
  EXPECT_EQ(next.DoModal(), IDCANCEL);
  EXPECT_EQ(g_request.folder, m_folder);
  next.m_ofn.lpstrInitialDir = "/elsewhere";
  EXPECT_EQ(next.DoModal(), IDCANCEL);
  EXPECT_EQ(g_request.folder, "/elsewhere");
}

TEST_F(FileDialogs, RefuseANameBeyondTheBuffer) {
  char buffer[64] = {};
  g_path = m_folder + std::string(80, 'x');
  g_asked.clear();
  CFileDialog dialog(FALSE);
  dialog.m_ofn.lpstrFile = buffer;
  dialog.m_ofn.nMaxFile = sizeof buffer;
  EXPECT_EQ(dialog.DoModal(), IDCANCEL);
  EXPECT_EQ(g_asked.substr(0, 1), "!");
  EXPECT_STREQ(buffer, "");
}

TEST_F(FileDialogs, StatusOfFiles) {
  CFileStatus status;
  EXPECT_FALSE(CFile::GetStatus((m_folder + "none").c_str(), status));
  ASSERT_TRUE(CFile::GetStatus((m_folder + "old.tif").c_str(), status));
  EXPECT_EQ(status.m_size, 1);
  EXPECT_EQ(status.m_szFullName, m_folder + "old.tif");
  ASSERT_TRUE(CFile::GetStatus(m_folder.c_str(), status));
  EXPECT_TRUE(status.m_attribute & CFile::directory);
}

}  // namespace
