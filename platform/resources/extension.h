#pragma once

#include "platform/base/export.h"
#include "platform/base/types.h"

// How a library joins the process that uses it.

/// A library's record.
struct AFX_EXTENSION_MODULE {
  BOOL bInitialized;
  HMODULE hModule;
  HMODULE hResource;
};

/// FALSE for a null instance: the library must then refuse to load.
PLATFORM_API BOOL AfxInitExtensionModule(AFX_EXTENSION_MODULE& module, HMODULE instance);
/// Takes the library out of the list in force.
PLATFORM_API void AfxTermExtensionModule(AFX_EXTENSION_MODULE& module, BOOL all = FALSE);

/// The library's place in the list of those whose resources and classes are found. The framework owns the
/// object.
class PLATFORM_API CDynLinkLibrary {
 public:
  explicit CDynLinkLibrary(AFX_EXTENSION_MODULE& module, BOOL system = FALSE);
  HMODULE m_hModule;
  HMODULE m_hResource;
};

/// True while the module stands in the list.
PLATFORM_API bool AfxIsLibraryLinked(HMODULE module);

enum : DWORD { DLL_PROCESS_DETACH = 0, DLL_PROCESS_ATTACH = 1 };
