#pragma once

#include <utility>

#include "platform/resources/extension.h"
#include "platform/resources/resource_tables.h"

/// Joins a module with these resources to the process, once for each kind of them.
template <class Kind>
void JoinResources(const platform::ResourceTables& tables) {
  static AFX_EXTENSION_MODULE module;
  static char self;
  static bool joined = false;
  if (std::exchange(joined, true)) return;
  const auto instance = reinterpret_cast<HINSTANCE>(&self);
  AfxInitExtensionModule(module, instance);
  new CDynLinkLibrary(module);  // NOLINT: the framework keeps it
  platform::RegisterResources(instance, tables);
}
