#include "platform/registry/registry.h"

#include <algorithm>
#include <cstring>
#include <optional>
#include <utility>
#include <vector>

#include "platform/base/detail/handle_table.h"
#include "platform/registry/detail/store.h"

using platform::registry::Fold;
using platform::registry::Key;
using platform::registry::Keys;
using platform::registry::MakeKey;
using platform::registry::Value;

namespace {

constexpr std::size_t kLongestName = 255;
constexpr std::size_t kLongestValueName = 16383;
constexpr DWORD kMostData = 1 << 20;
constexpr REGSAM kMaximumAllowed = 0x02000000;
constexpr REGSAM kWriting = KEY_SET_VALUE | KEY_CREATE_SUB_KEY;

struct OpenKey {
  std::string path;  ///< empty: the root
  REGSAM access = 0;
};

// Never destroyed: programs may still read settings while the process ends.
platform::HandleTable<OpenKey, HKEY>& OpenKeys() {
  static auto& table = *new platform::HandleTable<OpenKey, HKEY>;
  return table;
}

const OpenKey* Find(HKEY key) {
  static const OpenKey root = {"", KEY_ALL_ACCESS};
  return key == HKEY_CURRENT_USER ? &root : OpenKeys().Get(key);
}

// The path below a key, without a closing separator. None for one that no key can have.
std::optional<std::string> Join(const OpenKey& parent, LPCSTR subKey) {
  std::string_view rest = subKey == nullptr ? "" : subKey;
  if (rest.ends_with('\\')) rest.remove_suffix(1);
  std::string path = parent.path;
  while (!rest.empty()) {
    const std::string_view name = rest.substr(0, rest.find('\\'));
    if (name.empty() || name.size() > kLongestName) return std::nullopt;
    if (!path.empty()) path += '\\';
    path += name;
    rest.remove_prefix(std::min(rest.size(), name.size() + 1));
  }
  return path;
}

bool Exists(const Keys& keys, const std::string& path) {
  return path.empty() || keys.contains(Fold(path));
}

LSTATUS MakeStored(const std::string& path, bool& made) {
  return platform::registry::Change([&](Keys& keys, bool& altered) {
    altered = made = MakeKey(keys, path);
    return ERROR_SUCCESS;
  });
}

LSTATUS GiveHandle(std::string path, REGSAM access, HKEY* result) {
  if ((access & kMaximumAllowed) != 0) access = KEY_ALL_ACCESS;
  auto record = std::make_unique<OpenKey>();
  record->path = std::move(path);
  record->access = access;
  *result = OpenKeys().Add(std::move(record));
  return ERROR_SUCCESS;
}

bool WantsToWrite(REGSAM access) {
  return (access & kWriting) != 0;
}

// The key's stored record for a reading or writing call; null for the root before anything stands in it.
Key* Stored(Keys& keys, const std::string& path) {
  const auto found = keys.find(Fold(path));
  return found == keys.end() ? nullptr : &found->second;
}

}  // namespace

LSTATUS RegOpenKeyExA(HKEY key, LPCSTR subKey, DWORD, REGSAM access, HKEY* result) {
  if (result == nullptr) return ERROR_INVALID_PARAMETER;
  *result = nullptr;
  const OpenKey* parent = Find(key);
  if (parent == nullptr) return ERROR_INVALID_HANDLE;
  auto path = Join(*parent, subKey);
  if (!path) return ERROR_BAD_PATHNAME;
  LSTATUS error = ERROR_SUCCESS;
  const Keys* keys = platform::registry::Load(error);
  if (keys == nullptr) return error;
  if (!Exists(*keys, *path)) {
    // Programs expect this one to be there on every account.
    bool made = false;
    const bool software = Fold(*path) == "software";
    error = software ? MakeStored(*path, made) : ERROR_FILE_NOT_FOUND;
    if (error != ERROR_SUCCESS) return WantsToWrite(access) ? error : ERROR_FILE_NOT_FOUND;
  }
  if (WantsToWrite(access) && !platform::registry::IsWritable()) return ERROR_ACCESS_DENIED;
  return GiveHandle(std::move(*path), access, result);
}

LSTATUS RegCreateKeyExA(HKEY key, LPCSTR subKey, DWORD, LPSTR, DWORD, REGSAM access, const void*,
                        HKEY* result, DWORD* disposition) {
  if (result == nullptr || subKey == nullptr) return ERROR_INVALID_PARAMETER;
  *result = nullptr;
  const OpenKey* parent = Find(key);
  if (parent == nullptr) return ERROR_INVALID_HANDLE;
  auto path = Join(*parent, subKey);
  if (!path) return ERROR_BAD_PATHNAME;
  LSTATUS error = ERROR_SUCCESS;
  const Keys* keys = platform::registry::Load(error);
  if (keys == nullptr) return error;
  if (!Exists(*keys, parent->path)) return ERROR_KEY_DELETED;
  bool made = false;
  if (!Exists(*keys, *path)) {
    if ((parent->access & KEY_CREATE_SUB_KEY) == 0) return ERROR_ACCESS_DENIED;
    error = MakeStored(*path, made);
    if (error != ERROR_SUCCESS) return error;
  } else if (WantsToWrite(access) && !platform::registry::IsWritable()) {
    return ERROR_ACCESS_DENIED;
  }
  if (disposition != nullptr) *disposition = made ? REG_CREATED_NEW_KEY : REG_OPENED_EXISTING_KEY;
  return GiveHandle(std::move(*path), access, result);
}

LSTATUS RegCloseKey(HKEY key) {
  if (key == HKEY_CURRENT_USER) return ERROR_SUCCESS;
  return OpenKeys().Remove(key) ? ERROR_SUCCESS : ERROR_INVALID_HANDLE;
}

LSTATUS RegQueryValueExA(HKEY key, LPCSTR name, DWORD*, DWORD* type, BYTE* data, DWORD* size) {
  const OpenKey* open = Find(key);
  if (open == nullptr) return ERROR_INVALID_HANDLE;
  if (data != nullptr && size == nullptr) return ERROR_INVALID_PARAMETER;
  if ((open->access & KEY_QUERY_VALUE) == 0) return ERROR_ACCESS_DENIED;
  LSTATUS error = ERROR_SUCCESS;
  const Keys* keys = platform::registry::Load(error);
  if (keys == nullptr) return error;
  if (!Exists(*keys, open->path)) return ERROR_KEY_DELETED;
  const auto stored = keys->find(Fold(open->path));
  if (stored == keys->end()) return ERROR_FILE_NOT_FOUND;
  const auto found = stored->second.values.find(Fold(name == nullptr ? "" : name));
  if (found == stored->second.values.end()) return ERROR_FILE_NOT_FOUND;
  const Value& value = found->second;
  if (type != nullptr) *type = value.type;
  if (size == nullptr) return ERROR_SUCCESS;
  const DWORD room = std::exchange(*size, static_cast<DWORD>(value.data.size()));
  if (data == nullptr) return ERROR_SUCCESS;
  if (room < value.data.size()) return ERROR_MORE_DATA;
  std::memcpy(data, value.data.data(), value.data.size());  // NOLINT: bytes, a closing 0 is among them
  return ERROR_SUCCESS;
}

LSTATUS RegSetValueExA(HKEY key, LPCSTR name, DWORD, DWORD type, const BYTE* data, DWORD size) {
  const OpenKey* open = Find(key);
  if (open == nullptr) return ERROR_INVALID_HANDLE;
  Value value = {name == nullptr ? "" : name, type, {}};
  if ((data == nullptr && size > 0) || size > kMostData || value.name.size() > kLongestValueName)
    return ERROR_INVALID_PARAMETER;
  if ((open->access & KEY_SET_VALUE) == 0) return ERROR_ACCESS_DENIED;
  if (size > 0) value.data.assign(reinterpret_cast<const char*>(data), size);
  return platform::registry::Change([&](Keys& keys, bool& altered) -> LSTATUS {
    Key* stored = open->path.empty() ? &keys[""] : Stored(keys, open->path);
    if (stored == nullptr) return ERROR_KEY_DELETED;
    const auto [place, isNew] = stored->values.try_emplace(Fold(value.name), value);
    // A name keeps the case it was first written in.
    value.name = place->second.name;
    altered = isNew || place->second != value;
    place->second = value;
    return ERROR_SUCCESS;
  });
}

LSTATUS RegDeleteValueA(HKEY key, LPCSTR name) {
  const OpenKey* open = Find(key);
  if (open == nullptr) return ERROR_INVALID_HANDLE;
  if ((open->access & KEY_SET_VALUE) == 0) return ERROR_ACCESS_DENIED;
  return platform::registry::Change([&](Keys& keys, bool& altered) -> LSTATUS {
    if (!Exists(keys, open->path)) return ERROR_KEY_DELETED;
    Key* stored = Stored(keys, open->path);
    altered = stored != nullptr && stored->values.erase(Fold(name == nullptr ? "" : name)) > 0;
    return altered ? ERROR_SUCCESS : ERROR_FILE_NOT_FOUND;
  });
}

LSTATUS RegDeleteKeyA(HKEY key, LPCSTR subKey) {
  const OpenKey* parent = Find(key);
  if (parent == nullptr) return ERROR_INVALID_HANDLE;
  const auto path = Join(*parent, subKey);
  if (!path) return ERROR_BAD_PATHNAME;
  if (path->empty()) return ERROR_ACCESS_DENIED;
  return platform::registry::Change([&](Keys& keys, bool& altered) -> LSTATUS {
    const std::string folded = Fold(*path);
    if (!keys.contains(folded)) return ERROR_FILE_NOT_FOUND;
    const auto below = keys.lower_bound(folded + '\\');
    if (below != keys.end() && below->first.starts_with(folded + '\\')) return ERROR_ACCESS_DENIED;
    keys.erase(folded);
    altered = true;
    return ERROR_SUCCESS;
  });
}
