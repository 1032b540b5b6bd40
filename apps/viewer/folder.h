#pragma once

#include <filesystem>
#include <string>

/// Whether a name has the ending of an image. Files aren't looked into: there may be many.
bool IsImageName(const std::filesystem::path& path);

/// The file of the same folder that is so many steps on, by name, among those whose ending is one of an
/// image; empty if there is none.
std::string FileBeside(const std::string& path, int step);
