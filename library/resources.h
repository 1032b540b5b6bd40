#pragma once

#include "platform/resources/resources.h"

// What this library carries, each table in a source of its own.

std::span<const platform::StringResource> LibraryStrings();

/// All tables together.
inline platform::ResourceTables LibraryResources() {
  platform::ResourceTables tables;
  tables.strings = LibraryStrings();
  return tables;
}
