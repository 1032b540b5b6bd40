#include "library/settings.h"

namespace {

constexpr REGSAM kReadWrite = KEY_READ | KEY_WRITE;

/// Closes a key at the end of its scope.
class Key {
 public:
  explicit Key(HKEY key) : m_key(key) {}
  Key(const Key&) = delete;
  Key& operator=(const Key&) = delete;
  ~Key() {
    if (m_key != nullptr) RegCloseKey(m_key);
  }
  HKEY Get() const { return m_key; }
  explicit operator bool() const { return m_key != nullptr; }

 private:
  HKEY m_key;
};

/// Null on failure.
HKEY CreateBelow(const Key& parent, const char* name) {
  HKEY key = nullptr;
  if (!parent || RegCreateKeyExA(parent.Get(), name, 0, nullptr, REG_OPTION_NON_VOLATILE, kReadWrite, nullptr,
                                 &key, nullptr) != ERROR_SUCCESS)
    return nullptr;
  return key;
}

HKEY OpenSoftware() {
  HKEY key = nullptr;
  return RegOpenKeyExA(HKEY_CURRENT_USER, "software", 0, kReadWrite, &key) == ERROR_SUCCESS ? key : nullptr;
}

}  // namespace

// Ahead of the library's other statics, so that the entry point and every object made at load find them
// built.
[[gnu::init_priority(200)]] CString g_strSettingsPath("Morvane Software Works\\Tessarel12\\1.0");
[[gnu::init_priority(200)]] CString g_strSettingsKey("Settings");

HKEY SettingsOpenRoot() {
  const Key software(OpenSoftware());
  const Key product(CreateBelow(software, g_strSettingsPath));
  return CreateBelow(product, g_strSettingsKey);
}

HKEY SettingsOpenSection(const char* section) {
  const Key root(SettingsOpenRoot());
  return CreateBelow(root, section);
}

UINT SettingsReadInt(const char* section, const char* value, UINT defaultValue) {
  const Key key(SettingsOpenSection(section));
  if (!key) return defaultValue;
  DWORD data = 0;
  DWORD size = sizeof data;
  const LSTATUS result =
      RegQueryValueExA(key.Get(), value, nullptr, nullptr, reinterpret_cast<BYTE*>(&data), &size);
  return result == ERROR_SUCCESS ? data : defaultValue;
}

UINT SettingsWriteInt(const char* section, const char* value, UINT data) {
  const Key key(SettingsOpenSection(section));
  if (!key) return 0;
  const DWORD word = data;
  return RegSetValueExA(key.Get(), value, 0, REG_DWORD, reinterpret_cast<const BYTE*>(&word), sizeof word) ==
                 ERROR_SUCCESS
             ? 1
             : 0;
}
