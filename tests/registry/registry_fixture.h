#pragma once

#include <gtest/gtest.h>
#include <unistd.h>

#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <string>

#include "platform/registry/registry.h"

/// Each test has an empty configuration folder of its own.
class RegistryTest : public testing::Test {
 protected:
  void SetUp() override {
    const auto* test = testing::UnitTest::GetInstance()->current_test_info();
    m_folder = std::filesystem::temp_directory_path() /
               ("tessarel-registry-" + std::string(test->name()) + std::to_string(::getpid()));
    std::filesystem::create_directories(m_folder);
    Use(m_folder);
  }
  void TearDown() override { std::filesystem::remove_all(m_folder); }

  static void Use(const std::filesystem::path& folder) { ::setenv("XDG_CONFIG_HOME", folder.c_str(), 1); }
  std::filesystem::path Store() const { return m_folder / "tessarel12" / "registry"; }
  std::string StoreText() const {
    std::ifstream file(Store());
    return {std::istreambuf_iterator<char>(file), {}};
  }
  void WriteStore(const std::string& text) const {
    std::filesystem::create_directories(Store().parent_path());
    std::ofstream(Store(), std::ios::trunc) << text;
  }

  static HKEY Open(HKEY parent, const char* name, REGSAM access = KEY_READ | KEY_WRITE) {
    HKEY key = nullptr;
    EXPECT_EQ(RegOpenKeyExA(parent, name, 0, access, &key), ERROR_SUCCESS) << name;
    return key;
  }
  static HKEY Create(HKEY parent, const char* name, REGSAM access = KEY_READ | KEY_WRITE) {
    HKEY key = nullptr;
    EXPECT_EQ(RegCreateKeyExA(parent, name, 0, nullptr, 0, access, nullptr, &key, nullptr), ERROR_SUCCESS)
        << name;
    return key;
  }
  static LSTATUS SetNumber(HKEY key, const char* name, DWORD number) {
    return RegSetValueExA(key, name, 0, REG_DWORD, reinterpret_cast<const BYTE*>(&number), sizeof number);
  }
  static LSTATUS GetNumber(HKEY key, const char* name, DWORD& number) {
    DWORD size = sizeof number;
    return RegQueryValueExA(key, name, nullptr, nullptr, reinterpret_cast<BYTE*>(&number), &size);
  }

  std::filesystem::path m_folder;
};
