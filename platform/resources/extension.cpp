#include "platform/resources/extension.h"

#include <algorithm>
#include <memory>
#include <vector>

namespace {

std::vector<std::unique_ptr<CDynLinkLibrary>>& Libraries() {
  static auto* list = new std::vector<std::unique_ptr<CDynLinkLibrary>>;  // entries leave in library teardown
  return *list;
}

}  // namespace

BOOL AfxInitExtensionModule(AFX_EXTENSION_MODULE& module, HMODULE instance) {
  if (instance == nullptr) return FALSE;
  module = {TRUE, instance, instance};
  return TRUE;
}

void AfxTermExtensionModule(AFX_EXTENSION_MODULE& module, BOOL) {
  auto& list = Libraries();
  list.erase(std::remove_if(list.begin(), list.end(),
                            [&](const auto& library) { return library->m_hModule == module.hModule; }),
             list.end());
}

CDynLinkLibrary::CDynLinkLibrary(AFX_EXTENSION_MODULE& module, BOOL)
    : m_hModule(module.hModule), m_hResource(module.hResource) {
  Libraries().emplace_back(this);
}

bool AfxIsLibraryLinked(HMODULE module) {
  return std::any_of(Libraries().begin(), Libraries().end(),
                     [module](const auto& library) { return library->m_hModule == module; });
}
