#include "helper/sandbox/lockdown.h"

#include <linux/audit.h>
#include <linux/filter.h>
#include <linux/seccomp.h>
#include <sys/mman.h>
#include <sys/prctl.h>
#include <sys/resource.h>
#include <sys/syscall.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <cstddef>
#include <cstring>
#include <iterator>
#include <vector>

#include "helper/sandbox/landlock.h"

namespace helper {
namespace {

#if defined(__x86_64__)
constexpr std::uint32_t kArchitecture = AUDIT_ARCH_X86_64;
#elif defined(__aarch64__)
constexpr std::uint32_t kArchitecture = AUDIT_ARCH_AARCH64;
#else
#error "which system calls does this processor's kernel know? See linux/audit.h"
#endif

// What computing, memory and talking over the socket need.
constexpr int kAllowed[] = {
    SYS_read,           SYS_pread64,       SYS_write,           SYS_close,     SYS_fstat,
    SYS_lseek,          SYS_munmap,        SYS_mremap,          SYS_madvise,   SYS_brk,
    SYS_futex,          SYS_getpid,        SYS_gettid,          SYS_getrandom, SYS_rt_sigreturn,
    SYS_rt_sigprocmask, SYS_clock_gettime, SYS_sendmsg,         SYS_recvmsg,   SYS_ppoll,
    SYS_exit,           SYS_exit_group,    SYS_restart_syscall,
#ifdef SYS_poll
    SYS_poll,
#endif
};
// Memory, but never executable.
constexpr int kAllowedWithoutExecution[] = {SYS_mmap, SYS_mprotect};
// Libraries try these and go on without.
constexpr int kRefused[] = {
    SYS_openat, SYS_faccessat, SYS_newfstatat, SYS_readlinkat, SYS_sysinfo, SYS_fcntl, SYS_sched_getaffinity,
#ifdef SYS_open
    SYS_open,   SYS_access,    SYS_stat,       SYS_readlink,
#endif
};
// Reading fonts; Landlock says where.
constexpr int kFonts[] = {
    SYS_openat, SYS_newfstatat, SYS_faccessat, SYS_readlinkat, SYS_getdents64,
    SYS_statfs, SYS_fstatfs,    SYS_fadvise64, SYS_sysinfo,
#ifdef SYS_open
    SYS_access, SYS_readlink,
#endif
};

/// A filter of system calls as the kernel's small machine runs it.
class Filter {
 public:
  Filter() {
    // Numbers of another architecture mean other calls.
    Load(offsetof(seccomp_data, arch));
    m_code.push_back(BPF_JUMP(BPF_JMP | BPF_JEQ | BPF_K, kArchitecture, 1, 0));
    Return(SECCOMP_RET_KILL_PROCESS);
    Load(offsetof(seccomp_data, nr));
  }
  void On(int call, std::uint32_t action) {
    m_code.push_back(BPF_JUMP(BPF_JMP | BPF_JEQ | BPF_K, static_cast<std::uint32_t>(call), 0, 1));
    Return(action);
  }
  /// Allows a call whose third argument, which says what memory may be used for, has no execution in it.
  void AllowWithoutExecution(int call) {
    m_code.push_back(BPF_JUMP(BPF_JMP | BPF_JEQ | BPF_K, static_cast<std::uint32_t>(call), 0, 4));
    Load(offsetof(seccomp_data, args) + 2 * sizeof(std::uint64_t));
    m_code.push_back(BPF_JUMP(BPF_JMP | BPF_JSET | BPF_K, PROT_EXEC, 0, 1));
    Return(SECCOMP_RET_KILL_PROCESS);
    Return(SECCOMP_RET_ALLOW);
  }
  /// Allows a call whose first argument is this value, and kills for others.
  void AllowFor(int call, std::uint32_t value) {
    m_code.push_back(BPF_JUMP(BPF_JMP | BPF_JEQ | BPF_K, static_cast<std::uint32_t>(call), 0, 4));
    Load(offsetof(seccomp_data, args));
    m_code.push_back(BPF_JUMP(BPF_JMP | BPF_JEQ | BPF_K, value, 0, 1));
    Return(SECCOMP_RET_ALLOW);
    Return(SECCOMP_RET_KILL_PROCESS);
  }
  void Return(std::uint32_t action) { m_code.push_back(BPF_STMT(BPF_RET | BPF_K, action)); }

  bool Install() {
    const sock_fprog program = {static_cast<unsigned short>(m_code.size()), m_code.data()};
    return syscall(SYS_seccomp, SECCOMP_SET_MODE_FILTER, 0, &program) == 0;
  }

 private:
  void Load(std::size_t offset) {
    m_code.push_back(BPF_STMT(BPF_LD | BPF_W | BPF_ABS, static_cast<std::uint32_t>(offset)));
  }
  std::vector<sock_filter> m_code;
};

bool FilterCalls(bool fonts) {
  Filter filter;
  for (const int call : kAllowed) filter.On(call, SECCOMP_RET_ALLOW);
  for (const int call : kAllowedWithoutExecution) filter.AllowWithoutExecution(call);
  if (fonts)
    for (const int call : kFonts) filter.On(call, SECCOMP_RET_ALLOW);
  for (const int call : kRefused) filter.On(call, SECCOMP_RET_ERRNO | EPERM);
  // A library that gives up aborts, which is a signal to itself.
  filter.AllowFor(SYS_tgkill, static_cast<std::uint32_t>(getpid()));
  filter.On(SYS_clone3, SECCOMP_RET_ERRNO | ENOSYS);
  filter.Return(SECCOMP_RET_KILL_PROCESS);
  return filter.Install();
}

void Limit(__rlimit_resource resource, rlim_t most) {
  const rlimit limit = {most, most};
  setrlimit(resource, &limit);
}

/// At most half of the machine's memory, and no time without end should the library's process be gone.
void LimitResources() {
  constexpr rlim_t kMostMemory = rlim_t{4} << 30;
  constexpr rlim_t kSeconds = 120;
  constexpr rlim_t kDescriptors = 16;
  const auto memory =
      static_cast<rlim_t>(sysconf(_SC_PHYS_PAGES)) * static_cast<rlim_t>(sysconf(_SC_PAGESIZE));
  Limit(RLIMIT_AS, std::min(kMostMemory, memory / 2));
  Limit(RLIMIT_CPU, kSeconds);
  Limit(RLIMIT_FSIZE, 0);
  Limit(RLIMIT_NPROC, 0);
  Limit(RLIMIT_CORE, 0);
  Limit(RLIMIT_NOFILE, kDescriptors);
}

}  // namespace

std::string LockDown(const char* fontFolders) {
  if (prctl(PR_SET_NO_NEW_PRIVS, 1, 0, 0, 0) != 0)
    return std::string("no_new_privs: ") + std::strerror(errno);
  prctl(PR_SET_DUMPABLE, 0, 0, 0, 0);
  const bool limited = ForgetFileSystem(fontFolders);
  LimitResources();
  // Without Landlock the filter alone would let it read every file.
  if (!FilterCalls(fontFolders != nullptr && limited)) return std::string("seccomp: ") + std::strerror(errno);
  return {};
}

}  // namespace helper
