#include "tests/hostile/outcome.h"

#include <dlfcn.h>
#include <execinfo.h>
#include <sys/mman.h>
#include <sys/resource.h>
#include <sys/wait.h>
#include <unistd.h>

#include <array>
#include <csignal>
#include <cstdio>
#include <cstring>

namespace hostile {
namespace {

/// Lies in memory that the child shares with us.
struct Told {
  long counted;
  bool failed;
  char text[500];
};

void Tell(Told& told, const std::string& text) {
  told.counted = faults::Disarm();
  std::snprintf(told.text, sizeof told.text, "%s", text.c_str());
}

Told* g_told = nullptr;

/// The file whose code failed, itself or in the C library, for those that a library lets down.
void KeepPlace(int signal) {
  std::array<void*, 30> frames{};
  const int count = backtrace(frames.data(), static_cast<int>(frames.size()));
  for (int frame = 1; frame < count; ++frame) {
    Dl_info info{};
    if (dladdr(frames.at(static_cast<std::size_t>(frame)), &info) == 0 ||
        std::strstr(info.dli_fname, "/libc.so") != nullptr)
      continue;
    std::snprintf(g_told->text, sizeof g_told->text, "%s", info.dli_fname);
    break;
  }
  std::signal(signal, SIG_DFL);
  std::raise(signal);
}

[[noreturn]] void Child(const Fault& fault, long number, const Work& work, Told& told) {
  const rlimit none{0, 0};
  setrlimit(RLIMIT_CORE, &none);
  alarm(20);
  g_told = &told;
  std::array<void*, 1> frame{};
  backtrace(frame.data(), 1);  // loads what it needs now
  std::signal(SIGSEGV, &KeepPlace);
  faults::Arm(fault.calls, fault.deed, number, fault.error);
  // What a test does with the outcome takes memory too.
  faults::Pause(fault.calls == faults::Calls::kAllocations);
  try {
    const std::string result = work();
    Tell(told, result);
  } catch (const std::string& error) {
    Tell(told, error);
    told.failed = true;
  }
  _exit(0);
}

}  // namespace

Outcome RunWith(const Fault& fault, long number, const Work& work) {
  auto* told = static_cast<Told*>(
      mmap(nullptr, sizeof(Told), PROT_READ | PROT_WRITE, MAP_SHARED | MAP_ANONYMOUS, -1, 0));
  std::fflush(nullptr);
  const pid_t child = fork();
  if (child == 0) Child(fault, number, work, *told);
  int status = 0;
  waitpid(child, &status, 0);
  const Outcome outcome{WIFSIGNALED(status) ? WTERMSIG(status) : 0, told->failed, told->text, told->counted};
  munmap(told, sizeof(Told));
  return outcome;
}

void PrintFigure(const char* what, long count, const char* unit) {
  std::printf("  %-52s %6ld %s\n", what, count, unit);
}

}  // namespace hostile
