#include <dirent.h>
#include <gtest/gtest.h>
#include <linux/filter.h>
#include <linux/seccomp.h>
#include <sys/prctl.h>
#include <sys/socket.h>
#include <sys/syscall.h>
#include <sys/wait.h>
#include <unistd.h>

#include <array>
#include <atomic>
#include <chrono>
#include <csignal>
#include <filesystem>
#include <fstream>
#include <thread>
#include <utility>

#include "helper/protocol/channel.h"
#include "imaging/core/exception.h"
#include "imaging/core/waiting.h"
#include "imaging/helper/client.h"
#include "imaging/helper/place.h"
#include "imaging/ltwrap.h"
#include "tests/helper/processes.h"
#include "tests/imaging/codec_files.h"

// What a reader may do that a file has taken over: the host gets an error in time and stays whole.
namespace codec_test {
namespace {

using imaging::helper_client::Client;
using namespace std::chrono_literals;
constexpr imaging::helper_client::TimeLimits kShort = {400ms, 400ms};

std::size_t CountEntries(const char* folder) {
  const auto entries = std::filesystem::directory_iterator(folder);
  return static_cast<std::size_t>(std::distance(begin(entries), end(entries)));
}

struct Outcome {
  int code = 0;
  std::string text;
  std::string pixels;
};

/// Counts, describes and decodes page 2 of a file with these words.
Outcome Read(const std::string& words, int page = 2) {
  const auto source = imaging::OpenBlockSource(Bytes(words.begin(), words.end()), "bad.bin");
  Client client(*source, "hostile", kShort);
  Outcome outcome;
  try {
    client.CountPages();
    const auto delivered = client.Decode(page);
    std::array<char, 64> row{};
    EXPECT_EQ(pread(delivered.memory.Get(), row.data(), row.size(), 0), std::ssize(row));
    outcome.pixels.assign(row.begin(), row.end());
    EXPECT_LT(pwrite(delivered.memory.Get(), row.data(), row.size(), 0), 0) << "the page can be changed";
    EXPECT_NE(ftruncate(delivered.memory.Get(), 0), 0);
  } catch (CLeadtoolsException* exception) {
    outcome.code = exception->m_nError;
    outcome.text = TakeText(exception);
  }
  return outcome;
}

struct Deed {
  const char* words;
  int code;
  const char* text;  ///< what the message holds
};

TEST(Hostile, EveryDeedIsAnErrorInTime) {
  using namespace imaging;
  constexpr std::array kDeeds = {
      Deed{"init fault", kErrorCorrupt, "failed on it"},
      Deed{"init loop", kErrorLimit, "too slow"},
      Deed{"init exit", kErrorInternal, "can't be started"},
      Deed{"init memory", kErrorNoMemory, "more memory than it may"},
      Deed{"describe fault", kErrorCorrupt, "page 2"},
      Deed{"describe loop", kErrorLimit, "too slow"},
      Deed{"describe sleep", kErrorCorrupt, "sandbox"},
      Deed{"describe wait", kErrorLimit, "too slow"},
      Deed{"describe write", kErrorLimit, "too slow"},
      Deed{"describe exit", kErrorInternal, "can't be started"},
      Deed{"decode fault", kErrorCorrupt, "page 2"},
      Deed{"decode abort", kErrorCorrupt, "failed on it"},
      Deed{"decode loop", kErrorLimit, "too slow"},
      Deed{"decode memory", kErrorNoMemory, "more memory than it may"},
      Deed{"decode throw", kErrorCorrupt, "failed on it"},
      Deed{"decode open", kErrorUnsupported, "Operation not permitted"},
      Deed{"decode create", kErrorUnsupported, "Operation not permitted"},
      Deed{"decode socket", kErrorCorrupt, "sandbox"},
      Deed{"decode fork", kErrorCorrupt, "sandbox"},
      Deed{"decode exec", kErrorCorrupt, "sandbox"},
      Deed{"decode code", kErrorCorrupt, "sandbox"},
      Deed{"decode kill", kErrorCorrupt, "sandbox"},
      Deed{"decode killhost", kErrorCorrupt, "sandbox"},
      Deed{"decode thread", kErrorCorrupt, "sandbox"},
      Deed{"decode link", kErrorCorrupt, "sandbox"},
      Deed{"decode memfd", kErrorCorrupt, "sandbox"},
      Deed{"decode unlock", kErrorCorrupt, "sandbox"},
      Deed{"decode early", kErrorCorrupt, "failed on it"},
      Deed{"decode trace", kErrorCorrupt, "sandbox"},
      Deed{"decode exit", kErrorInternal, "can't be started"},
      Deed{"decode close", kErrorCorrupt, "failed on it"},
      Deed{"decode nonsense", kErrorCorrupt, "failed on it"},
      Deed{"x pages", kErrorCorrupt, "failed on it"},
      Deed{"x many", kErrorCorrupt, "failed on it"},
      Deed{"x wide", kErrorLimit, "too large"},
      Deed{"x bomb", kErrorLimit, "too large"},
      Deed{"x flat", kErrorLimit, "too large"},
      Deed{"x deep", kErrorCorrupt, "failed on it"},
      Deed{"x depth", kErrorCorrupt, "failed on it"},
      Deed{"x format", kErrorCorrupt, "failed on it"},
      Deed{"x turn", kErrorCorrupt, "failed on it"},
      Deed{"x delivery", kErrorCorrupt, "failed on it"},
      Deed{"x colors", kErrorCorrupt, "failed on it"},
      Deed{"x rows", kErrorCorrupt, "failed on it"},
      Deed{"x damage", kErrorCorrupt, "failed on it"},
      Deed{"x much", kErrorCorrupt, "failed on it"},
      Deed{"x less", kErrorCorrupt, "failed on it"},
      Deed{"x after", kErrorCorrupt, "failed on it"},
  };
  const std::size_t descriptors = CountEntries("/proc/self/fd");
  for (const Deed& deed : kDeeds) {
    SCOPED_TRACE(deed.words);
    const auto start = std::chrono::steady_clock::now();
    const Outcome outcome = Read(deed.words);
    EXPECT_LT(std::chrono::steady_clock::now() - start, 30s);
    EXPECT_EQ(outcome.code, deed.code);
    EXPECT_NE(outcome.text.find(deed.text), std::string::npos) << outcome.text;
    EXPECT_NE(outcome.text.find("bad.bin"), std::string::npos) << outcome.text;
    EXPECT_EQ(Children(), "");
    EXPECT_EQ(CountEntries("/proc/self/fd"), descriptors);
    EXPECT_FALSE(std::filesystem::exists("/tmp/tessarel-hostile"));
    EXPECT_EQ(Read("x good").pixels, std::string(64, 102)) << "the host is harmed";
  }
}

TEST(Hostile, WhatCrashedOnceIsNotTriedAgain) {
  const TempFolder folder;
  const std::string path = folder.Path("crash.bin");
  const std::string words = "decode loop";
  WriteAll(path, Bytes(words.begin(), words.end()));
  usleep(150'000);  // a younger file may still change under its identity
  for (const bool again : {false, true}) {
    const auto source = imaging::OpenFileSource(path.c_str());
    Client client(*source, "hostile", kShort);
    const auto start = std::chrono::steady_clock::now();
    try {
      client.Decode(2);
      ADD_FAILURE();
    } catch (CLeadtoolsException* exception) {
      EXPECT_NE(TakeText(exception).find("too slow"), std::string::npos);
    }
    EXPECT_EQ(std::chrono::steady_clock::now() - start < 300ms, again);
    EXPECT_EQ(client.Decode(1).rows, 10) << "the other pages can be read";
  }
}

TEST(Hostile, OneProcessReadsAllPagesOfAFile) {
  const TempFolder folder;
  const std::string words = "x good";
  std::string first;
  for (const char* name : {"a.bin", "b.bin"}) {
    WriteAll(folder.Path(name), Bytes(words.begin(), words.end()));
    usleep(150'000);
    std::string process;
    for (int page = 1; page <= 3; ++page) {
      const auto source = imaging::OpenFileSource(folder.Path(name).c_str());
      Client client(*source, "hostile", kShort);
      EXPECT_EQ(client.Decode(page).rows, 10);
      if (page == 1) process = Children();
      EXPECT_EQ(Children(), process);
    }
    EXPECT_NE(process, first) << "two files share a process";
    first = process;
  }
  // One that went while nobody asked is replaced.
  const auto source = imaging::OpenFileSource(folder.Path("b.bin").c_str());
  Client client(*source, "hostile", kShort);
  const auto helper = client.CountPages() == 3 ? client.ProcessId() : 0;
  ASSERT_GT(helper, 0);
  kill(helper, SIGTERM);
  siginfo_t info{};
  waitid(P_PID, static_cast<id_t>(helper), &info, WEXITED | WNOWAIT);
  EXPECT_EQ(client.Decode(3).rows, 10);
  EXPECT_NE(client.ProcessId(), helper);
}

/// Asked while the helper works: looks at the same file, and has had enough after a while.
struct Impatient {
  std::chrono::steady_clock::time_point start = std::chrono::steady_clock::now();
  std::string path;
  bool hasLooked = false;
  static int GoOn(void* data) {
    auto& self = *static_cast<Impatient*>(data);
    if (!self.path.empty() && !std::exchange(self.hasLooked, true)) {
      const auto source = imaging::OpenFileSource(self.path.c_str());
      EXPECT_EQ(Client(*source, "hostile", kShort).Decode(1).rows, 10) << "took the other's answer";
    }
    return std::chrono::steady_clock::now() - self.start < 200ms ? 1 : 0;
  }
};

template <typename Work>
void ExpectUserAbort(const Work& work) {
  const auto start = std::chrono::steady_clock::now();
  try {
    work();
    ADD_FAILURE();
  } catch (CLeadtoolsException* exception) {
    EXPECT_EQ(exception->m_nError, imaging::kErrorUserAbort);
    exception->Delete();
  }
  EXPECT_LT(std::chrono::steady_clock::now() - start, 5s);
}

TEST(Hostile, TheUserEndsTheProcess) {
  const std::string before = Children();
  const std::size_t descriptors = CountEntries("/proc/self/fd");
  for (const std::string words : {"init loop", "describe loop", "decode loop"}) {
    SCOPED_TRACE(words);
    const auto source = imaging::OpenBlockSource(Bytes(words.begin(), words.end()), "slow.bin");
    Client client(*source, "hostile");
    Impatient user;
    const leadtools12::Waiting waiting(&Impatient::GoOn, &user);
    ExpectUserAbort([&] { client.Decode(2); });
    EXPECT_EQ(Children(), before);
    EXPECT_EQ(CountEntries("/proc/self/fd"), descriptors);
  }
}

TEST(Hostile, WhoIsAskedMayReadTheSameFile) {
  const TempFolder folder;
  Impatient user;
  user.path = folder.Path("slow.bin");
  const std::string words = "describe loop";
  WriteAll(user.path, Bytes(words.begin(), words.end()));
  usleep(150'000);  // a younger file shares no process
  const auto source = imaging::OpenFileSource(user.path.c_str());
  user.start = std::chrono::steady_clock::now();
  const leadtools12::Waiting waiting(&Impatient::GoOn, &user);
  ExpectUserAbort([&] { Client(*source, "hostile").Decode(2); });
  EXPECT_TRUE(user.hasLooked);
}

/// Stops the next helper that this process starts, as soon as it is one: before that the start waits for it.
class Stopper {
 public:
  explicit Stopper(const std::string& before)
      : m_thread([this, before] {
          while (!m_done)
            if (const std::string now = Children(); now.size() > before.size())
              Stop(now.substr(before.size()));
        }) {}
  ~Stopper() {
    m_done = true;
    m_thread.join();
  }
  Stopper(const Stopper&) = delete;
  Stopper& operator=(const Stopper&) = delete;

 private:
  static void Stop(const std::string& process) {
    std::string name;
    std::getline(std::ifstream("/proc/" + std::to_string(std::stoi(process)) + "/comm"), name);
    if (name == "image-helper") kill(std::stoi(process), SIGSTOP);
  }
  std::atomic<bool> m_done = false;
  std::thread m_thread;
};

TEST(Hostile, ALoadIsEndedBeforeThePageIsDescribed) {
  if (!imaging::helper_client::HasModule("webp")) GTEST_SKIP() << "no module";
  const std::string before = Children();
  const std::size_t descriptors = CountEntries("/proc/self/fd");
  std::string file = "RIFF____WEBPVP8 ____";
  struct_LEAD_Bitmap record{};
  record.Width = 77;
  struct_file_information info{};
  static int asked;
  asked = 0;
  const auto end = [](struct_file_information* told, struct_LEAD_Bitmap* page, BYTE* row, UINT, int,
                      int lines, void*) {
    EXPECT_EQ(told->Height + page->Height + lines, 0);
    EXPECT_EQ(*row, 0xff);
    ++asked;
    return 0;
  };
  // One that got away from the stopper tells that the file is none.
  for (int i = 0; i < 100 && asked == 0; ++i) {
    const Stopper stopper(before);
    try {
      LEADTOOLS::LoadMemory(file.data(), &record, 0, 0, 3, end, nullptr, std::ssize(file), nullptr, &info);
      ADD_FAILURE();
    } catch (CLeadtoolsException* exception) {
      EXPECT_EQ(exception->m_nError, asked == 0 ? imaging::kErrorCorrupt : imaging::kErrorUserAbort);
      exception->Delete();
    }
  }
  EXPECT_EQ(asked, 1);
  EXPECT_EQ(record.Width, 77);
  EXPECT_EQ(info.Height, 0);
  EXPECT_EQ(Children(), before);
  EXPECT_EQ(CountEntries("/proc/self/fd"), descriptors);
}

/// A process of the library that reads the words and is killed meanwhile; gives the helper's number.
pid_t KillHostOf(const std::string& words) {
  std::array<int, 2> ends{};
  EXPECT_EQ(pipe(ends.data()), 0);
  const pid_t host = fork();
  if (host == 0) {
    const auto source = imaging::OpenBlockSource(Bytes(words.begin(), words.end()), "bad.bin");
    Client client(*source, "hostile");
    const imaging::WaitScope waiting([&] {
      const pid_t helper = client.ProcessId();
      return write(ends[1], &helper, sizeof helper) < 0;
    });
    client.Decode(2);
    _exit(0);
  }
  pid_t helper = 0;
  // Asked while the process starts it isn't the client's yet.
  while (helper == 0 && read(ends[0], &helper, sizeof helper) == sizeof helper) {
  }
  kill(host, SIGKILL);
  waitpid(host, nullptr, 0);
  for (const int end : ends) close(end);
  return helper;
}

TEST(Hostile, NothingOutlivesTheHost) {
  prctl(PR_SET_CHILD_SUBREAPER, 1, 0, 0, 0);
  for (const char* words : {"decode loop", "describe wait"}) {
    const pid_t helper = KillHostOf(words);
    ASSERT_GT(helper, 0);
    const auto start = std::chrono::steady_clock::now();
    while (waitpid(helper, nullptr, WNOHANG) == 0 && std::chrono::steady_clock::now() - start < 5s)
      usleep(10'000);
    EXPECT_NE(kill(helper, 0), 0) << words;
  }
  prctl(PR_SET_CHILD_SUBREAPER, 0, 0, 0, 0);
}

/// From here on the process can't filter its calls, as on a kernel that can't.
void ForbidFilters() {
  std::array code = {
      sock_filter BPF_STMT(BPF_LD | BPF_W | BPF_ABS, offsetof(seccomp_data, nr)),
      sock_filter BPF_JUMP(BPF_JMP | BPF_JEQ | BPF_K, SYS_seccomp, 0, 1),
      sock_filter BPF_STMT(BPF_RET | BPF_K, SECCOMP_RET_ERRNO | ENOSYS),
      sock_filter BPF_STMT(BPF_RET | BPF_K, SECCOMP_RET_ALLOW),
  };
  const sock_fprog program = {code.size(), code.data()};
  prctl(PR_SET_NO_NEW_PRIVS, 1, 0, 0, 0);
  prctl(PR_SET_SECCOMP, SECCOMP_MODE_FILTER, &program);
}

TEST(Hostile, WithoutAFilterTheHelperRefusesToStart) {
  std::array<int, 2> ends{};
  ASSERT_EQ(socketpair(AF_UNIX, SOCK_SEQPACKET, 0, ends.data()), 0);
  const std::string program = imaging::helper_client::ProgramPath();
  const pid_t child = fork();
  if (child == 0) {
    dup2(ends[1], helper::kSocket);
    ForbidFilters();
    execl(program.c_str(), program.c_str(), "hostile", nullptr);
    _exit(9);
  }
  close(ends[1]);
  helper::Reply reply;
  helper::Descriptor none;
  ASSERT_TRUE(helper::Receive(ends[0], reply, none));
  EXPECT_EQ(reply.status, helper::Status::kNoSandbox);
  EXPECT_STREQ(reply.text.data(), "the sandbox can't be set up: seccomp: Function not implemented");
  int status = 0;
  waitpid(child, &status, 0);
  EXPECT_EQ(WEXITSTATUS(status), 3);
  close(ends[0]);
}

}  // namespace
}  // namespace codec_test
