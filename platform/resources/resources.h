#pragma once

#include <span>

#include "platform/base/export.h"
#include "platform/base/types.h"

// How a library carries its resources and how they are found: it gives its tables once, under its module, and
// they are found for as long as the module stands in the framework's list (CDynLinkLibrary), whichever module
// asks.

enum : UINT { RT_STRING = 6 };

namespace platform {

struct StringResource {
  UINT id;
  const char* text;  ///< UTF-8, lives as long as the module
};

/// Takes a module's strings, in the place of those given before.
PLATFORM_API void RegisterStrings(HMODULE module, std::span<const StringResource> strings);

}  // namespace platform

/// The module that has a resource of this number and type; null if none has it.
PLATFORM_API HINSTANCE AfxFindResourceHandle(LPCSTR name, UINT type);
/// Copies the string's text, cut to fit; its length in the buffer. Null stands for every module.
PLATFORM_API int LoadStringA(HINSTANCE module, UINT id, LPSTR buffer, int bufferSize);
