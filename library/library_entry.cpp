#include "library/library_entry.h"

#include <dlfcn.h>

#include <new>

#include "library/resources.h"
#include "library/tessarel_ext.h"
#include "library/translations.h"

HINSTANCE g_hLibraryInstance = nullptr;
AFX_EXTENSION_MODULE g_extensionModule{};
int g_bFilesOpeningEnabled = 0;
int g_bPrintJobReportsEnabled = 1;

namespace {

/// Puts the library into the list of the module state in force. The framework owns the entry; without memory
/// for it the library works on, only its resources aren't found.
void Link() {
  (void)new (std::nothrow) CDynLinkLibrary(g_extensionModule, FALSE);
}

}  // namespace

int DllMain(HINSTANCE instance, DWORD reason, void*) {
  g_hLibraryInstance = instance;
  if (reason == DLL_PROCESS_ATTACH) {
    if (AfxInitExtensionModule(g_extensionModule, instance) == FALSE) return 0;
    Link();
  } else if (reason == DLL_PROCESS_DETACH) {
    AfxTermExtensionModule(g_extensionModule, FALSE);
  }
  return 1;
}

namespace {

/// Where the loader has put this library: the address that tells it apart from every other module.
HINSTANCE OwnModule() {
  Dl_info info{};
  if (dladdr(&g_hLibraryInstance, &info) == 0) return nullptr;
  return static_cast<HINSTANCE>(info.dli_fbase);
}

/// Runs the entry point as the library comes and goes. The loader here can't be told to refuse the library,
/// so a 0 is dropped: the library is then merely not in the framework's list.
class Attachment {
 public:
  Attachment() {
    platform::RegisterResources(OwnModule(), LibraryResources());
    platform::RegisterTranslation(EnglishTexts());
    platform::RegisterTranslation(GermanTexts());
    DllMain(OwnModule(), DLL_PROCESS_ATTACH, nullptr);
  }
  Attachment(const Attachment&) = delete;
  Attachment& operator=(const Attachment&) = delete;
  ~Attachment() { DllMain(g_hLibraryInstance, DLL_PROCESS_DETACH, nullptr); }
};
const Attachment g_attachment;

}  // namespace

void EnableFilesOpening(int bEnable) {
  g_bFilesOpeningEnabled = bEnable;
}

void EnablePrintJobReports(int bEnable) {
  g_bPrintJobReportsEnabled = bEnable;
}

void InitTessarelExtDLL() {
  AfxTermExtensionModule(g_extensionModule, FALSE);
  Link();
}
