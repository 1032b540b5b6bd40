#include "platform/base/kernel.h"

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>
#include <chrono>
#include <cstdint>
#include <cstdlib>
#include <limits>
#include <string>
#include <vector>

#include "platform/base/detail/file_descriptor.h"

using platform::FileDescriptor;

namespace {

constexpr std::size_t kCopyStep = std::size_t{1} << 18;
constexpr mode_t kPermissions = 0777;

bool CopyContents(int from, int to) {
  std::vector<char> buffer(kCopyStep);
  for (;;) {
    const ssize_t got = ::read(from, buffer.data(), buffer.size());
    if (got < 0 && errno == EINTR) continue;
    if (got <= 0) return got == 0;
    if (!platform::WriteAll(to, buffer.data(), static_cast<std::size_t>(got))) return false;
  }
}

bool SameFile(const struct stat& a, const struct stat& b) {
  return a.st_dev == b.st_dev && a.st_ino == b.st_ino;
}

// Gives the finished copy its name. A hard link refuses an existing name, a rename replaces it.
bool PutInPlace(const std::string& temporary, const char* target, bool failIfExists) {
  if (!failIfExists) return ::rename(temporary.c_str(), target) == 0;
  if (::link(temporary.c_str(), target) == 0) {
    ::unlink(temporary.c_str());
    return true;
  }
  // File systems without hard links: a look just before has to do.
  struct stat other = {};
  return errno != EEXIST && ::lstat(target, &other) != 0 && ::rename(temporary.c_str(), target) == 0;
}

}  // namespace

DWORD GetVersion() {
  return 5 | 1 << 8;
}

int MulDiv(int number, int numerator, int denominator) {
  if (denominator == 0) return -1;
  const std::int64_t product = std::int64_t{number} * numerator;
  const std::int64_t size = std::abs(std::int64_t{denominator});
  const std::int64_t magnitude = (std::abs(product) + size / 2) / size;
  const std::int64_t result = (product < 0) != (denominator < 0) ? -magnitude : magnitude;
  return result < std::numeric_limits<int>::min() || result > std::numeric_limits<int>::max()
             ? -1
             : static_cast<int>(result);
}

BOOL CopyFileA(LPCSTR existing, LPCSTR target, BOOL failIfExists) {
  if (existing == nullptr || target == nullptr) return FALSE;
  const FileDescriptor from(::open(existing, O_RDONLY | O_CLOEXEC));
  struct stat source = {};
  if (!from.IsOpen() || ::fstat(from.Get(), &source) != 0 || !S_ISREG(source.st_mode)) return FALSE;
  struct stat other = {};
  if (::stat(target, &other) == 0 && (failIfExists || SameFile(source, other) || !S_ISREG(other.st_mode)))
    return FALSE;
  std::string temporary = std::string(target) + ".XXXXXX";
  FileDescriptor to(::mkostemp(temporary.data(), O_CLOEXEC));
  if (!to.IsOpen()) return FALSE;
  const bool copied = CopyContents(from.Get(), to.Get()) &&
                      ::fchmod(to.Get(), source.st_mode & kPermissions) == 0 && to.Close();
  if (copied && PutInPlace(temporary, target, failIfExists != FALSE)) return TRUE;
  ::unlink(temporary.c_str());
  return FALSE;
}
