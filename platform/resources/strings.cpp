#include <algorithm>
#include <cstring>
#include <map>

#include "platform/base/string.h"
#include "platform/framework/extension.h"
#include "platform/resources/resources.h"

namespace {

using Strings = std::span<const platform::StringResource>;

std::map<HMODULE, Strings>& Tables() {
  static auto* tables = new std::map<HMODULE, Strings>;  // libraries come and go beyond static teardown
  return *tables;
}

const char* Find(Strings strings, UINT id) {
  const auto found = std::find_if(strings.begin(), strings.end(), [id](const auto& s) { return s.id == id; });
  return found == strings.end() ? nullptr : found->text;
}

struct Found {
  HMODULE module = nullptr;
  const char* text = nullptr;
};

/// module null: any that is linked.
Found FindString(HMODULE module, UINT id) {
  for (const auto& [owner, strings] : Tables()) {
    if ((module != nullptr && owner != module) || !AfxIsLibraryLinked(owner)) continue;
    if (const char* text = Find(strings, id)) return {owner, text};
  }
  return {};
}

}  // namespace

void platform::RegisterStrings(HMODULE module, std::span<const StringResource> strings) {
  Tables()[module] = strings;
}

HINSTANCE AfxFindResourceHandle(LPCSTR name, UINT type) {
  return type == RT_STRING
             ? FindString(nullptr, static_cast<UINT>(reinterpret_cast<std::uintptr_t>(name))).module
             : nullptr;
}

int LoadStringA(HINSTANCE module, UINT id, LPSTR buffer, int bufferSize) {
  const char* text = FindString(module, id).text;
  if (text == nullptr || buffer == nullptr || bufferSize < 1) return 0;
  const std::size_t length = std::min(std::strlen(text), static_cast<std::size_t>(bufferSize) - 1);
  std::memcpy(buffer, text, length);
  buffer[length] = 0;
  return static_cast<int>(length);
}

BOOL CString::LoadString(UINT id) {
  const char* text = FindString(nullptr, id).text;
  m_text = text == nullptr ? "" : text;
  return text != nullptr;
}
