// The properties dialog, as the user reads it.

#include <fstream>

#include "library/resource_ids.h"
#include "tests/imagewindow/window_fixture.h"
#include "viewing/properties_dlg.h"

namespace {

class Properties : public ImageWindowTest {
 protected:
  /// What the dialog's fields show, by control.
  static std::string Field(int id) { return Fields()[id]; }
  void ShowDialog() {
    Fields().clear();
    platform::testing::OnNextDialog([](HWND dialog) {
      for (int id = IDC_ZP_FILE_SIZE; id <= IDC_ZP_PAGE_REAL_SIZE; ++id)
        Fields()[id] = static_cast<const char*>(::GetWindowText(::GetDlgItem(dialog, id)));
      ::PostMessage(dialog, WM_COMMAND, IDOK, 0);
    });
    window->ShowPropertiesDlg();
  }

 private:
  static std::map<int, std::string>& Fields() {
    static std::map<int, std::string> fields;
    return fields;
  }
};

TEST_F(Properties, TellWhatTheSourceSays) {
  const std::string path = WriteFile({{1728, 2200}, {640, 480}}, "fax.tif");
  ASSERT_TRUE(window->OpenImageFile(path.c_str()));
  ASSERT_TRUE(window->LoadPage(2));
  ASSERT_TRUE(window->Rotate(90, true));
  ShowDialog();
  EXPECT_EQ(Field(IDC_ZP_FILE_NAME), "fax.tif");
  EXPECT_EQ(Field(IDC_ZP_FILE_PATH), m_folder.string());
  EXPECT_EQ(Field(IDC_ZP_FILE_SIZE), std::to_string(std::filesystem::file_size(path)) + " bytes");
  EXPECT_EQ(Field(IDC_ZP_FILE_PAGES), "2");
  EXPECT_EQ(Field(IDC_ZP_PAGE_NUMBER), "2");
  EXPECT_EQ(Field(IDC_ZP_PAGE_PIXELS), "640 x 480") << "the source isn't turned";

  std::ifstream file(path, std::ios::binary);
  std::string block((std::istreambuf_iterator<char>(file)), {});
  ASSERT_TRUE(window->OpenImageMemory(block.data(), block.size()));
  ShowDialog();
  EXPECT_EQ(Field(IDC_ZP_FILE_NAME), "");
  EXPECT_EQ(Field(IDC_ZP_FILE_PATH), "Memory file");
  EXPECT_EQ(Field(IDC_ZP_PAGE_PIXELS), "1728 x 2200");
}

TEST_F(Properties, OpenAfterAFailureTooWithWhatIsKnown) {
  const std::string path = WriteFile({{640, 480}}, "gone.tif");
  ASSERT_TRUE(window->OpenImageFile(path.c_str()));
  std::filesystem::remove(path);
  ShowDialog();
  EXPECT_EQ(Reports().size(), 1U);
  EXPECT_EQ(Field(IDC_ZP_FILE_NAME), "gone.tif");
  EXPECT_EQ(Field(IDC_ZP_FILE_SIZE), "0 bytes");
  for (const int id : {int{IDC_ZP_FILE_FORMAT}, int{IDC_ZP_PAGE_COMPRESSION}, int{IDC_ZP_PAGE_RESOLUTION},
                       int{IDC_ZP_PAGE_REAL_SIZE}})
    EXPECT_EQ(Field(id), "(non disponibile)") << id;
}

}  // namespace
