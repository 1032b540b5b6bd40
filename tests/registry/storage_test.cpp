#include <sys/wait.h>

#include <chrono>
#include <thread>

#include "tests/registry/registry_fixture.h"

namespace {

namespace fs = std::filesystem;

constexpr int kValues = 200;

// Runs in a process of its own; 0 if all went well.
int WriteMany(const char* prefix) {
  HKEY key = nullptr;
  if (RegCreateKeyExA(HKEY_CURRENT_USER, "software\\many", 0, nullptr, 0, KEY_READ | KEY_WRITE, nullptr, &key,
                      nullptr) != ERROR_SUCCESS)
    return 1;
  for (DWORD i = 0; i < kValues; ++i) {
    const std::string name = prefix + std::to_string(i);
    if (RegSetValueExA(key, name.c_str(), 0, REG_DWORD, reinterpret_cast<const BYTE*>(&i), sizeof i) !=
        ERROR_SUCCESS)
      return 2;
  }
  return 0;
}

TEST_F(RegistryTest, TwoProcessesLoseNothing) {
  const char* const prefixes[] = {"first", "second"};
  pid_t children[2] = {};
  for (int i = 0; i < 2; ++i) {
    children[i] = ::fork();
    if (children[i] == 0) ::_exit(WriteMany(prefixes[i]));
  }
  for (const pid_t child : children) {
    int status = -1;
    ASSERT_EQ(::waitpid(child, &status, 0), child);
    EXPECT_TRUE(WIFEXITED(status) && WEXITSTATUS(status) == 0) << status;
  }
  const HKEY key = Open(HKEY_CURRENT_USER, "software\\many", KEY_READ);
  for (const char* prefix : prefixes)
    for (DWORD i = 0; i < kValues; ++i) {
      DWORD number = kValues;
      ASSERT_EQ(GetNumber(key, (prefix + std::to_string(i)).c_str(), number), ERROR_SUCCESS) << prefix << i;
      ASSERT_EQ(number, i);
    }
}

TEST_F(RegistryTest, AnotherProcessChangeIsSeen) {
  const HKEY key = Create(HKEY_CURRENT_USER, "software\\seen");
  ASSERT_EQ(SetNumber(key, "n", 1), ERROR_SUCCESS);
  DWORD number = 0;
  ASSERT_EQ(GetNumber(key, "n", number), ERROR_SUCCESS);  // now it is cached
  const pid_t child = ::fork();
  if (child == 0) ::_exit(SetNumber(key, "n", 2) == ERROR_SUCCESS ? 0 : 1);
  int status = -1;
  ASSERT_EQ(::waitpid(child, &status, 0), child);
  ASSERT_EQ(status, 0);
  EXPECT_EQ(GetNumber(key, "n", number), ERROR_SUCCESS);
  EXPECT_EQ(number, 2U);
}

TEST_F(RegistryTest, StorageBelowAFileCannotBeWritten) {
  const fs::path file = m_folder / "file";
  std::ofstream(file) << "in the way";
  Use(file / "below");
  HKEY key = nullptr;
  EXPECT_EQ(RegOpenKeyExA(HKEY_CURRENT_USER, "software", 0, KEY_READ | KEY_WRITE, &key), ERROR_ACCESS_DENIED);
  EXPECT_EQ(RegOpenKeyExA(HKEY_CURRENT_USER, "software", 0, KEY_READ, &key), ERROR_FILE_NOT_FOUND);
  EXPECT_EQ(RegCreateKeyExA(HKEY_CURRENT_USER, "x", 0, nullptr, 0, KEY_READ, nullptr, &key, nullptr),
            ERROR_ACCESS_DENIED);
  EXPECT_EQ(key, nullptr);
}

TEST_F(RegistryTest, ReadOnlyFileCanBeReadOnly) {
  const HKEY key = Create(HKEY_CURRENT_USER, "software\\kept");
  ASSERT_EQ(SetNumber(key, "n", 5), ERROR_SUCCESS);
  fs::permissions(Store(), fs::perms::owner_read);
  if (::access(Store().c_str(), W_OK) == 0) GTEST_SKIP() << "this user may write everything";
  HKEY other = nullptr;
  EXPECT_EQ(RegOpenKeyExA(HKEY_CURRENT_USER, "software\\kept", 0, KEY_READ | KEY_WRITE, &other),
            ERROR_ACCESS_DENIED);
  EXPECT_EQ(SetNumber(key, "n", 6), ERROR_ACCESS_DENIED);
  DWORD number = 0;
  EXPECT_EQ(GetNumber(Open(HKEY_CURRENT_USER, "software\\kept", KEY_READ), "n", number), ERROR_SUCCESS);
  EXPECT_EQ(number, 5U);
}

TEST_F(RegistryTest, AFolderInTheFilesPlaceIsUnreadable) {
  fs::create_directories(Store());
  HKEY key = nullptr;
  EXPECT_EQ(RegOpenKeyExA(HKEY_CURRENT_USER, "software", 0, KEY_READ, &key), ERROR_ACCESS_DENIED);
}

struct Damage {
  const char* name;
  std::string text;
  bool keepsNumber;  ///< the lines that can be understood still count
};

TEST_F(RegistryTest, DamagedFilesAreSetAside) {
  const std::string good = "Tessarel12 registry 1\n[software]\n[software\\d]\n\"n\"=dword:00000003\n";
  const Damage rows[] = {{"another kind of file",
                          "\x7f"
                          "ELF\n\n",
                          false},
                         {"binary noise", std::string(5000, '\0'), false},
                         {"a broken line", good + "\"half\"=dwo", true},
                         {"value without key", "Tessarel12 registry 1\n\"n\"=dword:00000003\n", false},
                         {"bad escape", good + "[software\\%zz]\n", true},
                         {"bad bytes", good + "\"b\"=hex(3):0,1\n", true}};
  int asideCount = 0;
  for (const Damage& row : rows) {
    SCOPED_TRACE(row.name);
    WriteStore(row.text);
    const HKEY key = Create(HKEY_CURRENT_USER, "software\\d");
    DWORD number = 0;
    EXPECT_EQ(GetNumber(key, "n", number), row.keepsNumber ? ERROR_SUCCESS : ERROR_FILE_NOT_FOUND);
    EXPECT_EQ(SetNumber(key, "new", 1), ERROR_SUCCESS);
    EXPECT_EQ(GetNumber(key, "new", number), ERROR_SUCCESS);
    const fs::path aside = Store().parent_path() / ("registry.damaged-" + std::to_string(++asideCount));
    std::ifstream file(aside, std::ios::binary);
    EXPECT_EQ(std::string(std::istreambuf_iterator<char>(file), {}), row.text);
    RegCloseKey(key);
  }
}

TEST_F(RegistryTest, HandWrittenFilesMayLeaveOutKeysAbove) {
  WriteStore("Tessarel12 registry 1\r\n# note\r\n\r\n[software\\x\\y]\r\n\"n\"=dword:10\r\n");
  DWORD number = 0;
  EXPECT_EQ(GetNumber(Open(Open(HKEY_CURRENT_USER, "software\\x"), "y"), "n", number), ERROR_SUCCESS);
  EXPECT_EQ(number, 16U);
  EXPECT_FALSE(fs::exists(Store().parent_path() / "registry.damaged-1"));
}

TEST_F(RegistryTest, NoTemporaryFilesStay) {
  const HKEY key = Create(HKEY_CURRENT_USER, "software\\tidy");
  for (DWORD i = 0; i < 5; ++i) SetNumber(key, "n", i);
  for (const auto& entry : fs::directory_iterator(Store().parent_path()))
    EXPECT_TRUE(entry.path().filename() == "registry" || entry.path().filename() == "registry.lock")
        << entry.path();
}

}  // namespace
