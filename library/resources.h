#pragma once

#include "platform/resources/resource_tables.h"

// What this library carries, each table in a source of its own.

/// Texts, by the numbers of library/resource_ids.h.
std::span<const platform::StringResource> LibraryStrings();
/// Menus, by the numbers of the frames that load them.
std::span<const platform::MenuResource> LibraryMenus();
/// Templates of the dialogs.
std::span<const platform::DialogResource> LibraryDialogs();
/// Cursors of the mouse modes.
std::span<const platform::CursorResource> LibraryCursors();
/// Icons of the frames.
std::span<const platform::IconResource> LibraryIcons();
/// Pictures of the toolbars.
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
