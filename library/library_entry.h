#pragma once

#include "platform/resources/extension.h"

// What the library knows of its own place in the process. Written on the user-interface thread only.

/// This library, as resources are looked up in it. Set by every call of the entry point.
extern HINSTANCE g_hLibraryInstance;
extern AFX_EXTENSION_MODULE g_extensionModule;
/// As the host gave it to EnableFilesOpening; 0: the document/view frames don't open files.
extern int g_bFilesOpeningEnabled;

/// As the host gave it to EnablePrintJobReports.
extern int g_bPrintJobReportsEnabled;

/// Joins the process (DLL_PROCESS_ATTACH) or leaves it (DLL_PROCESS_DETACH). 1, or 0 if the framework refuses
/// the library.
int DllMain(HINSTANCE instance, DWORD reason, void* reserved);
