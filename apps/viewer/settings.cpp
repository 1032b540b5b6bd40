#include "settings.h"

#include <cstring>
#include <vector>

#include "tessarel12.h"

namespace settings {
namespace {

/// The application's key, made if it is missing.
class Key {
 public:
  Key() {
    RegCreateKeyExA(HKEY_CURRENT_USER, R"(software\tessarel-viewer)", 0, nullptr, REG_OPTION_NON_VOLATILE,
                    KEY_READ | KEY_WRITE, nullptr, &m_key, nullptr);
  }
  ~Key() {
    if (m_key != nullptr) RegCloseKey(m_key);
  }
  Key(const Key&) = delete;
  Key& operator=(const Key&) = delete;

  /// The value's bytes if it is of that type.
  std::vector<BYTE> Read(const std::string& name, DWORD wanted) const {
    DWORD type = REG_NONE;
    DWORD size = 0;
    if (RegQueryValueExA(m_key, name.c_str(), nullptr, &type, nullptr, &size) != ERROR_SUCCESS ||
        type != wanted)
      return {};
    std::vector<BYTE> bytes(size);
    if (RegQueryValueExA(m_key, name.c_str(), nullptr, &type, bytes.data(), &size) != ERROR_SUCCESS)
      return {};
    bytes.resize(size);
    return bytes;
  }
  void Write(const std::string& name, DWORD type, const void* data, std::size_t size) const {
    RegSetValueExA(m_key, name.c_str(), 0, type, static_cast<const BYTE*>(data), static_cast<DWORD>(size));
  }

 private:
  HKEY m_key = nullptr;
};

}  // namespace

std::string ReadText(const std::string& name) {
  const std::vector<BYTE> bytes = Key().Read(name, REG_SZ);
  std::string text(bytes.begin(), bytes.end());
  return text.substr(0, text.find('\0'));
}

void WriteText(const std::string& name, const std::string& text) {
  if (ReadText(name) == text) return;
  Key().Write(name, REG_SZ, text.c_str(), text.size() + 1);
}

int ReadNumber(const std::string& name, int otherwise) {
  const std::vector<BYTE> bytes = Key().Read(name, REG_DWORD);
  int number = otherwise;
  if (bytes.size() == sizeof number) std::memcpy(&number, bytes.data(), sizeof number);
  return number;
}

void WriteNumber(const std::string& name, int number) {
  Key().Write(name, REG_DWORD, &number, sizeof number);
}

}  // namespace settings
