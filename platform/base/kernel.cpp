#include "platform/base/kernel.h"

#include <fcntl.h>
#include <sys/stat.h>
#include <cerrno>
#include <cstdint>
#include <cstdlib>
#include <limits>
#include <span>
#include <vector>

#include "platform/base/aside.h"
#include "platform/base/output_file.h"

using platform::NewFile;
using platform::OutputFile;

namespace {

constexpr std::size_t kCopyStep = std::size_t{1} << 18;

int CopyContents(OutputFile& from, OutputFile& to) {
  std::vector<std::uint8_t> buffer(kCopyStep);
  for (std::int64_t offset = 0;;) {
    if (platform::IsWorkStopped()) return ECANCELED;
    const std::size_t got = from.ReadAt(offset, buffer);
    if (got == 0 || !to.WriteAt(offset, std::span(buffer).first(got)))
      return from.Error() != 0 ? from.Error() : to.Error();
    offset += static_cast<std::int64_t>(got);
  }
}

bool SameFile(const struct stat& a, const struct stat& b) {
  return a.st_dev == b.st_dev && a.st_ino == b.st_ino;
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
  // Opening a pipe would wait for somebody who writes.
  OutputFile from(::open(existing, O_RDONLY | O_CLOEXEC | O_NONBLOCK));
  struct stat source = {};
  if (from.Descriptor() < 0 || ::fstat(from.Descriptor(), &source) != 0 || !S_ISREG(source.st_mode))
    return FALSE;
  struct stat other = {};
  if (::stat(target, &other) == 0 && (failIfExists != FALSE || SameFile(source, other))) return FALSE;
  NewFile to;
  if (to.Open(target) != 0 || CopyContents(from, to.File()) != 0 || to.SetNewPermissions(source.st_mode) != 0)
    return FALSE;
  using Existing = NewFile::Existing;
  return to.Complete(failIfExists != FALSE ? Existing::kRefused : Existing::kReplaced) == 0 ? TRUE : FALSE;
}
