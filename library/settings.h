#pragma once

#include "platform/base/string.h"
#include "platform/registry/registry.h"

// Named integers by section, kept for the current user. Failures are silent: a read gives its default, a
// write changes nothing. No key stays open between calls.

/// Path of the product's key below "software", and the name of the key below that. They live from the
/// library's load to its unload.
extern CString g_strSettingsPath;
extern CString g_strSettingsKey;

/// The "Settings" key, made with all that leads to it if it is missing; null on failure. The caller closes
/// it.
HKEY SettingsOpenRoot();
/// The key of a section, made if it is missing; "" is the "Settings" key itself. Null on failure. The caller
/// closes it.
HKEY SettingsOpenSection(const char* section);
/// The value, whatever type it was stored with, if it has at most 4 bytes; otherwise defaultValue.
UINT SettingsReadInt(const char* section, const char* value, UINT defaultValue);
/// Non-zero if the value was written.
UINT SettingsWriteInt(const char* section, const char* value, UINT data);
