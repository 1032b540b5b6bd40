#include "platform/registry/registry.h"

#include <QByteArray>
#include <algorithm>
#include <optional>
#include <utility>

#include "platform/base/detail/handle_table.h"
#include "platform/registry/detail/store.h"

using platform::registry::Store;
using platform::registry::Value;

namespace {

constexpr std::size_t kLongestName = 255;
constexpr std::size_t kLongestValueName = 16383;
constexpr std::ptrdiff_t kDeepest = 512;
constexpr DWORD kMostData = 1 << 16;
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
  if (std::count(path.begin(), path.end(), '\\') >= kDeepest) return std::nullopt;
  return path;
}

// No byte of a name is taken for a separator or for the marks below.
std::string Encoded(std::string_view name, const char* also) {
  return QByteArray(name.data(), static_cast<qsizetype>(name.size())).toPercentEncoding(also).toStdString();
}

std::string Stored(std::string_view path) {
  std::string stored = Encoded(path, " \\");
  std::replace(stored.begin(), stored.end(), '\\', '/');
  return stored;
}

std::string StoredValue(const std::string& path, std::string_view name) {
  const std::string own = name.empty() ? "@" : Encoded(name, " ");
  return path.empty() ? own : Stored(path) + '/' + own;
}

// Stands in a key that holds nothing else.
std::string Mark(const std::string& path) {
  return Stored(path) + "/@key";
}

bool WantsToWrite(REGSAM access) {
  return (access & kWriting) != 0;
}

// Programs expect "software" to be there on every account.
bool IsSoftware(const std::string& path) {
  return QByteArray::fromStdString(path).compare("software", Qt::CaseInsensitive) == 0;
}

bool Exists(const Store& store, const std::string& path) {
  return path.empty() || store.Holds(Stored(path)) || (IsSoftware(path) && store.IsWritable());
}

LSTATUS GiveHandle(std::string path, REGSAM access, HKEY* result) {
  if ((access & kMaximumAllowed) != 0) access = KEY_ALL_ACCESS;
  *result = OpenKeys().Add(std::make_unique<OpenKey>(OpenKey{std::move(path), access}));
  return ERROR_SUCCESS;
}

}  // namespace

LSTATUS RegOpenKeyExA(HKEY key, LPCSTR subKey, DWORD, REGSAM access, HKEY* result) {
  if (result == nullptr) return ERROR_INVALID_PARAMETER;
  *result = nullptr;
  const std::lock_guard lock(Store::Mutex());
  const OpenKey* parent = Find(key);
  if (parent == nullptr) return ERROR_INVALID_HANDLE;
  auto path = Join(*parent, subKey);
  if (!path) return ERROR_BAD_PATHNAME;
  Store& store = Store::Instance();
  if (const LSTATUS error = store.Refresh(); error != ERROR_SUCCESS) return error;
  const bool denied = WantsToWrite(access) && !store.IsWritable();
  if (!Exists(store, *path)) return denied && IsSoftware(*path) ? ERROR_ACCESS_DENIED : ERROR_FILE_NOT_FOUND;
  return denied ? ERROR_ACCESS_DENIED : GiveHandle(std::move(*path), access, result);
}

LSTATUS RegCreateKeyExA(HKEY key, LPCSTR subKey, DWORD, LPSTR, DWORD, REGSAM access, const void*,
                        HKEY* result, DWORD* disposition) {
  if (result == nullptr || subKey == nullptr) return ERROR_INVALID_PARAMETER;
  *result = nullptr;
  const std::lock_guard lock(Store::Mutex());
  const OpenKey* parent = Find(key);
  if (parent == nullptr) return ERROR_INVALID_HANDLE;
  auto path = Join(*parent, subKey);
  if (!path) return ERROR_BAD_PATHNAME;
  Store& store = Store::Instance();
  if (const LSTATUS error = store.Refresh(); error != ERROR_SUCCESS) return error;
  const bool exists = Exists(store, *path);
  if (!exists) {
    if ((parent->access & KEY_CREATE_SUB_KEY) == 0 || !store.IsWritable()) return ERROR_ACCESS_DENIED;
    const LSTATUS error = store.PutSoon(Mark(*path), Value());
    if (error != ERROR_SUCCESS) return error;
  } else if (WantsToWrite(access) && !store.IsWritable()) {
    return ERROR_ACCESS_DENIED;
  }
  if (disposition != nullptr) *disposition = exists ? REG_OPENED_EXISTING_KEY : REG_CREATED_NEW_KEY;
  return GiveHandle(std::move(*path), access, result);
}

LSTATUS RegCloseKey(HKEY key) {
  if (key == HKEY_CURRENT_USER) return ERROR_SUCCESS;
  const std::lock_guard lock(Store::Mutex());
  return OpenKeys().Remove(key) ? ERROR_SUCCESS : ERROR_INVALID_HANDLE;
}

LSTATUS RegQueryValueExA(HKEY key, LPCSTR name, DWORD*, DWORD* type, BYTE* data, DWORD* size) {
  const std::lock_guard lock(Store::Mutex());
  const OpenKey* open = Find(key);
  if (open == nullptr) return ERROR_INVALID_HANDLE;
  if (data != nullptr && size == nullptr) return ERROR_INVALID_PARAMETER;
  if ((open->access & KEY_QUERY_VALUE) == 0) return ERROR_ACCESS_DENIED;
  Store& store = Store::Instance();
  if (const LSTATUS error = store.Refresh(); error != ERROR_SUCCESS) return error;
  const auto value = store.Get(StoredValue(open->path, name == nullptr ? "" : name));
  if (!value) return ERROR_FILE_NOT_FOUND;
  if (type != nullptr) *type = value->type;
  if (size == nullptr) return ERROR_SUCCESS;
  const auto stored = static_cast<DWORD>(value->data.size());
  const DWORD room = std::exchange(*size, stored);
  if (data == nullptr) return ERROR_SUCCESS;
  if (room < stored) return ERROR_MORE_DATA;
  std::copy_n(value->data.begin(), stored, data);
  return ERROR_SUCCESS;
}

LSTATUS RegSetValueExA(HKEY key, LPCSTR name, DWORD, DWORD type, const BYTE* data, DWORD size) {
  std::unique_lock lock(Store::Mutex());
  const OpenKey* open = Find(key);
  if (open == nullptr) return ERROR_INVALID_HANDLE;
  const std::string_view own = name == nullptr ? "" : name;
  if ((data == nullptr && size > 0) || size > kMostData || own.size() > kLongestValueName)
    return ERROR_INVALID_PARAMETER;
  if ((open->access & KEY_SET_VALUE) == 0) return ERROR_ACCESS_DENIED;
  Store& store = Store::Instance();
  if (const LSTATUS error = store.Refresh(); error != ERROR_SUCCESS) return error;
  if (!store.IsWritable()) return ERROR_ACCESS_DENIED;
  return store.Put(StoredValue(open->path, own),
                   {type, std::string(reinterpret_cast<const char*>(data), size)}, lock);
}
