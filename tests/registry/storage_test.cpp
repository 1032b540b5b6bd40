#include <sys/resource.h>
#include <sys/wait.h>

#include <QLockFile>
#include <chrono>
#include <csignal>
#include <cstring>
#include <memory>
#include <thread>
#include <vector>

#include "tests/registry/registry_fixture.h"

namespace {

namespace fs = std::filesystem;

// Runs in a process of its own; 0 if all went well.
int WriteMany(const std::string& prefix, DWORD values) {
  HKEY key = nullptr;
  if (RegCreateKeyExA(HKEY_CURRENT_USER, "software\\many", 0, nullptr, 0, KEY_READ | KEY_WRITE, nullptr, &key,
                      nullptr) != ERROR_SUCCESS)
    return 1;
  for (DWORD i = 0; i < values; ++i) {
    const std::string name = prefix + std::to_string(i);
    if (RegSetValueExA(key, name.c_str(), 0, REG_DWORD, reinterpret_cast<const BYTE*>(&i), sizeof i) !=
        ERROR_SUCCESS)
      return 2;
  }
  return 0;
}

TEST_F(RegistryTest, WritersLoseNothing) {
  for (const auto& [writers, values] : {std::pair{2, 200U}, {8, 40U}}) {
    std::vector<pid_t> children;
    for (int i = 0; i < writers; ++i) {
      const pid_t child = ::fork();
      if (child == 0) ::_exit(WriteMany(std::to_string(writers) + "-" + std::to_string(i) + "-", values));
      children.push_back(child);
    }
    for (const pid_t child : children) {
      int status = -1;
      ASSERT_EQ(::waitpid(child, &status, 0), child);
      EXPECT_TRUE(WIFEXITED(status) && WEXITSTATUS(status) == 0) << status;
    }
    const HKEY key = Open(HKEY_CURRENT_USER, "software\\many", KEY_READ);
    for (int writer = 0; writer < writers; ++writer)
      for (DWORD i = 0; i < values; ++i) {
        DWORD number = values;
        const std::string name =
            std::to_string(writers) + "-" + std::to_string(writer) + "-" + std::to_string(i);
        ASSERT_EQ(GetNumber(key, name.c_str(), number), ERROR_SUCCESS) << name;
        ASSERT_EQ(number, i);
      }
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
  const std::string good = "[software]\nd\\n=3\n";
  std::string deep = good;
  for (int i = 0; i < 30000; ++i) deep += "a\\";
  const Damage rows[] = {
      {"another kind of file",
       "\x7f"
       "ELF\n\n",
       false},
      {"binary noise", std::string(5000, '\0'), false},
      {"a picture",
       std::string("\x89PNG\r\n\x1a\n\0\0\0\rIHDR\0\0\0\1=\\\"\0\n[\0]\n%\xff=1\n[]\n=2\n", 40) + good, true},
      {"no names", "[]\n=2\nx\\\\y=1\n" + good, true},
      {"a broken line", good + "half", true},
      {"no number", good + "d\\half=10x\n", true},
      {"an open bracket", good + "[software\n", true},
      {"bad bytes", good + "d\\b=3:0,1\n", true},
      {"absurd depth", deep + "=1\n", true},
      {"absurd size", good + std::string(2 << 20, ';'), false}};
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
    // What is written now is whole.
    EXPECT_EQ(SetNumber(key, "new", 2), ERROR_SUCCESS);
    EXPECT_FALSE(
        fs::exists(aside.string().substr(0, aside.string().size() - 1) + std::to_string(asideCount + 1)));
    RegCloseKey(key);
  }
}

TEST_F(RegistryTest, AUserMayWriteIt) {
  const char* const texts[] = {"[software]\nu\\n=3\n",
                               "\xEF\xBB\xBF; mine\r\n# too\r\n [ Software ] \r\n\r\n U\\N = \"3\" ; why\r\n",
                               "[x]\nn=1\n[SOFTWARE\\u]\nn=2\nn=3", "[General]\nsoftware\\u\\n=3\n",
                               "[software]\n%75\\n=4:03000000\n"};
  for (const char* text : texts) {
    SCOPED_TRACE(text);
    WriteStore(text);
    DWORD number = 0;
    EXPECT_EQ(GetNumber(Open(HKEY_CURRENT_USER, "software\\u"), "n", number), ERROR_SUCCESS);
    EXPECT_EQ(number, 3U);
    EXPECT_EQ(SetNumber(Create(HKEY_CURRENT_USER, "x"), "n", 1), ERROR_SUCCESS);
    EXPECT_FALSE(fs::exists(Store().parent_path() / "registry.damaged-1"));
  }
}

TEST_F(RegistryTest, TheFormerFormatIsTakenIn) {
  WriteStore("Tessarel12 registry 1\n\n[software]\n\n[software\\x\\Some y]\n\"n\"=dword:00000010\n");
  DWORD number = 0;
  const HKEY key = Open(Open(HKEY_CURRENT_USER, "software\\x"), "Some y");
  EXPECT_EQ(GetNumber(key, "n", number), ERROR_SUCCESS);
  EXPECT_EQ(number, 16U);
  EXPECT_EQ(SetNumber(key, "m", 1), ERROR_SUCCESS);
  EXPECT_EQ(StoreText(), "[software]\nx\\Some%20y\\m=1\nx\\Some%20y\\n=16\n");
  EXPECT_FALSE(fs::exists(Store().parent_path() / "registry.damaged-1"));
}

TEST_F(RegistryTest, ASymbolicLinkStays) {
  const fs::path elsewhere = m_folder / "dotfiles";
  fs::create_directories(Store().parent_path());
  fs::create_symlink(elsewhere, Store());
  for (DWORD i = 0; i < 2; ++i)  // the file it leads to is made, then changed
    EXPECT_EQ(SetNumber(Create(HKEY_CURRENT_USER, "software\\linked"), "n", i), ERROR_SUCCESS);
  EXPECT_TRUE(fs::is_symlink(Store()));
  EXPECT_NE(StoreText().find("linked\\n=1"), std::string::npos) << StoreText();
}

// Another process that hangs while it saves. It lives until the object goes.
class HungSaver {
 public:
  explicit HungSaver(const fs::path& lock) {
    m_process = ::fork();
    if (m_process == 0) {
      QLockFile held(QString::fromStdString(lock.string()));
      if (held.tryLock(0)) ::pause();
      ::_exit(1);
    }
    while (!fs::exists(lock)) std::this_thread::yield();
  }
  HungSaver(const HungSaver&) = delete;
  HungSaver& operator=(const HungSaver&) = delete;
  ~HungSaver() {
    ::kill(m_process, SIGKILL);
    ::waitpid(m_process, nullptr, 0);
  }

 private:
  pid_t m_process;
};

TEST_F(RegistryTest, AHungProcessHoldsNobodyUp) {
  const HKEY key = Create(HKEY_CURRENT_USER, "software\\held");
  ASSERT_EQ(SetNumber(key, "n", 1), ERROR_SUCCESS);
  {
    const HungSaver saver(Store().parent_path() / "registry.guard");
    const auto begin = std::chrono::steady_clock::now();
    DWORD number = 0;
    EXPECT_EQ(GetNumber(key, "n", number), ERROR_SUCCESS);
    const auto read = std::chrono::steady_clock::now();
    EXPECT_EQ(SetNumber(key, "n", 2), ERROR_SUCCESS);
    const auto written = std::chrono::steady_clock::now();
    EXPECT_LT(read - begin, std::chrono::milliseconds(100));
    EXPECT_LT(written - read, std::chrono::milliseconds(500));
    EXPECT_EQ(GetNumber(key, "n", number), ERROR_SUCCESS);
    EXPECT_EQ(number, 2U);
    EXPECT_NE(StoreText().find("held\\n=1"), std::string::npos) << StoreText();
  }
  // The lock of a dead process counts for nothing; with the next change all is saved.
  EXPECT_EQ(SetNumber(key, "m", 3), ERROR_SUCCESS);
  EXPECT_NE(StoreText().find("held\\n=2"), std::string::npos) << StoreText();
}

TEST_F(RegistryTest, WhatWasHeldUpIsSavedAtTheEnd) {
  const HKEY key = Create(HKEY_CURRENT_USER, "software\\late");
  auto saver = std::make_unique<HungSaver>(Store().parent_path() / "registry.guard");
  const pid_t child = ::fork();
  if (child == 0) {
    const bool put = SetNumber(key, "n", 7) == ERROR_SUCCESS;
    std::this_thread::sleep_for(std::chrono::milliseconds(300));
    std::exit(put ? 0 : 1);
  }
  std::this_thread::sleep_for(std::chrono::milliseconds(300));
  EXPECT_EQ(StoreText().find("late\\n"), std::string::npos);
  saver.reset();
  int status = -1;
  ASSERT_EQ(::waitpid(child, &status, 0), child);
  EXPECT_EQ(status, 0);
  EXPECT_NE(StoreText().find("late\\n=7"), std::string::npos) << StoreText();
}

TEST_F(RegistryTest, ThreadsShareIt) {
  std::vector<std::thread> threads;
  threads.reserve(4);
  for (int thread = 0; thread < 4; ++thread)
    threads.emplace_back([thread] {
      for (int i = 0; i < 20; ++i) {
        const HKEY key = Create(HKEY_CURRENT_USER, "software\\threads");
        const std::string name = std::to_string(thread) + "-" + std::to_string(i);
        DWORD number = 0;
        EXPECT_EQ(SetNumber(key, name.c_str(), static_cast<DWORD>(i)), ERROR_SUCCESS);
        EXPECT_EQ(GetNumber(key, name.c_str(), number), ERROR_SUCCESS);
        EXPECT_EQ(number, static_cast<DWORD>(i));
        EXPECT_EQ(RegCloseKey(key), ERROR_SUCCESS);
      }
    });
  for (std::thread& thread : threads) thread.join();
}

TEST_F(RegistryTest, NoTemporaryFilesStay) {
  const HKEY key = Create(HKEY_CURRENT_USER, "software\\tidy");
  fs::create_directories(m_folder / "dotfiles");
  fs::rename(Store(), m_folder / "dotfiles" / "settings");
  fs::create_symlink(m_folder / "dotfiles" / "settings", Store());
  const fs::path left = m_folder / "dotfiles" / ".tessarel12-0.part";
  const fs::path users = m_folder / "dotfiles" / "settings.backup";
  std::ofstream(left) << "a process was killed";
  std::ofstream(users) << "a copy";
  for (DWORD i = 0; i < 5; ++i) SetNumber(key, "n", i);
  EXPECT_FALSE(fs::exists(left));
  EXPECT_TRUE(fs::exists(users));
  EXPECT_EQ(std::distance(fs::directory_iterator(users.parent_path()), {}), 2);
  EXPECT_EQ(std::distance(fs::directory_iterator(Store().parent_path()), {}), 1);
}

// Wherever the file would end, the signal of the limit doesn't.
TEST_F(RegistryTest, ALimitOnFilesEndsNoProcess) {
  const HKEY key = Create(HKEY_CURRENT_USER, "software\\full");
  ASSERT_EQ(SetNumber(key, "n", 1), ERROR_SUCCESS);
  const std::string before = StoreText();
  const pid_t child = ::fork();
  if (child == 0) {
    const rlimit limit{8, 8};
    ::setrlimit(RLIMIT_FSIZE, &limit);
    ::_exit(SetNumber(key, "n", 2) == ERROR_SUCCESS ? 1 : 0);
  }
  int status = -1;
  ASSERT_EQ(::waitpid(child, &status, 0), child);
  EXPECT_EQ(status, 0) << (WIFSIGNALED(status) ? ::strsignal(WTERMSIG(status)) : "no failure was told");
  EXPECT_EQ(StoreText(), before);
}

}  // namespace
