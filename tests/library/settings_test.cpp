#include "library/settings.h"

#include "tests/library/config_folder.h"

namespace {

class Settings : public FreshUser {
 protected:
  static bool ChainExists() {
    HKEY key = nullptr;
    if (RegOpenKeyExA(HKEY_CURRENT_USER, "software\\Morvane Software Works\\Tessarel12\\1.0\\Settings", 0,
                      KEY_READ, &key) != ERROR_SUCCESS)
      return false;
    return RegCloseKey(key) == ERROR_SUCCESS;
  }
  static void Store(const char* name, DWORD type, const void* data, DWORD size) {
    const HKEY key = SettingsOpenRoot();
    ASSERT_NE(key, nullptr);
    EXPECT_EQ(RegSetValueExA(key, name, 0, type, static_cast<const BYTE*>(data), size), ERROR_SUCCESS);
    RegCloseKey(key);
  }
};

TEST_F(Settings, AReadMakesTheKeysAndGivesTheDefault) {
  EXPECT_FALSE(ChainExists());
  EXPECT_EQ(SettingsReadInt("", "Scale", 100), 100U);
  EXPECT_TRUE(ChainExists());
}

TEST_F(Settings, WrittenValuesComeBackBySection) {
  EXPECT_NE(SettingsWriteInt("", "Scale", 37), 0U);
  EXPECT_NE(SettingsWriteInt("Window", "Scale", 0xFFFFFFFF), 0U);
  EXPECT_EQ(SettingsReadInt("", "Scale", 100), 37U);
  EXPECT_EQ(SettingsReadInt("Window", "Scale", 100), 0xFFFFFFFF);
  EXPECT_EQ(SettingsReadInt("Other", "Scale", 5), 5U);
}

TEST_F(Settings, AnyTypeUpToFourBytesIsReadAndNothingLonger) {
  const struct {
    const char* name;
    DWORD type, size;
    UINT got;
  } cases[] = {{"binary", REG_BINARY, 4, 0x04030201},
               {"short", REG_BINARY, 2, 0x0201},
               {"text", REG_SZ, 4, 0x04030201},
               {"long", REG_BINARY, 5, 77},
               {"number", REG_DWORD, 4, 0x04030201}};
  const BYTE bytes[] = {1, 2, 3, 4, 0};
  for (const auto& c : cases) {
    Store(c.name, c.type, bytes, c.size);
    EXPECT_EQ(SettingsReadInt("", c.name, 77), c.got) << c.name;
  }
}

TEST_F(Settings, WithoutStorageReadsGiveDefaultsAndWritesNothing) {
  BreakStorage();
  EXPECT_EQ(SettingsReadInt("", "Scale", 100), 100U);
  EXPECT_EQ(SettingsWriteInt("", "Scale", 50), 0U);
  EXPECT_EQ(SettingsOpenRoot(), nullptr);
  EXPECT_EQ(SettingsOpenSection(""), nullptr);
}

}  // namespace
