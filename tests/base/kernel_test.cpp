#include "platform/base/kernel.h"

#include <fcntl.h>
#include <gtest/gtest.h>
#include <sys/file.h>
#include <sys/stat.h>
#include <unistd.h>

#include <climits>
#include <filesystem>
#include <fstream>
#include <iterator>

namespace {

namespace fs = std::filesystem;

struct Division {
  int number, numerator, denominator, result;
};
constexpr Division kDivisions[] = {
    {7, 1, 2, 4},  // a half goes away from zero
    {-7, 1, 2, -4},      {7, 1, -2, -4},
    {-7, 1, -2, 4},      {5, 1, 3, 2},
    {4, 1, 3, 1},        {100000, 100000, 100000, 100000},  // the product needs 64 bits
    {INT_MAX, 2, 1, -1}, {INT_MIN, INT_MIN, INT_MIN, INT_MIN},
    {5, 5, 0, -1},
};

TEST(MulDivTest, RoundsAndTellsFailure) {
  for (const Division& d : kDivisions)
    EXPECT_EQ(MulDiv(d.number, d.numerator, d.denominator), d.result)
        << d.number << " * " << d.numerator << " / " << d.denominator;
}

TEST(GetVersionTest, NamesAModernSystem) {
  EXPECT_GE(GetVersion() & 0xff, 5U);
  EXPECT_EQ(GetVersion() >> 31, 0U);
}

class CopyTest : public testing::Test {
 protected:
  void SetUp() override {
    m_folder = fs::temp_directory_path() / ("tessarel-copy-" + std::to_string(::getpid()));
    fs::create_directories(m_folder);
    m_source = (m_folder / "source").string();
    m_target = (m_folder / "target").string();
    std::ofstream(m_source) << m_text;
  }
  void TearDown() override { fs::remove_all(m_folder); }
  static std::string Contents(const std::string& path) {
    std::ifstream file(path);
    return {std::istreambuf_iterator<char>(file), {}};
  }
  std::size_t Files() const {
    return static_cast<std::size_t>(std::distance(fs::directory_iterator(m_folder), {}));
  }

  fs::path m_folder;
  std::string m_source, m_target;
  // Longer than one step of the copy.
  const std::string m_text = std::string(700000, 'x') + "end";
};

TEST_F(CopyTest, CopiesContentsAndPermissions) {
  fs::permissions(m_source, fs::perms::owner_read);
  EXPECT_TRUE(CopyFileA(m_source.c_str(), m_target.c_str(), TRUE));
  EXPECT_EQ(Contents(m_target), m_text);
  EXPECT_EQ(fs::status(m_target).permissions(), fs::perms::owner_read);
}

TEST_F(CopyTest, ReplacesOnlyIfAllowed) {
  std::ofstream(m_target) << "old";
  EXPECT_FALSE(CopyFileA(m_source.c_str(), m_target.c_str(), TRUE));
  EXPECT_EQ(Contents(m_target), "old");
  EXPECT_TRUE(CopyFileA(m_source.c_str(), m_target.c_str(), FALSE));
  EXPECT_EQ(Contents(m_target), m_text);
}

TEST_F(CopyTest, RefusesWithoutTraces) {
  EXPECT_FALSE(CopyFileA(m_source.c_str(), m_source.c_str(), FALSE));
  EXPECT_EQ(Contents(m_source), m_text);
  EXPECT_FALSE(CopyFileA((m_folder / "none").c_str(), m_target.c_str(), FALSE));
  EXPECT_FALSE(CopyFileA(m_folder.c_str(), m_target.c_str(), FALSE));
  EXPECT_FALSE(CopyFileA(m_source.c_str(), (m_folder / "no" / "where").c_str(), FALSE));
  EXPECT_FALSE(CopyFileA(nullptr, m_target.c_str(), FALSE));
  EXPECT_EQ(Files(), 1U);
}

TEST_F(CopyTest, WhatTheTargetIsStays) {
  const std::string longest = (m_folder / std::string(255, 'n')).string();
  EXPECT_TRUE(CopyFileA(m_source.c_str(), longest.c_str(), FALSE));
  EXPECT_TRUE(CopyFileA(m_source.c_str(), longest.c_str(), FALSE)) << "onto it";
  EXPECT_EQ(Contents(longest), m_text);
  std::ofstream(m_target) << "old";
  fs::permissions(m_target, fs::perms(0604));
  const std::string link = (m_folder / "link").string();
  fs::create_symlink("target", link);
  EXPECT_TRUE(CopyFileA(m_source.c_str(), link.c_str(), FALSE));
  EXPECT_TRUE(fs::is_symlink(link));
  EXPECT_EQ(Contents(m_target), m_text);
  EXPECT_EQ(fs::status(m_target).permissions(), fs::perms(0604));
  EXPECT_EQ(Files(), 4U);
}

// Opening a pipe for reading would wait for a writer.
TEST_F(CopyTest, APipeIsNoFile) {
  ASSERT_EQ(::mkfifo(m_target.c_str(), 0600), 0);
  EXPECT_FALSE(CopyFileA(m_source.c_str(), m_target.c_str(), FALSE));
  EXPECT_FALSE(CopyFileA(m_target.c_str(), (m_folder / "copy").c_str(), FALSE));
  EXPECT_EQ(Files(), 2U);
}

// A file whose writer was killed has no lock any more.
TEST_F(CopyTest, LeftOversGoAndFilesAtWorkStay) {
  const std::string left = (m_folder / ".tessarel12-1.part").string();
  const std::string atWork = (m_folder / ".tessarel12-2.part").string();
  std::ofstream(left) << "left";
  std::ofstream(atWork) << "at work";
  const int other = ::open(atWork.c_str(), O_RDWR | O_CLOEXEC);
  ASSERT_EQ(::flock(other, LOCK_EX), 0);
  std::ofstream(m_target) << "old";
  EXPECT_TRUE(CopyFileA(m_source.c_str(), m_target.c_str(), FALSE));
  EXPECT_FALSE(fs::exists(left));
  EXPECT_EQ(Contents(atWork), "at work");
  EXPECT_EQ(Files(), 3U);
  ::close(other);
}

}  // namespace
