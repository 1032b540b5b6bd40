#pragma once

#include <gtest/gtest.h>
#include <unistd.h>

#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <string>

/// Each test starts as a fresh user: with an empty configuration folder of its own.
class FreshUser : public testing::Test {
 protected:
  void SetUp() override {
    const auto* test = testing::UnitTest::GetInstance()->current_test_info();
    m_folder = std::filesystem::temp_directory_path() /
               ("tessarel-user-" + std::string(test->name()) + std::to_string(::getpid()));
    std::filesystem::create_directories(m_folder);
    Use(m_folder);
  }
  void TearDown() override { std::filesystem::remove_all(m_folder); }

  static void Use(const std::filesystem::path& folder) { ::setenv("XDG_CONFIG_HOME", folder.c_str(), 1); }
  /// From here on no setting can be read or written: the store would lie below a regular file.
  void BreakStorage() const {
    std::ofstream(m_folder / "file") << "no folder";
    Use(m_folder / "file");
  }

  std::filesystem::path m_folder;
};
