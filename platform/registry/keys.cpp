#include <algorithm>

#include "platform/registry/detail/store.h"

namespace platform::registry {

std::string Fold(std::string_view name) {
  std::string folded(name);
  for (char& c : folded)
    if (c >= 'A' && c <= 'Z') c = static_cast<char>(c - 'A' + 'a');
  return folded;
}

bool MakeKey(Keys& keys, const std::string& path) {
  bool made = false;
  for (std::size_t end = 0; end < path.size();) {
    end = std::min(path.find('\\', end + 1), path.size());
    const std::string part = path.substr(0, end);
    made = keys.try_emplace(Fold(part), Key{part, {}}).second || made;
  }
  return made;
}

}  // namespace platform::registry
