#pragma once

#include "platform/resources/resource_tables.h"

// Looking resources up, for the loaders of this layer. A null module stands for every linked one; null if
// there is no such resource.

namespace platform {

const StringResource* FindStringResource(HMODULE module, UINT id);
const MenuResource* FindMenuResource(HMODULE module, LPCSTR name);
const DialogResource* FindDialogResource(HMODULE module, LPCSTR name);
const CursorResource* FindCursorResource(HMODULE module, LPCSTR name);
const IconResource* FindIconResource(HMODULE module, LPCSTR name);
const BitmapResource* FindBitmapResource(HMODULE module, LPCSTR name);

}  // namespace platform
