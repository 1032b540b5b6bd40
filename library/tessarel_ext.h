#pragma once

#include "library/export.h"

// The library's plain functions. The library registers itself with the framework when it is loaded; a host
// needs neither call to show images.

extern "C" {

/// Non-zero: the frames of the document/view stack may open and export files. They may not before the first
/// call.
TESSAREL_API void EnableFilesOpening(int bEnable);

/// Zero: what befalls a print job after its queue took it (the printer is stopped, the job is cancelled or
/// refused) is no longer told to the report of the command that printed. It is before the first call.
TESSAREL_API void EnablePrintJobReports(int bEnable);

/// The language of the texts that are loaded and shown from now on: "it", which is in force before the first
/// call, "en", "de", or one that the host has added. Null or empty: that of the user's locale (English if the
/// library doesn't have it, Italian in a locale without language). Call it before the first window is made:
/// windows keep their texts.
TESSAREL_API void SelectTessarelLanguage(const char* language);

/// Registers the library anew with the module state in force at the call, so that whoever runs under that
/// state finds the library's resources and classes. For hosts that are libraries themselves.
TESSAREL_API void InitTessarelExtDLL();
}
