#pragma once

#include "platform/resources/resource_tables.h"

// What this library carries, each table in a source of its own.

std::span<const platform::StringResource> LibraryStrings();
std::span<const platform::MenuResource> LibraryMenus();
std::span<const platform::DialogResource> LibraryDialogs();
std::span<const platform::CursorResource> LibraryCursors();
std::span<const platform::IconResource> LibraryIcons();
std::span<const platform::BitmapResource> LibraryBitmaps();

/// All tables together.
inline platform::ResourceTables LibraryResources() {
  platform::ResourceTables tables;
  tables.strings = LibraryStrings();
  tables.menus = LibraryMenus();
  tables.dialogs = LibraryDialogs();
  tables.cursors = LibraryCursors();
  tables.icons = LibraryIcons();
  tables.bitmaps = LibraryBitmaps();
  return tables;
}
