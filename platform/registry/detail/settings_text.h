#pragma once

#include <cstddef>
#include <map>
#include <string>
#include <string_view>

namespace platform::registry {

/// The case of ASCII letters makes no difference.
struct NameLess {
  bool operator()(std::string_view a, std::string_view b) const;
};

/// What values hold, as the file has it, by their names: paths parted by '/'.
using Texts = std::map<std::string, std::string, NameLess>;

constexpr std::size_t kDeepestName = 512;

/// Contents of the file of settings: an INI file whose sections are the first steps of the paths. Within a
/// name '\' parts the steps, and what is no letter, digit, '_', '-' or '.' is a '%' and two digits.
struct SettingsText {
  Texts texts;
  /// Some lines are none of the format, and were left out.
  bool damaged = false;
  /// Was written before it was an INI file, which calls for the present format, but is no damage.
  bool former = false;
};

SettingsText ReadSettings(std::string_view text);
/// Can be read again whatever the names hold, but for what no value can hold: ends of lines, and blanks or
/// quotation marks around it.
std::string WriteSettings(const Texts& texts);

}  // namespace platform::registry
