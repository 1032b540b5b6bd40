#include "resources.h"

#include "texts.h"

void RegisterAppResources() {
  // Any address of its own names a module.
  static AFX_EXTENSION_MODULE module{};
  const auto self = reinterpret_cast<HMODULE>(&module);
  if (AfxIsLibraryLinked(self)) return;
  platform::ResourceTables tables;
  tables.strings = AppStrings();
  tables.dialogs = AppDialogs();
  platform::RegisterResources(self, tables);
  platform::RegisterTranslation(AppEnglishTexts());
  platform::RegisterTranslation(AppGermanTexts());
  SelectTessarelLanguage(nullptr);
  if (AfxInitExtensionModule(module, self) != FALSE)
    new CDynLinkLibrary(module);  // NOLINT(cppcoreguidelines-owning-memory): the framework's
}

CString Text(UINT id) {
  CString text;
  text.LoadString(id);
  return text;
}
