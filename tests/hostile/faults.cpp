#include "tests/hostile/faults.h"

#include <fcntl.h>
#include <sys/syscall.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <csignal>
#include <cstdarg>
#include <cstddef>
#include <utility>

// The real calls go straight to the system, since looking them up would allocate.
extern "C" {
void* __libc_malloc(std::size_t size);
void* __libc_calloc(std::size_t count, std::size_t size);
void* __libc_realloc(void* block, std::size_t size);
void* __libc_memalign(std::size_t alignment, std::size_t size);
}

namespace {

using faults::Calls;
using faults::Deed;

struct Plan {
  Calls calls;
  Deed deed;
  long number;
  int error;
  long counted;
  bool paused;
};
// A model that needs no memory of its own.
thread_local Plan g_plan
    __attribute__((tls_model("initial-exec"))) = {Calls::kNone, Deed::kCount, 0, 0, 0, false};

/// What is to be done with this call.
Deed Next(Calls calls) {
  if (g_plan.calls != calls || g_plan.paused) return Deed::kCount;
  const long number = ++g_plan.counted;
  const bool reached = g_plan.deed == Deed::kShort ? number >= g_plan.number : number == g_plan.number;
  return reached ? g_plan.deed : Deed::kCount;
}

/// True: the call fails with errno set. Otherwise count is how many bytes it may move.
bool Spoiled(Calls calls, std::size_t& count) {
  switch (Next(calls)) {
    case Deed::kFail:
      errno = g_plan.error;
      return true;
    case Deed::kInterrupt:
      errno = EINTR;
      return true;
    case Deed::kShort:
      count = std::min<std::size_t>(count, 1);
      return false;
    case Deed::kKill:
      if (count < 2) raise(SIGKILL);
      count /= 2;
      return false;
    default:
      return false;
  }
}

/// After half of a write.
void KillIfDue() {
  if (g_plan.calls == Calls::kChanges && g_plan.deed == Deed::kKill && g_plan.counted == g_plan.number)
    raise(SIGKILL);
}

template <typename... Arguments>
long Change(long call, Arguments... arguments) {
  std::size_t none = 0;
  return Spoiled(Calls::kChanges, none) ? -1 : syscall(call, arguments...);
}

ssize_t Move(Calls calls, long call, int file, const void* bytes, std::size_t count, off_t offset) {
  if (Spoiled(calls, count)) return -1;
  const ssize_t moved = syscall(call, file, bytes, count, offset);
  if (calls == Calls::kChanges) KillIfDue();
  return moved;
}

/// A stream isn't what is spoiled: what tests print goes there.
bool IsFile(int file) {
  return file > 2;
}

int Open(int folder, const char* path, int flags, unsigned mode) {
  const bool makes = (flags & (O_CREAT | O_TRUNC)) != 0 || (flags & O_TMPFILE) == O_TMPFILE;
  return static_cast<int>(makes ? Change(SYS_openat, folder, path, flags, mode)
                                : syscall(SYS_openat, folder, path, flags, mode));
}

}  // namespace

void faults::Arm(Calls calls, Deed deed, long number, int error) {
  g_plan = {calls, deed, number, error, 0, false};
}

long faults::Disarm() {
  g_plan.calls = Calls::kNone;
  return g_plan.counted;
}

bool faults::Pause(bool paused) {
  return std::exchange(g_plan.paused, paused);
}

// NOLINTBEGIN(readability-identifier-naming,readability-inconsistent-declaration-parameter-name)
extern "C" {

#ifndef FAULTS_LEAVE_ALLOCATIONS
static bool Refused() {
  return Next(Calls::kAllocations) == Deed::kFail;
}

void* malloc(std::size_t size) {
  return Refused() ? nullptr : __libc_malloc(size);
}
void* calloc(std::size_t count, std::size_t size) {
  return Refused() ? nullptr : __libc_calloc(count, size);
}
void* realloc(void* block, std::size_t size) {
  return Refused() ? nullptr : __libc_realloc(block, size);
}
void* aligned_alloc(std::size_t alignment, std::size_t size) {
  return Refused() ? nullptr : __libc_memalign(alignment, size);
}
int posix_memalign(void** block, std::size_t alignment, std::size_t size) {
  *block = aligned_alloc(alignment, size);
  return *block == nullptr ? ENOMEM : 0;
}
#endif

ssize_t pread(int file, void* bytes, std::size_t count, off_t offset) {
  return Move(Calls::kReads, SYS_pread64, file, bytes, count, offset);
}
ssize_t pread64(int file, void* bytes, std::size_t count, off64_t offset) {
  return pread(file, bytes, count, offset);
}
ssize_t __pread_chk(int file, void* bytes, std::size_t count, off_t offset, std::size_t /*room*/) {
  return pread(file, bytes, count, offset);
}
ssize_t __pread64_chk(int file, void* bytes, std::size_t count, off64_t offset, std::size_t /*room*/) {
  return pread(file, bytes, count, offset);
}
ssize_t read(int file, void* bytes, std::size_t count) {
  return IsFile(file) ? Move(Calls::kReads, SYS_read, file, bytes, count, 0)
                      : syscall(SYS_read, file, bytes, count);
}
ssize_t __read_chk(int file, void* bytes, std::size_t count, std::size_t /*room*/) {
  return read(file, bytes, count);
}
ssize_t write(int file, const void* bytes, std::size_t count) {
  return IsFile(file) ? Move(Calls::kChanges, SYS_write, file, bytes, count, 0)
                      : syscall(SYS_write, file, bytes, count);
}
ssize_t pwrite(int file, const void* bytes, std::size_t count, off_t offset) {
  return Move(Calls::kChanges, SYS_pwrite64, file, bytes, count, offset);
}
ssize_t pwrite64(int file, const void* bytes, std::size_t count, off64_t offset) {
  return pwrite(file, bytes, count, offset);
}

int openat(int folder, const char* path, int flags, ...) {
  va_list rest;
  va_start(rest, flags);
  const unsigned mode = va_arg(rest, unsigned);
  va_end(rest);
  return Open(folder, path, flags, mode);
}
int open(const char* path, int flags, ...) {
  va_list rest;
  va_start(rest, flags);
  const unsigned mode = va_arg(rest, unsigned);
  va_end(rest);
  return Open(AT_FDCWD, path, flags, mode);
}
int open64(const char* path, int flags, ...) {
  va_list rest;
  va_start(rest, flags);
  const unsigned mode = va_arg(rest, unsigned);
  va_end(rest);
  return Open(AT_FDCWD, path, flags, mode);
}
int __open_2(const char* path, int flags) {
  return Open(AT_FDCWD, path, flags, 0);
}
int __open64_2(const char* path, int flags) {
  return Open(AT_FDCWD, path, flags, 0);
}

int ftruncate(int file, off_t size) noexcept {
  return static_cast<int>(Change(SYS_ftruncate, file, size));
}
int ftruncate64(int file, off64_t size) noexcept {
  return ftruncate(file, size);
}
int fsync(int file) {
  return static_cast<int>(Change(SYS_fsync, file));
}
int fdatasync(int file) {
  return static_cast<int>(Change(SYS_fdatasync, file));
}
int rename(const char* from, const char* to) noexcept {
  return static_cast<int>(Change(SYS_renameat2, AT_FDCWD, from, AT_FDCWD, to, 0));
}
int renameat2(int fromFolder, const char* from, int toFolder, const char* to, unsigned flags) noexcept {
  return static_cast<int>(Change(SYS_renameat2, fromFolder, from, toFolder, to, flags));
}
int link(const char* from, const char* to) noexcept {
  return static_cast<int>(Change(SYS_linkat, AT_FDCWD, from, AT_FDCWD, to, 0));
}
int linkat(int fromFolder, const char* from, int toFolder, const char* to, int flags) noexcept {
  return static_cast<int>(Change(SYS_linkat, fromFolder, from, toFolder, to, flags));
}
int unlink(const char* path) noexcept {
  return static_cast<int>(Change(SYS_unlinkat, AT_FDCWD, path, 0));
}

}  // extern "C"
// NOLINTEND(readability-identifier-naming,readability-inconsistent-declaration-parameter-name)
