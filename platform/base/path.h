#pragma once

#include <cstddef>
#include <string>
#include <string_view>

// Paths as text. Both '/' and '\' separate: paths stored by other systems are split rightly too.

namespace platform {

struct PathParts {
  std::string folder;  ///< with its closing separator; empty if the path has none
  std::string name;    ///< file name with extension; empty if the path ends in a separator
};

inline PathParts SplitPath(std::string_view path) {
  const std::size_t separator = path.find_last_of("/\\");
  const std::size_t cut = separator == std::string_view::npos ? 0 : separator + 1;
  return {std::string(path.substr(0, cut)), std::string(path.substr(cut))};
}

struct NameParts {
  std::string stem;
  std::string extension;  ///< with its dot; empty if the name has none
};

/// Splits a file name at its last dot. A dot in front belongs to the stem: such names are hidden files.
inline NameParts SplitName(std::string_view name) {
  const std::size_t dot = name.rfind('.');
  const std::size_t cut = dot == std::string_view::npos || dot == 0 ? name.size() : dot;
  return {std::string(name.substr(0, cut)), std::string(name.substr(cut))};
}

}  // namespace platform
