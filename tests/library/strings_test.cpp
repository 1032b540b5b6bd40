// The library's texts, found through the framework.

#include <gtest/gtest.h>

#include <string>

#include "imaging/ltwrap.h"
#include "library/library_entry.h"
#include "library/resource_ids.h"
#include "platform/base/string.h"
#include "platform/framework/frame_wnd.h"
#include "platform/resources/resource_tables.h"

namespace {

TEST(Strings, AreFoundByNumberWhoeverAsks) {
  const struct {
    UINT id;
    const char* text;
  } rows[] = {
      {IDS_ZP_ONE_FILE_ONLY, "Applicazioni puâ aprire solo un file alla volta"},
      {30037, "Il file ¨ gi\xc2\xa0 esistente. Si desidera sovrascriverlo?"},
      {IDS_ZP_FILE_COPIED, "File %1!s!\ncopiato su\n%2!s!"},
      {ID_ZP_FIRST_PAGE, "Prima pagina\n"},
      {AFX_IDS_IDLEMESSAGE, "Pronto"},
      {ID_VIEW_STATUS_BAR, "Mostra o nasconde la barra di stato\nBarra di stato"},
  };
  for (const auto& row : rows) {
    CString text;
    EXPECT_TRUE(text.LoadString(row.id)) << row.id;
    EXPECT_STREQ(text, row.text);
    EXPECT_EQ(AfxFindResourceHandle(MAKEINTRESOURCE(row.id), RT_STRING), g_hLibraryInstance);
  }
  CString text("left over");
  EXPECT_FALSE(text.LoadString(30001));
  EXPECT_STREQ(text, "");
}

TEST(Strings, GoWithTheLibrary) {
  AfxTermExtensionModule(g_extensionModule, FALSE);
  CString text;
  EXPECT_FALSE(text.LoadString(IDS_ZP_COPY_ERROR));
  new CDynLinkLibrary(g_extensionModule, FALSE);
  EXPECT_TRUE(text.LoadString(IDS_ZP_COPY_ERROR));
}

std::string FailureOf(const char* path) {
  try {
    struct_file_information info{};
    LEADTOOLS::FileInfo(path, &info, 0, nullptr);
    return "";
  } catch (CLeadtoolsException* exception) {
    std::string text = static_cast<const char*>(CLeadtoolsException::GetErrorMessage(exception->m_nError));
    exception->Delete();
    return text;
  }
}

// File and fault stay in their text, whoever speaks; a program without this table gets the service's own.
TEST(Strings, FailuresOfTheImagingServiceSpeakTheUsersLanguage) {
  EXPECT_EQ(FailureOf("/none.tif"), "Impossibile aprire /none.tif: File o cartella inesistente");
  EXPECT_EQ(FailureOf("/dev/null"), "/dev/null non è un file normale");
  EXPECT_STREQ(CLeadtoolsException::GetErrorMessage(imaging::kErrorPageNotFound), "La pagina non esiste");
  AfxTermExtensionModule(g_extensionModule, FALSE);
  EXPECT_EQ(FailureOf("/none.tif"), "/none.tif can't be opened: No such file or directory");
  new CDynLinkLibrary(g_extensionModule, FALSE);
}

TEST(Strings, ABufferIsNeverOverrun) {
  char buffer[6] = "?????";
  EXPECT_EQ(LoadStringA(nullptr, AFX_IDS_IDLEMESSAGE, buffer, 4), 3);
  EXPECT_STREQ(buffer, "Pro");
  EXPECT_EQ(LoadStringA(nullptr, AFX_IDS_IDLEMESSAGE, buffer, 0), 0);
}

}  // namespace
