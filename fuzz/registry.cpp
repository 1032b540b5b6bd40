// Any bytes as the file of settings: read, listed, changed, and read again.

#include <unistd.h>

#include <cstdlib>
#include <cstring>
#include <filesystem>
#include <fstream>
#include <string>

#include "fuzz/bytes.h"
#include "platform/registry/detail/settings_text.h"
#include "platform/registry/registry.h"

namespace {

namespace fs = std::filesystem;

HKEY Open(const char* path) {
  HKEY key = nullptr;
  RegCreateKeyExA(HKEY_CURRENT_USER, path, 0, nullptr, 0, KEY_READ | KEY_WRITE, nullptr, &key, nullptr);
  return key;
}

void Query(HKEY key, const char* name) {
  BYTE value[64];
  DWORD size = sizeof value;
  DWORD type = 0;
  RegQueryValueExA(key, name, nullptr, &type, value, &size);
}

/// What was understood is written so that it is understood again.
void CheckText(std::string_view text) {
  const platform::registry::Texts texts = platform::registry::ReadSettings(text).texts;
  const auto again = platform::registry::ReadSettings(platform::registry::WriteSettings(texts));
  fuzz::Require(!again.damaged && again.texts.size() == texts.size());
  for (const auto& [name, value] : texts) {
    const auto found = again.texts.find(name);
    fuzz::Require(found != again.texts.end() && found->second == value);
  }
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  // A folder for each, since the file is taken for the same one by its size and time.
  static int number = 0;
  CheckText({reinterpret_cast<const char*>(data), size});
  constexpr int kOnDisk = 64;  // one of so many, since files take their time
  if (number++ % kOnDisk != 0) return 0;
  const fs::path folder =
      fs::temp_directory_path() / ("tessarel-fuzz-" + std::to_string(getpid())) / std::to_string(number);
  fs::create_directories(folder / "tessarel12");
  setenv("XDG_CONFIG_HOME", folder.c_str(), 1);
  std::ofstream(folder / "tessarel12" / "registry", std::ios::binary)
      .write(reinterpret_cast<const char*>(data), static_cast<std::streamsize>(size));
  for (const char* path : {"software", "software\\a", "a"}) {
    const HKEY key = Open(path);
    for (const char* name : {"n", "Scale", "", "a\\b"}) Query(key, name);
    const DWORD put = 7;
    if (RegSetValueExA(key, "fuzz", 0, REG_DWORD, reinterpret_cast<const BYTE*>(&put), sizeof put) ==
        ERROR_SUCCESS) {
      DWORD got = 0;
      DWORD room = sizeof got;
      fuzz::Require(RegQueryValueExA(key, "fuzz", nullptr, nullptr, reinterpret_cast<BYTE*>(&got), &room) ==
                    ERROR_SUCCESS);
      fuzz::Require(got == put);
    }
    RegCloseKey(key);
  }
  fs::remove_all(folder);
  return 0;
}
