#pragma once

#include "library/resource_ids.h"
#include "platform/resources/resource_tables.h"
#include "platform/window/window.h"

/// One of this library's cursors, by number; null if it isn't there.
inline HCURSOR LoadLibraryCursor(UINT id) {
  return LoadCursor(AfxFindResourceHandle(MAKEINTRESOURCE(id), RT_GROUP_CURSOR), MAKEINTRESOURCE(id));
}

/// Makes it the cursor at once, until the pointer moves on.
inline void ShowLibraryCursor(UINT id) {
  SetCursor(LoadLibraryCursor(id));
}
