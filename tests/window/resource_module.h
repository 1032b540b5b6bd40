#pragma once

#include "platform/resources/extension.h"
#include "platform/resources/resource_tables.h"

/// A module of the test's own with these resources, linked until the process ends.
inline HINSTANCE LinkResourceModule(const platform::ResourceTables& tables) {
  static int place = 0;
  static AFX_EXTENSION_MODULE module{};
  const auto instance = reinterpret_cast<HINSTANCE>(&place);
  platform::RegisterResources(instance, tables);
  if (module.hModule == nullptr && AfxInitExtensionModule(module, instance) != 0)
    (void)new CDynLinkLibrary(module);  // NOLINT: the framework owns it
  return instance;
}
