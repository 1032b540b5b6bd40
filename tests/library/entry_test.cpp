#include "library/library_entry.h"

#include <gtest/gtest.h>

#include "library/settings.h"
#include "library/tessarel_ext.h"

namespace {

TEST(LibraryEntry, TheLibraryHasJoinedByItself) {
  ASSERT_NE(g_hLibraryInstance, nullptr);
  EXPECT_TRUE(AfxIsLibraryLinked(g_hLibraryInstance));
  EXPECT_EQ(g_extensionModule.hModule, g_hLibraryInstance);
}

// Runs before main, like an object of a host's library.
struct AtLoad {
  AtLoad() : path(g_strSettingsPath), key(g_strSettingsKey) {}
  CString path;
  CString key;
} const g_atLoad;

TEST(LibraryEntry, TheSettingsTextsAreBuiltBeforeOtherStatics) {
  EXPECT_EQ(g_atLoad.path, "Morvane Software Works\\Tessarel12\\1.0");
  EXPECT_EQ(g_atLoad.key, "Settings");
}

TEST(LibraryEntry, ReasonsOfTheEntryPoint) {
  const HINSTANCE own = g_hLibraryInstance;
  EXPECT_EQ(DllMain(own, DLL_PROCESS_DETACH, nullptr), 1);
  EXPECT_FALSE(AfxIsLibraryLinked(own));
  EXPECT_EQ(DllMain(nullptr, 2, nullptr), 1) << "other reasons do nothing";
  EXPECT_EQ(g_hLibraryInstance, nullptr) << "but the handle is stored";
  EXPECT_FALSE(AfxIsLibraryLinked(own));
  EXPECT_EQ(DllMain(nullptr, DLL_PROCESS_ATTACH, nullptr), 0) << "the framework refuses a null module";
  EXPECT_EQ(DllMain(own, DLL_PROCESS_ATTACH, nullptr), 1);
  EXPECT_TRUE(AfxIsLibraryLinked(own));
}

TEST(LibraryEntry, InitPutsTheLibraryBackIntoTheList) {
  AfxTermExtensionModule(g_extensionModule);
  InitTessarelExtDLL();
  EXPECT_TRUE(AfxIsLibraryLinked(g_hLibraryInstance));
  InitTessarelExtDLL();
  EXPECT_TRUE(AfxIsLibraryLinked(g_hLibraryInstance));
}

TEST(LibraryEntry, FilesOpeningIsOffUntilTheHostAllowsIt) {
  EXPECT_EQ(g_bFilesOpeningEnabled, 0);
  EnableFilesOpening(2);
  EXPECT_EQ(g_bFilesOpeningEnabled, 2);
  EnableFilesOpening(0);
  EXPECT_EQ(g_bFilesOpeningEnabled, 0);
}

}  // namespace
