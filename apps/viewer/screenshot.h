#pragma once

#include <string>

#include "tessarel12.h"

/// Writes what a window shows as a PNG. Throws a FileError.
void WriteScreenshot(CWnd& window, const std::string& target);
