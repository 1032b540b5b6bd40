#pragma once

#include "platform/resources/resources.h"

// What this library carries, each table in a source of its own.

std::span<const platform::StringResource> LibraryStrings();
std::span<const platform::MenuResource> LibraryMenus();
std::span<const platform::DialogResource> LibraryDialogs();

/// All tables together.
inline platform::ResourceTables LibraryResources() {
  platform::ResourceTables tables;
  tables.strings = LibraryStrings();
  tables.menus = LibraryMenus();
  tables.dialogs = LibraryDialogs();
  return tables;
}
