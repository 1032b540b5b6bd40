#pragma once

#include <string>

/// The file of the same folder that is so many steps on, by name, among those whose ending is one of an
/// image; empty if there is none.
std::string FileBeside(const std::string& path, int step);
