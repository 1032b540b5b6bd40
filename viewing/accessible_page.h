#pragma once

#include "platform/base/string.h"
#include "platform/base/types.h"

/// What a screen reader is told about a page window: as its name file and page, the scale besides. A page
/// that turns is announced by that. file: its name, may be empty; page: from 1, 0 for none.
void DescribePage(HWND window, const CString& file, int page, int pages, int percent);
